#version 430
#extension GL_GOOGLE_include_directive : require
#include "lines.glsl"
#include "ring.glsl"

layout(location = 0) in vec3 worldPosition;
layout(location = 1) in float acrossW;

layout(location = 0) out vec4 color;

void main() {
    vec3 outward = normalize(worldPosition - ring.centre.xyz);
    vec3 toEye = normalize(ring.eye.xyz - ring.centre.xyz);
    float passage = ring.behind.y;
    float front = smoothstep(-passage, passage, dot(outward, toEye));
    float alpha = ring.color.a * mix(ring.behind.x, 1.0, front);
    color = vec4(ring.color.rgb, alpha * lineCoverage(acrossW * gl_FragCoord.w, ring.view.z));
}
