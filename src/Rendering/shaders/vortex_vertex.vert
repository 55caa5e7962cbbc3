#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"

layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;

layout(location = 0) out vec3 viewPosition;
layout(location = 1) out vec3 viewNormal;

void main() {
    vec4 view = u.viewMatrix * (u.modelMatrix * vec4(position, 1.0));
    viewPosition = view.xyz;
    viewNormal = mat3(u.viewMatrix) * (mat3(u.modelMatrix) * normal);
    gl_Position = u.projectionMatrix * view;
}
