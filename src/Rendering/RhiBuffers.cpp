#include "Rendering/RhiBuffers.h"

#include <algorithm>
#include <bit>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

constexpr std::size_t quadBytes = 6 * sizeof(std::uint32_t);
constexpr std::size_t triangleBytes = 3 * sizeof(std::uint32_t);
constexpr std::size_t edgesBytes = 2 * triangleBytes;
static_assert(RhiFilling::step % quadBytes == 0 && RhiFilling::step % edgesBytes == 0);

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

std::size_t index(SceneBuffer buffer) {
    return static_cast<std::size_t>(buffer);
}

template <class T>
std::span<const T> contentsOf(const SceneBuffers& scene, SceneBuffer buffer) {
    const SharedArray<std::byte>& bytes = scene[buffer].bytes;
    return {reinterpret_cast<const T*>(bytes.data()), bytes.size() / sizeof(T)};
}

/// Whether the model gets normals of the device's own. Facets of larger ones are so small that the
/// given normals do.
bool isCreased(const SceneBuffers& scene) {
    constexpr std::size_t mostTriangles = 400'000;
    const auto indices = contentsOf<std::uint32_t>(scene, SceneBuffer::modelIndices);
    const std::size_t vertices = contentsOf<Vec4>(scene, SceneBuffer::modelVertices).size() / 2;
    return !indices.empty() && indices.size() <= 3 * mostTriangles &&
           std::ranges::all_of(indices, [&](std::uint32_t i) { return i < vertices; });
}

CreasedMesh creasedModel(const SceneBuffers& scene) {
    return CreasedMesh::of(contentsOf<Vec4>(scene, SceneBuffer::modelVertices),
        contentsOf<std::uint32_t>(scene, SceneBuffer::modelIndices));
}

RhiFilling::Source piecesOf(std::span<const std::byte> bytes) {
    return [bytes](std::size_t offset, std::size_t size) { return bytes.subspan(offset, size); };
}

/// The edges of triangles as a line list.
RhiFilling::Source edgesOf(std::span<const std::uint32_t> triangles) {
    return [triangles, edges = std::vector<std::uint32_t>()](
               std::size_t offset, std::size_t size) mutable {
        const auto piece = triangles.subspan(offset / edgesBytes * 3, size / edgesBytes * 3);
        edges.clear();
        edges.reserve(2 * piece.size());
        for (std::size_t i = 0; i < piece.size(); i += 3) {
            const auto [a, b, c] = std::array{piece[i], piece[i + 1], piece[i + 2]};
            edges.insert(edges.end(), {a, b, b, c, c, a});
        }
        return std::as_bytes(std::span(edges));
    };
}

/// The indices of quads of four vertices each.
RhiFilling::Source quadCorners() {
    return [indices = std::vector<std::uint32_t>()](std::size_t offset, std::size_t size) mutable {
        constexpr std::array<std::uint32_t, 6> corners{0, 1, 2, 1, 3, 2};
        const auto first = static_cast<std::uint32_t>(offset / quadBytes);
        const auto count = static_cast<std::uint32_t>(size / quadBytes);
        indices.clear();
        indices.reserve(corners.size() * count);
        for (std::uint32_t quad = first; quad < first + count; ++quad)
            for (const std::uint32_t corner : corners)
                indices.push_back(4 * quad + corner);
        return std::as_bytes(std::span(indices));
    };
}

} // namespace

bool RhiBuffers::renew(const SceneBuffers& scene, const FrameEncoding& frame,
    QRhiResourceUpdateBatch& updates, UploadBudget& budget) {
    outgrown_.clear();
    drop(scene);
    std::array<bool, sceneBufferCount> drawn{};
    for (const DrawCommand& draw : frame.draws) {
        drawn[index(draw.vertices)] = true;
        if (draw.indices)
            drawn[index(*draw.indices)] = true;
    }
    bool isWhole = true;
    if (drawn[index(SceneBuffer::modelVertices)] && drawn[index(SceneBuffer::modelIndices)])
        isWhole = fillCreased(scene, updates, budget);
    for (std::size_t i = 0; i < sceneBufferCount && isWhole; ++i) {
        const auto which = static_cast<SceneBuffer>(i);
        if (drawn[i])
            isWhole = fill(which, scene, scene[which].bytes.span(), updates, budget);
    }
    return isWhole;
}

