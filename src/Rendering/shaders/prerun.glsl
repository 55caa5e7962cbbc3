layout(std140, binding = 2) uniform PreRunUniforms {
    vec4 color;    // of the fill, or of the lines
    vec4 rimColor; // zeros for lines
    vec4 params;   // fill: light from nowhere, from the key light, exponent of the rim; lines: 0, 0,
                   // scale of the distance and what of it they are pulled forward by
}
preRun;
