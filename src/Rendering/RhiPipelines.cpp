#include "Rendering/RhiPipelines.h"

#include "Rendering/RhiError.h"
#include "Rendering/ShaderFunctions.h"

#include <fmt/format.h>

#include <string_view>

namespace ostrella {

namespace {

enum class Blending { opaque, alpha, premultiplied, noColor };

struct Traits {
    std::string_view vertex;
    std::string_view fragment;
    Blending blending;
};

Traits traitsOf(const PipelineKey& key) {
    switch (key.pipeline) {
    case Pipeline::mesh:
        return {"vertex_main", "fragment_main", Blending::opaque};
    case Pipeline::grid:
        return {"grid_vertex", "grid_fragment", Blending::opaque};
    case Pipeline::surface:
        return {key.shape == DrawShape::segmentQuads ? "colormap_line_vertex" : "colormap_vertex",
            "colormap_fragment", Blending::opaque};
    case Pipeline::ribbon:
        return {"streamline_ribbon_vertex", "streamline_ribbon_fragment", Blending::alpha};
    case Pipeline::vortexDepth:
        return {"vortex_vertex", "vortex_fragment", Blending::noColor};
    case Pipeline::vortex:
        return {"vortex_vertex", "vortex_fragment", Blending::premultiplied};
    case Pipeline::preRunDepth:
        return {"vertex_main", "prerun_fill_fragment", Blending::noColor};
    case Pipeline::preRunFill:
        return {"vertex_main", "prerun_fill_fragment", Blending::alpha};
    case Pipeline::preRunWire:
        return {"prerun_wire_vertex", "solid_color_fragment", Blending::alpha};
    case Pipeline::featureLine:
        return {"feature_line_vertex", "solid_color_fragment", Blending::alpha};
    case Pipeline::gizmo:
        return {"gizmo_vertex", "gizmo_fragment", Blending::alpha};
    case Pipeline::ring:
        break;
    }
    return {"ring_vertex", "ring_fragment", Blending::alpha};
}

QRhiGraphicsPipeline::TargetBlend blendOf(Blending blending) {
    QRhiGraphicsPipeline::TargetBlend blend;
    blend.enable = blending == Blending::alpha || blending == Blending::premultiplied;
    blend.srcColor =
        blending == Blending::alpha ? QRhiGraphicsPipeline::SrcAlpha : QRhiGraphicsPipeline::One;
    blend.dstColor = QRhiGraphicsPipeline::OneMinusSrcAlpha;
    blend.srcAlpha = QRhiGraphicsPipeline::One;
    blend.dstAlpha = QRhiGraphicsPipeline::OneMinusSrcAlpha;
    if (blending == Blending::noColor)
        blend.colorWrite = {};
    return blend;
}

void setDepth(QRhiGraphicsPipeline& pipeline, DepthState depth) {
    pipeline.setDepthTest(true);
    pipeline.setDepthWrite(depth == DepthState::less);
    switch (depth) {
    case DepthState::less:
    case DepthState::readOnly:
        pipeline.setDepthOp(QRhiGraphicsPipeline::Less);
        break;
    case DepthState::overlay:
        pipeline.setDepthOp(QRhiGraphicsPipeline::Always);
        break;
    case DepthState::lessEqualReadOnly:
        pipeline.setDepthOp(QRhiGraphicsPipeline::LessOrEqual);
        break;
    }
}

QRhiGraphicsPipeline::Topology topologyOf(DrawShape shape) {
    switch (shape) {
    case DrawShape::meshLines:
        return QRhiGraphicsPipeline::Lines;
    case DrawShape::ringStrip:
    case DrawShape::segmentInstances:
        return QRhiGraphicsPipeline::TriangleStrip;
    case DrawShape::meshVertices:
    case DrawShape::lineQuads:
    case DrawShape::segmentQuads:
    case DrawShape::ribbonQuads:
        break;
    }
    return QRhiGraphicsPipeline::Triangles;
}

QRhiVertexInputLayout inputsOf(const PipelineKey& key) {
    QRhiVertexInputLayout layout;
    if (key.shape != DrawShape::meshVertices && key.shape != DrawShape::meshLines)
        return layout;
    const bool isSurface = key.pipeline == Pipeline::surface;
    layout.setBindings({QRhiVertexInputBinding(isSurface ? 16 : 32)});
    layout.setAttributes({QRhiVertexInputAttribute(0, 0, QRhiVertexInputAttribute::Float3, 0),
        isSurface ? QRhiVertexInputAttribute(0, 1, QRhiVertexInputAttribute::Float, 12)
                  : QRhiVertexInputAttribute(0, 1, QRhiVertexInputAttribute::Float3, 16)});
    return layout;
}

} // namespace

RhiPipelines::RhiPipelines(QRhi& rhi, QRhiRenderPassDescriptor& pass, int samples)
    : rhi_(rhi), pass_(pass.newCompatibleRenderPassDescriptor()), samples_(samples) {}

bool RhiPipelines::fit(QRhiRenderPassDescriptor& pass, int samples) const {
    return samples == samples_ && pass_->isCompatible(&pass);
}

QRhiGraphicsPipeline& RhiPipelines::get(
    const PipelineKey& key, QRhiShaderResourceBindings& bindings) {
    std::unique_ptr<QRhiGraphicsPipeline>& held = pipelines_[key];
    if (!held)
        held = build(key, bindings);
    return *held;
}

std::unique_ptr<QRhiGraphicsPipeline> RhiPipelines::build(
    const PipelineKey& key, QRhiShaderResourceBindings& bindings) {
    const Traits traits = traitsOf(key);
    std::unique_ptr<QRhiGraphicsPipeline> pipeline(rhi_.newGraphicsPipeline());
    // With a scissor always, since some devices let the last one also limit what of the samples
    // becomes the picture.
    pipeline->setFlags(QRhiGraphicsPipeline::UsesScissor);
    pipeline->setShaderStages({{QRhiShaderStage::Vertex, ShaderFunctions::vertex(traits.vertex)},
        {QRhiShaderStage::Fragment, ShaderFunctions::fragment(traits.fragment)}});
    pipeline->setTargetBlends({blendOf(traits.blending)});
    setDepth(*pipeline, key.depth);
    pipeline->setTopology(topologyOf(key.shape));
    pipeline->setPolygonMode(
        key.fill == FillMode::lines ? QRhiGraphicsPipeline::Line : QRhiGraphicsPipeline::Fill);
    pipeline->setCullMode(QRhiGraphicsPipeline::None);
    pipeline->setFrontFace(QRhiGraphicsPipeline::CCW);
    pipeline->setSampleCount(samples_);
    pipeline->setVertexInputLayout(inputsOf(key));
    pipeline->setShaderResourceBindings(&bindings);
    pipeline->setRenderPassDescriptor(pass_.get());
    if (!pipeline->create())
        throw RhiError(fmt::format("the graphics device cannot build a pipeline of {} and {}",
            traits.vertex, traits.fragment));
    return pipeline;
}

} // namespace ostrella
