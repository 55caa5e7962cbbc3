#version 430
#extension GL_GOOGLE_include_directive : require
#include "colormap.glsl"
#include "lines.glsl"
#include "ribbon.glsl"

layout(location = 0) in vec2 placeW;
layout(location = 1) in flat vec4 cuts;
layout(location = 2) in flat vec4 ends;
layout(location = 3) in flat vec4 segment;
layout(location = 4) in flat vec2 distances;

layout(location = 0) out vec4 color;

// A pulse with a sharp head and a long tail, 0 to 1, that travels towards greater arc lengths. One
// spacing holds one pulse; the phase is seconds, in which it runs speed / spacing spacings.
float pulseAt(float arcLength, float linePhase) {
    float spacing = max(ribbon.pulse.y, 1e-20);
    float behind = fract((arcLength - ribbon.pulse.x * ribbon.pulse.z) / spacing + linePhase);
    float tail = clamp((behind - (1.0 - ribbon.look.w)) / ribbon.look.w, 0.0, 1.0);
    float head = 1.0 - smoothstep(0.97, 1.0, behind);
    return tail * tail * head;
}

void main() {
    vec2 place = placeW * gl_FragCoord.w;
    float len = segment.x;
    int joints = int(segment.w);
    // Beyond a joint the neighbour draws.
    bool cutAway = ((joints & 1) != 0 && dot(place, cuts.xy) < 0.0) ||
                   ((joints & 2) != 0 && dot(place - vec2(len, 0.0), cuts.zw) >= 0.0);
    float beyond = max(max(-place.x, place.x - len), 0.0);
    float coverage = cutAway ? 0.0 : lineCoverage(length(vec2(beyond, place.y)), ribbon.view.z);

    float share = len > 0.0 ? clamp(place.x / len, 0.0, 1.0) : 0.0;
    float arcLength = mix(ends.x, ends.z, share);
    float speed = mix(ends.y, ends.w, share);

    float whole = max(segment.y, 1e-20);
    float faded = max(ribbon.pulse.w, 1e-6);
    float fromEnd = clamp(min(arcLength, whole - arcLength) / whole, 0.0, 1.0);
    float endFade = smoothstep(0.0, faded, fromEnd);
    float far = clamp((mix(distances.x, distances.y, share) - ribbon.depth.x) /
                          max(ribbon.depth.y - ribbon.depth.x, 1e-20), 0.0, 1.0);
    float sinking = mix(1.0, ribbon.depth.z, far);

    bool moving = ribbon.look.y > 0.5;
    float pulse = moving ? pulseAt(arcLength, segment.z) : 0.0;
    float strength = moving ? mix(ribbon.look.x, 1.0, pulse) : 0.8;

    vec3 base = legendColor(1.0 - speed);
    // The scale's slow end would vanish on the background.
    float slow = 1.0 - smoothstep(0.0, 0.3, speed);
    base = mix(base, ribbon.floorColor.rgb, slow * ribbon.floorColor.a);
    base = mix(base, vec3(1.0), 0.2 * pulse);
    color = vec4(base * sinking, coverage * strength * endFade * ribbon.depth.w);
}
