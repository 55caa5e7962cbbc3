#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"
#include "colormap.glsl"
#include "device.glsl"
#include "lines.glsl"

// The segments of a surface that has no triangles. Devices draw lines of one pixel, which is too
// little to read a colour from, so each becomes a quad.
layout(std430, binding = 0) readonly buffer Points {
    vec4 point[]; // position and scalar
}
surface;
layout(std430, binding = 4) readonly buffer Indices {
    uint index[];
}
segments;

layout(location = 0) out vec3 viewPosition;
layout(location = 1) out vec2 value;

const float widthInPoints = 2.0;

void main() {
    int corner = gl_VertexIndex & 3;
    int first = (gl_VertexIndex >> 2) * 2;
    vec4 a = surface.point[segments.index[first]];
    vec4 b = surface.point[segments.index[first + 1]];
    mat4 toView = u.viewMatrix * u.modelMatrix;
    vec4 viewA = toView * vec4(a.xyz, 1.0);
    vec4 viewB = toView * vec4(b.xyz, 1.0);
    vec4 clipA = u.projectionMatrix * viewA;
    vec4 clipB = u.projectionMatrix * viewB;
    vec2 part = visiblePart(clipA.w, clipB.w);
    bool last = (corner & 2) != 0;
    float share = last ? part.y : part.x;
    viewPosition = mix(viewA, viewB, share).xyz;
    vec2 valueA =
        isFinite(a.w) ? vec2(normalised(a.w, u.scalarRange.xy), 1.0) : vec2(0.0);
    vec2 valueB =
        isFinite(b.w) ? vec2(normalised(b.w, u.scalarRange.xy), 1.0) : vec2(0.0);
    value = mix(valueA, valueB, share);
    if (part.x >= part.y) {
        gl_Position = nowhere;
        return;
    }
    vec4 start = mix(clipA, clipB, part.x);
    vec4 end = mix(clipA, clipB, part.y);
    vec2 along = directionOf(pixelOf(start), pixelOf(end));
    vec2 across = vec2(-along.y, along.x) * ((corner & 1) == 0 ? 1.0 : -1.0);
    float halfWidth = 0.5 * widthInPoints * device.target.z;
    // Half a width longer at both ends, so that neighbours leave no gap where the outline bends.
    vec2 offset = across + (last ? 0.5 : -0.5) * along;
    gl_Position = movedByPixels(last ? end : start, offset * halfWidth);
}
