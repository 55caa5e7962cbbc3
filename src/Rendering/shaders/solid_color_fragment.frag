#version 430
#extension GL_GOOGLE_include_directive : require
#include "lines.glsl"
#include "prerun.glsl"

layout(location = 0) in float acrossW;
layout(location = 1) in flat float halfWidth;

layout(location = 0) out vec4 color;

void main() {
    float coverage = lineCoverage(acrossW * gl_FragCoord.w, halfWidth);
    color = vec4(preRun.color.rgb, preRun.color.a * coverage);
}
