#pragma once

#include "Rendering/FrameEncoding.h"
#include "Rendering/Rhi.h"
#include "Rendering/SceneBuffers.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace ostrella {

/// A device's copies of a scene's buffers, with the indices that only devices need.
class RhiBuffers {
public:
    explicit RhiBuffers(QRhi& rhi) : rhi_(rhi) {}

    /// Brings the buffers that a frame draws with up to date, and lets go of those that the scene
    /// has replaced. Always to be called with the same scene. Throws RhiError if there is no room.
    void renew(
        const SceneBuffers& scene, const FrameEncoding& frame, QRhiResourceUpdateBatch& updates);

    /// Nothing for a buffer that is not there, or that the last frame did not draw with.
    QRhiBuffer* get(SceneBuffer buffer) const {
        return held_[static_cast<std::size_t>(buffer)].buffer.get();
    }
    /// Bytes that a buffer holds.
    std::size_t size(SceneBuffer buffer) const {
        return held_[static_cast<std::size_t>(buffer)].size;
    }

    /// Indices of at least so many quads of four vertices each, six a quad.
    QRhiBuffer& quadIndices(std::size_t quads, QRhiResourceUpdateBatch& updates);

    /// The three edges of each triangle of these indices as a line list, for devices that cannot
    /// draw triangles as lines; twice as many indices.
    QRhiBuffer& triangleEdges(
        SceneBuffer indices, const SceneBuffers& scene, QRhiResourceUpdateBatch& updates);

    /// Changes whenever a buffer came or went: what refers to buffers is out of date then.
    std::uint64_t generation() const { return generation_; }

private:
    struct Held {
        std::unique_ptr<QRhiBuffer> buffer;
        std::size_t size = 0;
        std::uint64_t version = 0;
        const std::byte* source = nullptr;
        std::unique_ptr<QRhiBuffer> edges; ///< of indices: their line list
    };

    void drop(const SceneBuffers& scene);
    void upload(SceneBuffer which, const SceneBuffers& scene, std::span<const std::byte> bytes,
        QRhiResourceUpdateBatch& updates);
    void uploadModel(const SceneBuffers& scene, QRhiResourceUpdateBatch& updates);
    std::unique_ptr<QRhiBuffer> make(QRhiBuffer::UsageFlags usage, const void* bytes,
        std::size_t size, QRhiResourceUpdateBatch& updates);

    QRhi& rhi_;
    std::array<Held, sceneBufferCount> held_;
    std::unique_ptr<QRhiBuffer> quads_;
    /// Outgrown within the frame in hand, whose updates still name them.
    std::vector<std::unique_ptr<QRhiBuffer>> outgrown_;
    std::size_t quadCount_ = 0;
    std::uint64_t generation_ = 1;
};

} // namespace ostrella
