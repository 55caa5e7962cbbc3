#version 430
#extension GL_GOOGLE_include_directive : require
#include "blocks.glsl"
#include "lines.glsl"
#include "ring.glsl"

layout(std430, binding = 0) readonly buffer Points {
    vec4 point[];
}
circle;

layout(location = 0) out vec3 worldPosition;
layout(location = 1) out float acrossW; // from the middle of the band, pixels, times w

vec4 clipOf(int number) {
    int count = int(ring.centre.w);
    vec4 world = u.modelMatrix * vec4(circle.point[(number + count) % count].xyz, 1.0);
    return u.projectionMatrix * (u.viewMatrix * world);
}

vec2 onScreen(vec4 clip) {
    return clip.xy / clip.w * 0.5 * ring.view.xy;
}

// A band along the closed line through the points: two vertices to a point, the first one again at
// the end.
void main() {
    int number = (gl_VertexIndex >> 1) % int(ring.centre.w);
    vec4 before = clipOf(number - 1);
    vec4 here = clipOf(number);
    vec4 after = clipOf(number + 1);
    worldPosition = (u.modelMatrix * vec4(circle.point[number].xyz, 1.0)).xyz;
    acrossW = 0.0;
    gl_Position = here;
    if (here.w <= 0.0 || before.w <= 0.0 || after.w <= 0.0)
        return; // behind the eye, where there is no width
    vec2 at = onScreen(here);
    vec2 arriving = directionOf(onScreen(before), at);
    vec2 leaving = directionOf(at, onScreen(after));
    vec2 sum = arriving + leaving;
    vec2 along = length(sum) > 1e-3 ? normalize(sum) : arriving;
    // On the line that halves the angle of the bend, a corner of the band lies farther out.
    float farther = 1.0 / max(dot(along, arriving), 0.5);
    float across = (ring.view.z + lineMargin) * ((gl_VertexIndex & 1) == 0 ? 1.0 : -1.0);
    acrossW = across * here.w;
    vec2 pixels = vec2(-along.y, along.x) * across * farther;
    gl_Position.xy += pixels / (0.5 * ring.view.xy) * here.w;
}
