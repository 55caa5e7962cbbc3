#pragma once

#include "Models/SharedArray.h"
#include "Rendering/FrameEncoding.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace ostrella {

/// The contents of a scene's buffers in memory, each with a number that changes whenever they are
/// replaced: a device holds copies and renews what is out of date, also after it was lost.
class SceneBuffers {
public:
    struct Contents {
        SharedArray<std::byte> bytes; ///< empty: there is no such buffer
        std::uint64_t version = 0;    ///< of the whole scene's counter when it was replaced
    };

    const Contents& operator[](SceneBuffer buffer) const {
        return contents_[static_cast<std::size_t>(buffer)];
    }

    void replace(SceneBuffer buffer, SharedArray<std::byte> bytes) {
        contents_[static_cast<std::size_t>(buffer)] = {std::move(bytes), ++versions_};
    }
    void remove(SceneBuffer buffer) { replace(buffer, {}); }

private:
    std::array<Contents, sceneBufferCount> contents_;
    std::uint64_t versions_ = 0;
};

} // namespace ostrella