void RhiBuffers::drop(const SceneBuffers& scene) {
    for (std::size_t i = 0; i < sceneBufferCount; ++i) {
        const SceneBuffers::Contents& contents = scene[static_cast<SceneBuffer>(i)];
        Held& held = held_[i];
        if (held.contents.hasBegun() &&
            (held.version != contents.version || held.source != contents.bytes.data()))
            drop(held);
    }
}

void RhiBuffers::drop(Held& held) {
    if (&held == &of(SceneBuffer::modelVertices) || &held == &of(SceneBuffer::modelIndices))
        creased_.reset();
    held = {};
    ++generation_;
}

bool RhiBuffers::fill(SceneBuffer which, const SceneBuffers& scene,
    std::span<const std::byte> bytes, QRhiResourceUpdateBatch& updates, UploadBudget& budget) {
    Held& held = of(which);
    if (bytes.empty() || held.contents.isWhole())
        return true;
    if (!held.contents.hasBegun()) {
        held.contents = RhiFilling(usageOf(which), bytes.size());
        held.version = scene[which].version;
        held.source = scene[which].bytes.data();
    }
    const bool isWhole = held.contents.advance(rhi_, piecesOf(bytes), updates, budget);
    if (isWhole)
        ++generation_;
    return isWhole;
}

bool RhiBuffers::fillCreased(
    const SceneBuffers& scene, QRhiResourceUpdateBatch& updates, UploadBudget& budget) {
    Held& vertices = of(SceneBuffer::modelVertices);
    Held& indices = of(SceneBuffer::modelIndices);
    if ((vertices.contents.isWhole() && indices.contents.isWhole()) || !isCreased(scene))
        return true;
    if (!creased_) {
        // The two belong together, also where only one of them was replaced.
        drop(vertices);
        drop(indices);
        creased_ = creasedModel(scene);
    }
    const bool isWhole = fill(SceneBuffer::modelVertices, scene,
                             std::as_bytes(std::span(creased_->vertices)), updates, budget) &&
                         fill(SceneBuffer::modelIndices, scene,
                             std::as_bytes(std::span(creased_->indices)), updates, budget);
    if (isWhole)
        creased_.reset();
    return isWhole;
}

bool RhiBuffers::renewQuads(
    std::size_t quads, QRhiResourceUpdateBatch& updates, UploadBudget& budget) {
    constexpr std::size_t least = 1024;
    if (quads_.isWhole() && quads * quadBytes <= quads_.size())
        return true;
    if (quads * quadBytes > widerQuads_.size() || !widerQuads_.hasBegun()) {
        const std::size_t count = std::bit_ceil(std::max(quads, least));
        outgrown_.push_back(
            std::exchange(widerQuads_, RhiFilling(QRhiBuffer::IndexBuffer, count * quadBytes)));
    }
    if (!widerQuads_.advance(rhi_, quadCorners(), updates, budget))
        return false;
    outgrown_.push_back(std::exchange(quads_, std::exchange(widerQuads_, {})));
    return true;
}

QRhiBuffer& RhiBuffers::quadIndices(std::size_t quads, QRhiResourceUpdateBatch& updates) {
    UploadBudget all = UploadBudget::unlimited();
    renewQuads(quads, updates, all);
    return *quads_.buffer();
}

bool RhiBuffers::renewEdges(SceneBuffer indices, const SceneBuffers& scene,
    QRhiResourceUpdateBatch& updates, UploadBudget& budget) {
    RhiFilling& edges = of(indices).edges;
    if (edges.isWhole())
        return true;
    const bool creased = indices == SceneBuffer::modelIndices && isCreased(scene);
    // Creased models are so small that their edges may come at once.
    UploadBudget all = UploadBudget::unlimited();
    const CreasedMesh mesh = creased ? creasedModel(scene) : CreasedMesh();
    const auto triangles = creased ? std::span<const std::uint32_t>(mesh.indices)
                                   : contentsOf<std::uint32_t>(scene, indices);
    const std::size_t size = triangles.size() / 3 * edgesBytes;
    if (size == 0)
        return true;
    if (!edges.hasBegun())
        edges = RhiFilling(QRhiBuffer::IndexBuffer, size);
    return edges.advance(rhi_, edgesOf(triangles), updates, creased ? all : budget);
}

QRhiBuffer* RhiBuffers::triangleEdges(
    SceneBuffer indices, const SceneBuffers& scene, QRhiResourceUpdateBatch& updates) {
    UploadBudget all = UploadBudget::unlimited();
    renewEdges(indices, scene, updates, all);
    return of(indices).edges.buffer();
}

} // namespace ostrella
