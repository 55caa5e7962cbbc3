// Grid, body and vortex: everything of a frame that is neither ribbon, ring nor gizmo.
#include "Rendering/MetalRenderer.h"

#include "Brand/ViewportStyle.h"

#include <utility>

namespace ostrella {

namespace {

/// The block of all pipelines that draw lines: depths stay, the lines come forward by a hair.
PreRunUniforms lineBlock(float alpha) {
    return {Vec4(ViewportStyle::accent, alpha), Vec4(0.0F), Vec4(0.0F, 0.0F, 1.0F, 0.002F)};
}

} // namespace

void MetalRenderer::encodeGrid(SceneFrame& frame) const {
    if (!showGrid || !contents_.gridPlan)
        return;
    constexpr float minorWhite = 0.045F;
    constexpr float majorWhite = 0.08F;
    constexpr float fadeFrom = 0.25F;
    const GridGeometry::Plan& plan = *contents_.gridPlan;
    const Vec3 ground = ViewportStyle::background;
    const auto layer = [&](SceneBuffer lines, std::uint32_t count, float white) {
        if (count == 0)
            return;
        DrawCommand draw;
        draw.pipeline = Pipeline::grid;
        draw.depth = DepthState::overlay;
        draw.topology = Topology::lines;
        draw.vertices = lines;
        draw.count = count;
        draw.uniforms = frame.worldBlock;
        draw.extra = GridUniforms{Vec4(ground + white * (1.0F - ground), 1.0F), Vec4(ground, 1.0F),
            Vec4(plan.centre, plan.spacing * static_cast<float>(plan.halfCount), fadeFrom)};
        frame.add(draw);
    };
    layer(SceneBuffer::gridMinor, contents_.gridMinorVertexCount, minorWhite);
    layer(SceneBuffer::gridMajor, contents_.gridMajorVertexCount, majorWhite);
}

void MetalRenderer::encodeBody(SceneFrame& frame) const {
    constexpr float edgeAlpha = 0.6F;
    if (colormapEnabled && hasSurface()) {
        DrawCommand draw;
        draw.pipeline = Pipeline::surface;
        draw.topology = contents_.surfacePrimitive;
        draw.vertices = SceneBuffer::surfaceVertices;
        draw.indices = SceneBuffer::surfaceIndices;
        draw.count = contents_.surfaceIndexCount;
        draw.uniforms = frame.resultBlock;
        frame.add(draw);
    } else if (!hasModel()) {
        return;
    } else if (!hasResult() && glassBeforeRun) {
        encodePreRun(frame);
        return;
    } else {
        DrawCommand draw = modelDraw(frame);
        draw.fill = wireframe ? FillMode::lines : FillMode::fill;
        frame.add(draw);
    }
    if (orientMode && hasModel())
        encodeFeatureEdges(frame, edgeAlpha);
}

DrawCommand MetalRenderer::modelDraw(const SceneFrame& frame) const {
    DrawCommand draw;
    draw.pipeline = Pipeline::mesh;
    draw.vertices = SceneBuffer::modelVertices;
    draw.indices = SceneBuffer::modelIndices;
    draw.count = contents_.meshIndexCount;
    draw.uniforms = frame.modelBlock;
    return draw;
}

/// A body ahead of any result: a pale glass shape, or its triangles' lines.
void MetalRenderer::encodePreRun(SceneFrame& frame) const {
    constexpr float wireAlpha = 0.55F;
    constexpr float fillAlpha = 0.88F;
    constexpr float accentShare = 0.1F;
    DrawCommand draw = modelDraw(frame);
    if (wireframe) {
        draw.pipeline = Pipeline::preRunWire;
        draw.depth = DepthState::readOnly;
        draw.fill = FillMode::lines;
        draw.extra = lineBlock(wireAlpha);
        frame.add(draw);
    } else {
        const Vec3 ground = ViewportStyle::background;
        const Vec3 accent = ViewportStyle::accent;
        draw.extra = PreRunUniforms{Vec4(ground + accentShare * (accent - ground), fillAlpha),
            Vec4(accent, orientMode ? 0.55F : 0.35F), Vec4(0.6F, 0.8F, 3.0F, 0.0F)};
        // Depths first, so that only the nearest layer is blended and nothing has to be sorted.
        draw.pipeline = Pipeline::preRunDepth;
        frame.add(draw);
        draw.pipeline = Pipeline::preRunFill;
        draw.depth = DepthState::lessEqualReadOnly;
        frame.add(draw);
    }
    encodeFeatureEdges(frame, orientMode ? 1.0F : 0.85F);
}

void MetalRenderer::encodeFeatureEdges(SceneFrame& frame, float alpha) const {
    if (contents_.featureEdgeVertexCount == 0)
        return;
    DrawCommand draw;
    draw.pipeline = Pipeline::featureLine;
    draw.depth = DepthState::lessEqualReadOnly;
    draw.topology = Topology::lines;
    draw.vertices = SceneBuffer::featureEdges;
    draw.count = contents_.featureEdgeVertexCount;
    draw.uniforms = frame.modelBlock;
    draw.extra = lineBlock(alpha);
    frame.add(draw);
}

void MetalRenderer::encodeVortex(SceneFrame& frame) const {
    if (!vortexEnabled || !hasVortex())
        return;
    DrawCommand draw;
    draw.vertices = SceneBuffer::vortexVertices;
    draw.indices = SceneBuffer::vortexIndices;
    draw.count = contents_.vortexIndexCount;
    draw.uniforms = frame.resultBlock;
    draw.extra = VortexUniforms{Vec4(ViewportStyle::vortexTint, 0.08F),
        Vec4(ViewportStyle::vortexRimColor, 0.34F), Vec4(0.55F, 0.35F, 2.2F, 0.0F)};
    draw.pipeline = Pipeline::vortexDepth;
    frame.add(draw);
    draw.pipeline = Pipeline::vortex;
    draw.depth = DepthState::lessEqualReadOnly;
    frame.add(draw);
}

} // namespace ostrella
