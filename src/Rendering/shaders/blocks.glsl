// The blocks that a draw hands to its functions, as Uniforms.h lays them out.

layout(std140, binding = 1) uniform Uniforms {
    mat4 modelMatrix;
    mat4 viewMatrix;
    mat4 projectionMatrix;
    vec4 lightDirection; // unit vector in view space, w 0
    vec4 baseColor;
    vec4 scalarRange; // least, greatest, 0, 0
}
u;
