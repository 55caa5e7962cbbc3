#version 430
layout(location = 0) in vec2 place;
layout(location = 1) in flat vec4 lineColor;
layout(location = 2) in flat vec3 shape;

layout(location = 0) out vec4 color;

// A line with round ends and soft edges.
void main() {
    float beyond = max(max(-place.x, place.x - shape.x), 0.0);
    float distance = length(vec2(beyond, place.y));
    float feather = 0.5 * shape.z;
    float coverage = 1.0 - smoothstep(shape.y - feather, shape.y + feather, distance);
    color = vec4(lineColor.rgb, lineColor.a * coverage);
}
