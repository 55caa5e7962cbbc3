// What a draw has to know of the device, as DeviceUniforms.h lays it out.

layout(std140, binding = 3) uniform DeviceUniforms {
    vec4 target; // width and height (pixels), pixels per point, 1 where triangles are drawn as lines
    vec4 traits; // 1 or -1: clip space's y for what is up; 0, 0, 0
}
device;

// From the middle of the target, in pixels.
vec2 pixelOf(vec4 clip) {
    return clip.xy / clip.w * 0.5 * device.target.xy;
}

// A point in clip space, moved by pixels on the screen.
vec4 movedByPixels(vec4 clip, vec2 pixels) {
    return vec4(clip.xy + pixels / (0.5 * device.target.xy) * clip.w, clip.zw);
}
