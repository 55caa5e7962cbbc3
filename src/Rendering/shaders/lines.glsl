// Lines with a width on the screen. Each is a quad of four vertices: bit 0 of the corner tells the
// side, bit 1 the end.

// Distances on the screen grow evenly there, not in space. Vertices hand them over times their w, and
// fragments take that back: what is between comes out the same, also where a quad is clipped, which
// not all drivers do right for values that they are told to vary evenly.

// How far outside of its outline a soft edge may reach, in pixels.
const float lineMargin = 1.0;

// What of a segment lies in front of the eye, as shares of the way from its first to its last point;
// an empty range (1, 0) for none.
vec2 visiblePart(float firstW, float lastW) {
    float least = 0.001 * max(firstW, lastW);
    if (least <= 0.0)
        return vec2(1.0, 0.0);
    vec2 part = vec2(0.0, 1.0);
    if (firstW < least)
        part.x = (least - firstW) / (lastW - firstW);
    if (lastW < least)
        part.y = (firstW - least) / (firstW - lastW);
    return part;
}

// Nothing is drawn of a primitive with this for every vertex.
const vec4 nowhere = vec4(2.0, 2.0, 2.0, 1.0);

// The unit vector from one point to another; to the right where they coincide.
vec2 directionOf(vec2 from, vec2 to) {
    vec2 way = to - from;
    float len = length(way);
    return len > 1e-4 ? way / len : vec2(1.0, 0.0);
}

// The share of a pixel that a line covers, at a distance from its middle; both in pixels.
float lineCoverage(float distance, float halfWidth) {
    // A line thinner than a pixel keeps its edges and pales instead.
    float drawn = max(halfWidth, 0.5);
    return clamp(drawn + 0.5 - abs(distance), 0.0, 1.0) * (halfWidth / drawn);
}
