#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"
#include "device.glsl"
#include "prerun.glsl"
#include "pull.glsl"

layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;

layout(location = 0) out float acrossW; // from the middle of the line, pixels, times w
layout(location = 1) out flat float halfWidth; // pixels

void main() {
    vec4 view = u.viewMatrix * (u.modelMatrix * vec4(position, 1.0));
    // The device gives these lines a pixel. Two triangles share each of them, and only together are
    // they to be as strong as asked for.
    float alpha = clamp(preRun.color.a, 0.01, 1.0);
    acrossW = 0.0;
    halfWidth = 0.5 * device.target.z * (1.0 - sqrt(1.0 - alpha)) / alpha;
    gl_Position = pulledForward(view, preRun.params.z - preRun.params.w);
}
