layout(std140, binding = 2) uniform RibbonUniforms {
    vec4 view;  // width and height (pixels), half width of a ribbon (pixels), 1
    vec4 depth; // near and far distance (m), brightness of the far end, alpha
    vec4 pulse; // phase (s), spacing (m), speed (m/s), faded share at each end
    vec4 look;  // strength of the thread between pulses, animation on, pull forward, pulse's tail
    vec4 floorColor;
}
ribbon;
