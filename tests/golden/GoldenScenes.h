#pragma once

#include "Rendering/MetalRenderer.h"

#include <functional>
#include <span>
#include <string>

namespace ostrella::golden {

/// The size of all golden pictures, in pixels.
inline constexpr int width = 640;
inline constexpr int height = 400;

/// One picture: what it is called, and how its scene comes about.
struct Picture {
    std::string name;
    std::function<void(MetalRenderer&)> prepare;
    float pointScale = 1;
    double time = 0; ///< seconds after the renderer was made
};

std::span<const Picture> pictures();

/// The frame of a picture, and the renderer that holds its buffers.
struct Scene {
    explicit Scene(const Picture& picture);
    double now = 1000;
    MetalRenderer renderer;
    FrameEncoding frame;
};

} // namespace ostrella::golden
