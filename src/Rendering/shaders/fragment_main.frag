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
    vec3 normal = shadingNormal(viewPosition, viewNormal, device.target.w);
    float light = mix(0.22, 0.90, softDiffuse(normal, u.lightDirection.xyz));
    float up = dot(normal, mat3(u.viewMatrix) * vec3(0.0, 1.0, 0.0));
    vec3 lit = u.baseColor.rgb * light;
    lit += vec3(0.010, 0.018, 0.030) * max(up, 0.0);
    lit += vec3(0.10, 0.11, 0.13) * rimOf(normal, viewPosition, 3.0);
    color = vec4(lit, 1.0);
}
