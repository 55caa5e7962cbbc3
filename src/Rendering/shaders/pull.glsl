// A point in clip space with the depth that it would have nearer to the eye, at the share `scale` of
// its distance. Where it stands on the screen does not change.
vec4 pulledForward(vec4 view, float scale) {
    vec4 clip = u.projectionMatrix * view;
    vec4 nearer = u.projectionMatrix * vec4(view.xy, view.z * scale, view.w);
    if (nearer.w > 0.0)
        clip.z = nearer.z / nearer.w * clip.w;
    return clip;
}
