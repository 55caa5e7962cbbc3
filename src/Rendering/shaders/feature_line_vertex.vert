#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"
#include "device.glsl"
#include "lines.glsl"
#include "prerun.glsl"
#include "pull.glsl"

layout(std430, binding = 0) readonly buffer Points {
    vec4 point[];
}
line;

layout(location = 0) out float acrossW; // from the middle of the line, pixels, times w
layout(location = 1) out flat float halfWidth;

void main() {
    int corner = gl_VertexIndex & 3;
    int first = (gl_VertexIndex >> 2) * 2;
    mat4 toView = u.viewMatrix * u.modelMatrix;
    float scale = preRun.params.z - preRun.params.w;
    vec4 clipA = pulledForward(toView * vec4(line.point[first].xyz, 1.0), scale);
    vec4 clipB = pulledForward(toView * vec4(line.point[first + 1].xyz, 1.0), scale);
    vec2 part = visiblePart(clipA.w, clipB.w);
    acrossW = 0.0;
    halfWidth = 0.5 * device.target.z;
    if (part.x >= part.y) {
        gl_Position = nowhere;
        return;
    }
    vec4 start = mix(clipA, clipB, part.x);
    vec4 end = mix(clipA, clipB, part.y);
    vec2 along = directionOf(pixelOf(start), pixelOf(end));
    float across = (halfWidth + lineMargin) * ((corner & 1) == 0 ? 1.0 : -1.0);
    vec4 clip = (corner & 2) != 0 ? end : start;
    acrossW = across * clip.w;
    gl_Position = movedByPixels(clip, across * vec2(-along.y, along.x));
}
