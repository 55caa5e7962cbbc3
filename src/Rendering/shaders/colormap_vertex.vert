#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"
#include "colormap.glsl"

layout(location = 0) in vec3 position;
layout(location = 1) in float scalar;

layout(location = 0) out vec3 viewPosition;
layout(location = 1) out vec2 value; // the scalar in its range, and 1 where it is a number

void main() {
    vec4 view = u.viewMatrix * (u.modelMatrix * vec4(position, 1.0));
    viewPosition = view.xyz;
    value = isFinite(scalar) ? vec2(normalised(scalar, u.scalarRange.xy), 1.0) : vec2(0.0);
    gl_Position = u.projectionMatrix * view;
}
