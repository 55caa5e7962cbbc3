#pragma once

#include "Rendering/FrameEncoding.h"
#include "Rendering/Rhi.h"

#include <array>
#include <map>
#include <memory>
#include <tuple>

namespace ostrella {

/// How a draw's vertices reach the device.
enum class DrawShape {
    meshVertices,    ///< attributes; triangles
    meshLines,       ///< attributes; the edges of triangles
    lineQuads,       ///< a quad a line of a raw line list
    segmentQuads,    ///< a quad a segment of an indexed line list
    ribbonQuads,     ///< a quad a segment of the ribbons
    ringStrip,       ///< a triangle strip out of raw points
    segmentInstances ///< a triangle strip for each instance
};

/// What decides over a pipeline, besides the render pass that it is for.
struct PipelineKey {
    Pipeline pipeline = Pipeline::mesh;
    DepthState depth = DepthState::less;
    DrawShape shape = DrawShape::meshVertices;
    FillMode fill = FillMode::fill; ///< lines: the device's own line fill mode

    auto operator<=>(const PipelineKey&) const = default;
};

/// The device's pipelines for the scene's draws, built when first needed.
class RhiPipelines {
public:
    /// For targets of this pass and sample count, and for all that are compatible with them.
    RhiPipelines(QRhi& rhi, QRhiRenderPassDescriptor& pass, int samples);

    /// Whether they fit a target.
    bool fit(QRhiRenderPassDescriptor& pass, int samples) const;

    /// The pipeline; `bindings` has the layout of the draws it will serve. Throws RhiError where
    /// the device cannot build it.
    QRhiGraphicsPipeline& get(const PipelineKey& key, QRhiShaderResourceBindings& bindings);

private:
    std::unique_ptr<QRhiGraphicsPipeline> build(
        const PipelineKey& key, QRhiShaderResourceBindings& bindings);

    QRhi& rhi_;
    std::unique_ptr<QRhiRenderPassDescriptor> pass_;
    int samples_;
    std::map<PipelineKey, std::unique_ptr<QRhiGraphicsPipeline>> pipelines_;
};

} // namespace ostrella
