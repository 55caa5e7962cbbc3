#version 430
layout(std140, binding = 2) uniform GridUniforms {
    vec4 lineColor;
    vec4 background;
    vec4 fade; // centre x and z (m), half extent (m), where the fade begins as a share of it
}
grid;

layout(location = 0) in vec3 worldPosition;

layout(location = 0) out vec4 color;

void main() {
    float outward = length(worldPosition.xz - grid.fade.xy) / max(grid.fade.z, 1e-30);
    float left = 1.0 - smoothstep(grid.fade.w, 1.0, outward);
    color = vec4(mix(grid.background.rgb, grid.lineColor.rgb, left), 1.0);
}
