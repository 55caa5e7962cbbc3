#version 430
#extension GL_GOOGLE_include_directive : require
#include "device.glsl"

struct Segment {
    vec4 ends; // x0, y0, x1, y1, pixels of the box from its lower left corner
    vec4 color;
    vec4 params; // half width, feather of the edge (pixels), 0, 0
};
layout(std430, binding = 0) readonly buffer Segments {
    Segment segment[];
}
gizmo;
layout(std140, binding = 1) uniform GizmoUniforms {
    vec4 box; // width and height (pixels), 0, 0
}
bounds;

layout(location = 0) out vec2 place; // along from the first end and across, pixels
layout(location = 1) out flat vec4 lineColor;
layout(location = 2) out flat vec3 shape; // length, half width, feather, pixels

void main() {
    Segment s = gizmo.segment[gl_InstanceIndex];
    vec2 way = s.ends.zw - s.ends.xy;
    float len = length(way);
    vec2 along = len > 1e-4 ? way / len : vec2(1.0, 0.0);
    float reach = s.params.x + s.params.y;
    bool last = (gl_VertexIndex & 2) != 0;
    vec2 offset = vec2(last ? len + reach : -reach, (gl_VertexIndex & 1) == 0 ? reach : -reach);
    place = offset;
    lineColor = s.color;
    shape = vec3(len, s.params.xy);
    vec2 at = s.ends.xy + offset.x * along + offset.y * vec2(-along.y, along.x);
    vec2 clip = at / bounds.box.xy * 2.0 - 1.0;
    gl_Position = vec4(clip.x, clip.y * device.traits.x, 0.5, 1.0);
}
