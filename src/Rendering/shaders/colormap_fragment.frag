#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"
#include "colormap.glsl"
#include "device.glsl"
#include "shading.glsl"

layout(location = 0) in vec3 viewPosition;
layout(location = 1) in vec2 value;

layout(location = 0) out vec4 color;

// The colours are data: what faces the viewer has the legend's own, and the light takes away a fifth
// at most. What has no number is grey.
void main() {
    float present = clamp(value.y, 0.0, 1.0);
    float share = present > 0.0 ? clamp(value.x / present, 0.0, 1.0) : 0.0;
    vec3 base = mix(vec3(0.42), legendColor(1.0 - share), smoothstep(0.0, 1.0, present));
    float shade = 1.0;
    if (device.target.w < 0.5) {
        float facing = dot(faceNormal(viewPosition), u.lightDirection.xyz);
        shade = mix(0.8, 1.0, smoothstep(-0.1, 0.8, facing));
    }
    color = vec4(base * shade, 1.0);
}
