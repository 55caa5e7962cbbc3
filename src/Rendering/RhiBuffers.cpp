#include "Rendering/RhiBuffers.h"

#include "Rendering/CreasedMesh.h"
#include "Rendering/RhiError.h"

#if QT_CONFIG(opengl)
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#endif

#include <fmt/format.h>

#include <algorithm>
#include <bit>
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

/// The edges of triangles as a line list.
std::vector<std::uint32_t> edgesOf(std::span<const std::uint32_t> triangles) {
    std::vector<std::uint32_t> edges;
    edges.reserve(2 * triangles.size());
    for (std::size_t i = 0; i + 2 < triangles.size(); i += 3) {
        const auto [a, b, c] = std::array{triangles[i], triangles[i + 1], triangles[i + 2]};
        edges.insert(edges.end(), {a, b, b, c, c, a});
    }
    return edges;
}

/// Puts many bytes straight into a fresh buffer, where the device takes them: the interface would
/// keep a copy until the frame is drawn, and memory for that costs more than the copy itself. False
/// where it has to.
bool fillAtOnce(QRhi& rhi, QRhiBuffer& buffer, const void* bytes, std::size_t size) {
#if QT_CONFIG(opengl)
    constexpr std::size_t many = 1 << 20;
    if (size < many || rhi.backend() != QRhi::OpenGLES2)
        return false;
    const void* const name = buffer.nativeBuffer().objects[0];
    if (name == nullptr || !rhi.makeThreadLocalNativeContextCurrent())
        return false;
    QOpenGLFunctions* const gl = QOpenGLContext::currentContext()->functions();
    // A place of the context's that the interface does not use, so that all else stays as it was.
    constexpr GLenum copyWriteBuffer = 0x8F36;
    gl->glBindBuffer(copyWriteBuffer, *static_cast<const GLuint*>(name));
    gl->glBufferSubData(copyWriteBuffer, 0, static_cast<GLsizeiptr>(size), bytes);
    gl->glBindBuffer(copyWriteBuffer, 0);
    return true;
#else
    static_cast<void>(rhi);
    static_cast<void>(buffer);
    static_cast<void>(bytes);
    static_cast<void>(size);
    return false;
#endif
}

} // namespace

void RhiBuffers::renew(
    const SceneBuffers& scene, const FrameEncoding& frame, QRhiResourceUpdateBatch& updates) {
    outgrown_.clear();
    drop(scene);
    std::array<bool, sceneBufferCount> drawn{};
    for (const DrawCommand& draw : frame.draws) {
        drawn[index(draw.vertices)] = true;
        if (draw.indices)
            drawn[index(*draw.indices)] = true;
    }
    if (drawn[index(SceneBuffer::modelVertices)] && drawn[index(SceneBuffer::modelIndices)])
        uploadModel(scene, updates);
    for (std::size_t i = 0; i < sceneBufferCount; ++i) {
        const auto which = static_cast<SceneBuffer>(i);
        if (drawn[i] && !held_[i].buffer)
            upload(which, scene, scene[which].bytes.span(), updates);
    }
}

void RhiBuffers::drop(const SceneBuffers& scene) {
    for (std::size_t i = 0; i < sceneBufferCount; ++i) {
        const SceneBuffers::Contents& contents = scene[static_cast<SceneBuffer>(i)];
        Held& held = held_[i];
        if (held.buffer &&
            (held.version != contents.version || held.source != contents.bytes.data())) {
            held = {};
            ++generation_;
        }
    }
}

void RhiBuffers::upload(SceneBuffer which, const SceneBuffers& scene,
    std::span<const std::byte> bytes, QRhiResourceUpdateBatch& updates) {
    if (bytes.empty())
        return;
    Held& held = held_[index(which)];
    held.buffer = make(usageOf(which), bytes.data(), bytes.size(), updates);
    held.size = bytes.size();
    held.version = scene[which].version;
    held.source = scene[which].bytes.data();
    ++generation_;
}

void RhiBuffers::uploadModel(const SceneBuffers& scene, QRhiResourceUpdateBatch& updates) {
    Held& vertices = held_[index(SceneBuffer::modelVertices)];
    Held& indices = held_[index(SceneBuffer::modelIndices)];
    if ((vertices.buffer && indices.buffer) || !isCreased(scene))
        return;
    // The two belong together, also where only one of them was replaced.
    vertices = {};
    indices = {};
    const CreasedMesh mesh = creasedModel(scene);
    upload(SceneBuffer::modelVertices, scene, std::as_bytes(std::span(mesh.vertices)), updates);
    upload(SceneBuffer::modelIndices, scene, std::as_bytes(std::span(mesh.indices)), updates);
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
    if (!fillAtOnce(rhi_, *buffer, bytes, size))
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
    Held& held = held_[index(indices)];
    if (!held.edges) {
        const bool creased = indices == SceneBuffer::modelIndices && isCreased(scene);
        const std::vector<std::uint32_t> edges =
            creased ? edgesOf(creasedModel(scene).indices)
                    : edgesOf(contentsOf<std::uint32_t>(scene, indices));
        held.edges = make(
            QRhiBuffer::IndexBuffer, edges.data(), edges.size() * sizeof(std::uint32_t), updates);
    }
    return *held.edges;
}

} // namespace ostrella
