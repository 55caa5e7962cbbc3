#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"
#include "shading.glsl"

layout(std140, binding = 2) uniform VortexUniforms {
    vec4 tint; // its alpha is that of a face that looks at the viewer
    vec4 rimColor;
    vec4 params; // light from nowhere, light from the key light, exponent of the rim, 0
}
vortex;

layout(location = 0) in vec3 viewPosition;
layout(location = 1) in vec3 viewNormal;

layout(location = 0) out vec4 color;

// Breath on cold glass: almost nothing face on, a pale rim that draws the outline.
void main() {
    vec3 toEye = normalize(-viewPosition);
    float len = length(viewNormal);
    vec3 normal = len > 1e-6 ? viewNormal / len : toEye;
    if (dot(normal, toEye) < 0.0)
        normal = -normal;
    float rim = rimOf(normal, toEye, vortex.params.z);
    float light = vortex.params.x + vortex.params.y * softDiffuse(normal, u.lightDirection.xyz);
    float alpha = mix(vortex.tint.a, vortex.rimColor.a, rim);
    vec3 lit = mix(vortex.tint.rgb * light, vortex.rimColor.rgb, rim);
    color = vec4(lit * alpha, alpha);
}
