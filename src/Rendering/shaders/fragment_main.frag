#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"
#include "device.glsl"
#include "shading.glsl"

layout(location = 0) in vec3 viewPosition;
layout(location = 1) in vec3 viewNormal;

layout(location = 0) out vec4 color;

// A clay model: soft light, a little sky, and a faint rim that separates it from the ground.
void main() {
    vec3 toEye = normalize(-viewPosition);
    vec3 normal = shadingNormal(viewPosition, viewNormal, toEye, device.target.w);
    float light = mix(0.22, 0.90, softDiffuse(normal, u.lightDirection.xyz));
    float up = max(dot(normal, u.viewMatrix[1].xyz), 0.0);
    float away = 1.0 - clamp(dot(normal, toEye), 0.0, 1.0);
    vec3 lit = u.baseColor.rgb * light + vec3(0.010, 0.018, 0.030) * up;
    color = vec4(lit + vec3(0.10, 0.11, 0.13) * (away * away * away), 1.0);
}
