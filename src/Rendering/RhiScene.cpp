#include "Rendering/RhiScene.h"

#include "Models/Precondition.h"
#include "Rendering/RhiError.h"

#include <QColor>
#include <QMatrix4x4>

#include <glm/gtc/type_ptr.hpp>

#include <algorithm>
#include <bit>
#include <cstring>
#include <type_traits>

namespace ostrella {

namespace {

constexpr int uniformsSlot = 1;
constexpr int extraSlot = 2;
constexpr int deviceSlot = 3;
constexpr int verticesSlot = 0;
constexpr int indicesSlot = 4;
constexpr quint32 slotSize = sizeof(Uniforms); // the largest block

/// From clip space with depth 0 to 1 and y up to that of a device.
Mat4 clipSpaceOf(QRhi& rhi) {
    // The interface's own correction starts from depths of −1 to 1.
    Mat4 widened(1.0F);
    widened[2][2] = 2.0F;
    widened[3][2] = -1.0F;
    return glm::make_mat4(rhi.clipSpaceCorrMatrix().constData()) * widened;
}

DrawShape shapeOf(const DrawCommand& draw) {
    switch (draw.pipeline) {
    case Pipeline::grid:
    case Pipeline::featureLine:
        return DrawShape::lineQuads;
    case Pipeline::ribbon:
        return DrawShape::ribbonQuads;
    case Pipeline::gizmo:
        return DrawShape::segmentInstances;
    case Pipeline::ring:
        return DrawShape::ringStrip;
    case Pipeline::surface:
        return draw.topology == Topology::lines ? DrawShape::segmentQuads : DrawShape::meshVertices;
    default:
        return DrawShape::meshVertices;
    }
}

/// How much of its vertices a draw of this shape reads, in bytes each.
std::size_t vertexSize(DrawShape shape) {
    return shape == DrawShape::segmentInstances ? 48 : 16;
}

} // namespace

RhiScene::RhiScene(QRhi& rhi, Options options)
    : rhi_(rhi),
      options_(options),
      hasLineFill_(rhi.isFeatureSupported(QRhi::NonFillPolygonMode) && !options.lineLists),
      buffers_(rhi) {}

RhiScene::~RhiScene() = default;

bool RhiScene::isSupported(QRhi& rhi) {
    // Functions that read raw buffers come with compute, and need 32-bit indices and instances.
    return rhi.isFeatureSupported(QRhi::Compute) &&
           rhi.isFeatureSupported(QRhi::ElementIndexUint) &&
           rhi.isFeatureSupported(QRhi::Instancing);
}

bool RhiScene::bring(QRhiCommandBuffer& commands, const FrameEncoding& frame,
    const SceneBuffers& buffers, std::size_t mostBytes) {
    QRhiResourceUpdateBatch* updates = rhi_.nextResourceUpdateBatch();
    UploadBudget budget(mostBytes);
    bool isWhole = false;
    try {
        isWhole = buffers_.renew(buffers, frame, *updates, budget);
        for (const DrawCommand& draw : frame.draws) {
            if (const quint32 quads = quadsOf(draw); quads > 0)
                isWhole = isWhole && buffers_.renewQuads(quads, *updates, budget);
            if (drawsEdges(draw))
                isWhole = isWhole && buffers_.renewEdges(*draw.indices, buffers, *updates, budget);
        }
    } catch (...) {
        updates->release();
        throw;
    }
    commands.resourceUpdate(updates);
    return isWhole;
}

void RhiScene::render(QRhiCommandBuffer& commands, RhiTarget& target, const FrameEncoding& frame,
    const SceneBuffers& buffers, float pointScale, QRhiResourceUpdateBatch* afterwards) {
    if (!pipelines_ || !pipelines_->fit(target.pass(), target.samples()))
        pipelines_.emplace(rhi_, target.pass(), target.samples());
    QRhiResourceUpdateBatch* updates = rhi_.nextResourceUpdateBatch();
    try {
        UploadBudget all = UploadBudget::unlimited();
        buffers_.renew(buffers, frame, *updates, all);
        writeUniforms(frame, target.pixelSize(), pointScale);
        uploadUniforms(*updates);
        if (bindingsGeneration_ != buffers_.generation()) {
            bindings_.clear();
            bindingsGeneration_ = buffers_.generation();
        }
        prepared_.clear();
        for (std::size_t i = 0; i < frame.draws.size(); ++i)
            prepare(frame.draws[i], i, target, buffers, *updates);
    } catch (...) {
        updates->release();
        if (afterwards != nullptr)
            afterwards->release();
        throw;
    }
    const Vec3& clear = frame.clearColor;
    commands.beginPass(
        &target.renderTarget(), QColor::fromRgbF(clear.r, clear.g, clear.b), {1.0F, 0}, updates);
    submit(commands, target.pixelSize());
    commands.endPass(afterwards);
}

quint32 RhiScene::writeSlot(const void* bytes, std::size_t size) {
    const std::size_t stride = rhi_.ubufAligned(slotSize);
    const std::size_t offset = slots_.size();
    slots_.resize(offset + stride);
    std::memcpy(slots_.data() + offset, bytes, size);
    return static_cast<quint32>(offset);
}

void RhiScene::writeUniforms(const FrameEncoding& frame, QSize pixels, float pointScale) {
    const Mat4 clipSpace = clipSpaceOf(rhi_);
    slots_.clear();
    blockOffsets_.clear();
    extraOffsets_.clear();
    for (Uniforms block : frame.uniforms) {
        block.projectionMatrix = clipSpace * block.projectionMatrix;
        blockOffsets_.push_back(writeSlot(&block, sizeof(block)));
    }
    DeviceUniforms device;
    device.target = {static_cast<float>(pixels.width()), static_cast<float>(pixels.height()),
        std::max(pointScale, 1.0F), 0.0F};
    device.traits.x = clipSpace[1][1] < 0.0F ? -1.0F : 1.0F;
    filledOffset_ = writeSlot(&device, sizeof(device));
    device.target.w = 1.0F;
    linesOffset_ = writeSlot(&device, sizeof(device));
    for (const DrawCommand& draw : frame.draws) {
        extraOffsets_.push_back(std::visit(
            [this](const auto& block) {
                if constexpr (std::is_same_v<std::decay_t<decltype(block)>, std::monostate>)
                    return filledOffset_; // a place that is there, which nothing reads
                else
                    return writeSlot(&block, sizeof(block));
            },
            draw.extra));
    }
}

void RhiScene::uploadUniforms(QRhiResourceUpdateBatch& updates) {
    constexpr std::size_t least = 16384;
    if (!uniforms_ || static_cast<std::size_t>(uniforms_->size()) < slots_.size()) {
        const std::size_t size = std::bit_ceil(std::max(slots_.size(), least));
        uniforms_.reset(rhi_.newBuffer(
            QRhiBuffer::Dynamic, QRhiBuffer::UniformBuffer, static_cast<quint32>(size)));
        if (!uniforms_->create())
            throw RhiError("the graphics device has no room for the blocks of a frame");
        bindings_.clear();
    }
    updates.updateDynamicBuffer(
        uniforms_.get(), 0, static_cast<quint32>(slots_.size()), slots_.data());
}

QRhiShaderResourceBindings& RhiScene::bindingsFor(const Storage& storage) {
    std::unique_ptr<QRhiShaderResourceBindings>& held = bindings_[storage];
    if (held)
        return *held;
    using Binding = QRhiShaderResourceBinding;
    constexpr auto both = Binding::VertexStage | Binding::FragmentStage;
    QRhiBuffer* uniforms = uniforms_.get();
    std::vector<Binding> parts{
        Binding::uniformBufferWithDynamicOffset(uniformsSlot, both, uniforms, sizeof(Uniforms)),
        Binding::uniformBufferWithDynamicOffset(extraSlot, both, uniforms, sizeof(RibbonUniforms)),
        Binding::uniformBufferWithDynamicOffset(
            deviceSlot, both, uniforms, sizeof(DeviceUniforms))};
    if (storage.first != nullptr)
        parts.push_back(Binding::bufferLoad(verticesSlot, Binding::VertexStage, storage.first));
    if (storage.second != nullptr)
        parts.push_back(Binding::bufferLoad(indicesSlot, Binding::VertexStage, storage.second));
    held.reset(rhi_.newShaderResourceBindings());
    held->setBindings(parts.begin(), parts.end());
    if (!held->create()) {
        held.reset();
        throw RhiError("the graphics device cannot bind the buffers of a draw");
    }
    return *held;
}

bool RhiScene::drawsEdges(const DrawCommand& draw) const {
    return draw.fill == FillMode::lines && draw.indices && !hasLineFill_ &&
           shapeOf(draw) == DrawShape::meshVertices;
}

quint32 RhiScene::quadsOf(const DrawCommand& draw) const {
    const DrawShape shape = shapeOf(draw);
    const std::size_t present = draw.indices ? buffers_.size(*draw.indices) / sizeof(std::uint32_t)
                                             : buffers_.size(draw.vertices) / vertexSize(shape);
    const quint32 count = std::min(draw.count, static_cast<quint32>(present));
    switch (shape) {
    case DrawShape::lineQuads:
    case DrawShape::segmentQuads:
        return count / 2;
    case DrawShape::ribbonQuads:
        return count / 6;
    default:
        return 0;
    }
}

void RhiScene::prepare(const DrawCommand& draw, std::size_t number, RhiTarget& target,
    const SceneBuffers& scene, QRhiResourceUpdateBatch& updates) {
    QRhiBuffer* vertices = buffers_.get(draw.vertices);
    QRhiBuffer* indices = draw.indices ? buffers_.get(*draw.indices) : nullptr;
    if (vertices == nullptr || (draw.indices && indices == nullptr) || draw.count == 0)
        return; // nothing of this name in the scene
    PipelineKey key{draw.pipeline, draw.depth, shapeOf(draw), FillMode::fill};
    Prepared out;
    Storage storage{};
    out.count = draw.count;
    out.instances = draw.instances;
    if (draw.indices) {
        const std::size_t present = buffers_.size(*draw.indices) / sizeof(std::uint32_t);
        out.count = std::min(out.count, static_cast<quint32>(present));
    }
    switch (key.shape) {
    case DrawShape::meshVertices:
    case DrawShape::meshLines:
        precondition(indices != nullptr, "meshes are drawn with indices");
        out.vertices = vertices;
        out.indices = indices;
        if (draw.fill == FillMode::lines && hasLineFill_) {
            key.fill = FillMode::lines;
        } else if (draw.fill == FillMode::lines) {
            key.shape = DrawShape::meshLines;
            out.indices = buffers_.triangleEdges(*draw.indices, scene, updates);
            out.count = 2 * (out.count / 3 * 3);
        }
        break;
    case DrawShape::lineQuads:
    case DrawShape::segmentQuads:
    case DrawShape::ribbonQuads: {
        precondition(key.shape == DrawShape::lineQuads || indices != nullptr,
            "segments are drawn with indices");
        const quint32 quads = quadsOf(draw);
        storage = {vertices, key.shape == DrawShape::lineQuads ? nullptr : indices};
        out.indices = &buffers_.quadIndices(quads, updates);
        out.count = 6 * quads;
        break;
    }
    case DrawShape::segmentInstances: {
        const std::size_t present = buffers_.size(draw.vertices) / vertexSize(key.shape);
        out.instances = std::min(out.instances, static_cast<quint32>(present));
        storage.first = vertices;
        break;
    }
    case DrawShape::ringStrip:
        storage.first = vertices;
        break;
    }
    out.bindings = &bindingsFor(storage);
    out.pipeline = &pipelines_->get(key, *out.bindings);
    const bool isGizmo = std::holds_alternative<GizmoUniforms>(draw.extra);
    out.offsets = {isGizmo ? extraOffsets_[number] : blockOffsets_.at(draw.uniforms),
        extraOffsets_[number],
        draw.fill == FillMode::lines || draw.topology == Topology::lines ? linesOffset_
                                                                         : filledOffset_};
    const QSize pixels = target.pixelSize();
    out.box = draw.box.value_or(PixelRect{0, 0, pixels.width(), pixels.height()});
    if (out.count > 0 && out.instances > 0 && out.box.width > 0 && out.box.height > 0)
        prepared_.push_back(out);
}

void RhiScene::submit(QRhiCommandBuffer& commands, QSize pixels) const {
    QRhiGraphicsPipeline* current = nullptr;
    for (const Prepared& draw : prepared_) {
        const PixelRect& box = draw.box;
        if (draw.pipeline != current) {
            commands.setGraphicsPipeline(draw.pipeline);
            current = draw.pipeline;
        }
        commands.setViewport({static_cast<float>(box.x), static_cast<float>(box.y),
            static_cast<float>(box.width), static_cast<float>(box.height)});
        commands.setScissor({box.x, box.y, box.width, box.height});
        const std::array<QRhiCommandBuffer::DynamicOffset, 3> offsets{
            {{uniformsSlot, draw.offsets[0]}, {extraSlot, draw.offsets[1]},
                {deviceSlot, draw.offsets[2]}}};
        commands.setShaderResources(
            draw.bindings, static_cast<int>(offsets.size()), offsets.data());
        const QRhiCommandBuffer::VertexInput input(draw.vertices, 0);
        commands.setVertexInput(0, draw.vertices != nullptr ? 1 : 0,
            draw.vertices != nullptr ? &input : nullptr, draw.indices, 0,
            QRhiCommandBuffer::IndexUInt32);
        if (draw.indices != nullptr)
            commands.drawIndexed(draw.count, draw.instances);
        else
            commands.draw(draw.count, draw.instances);
    }
    // On some devices the last scissor also limits what of the samples becomes the picture.
    if (current != nullptr)
        commands.setScissor({0, 0, pixels.width(), pixels.height()});
}

} // namespace ostrella
