// The legend's colours. Location 0 is its top, the greatest value.
vec3 legendColor(float location) {
    const float at[7] = float[](0.0, 0.2, 0.35, 0.5, 0.65, 0.8, 1.0);
    const vec3 stop[7] = vec3[](vec3(0.48, 0.016, 0.012), vec3(0.87, 0.247, 0.027),
        vec3(0.978, 0.621, 0.082), vec3(0.871, 0.875, 0.094), vec3(0.345, 0.882, 0.388),
        vec3(0.149, 0.541, 0.929), vec3(0.19, 0.071, 0.235));
    vec3 color = stop[0];
    for (int i = 1; i < 7; ++i)
        color = mix(color, stop[i], clamp((location - at[i - 1]) / (at[i] - at[i - 1]), 0.0, 1.0));
    return color;
}

// Where a value stands in a range, 0 to 1; in the middle of a range without extent.
float normalised(float value, vec2 range) {
    float extent = range.y - range.x;
    return extent > 0.0 ? clamp((value - range.x) / extent, 0.0, 1.0) : 0.5;
}

// False for what is no number and for what is infinite. Compilers may take the usual tests for
// always true, so the bits decide.
bool isFinite(float value) {
    return (floatBitsToUint(value) & 0x7f800000u) != 0x7f800000u;
}
