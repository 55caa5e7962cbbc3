#include "Rendering/RhiBuffers.h"

#include "Rendering/RhiError.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

QRhiBuffer::UsageFlags usageOf(SceneBuffer buffer) {
    switch (buffer) {
    case SceneBuffer::modelVertices:
    case SceneBuffer::vortexVertices:
        return QRhiBuffer::VertexBuffer;
    case SceneBuffer::modelIndices:
    case SceneBuffer::vortexIndices:
        return QRhiBuffer::IndexBuffer;
    case SceneBuffer::surfaceVertices:
        // Triangles take them as attributes, segments read them themselves.
        return QRhiBuffer::VertexBuffer | QRhiBuffer::StorageBuffer;
    case SceneBuffer::surfaceIndices:
        return QRhiBuffer::IndexBuffer | QRhiBuffer::StorageBuffer;
    default:
        return QRhiBuffer::StorageBuffer;
    }
}

} // namespace

void RhiBuffers::renew(
    const SceneBuffers& scene, const FrameEncoding& frame, QRhiResourceUpdateBatch& updates) {
    outgrown_.clear();
    std::array<bool, sceneBufferCount> drawn{};
    for (const DrawCommand& draw : frame.draws) {
        drawn[static_cast<std::size_t>(draw.vertices)] = true;
        if (draw.indices)
            drawn[static_cast<std::size_t>(*draw.indices)] = true;
    }
    for (std::size_t i = 0; i < sceneBufferCount; ++i) {
        const auto which = static_cast<SceneBuffer>(i);
        const SceneBuffers::Contents& contents = scene[which];
        Held& held = held_[i];
        if (held.buffer &&
            (held.version != contents.version || held.source != contents.bytes.data())) {
            held = {};
            ++generation_;
        }
        if (drawn[i] && !held.buffer && !contents.bytes.empty())
            upload(held, which, contents, updates);
    }
}

void RhiBuffers::upload(Held& held, SceneBuffer which, const SceneBuffers::Contents& contents,
    QRhiResourceUpdateBatch& updates) {
    held.buffer = make(usageOf(which), contents.bytes.data(), contents.bytes.size(), updates);
    held.size = contents.bytes.size();
    held.version = contents.version;
    held.source = contents.bytes.data();
    ++generation_;
}

std::unique_ptr<QRhiBuffer> RhiBuffers::make(QRhiBuffer::UsageFlags usage, const void* bytes,
    std::size_t size, QRhiResourceUpdateBatch& updates) {
    // The interface counts bytes in ints here and there.
    const bool fits = size <= static_cast<std::size_t>(std::numeric_limits<int>::max());
    std::unique_ptr<QRhiBuffer> buffer;
    if (fits)
        buffer.reset(rhi_.newBuffer(QRhiBuffer::Immutable, usage, static_cast<quint32>(size)));
    if (!buffer || !buffer->create())
        throw RhiError(
            fmt::format("the graphics device has no room for a buffer of {} bytes", size));
    updates.uploadStaticBuffer(buffer.get(), 0, static_cast<quint32>(size), bytes);
    return buffer;
}

QRhiBuffer& RhiBuffers::quadIndices(std::size_t quads, QRhiResourceUpdateBatch& updates) {
    constexpr std::size_t least = 1024;
    if (!quads_ || quads > quadCount_) {
        if (quads_)
            outgrown_.push_back(std::move(quads_));
        quadCount_ = std::bit_ceil(std::max(quads, least));
        std::vector<std::uint32_t> indices(6 * quadCount_);
        for (std::size_t quad = 0; quad < quadCount_; ++quad) {
            constexpr std::array<std::uint32_t, 6> corners{0, 1, 2, 1, 3, 2};
            for (std::size_t i = 0; i < corners.size(); ++i)
                indices[6 * quad + i] = static_cast<std::uint32_t>(4 * quad) + corners[i];
        }
        quads_ = make(QRhiBuffer::IndexBuffer, indices.data(),
            indices.size() * sizeof(std::uint32_t), updates);
    }
    return *quads_;
}

QRhiBuffer& RhiBuffers::triangleEdges(
    SceneBuffer indices, const SceneBuffers& scene, QRhiResourceUpdateBatch& updates) {
    Held& held = held_[static_cast<std::size_t>(indices)];
    if (!held.edges) {
        const auto& bytes = scene[indices].bytes;
        const std::size_t triangles = bytes.size() / (3 * sizeof(std::uint32_t));
        std::vector<std::uint32_t> edges(6 * triangles);
        for (std::size_t t = 0; t < triangles; ++t) {
            std::array<std::uint32_t, 3> corner{};
            std::memcpy(corner.data(), bytes.data() + t * sizeof(corner), sizeof(corner));
            for (std::size_t i = 0; i < 3; ++i) {
                edges[6 * t + 2 * i] = corner[i];
                edges[6 * t + 2 * i + 1] = corner[(i + 1) % 3];
            }
        }
        held.edges = make(
            QRhiBuffer::IndexBuffer, edges.data(), edges.size() * sizeof(std::uint32_t), updates);
    }
    return *held.edges;
}

} // namespace ostrella
