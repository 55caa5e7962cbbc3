#pragma once

#include "Rendering/CreasedMesh.h"
#include "Rendering/FrameEncoding.h"
#include "Rendering/Rhi.h"
#include "Rendering/RhiFilling.h"
#include "Rendering/SceneBuffers.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace ostrella {

/// A device's copies of a scene's buffers, with the indices that only devices need. Always to be
/// called with the same scene. What brings something to the device goes as far as its budget
/// reaches, gives true once all of it is there, and throws RhiError if there is no room.
class RhiBuffers {
public:
    explicit RhiBuffers(QRhi& rhi) : rhi_(rhi) {}

    /// Brings the buffers that a frame draws with up to date, and lets go of those that the scene
    /// has replaced, however far they had got.
    bool renew(const SceneBuffers& scene, const FrameEncoding& frame,
        QRhiResourceUpdateBatch& updates, UploadBudget& budget);

    /// Nothing for a buffer that is not there as a whole, or that no frame drew with.
    QRhiBuffer* get(SceneBuffer buffer) const { return of(buffer).contents.buffer(); }
    /// Bytes that a buffer holds.
    std::size_t size(SceneBuffer buffer) const { return of(buffer).contents.size(); }

    /// Brings indices of at least so many quads of four vertices each, six a quad.
    bool renewQuads(std::size_t quads, QRhiResourceUpdateBatch& updates, UploadBudget& budget);
    /// Those indices; what of them is missing comes at once.
    QRhiBuffer& quadIndices(std::size_t quads, QRhiResourceUpdateBatch& updates);

    /// Brings the three edges of each triangle of these indices as a line list, for devices that
    /// cannot draw triangles as lines; twice as many indices.
    bool renewEdges(SceneBuffer indices, const SceneBuffers& scene,
        QRhiResourceUpdateBatch& updates, UploadBudget& budget);
    /// That line list, nothing without triangles; what of it is missing comes at once.
    QRhiBuffer* triangleEdges(
        SceneBuffer indices, const SceneBuffers& scene, QRhiResourceUpdateBatch& updates);

    /// Changes whenever a buffer came or went: what refers to buffers is out of date then.
    std::uint64_t generation() const { return generation_; }

private:
    struct Held {
        RhiFilling contents;
        std::uint64_t version = 0;
        const std::byte* source = nullptr;
        RhiFilling edges; ///< of indices: their line list
    };

    Held& of(SceneBuffer buffer) { return held_[static_cast<std::size_t>(buffer)]; }
    const Held& of(SceneBuffer buffer) const { return held_[static_cast<std::size_t>(buffer)]; }

    void drop(const SceneBuffers& scene);
    void drop(Held& held);
    bool fill(SceneBuffer which, const SceneBuffers& scene, std::span<const std::byte> bytes,
        QRhiResourceUpdateBatch& updates, UploadBudget& budget);
    bool fillCreased(
        const SceneBuffers& scene, QRhiResourceUpdateBatch& updates, UploadBudget& budget);

    QRhi& rhi_;
    std::array<Held, sceneBufferCount> held_;
    std::optional<CreasedMesh> creased_; ///< while it is on its way to the device
    RhiFilling quads_;
    RhiFilling widerQuads_; ///< on their way, to replace those
    /// Outgrown within the frame in hand, whose updates still name them.
    std::vector<RhiFilling> outgrown_;
    std::uint64_t generation_ = 1;
};

} // namespace ostrella
