// Normals and light, in view space.

// Interpolated normals are averages over the faces around a vertex. Where one strays from the face
// that is drawn, the face's own is taken, so that flat panels stay flat; both look to the viewer.
vec3 shadingNormal(vec3 position, vec3 interpolated, float asLines) {
    vec3 toEye = normalize(-position);
    float len = length(interpolated);
    vec3 smoothed = len > 1e-6 ? interpolated / len : toEye;
    vec3 across = cross(dFdx(position), dFdy(position));
    float extent = length(across);
    // Lines have no face, and faces seen edge on are too thin to have a normal.
    if (asLines > 0.5 || !(extent > 0.0))
        return dot(smoothed, toEye) < 0.0 ? -smoothed : smoothed;
    vec3 face = across / extent;
    if (dot(face, toEye) < 0.0)
        face = -face;
    if (dot(smoothed, face) < 0.0)
        smoothed = -smoothed;
    const float near = 0.9962; // cos 5 degrees
    const float far = 0.9848;  // cos 10 degrees
    return normalize(mix(face, smoothed, smoothstep(far, near, dot(smoothed, face))));
}

// The face's own normal alone, towards the viewer.
vec3 faceNormal(vec3 position) {
    vec3 toEye = normalize(-position);
    vec3 across = cross(dFdx(position), dFdy(position));
    float extent = length(across);
    if (!(extent > 0.0))
        return toEye;
    return dot(across, toEye) < 0.0 ? -across / extent : across / extent;
}

// Light that wraps around: 1 towards it, 0 away from it.
float softDiffuse(vec3 normal, vec3 light) {
    float wrapped = 0.5 + 0.5 * dot(normal, light);
    return wrapped * wrapped;
}

// 0 face on, 1 where the surface turns away from the viewer.
float rimOf(vec3 normal, vec3 position, float exponent) {
    return pow(1.0 - clamp(dot(normal, normalize(-position)), 0.0, 1.0), exponent);
}
