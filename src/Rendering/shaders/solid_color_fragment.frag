#version 430
#extension GL_GOOGLE_include_directive : require
#include "lines.glsl"
#include "prerun.glsl"

layout(location = 0) in noperspective float across;
layout(location = 1) in flat float halfWidth;

layout(location = 0) out vec4 color;

void main() {
    color = vec4(preRun.color.rgb, preRun.color.a * lineCoverage(across, halfWidth));
}
