layout(std140, binding = 2) uniform RingStyle {
    vec4 color;
    vec4 view;   // width and height (pixels), half width (pixels), 1
    vec4 centre; // centre (m), number of points
    vec4 eye;    // eye (m), 0
    vec4 behind; // alpha of the half behind the body, softness of the passage, 0, 0
}
ring;
