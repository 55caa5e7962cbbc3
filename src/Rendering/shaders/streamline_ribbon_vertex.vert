#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"
#include "colormap.glsl"
#include "lines.glsl"
#include "pull.glsl"
#include "ribbon.glsl"

layout(std430, binding = 0) readonly buffer Points {
    vec4 row[]; // two to a point: position and speed; arc length, whole length, phase, flags
}
points;
layout(std430, binding = 4) readonly buffer Indices {
    uint index[]; // six to a segment; the first is twice the number of its first point
}
bands;

// All but the place within the segment is the same for its four corners.
layout(location = 0) out vec2 placeW; // along from the first point and across, pixels, times w
layout(location = 1) out flat vec4 cuts;           // directions of the line at both joints
layout(location = 2) out flat vec4 ends;           // arc length (m) and normalised speed at both ends
layout(location = 3) out flat vec4 segment;        // length (pixels), whole length (m), phase, joints
layout(location = 4) out flat vec2 distances;      // of both ends from the eye, m

vec2 onScreen(vec4 clip) {
    return clip.xy / clip.w * 0.5 * ribbon.view.xy;
}

// A vector on the screen, in the axes of the segment.
vec2 inSegment(vec2 vector, vec2 along) {
    return vec2(dot(vector, along), dot(vector, vec2(-along.y, along.x)));
}

void main() {
    int corner = gl_VertexIndex & 3;
    int a = int(bands.index[(gl_VertexIndex >> 2) * 6] >> 1);
    vec4 placeA = points.row[2 * a];
    vec4 traitsA = points.row[2 * a + 1];
    vec4 placeB = points.row[2 * a + 2];
    vec4 traitsB = points.row[2 * a + 3];
    bool hasPrevious = (int(traitsA.w) & 1) == 0;
    bool hasNext = (int(traitsB.w) & 2) == 0;

    mat4 toView = u.viewMatrix * u.modelMatrix;
    float scale = 1.0 - ribbon.look.z;
    vec4 viewA = toView * vec4(placeA.xyz, 1.0);
    vec4 viewB = toView * vec4(placeB.xyz, 1.0);
    vec4 clipA = pulledForward(viewA, scale);
    vec4 clipB = pulledForward(viewB, scale);
    vec2 part = visiblePart(clipA.w, clipB.w);

    placeW = vec2(0.0);
    cuts = vec4(0.0);
    segment = vec4(0.0);
    distances = vec2(length(viewA.xyz), length(viewB.xyz));
    ends = vec4(traitsA.x, normalised(placeA.w, u.scalarRange.xy), traitsB.x,
        normalised(placeB.w, u.scalarRange.xy));
    if (part.x >= part.y) {
        gl_Position = nowhere;
        return;
    }
    vec4 start = mix(clipA, clipB, part.x);
    vec4 end = mix(clipA, clipB, part.y);
    vec2 from = onScreen(start);
    vec2 to = onScreen(end);
    vec2 along = directionOf(from, to);
    float len = distance(from, to);

    // Where a neighbour follows, the two share the joint along the line that halves its angle, so
    // that the round ends fill the bend and nothing is drawn twice.
    float joints = 0.0;
    if (hasPrevious && part.x == 0.0) {
        vec4 clip = u.projectionMatrix * (toView * vec4(points.row[2 * a - 2].xyz, 1.0));
        vec2 middle = along + (clip.w > 0.0 ? directionOf(onScreen(clip), from) : along);
        if (length(middle) > 1e-3) {
            cuts.xy = inSegment(normalize(middle), along);
            joints += 1.0;
        }
    }
    if (hasNext && part.y == 1.0) {
        vec4 clip = u.projectionMatrix * (toView * vec4(points.row[2 * a + 4].xyz, 1.0));
        vec2 middle = along + (clip.w > 0.0 ? directionOf(to, onScreen(clip)) : along);
        if (length(middle) > 1e-3) {
            cuts.zw = inSegment(normalize(middle), along);
            joints += 2.0;
        }
    }
    segment = vec4(len, traitsA.y, traitsA.z, joints);

    bool last = (corner & 2) != 0;
    float reach = ribbon.view.z + lineMargin;
    vec2 offset = vec2(last ? reach : -reach, (corner & 1) == 0 ? reach : -reach);
    vec4 clip = last ? end : start;
    placeW = (offset + vec2(last ? len : 0.0, 0.0)) * clip.w;
    vec2 pixels = offset.x * along + offset.y * vec2(-along.y, along.x);
    gl_Position = vec4(clip.xy + pixels / (0.5 * ribbon.view.xy) * clip.w, clip.zw);
}
