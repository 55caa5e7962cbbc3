#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"
#include "prerun.glsl"
#include "pull.glsl"

layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;

layout(location = 0) out noperspective float across; // from the middle of the line, pixels
layout(location = 1) out flat float halfWidth;       // pixels

void main() {
    vec4 view = u.viewMatrix * (u.modelMatrix * vec4(position, 1.0));
    // The device gives these lines their width.
    across = 0.0;
    halfWidth = 1.0;
    gl_Position = pulledForward(view, preRun.params.z - preRun.params.w);
}
