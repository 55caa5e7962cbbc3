// Normals and light, in view space.

// The interpolated normal on the side that is drawn. The face tells which that is: at outlines the
// normal itself may already look away, and facets may be wound either way.
vec3 shadingNormal(vec3 position, vec3 interpolated, vec3 toEye, float asLines) {
    float squared = dot(interpolated, interpolated);
    vec3 normal = squared > 1e-12 ? interpolated * inversesqrt(squared) : toEye;
    // Lines have no face, and faces seen edge on are too thin to have a side.
    vec3 face = cross(dFdx(position), dFdy(position));
    if (asLines > 0.5 || !(dot(face, face) > 0.0))
        return dot(normal, toEye) < 0.0 ? -normal : normal;
    return dot(normal, face) * dot(face, toEye) < 0.0 ? -normal : normal;
}

// The face's own normal, towards the viewer.
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
float rimOf(vec3 normal, vec3 toEye, float exponent) {
    return pow(1.0 - clamp(dot(normal, toEye), 0.0, 1.0), exponent);
}
