#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"
#include "device.glsl"
#include "lines.glsl"

layout(std430, binding = 0) readonly buffer Points {
    vec4 point[];
}
line;

layout(location = 0) out vec3 worldPosition;

void main() {
    int corner = gl_VertexIndex & 3;
    int first = (gl_VertexIndex >> 2) * 2;
    vec4 a = u.modelMatrix * vec4(line.point[first].xyz, 1.0);
    vec4 b = u.modelMatrix * vec4(line.point[first + 1].xyz, 1.0);
    mat4 toClip = u.projectionMatrix * u.viewMatrix;
    vec4 clipA = toClip * a;
    vec4 clipB = toClip * b;
    vec2 part = visiblePart(clipA.w, clipB.w);
    if (part.x >= part.y) {
        worldPosition = vec3(0.0);
        gl_Position = nowhere;
        return;
    }
    vec4 start = mix(clipA, clipB, part.x);
    vec4 end = mix(clipA, clipB, part.y);
    vec2 along = directionOf(pixelOf(start), pixelOf(end));
    vec2 across = vec2(-along.y, along.x) * ((corner & 1) == 0 ? 1.0 : -1.0);
    bool last = (corner & 2) != 0;
    worldPosition = mix(a.xyz, b.xyz, last ? part.y : part.x);
    gl_Position = movedByPixels(last ? end : start, across * 0.5 * device.target.z);
}
