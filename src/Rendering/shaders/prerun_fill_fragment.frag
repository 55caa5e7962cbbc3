#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"
#include "device.glsl"
#include "prerun.glsl"
#include "shading.glsl"

layout(location = 0) in vec3 viewPosition;
layout(location = 1) in vec3 viewNormal;

layout(location = 0) out vec4 color;

// Smoked glass: a dark fill, a little cooler where it looks up, held together by its rim.
void main() {
    vec3 toEye = normalize(-viewPosition);
    vec3 normal = shadingNormal(viewPosition, viewNormal, toEye, device.target.w);
    vec3 light = u.lightDirection.xyz;
    float up = max(dot(normal, u.viewMatrix[1].xyz), 0.0);
    float facing = max(dot(normal, light), 0.0);
    vec3 fill = preRun.color.rgb * (preRun.params.x + preRun.params.y * facing * facing);
    fill += vec3(0.004, 0.016, 0.034) * up;
    float rim = rimOf(normal, toEye, preRun.params.z) * preRun.rimColor.a;
    float glint = 0.06 * pow(max(dot(normal, normalize(light + toEye)), 0.0), 36.0);
    color = vec4(mix(fill, preRun.rimColor.rgb, rim) + glint, mix(preRun.color.a, 1.0, rim));
}
