#pragma once

#include "Models/Vector.h"
#include "Rendering/FrameEncoding.h"

#include <cstddef>

namespace ostrella {

/// A frame on its way: what its passes share while they add their draws.
struct SceneFrame {
    FrameEncoding encoding;
    Vec2 pixelSize{0.0F};
    double time = 0; ///< of the media clock, s

    // Which of the encoding's blocks stand for what.
    std::size_t modelBlock = 0;
    std::size_t worldBlock = 0; ///< grid and rings
    std::size_t resultBlock = 0;

    /// Adds a block and gives its number.
    std::size_t add(const Uniforms& block) {
        encoding.uniforms.push_back(block);
        return encoding.uniforms.size() - 1;
    }
    void add(const DrawCommand& draw) { encoding.draws.push_back(draw); }
};

} // namespace ostrella
