#include "golden/FlatScene.h"

#include "Rendering/OffscreenPicture.h"
#include "golden/GoldenDevice.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace ostrella {

namespace {

std::array<Vec3, 4> cornersOf(Vec2 min, Vec2 max, float z, float tilt) {
    const auto angle = static_cast<float>(tilt * std::numbers::pi / 180);
    const float middle = 0.5F * (min.x + max.x);
    std::array<Vec3, 4> corners{
        Vec3(min.x, min.y, z), Vec3(max.x, min.y, z), Vec3(min.x, max.y, z), Vec3(max.x, max.y, z)};
    for (Vec3& c : corners)
        c = {middle + (c.x - middle) * std::cos(angle), c.y, z - (c.x - middle) * std::sin(angle)};
    return corners;
}

void addCorners(std::vector<std::uint32_t>& indices, std::size_t first) {
    for (const std::uint32_t corner : {0U, 1U, 2U, 1U, 3U, 2U})
        indices.push_back(static_cast<std::uint32_t>(first) + corner);
}

} // namespace

FlatScene::FlatScene() {
    frame.clearColor = Vec3(flatGround.redF(), flatGround.greenF(), flatGround.blueF());
    Uniforms block;
    constexpr float distance = 20;
    block.viewMatrix[3] = Vec4(0, 0, -distance, 1);
    // Depth 0 at z = 1, 1 at z = −1.
    block.projectionMatrix = Mat4(1.0F);
    block.projectionMatrix[2][2] = -0.5F;
    block.projectionMatrix[3][2] = 0.5F - 0.5F * distance;
    block.lightDirection = Vec4(0, 0, 1, 0);
    block.baseColor = Vec4(0.62F, 0.72F, 0.85F, 1);
    block.scalarRange = Vec4(0, 1, 0, 0);
    frame.uniforms = {block};
}

void FlatScene::fillBytes(SceneBuffer buffer, std::span<const std::byte> bytes) {
    buffers.replace(buffer, std::vector<std::byte>(bytes.begin(), bytes.end()));
}

void FlatScene::addQuad(SceneBuffer vertices, Vec2 min, Vec2 max, float z, float tilt) {
    const bool isVortex = vertices == SceneBuffer::vortexVertices;
    std::vector<Vec4>& quads = quads_[isVortex ? 1 : 0];
    std::vector<std::uint32_t>& indices = quadIndices_[isVortex ? 1 : 0];
    addCorners(indices, quads.size() / 2);
    for (const Vec3& corner : cornersOf(min, max, z, tilt)) {
        quads.emplace_back(corner, 0.0F);
        quads.emplace_back(0.0F, 0.0F, 1.0F, 0.0F);
    }
    fill(vertices, quads);
    fill(isVortex ? SceneBuffer::vortexIndices : SceneBuffer::modelIndices, indices);
}

void FlatScene::addScalarQuad(Vec2 min, Vec2 max, float scalar, float z, float tilt) {
    addCorners(scalarIndices_, scalars_.size());
    for (const Vec3& corner : cornersOf(min, max, z, tilt))
        scalars_.emplace_back(corner, scalar);
    fill(SceneBuffer::surfaceVertices, scalars_);
    fill(SceneBuffer::surfaceIndices, scalarIndices_);
}

DrawCommand& FlatScene::draw(Pipeline pipeline, DepthState depth) {
    DrawCommand draw;
    draw.pipeline = pipeline;
    draw.depth = depth;
    const auto count = [this](SceneBuffer buffer, std::size_t each) {
        return static_cast<std::uint32_t>(buffers[buffer].bytes.size() / each);
    };
    const auto with = [&](SceneBuffer vertices, SceneBuffer indices) {
        draw.vertices = vertices;
        draw.indices = indices;
        draw.count = count(indices, 4);
    };
    const auto raw = [&](SceneBuffer vertices, Topology topology) {
        draw.vertices = vertices;
        draw.topology = topology;
        draw.count = count(vertices, 16);
    };
    const auto pixels = static_cast<float>(size);
    const Vec4 white(1, 1, 1, 0.5F);
    switch (pipeline) {
    case Pipeline::mesh:
        with(SceneBuffer::modelVertices, SceneBuffer::modelIndices);
        break;
    case Pipeline::grid:
        raw(SceneBuffer::gridMinor, Topology::lines);
        draw.extra =
            GridUniforms{Vec4(1, 1, 1, 1), Vec4(frame.clearColor, 1), Vec4(0, 0, 1, 0.25F)};
        break;
    case Pipeline::surface:
        with(SceneBuffer::surfaceVertices, SceneBuffer::surfaceIndices);
        break;
    case Pipeline::ribbon:
        with(SceneBuffer::ribbonPoints, SceneBuffer::ribbonIndices);
        draw.extra = RibbonUniforms{Vec4(pixels, pixels, 2, 1), Vec4(0, 2000, 1, 1),
            Vec4(0, 0.4F, 1.6F, 0), Vec4(0.55F, 0, 0.002F, 0.85F), Vec4(0.55F, 0.55F, 0.7F, 1)};
        break;
    case Pipeline::vortexDepth:
    case Pipeline::vortex:
        with(SceneBuffer::vortexVertices, SceneBuffer::vortexIndices);
        draw.extra =
            VortexUniforms{Vec4(1, 1, 1, 0.08F), Vec4(1, 1, 1, 0.34F), Vec4(0.55F, 0.45F, 2.2F, 0)};
        break;
    case Pipeline::preRunDepth:
    case Pipeline::preRunFill:
        with(SceneBuffer::modelVertices, SceneBuffer::modelIndices);
        draw.extra = PreRunUniforms{white, Vec4(1, 0, 0, 0.35F), Vec4(0.6F, 0.8F, 3, 0)};
        break;
    case Pipeline::preRunWire:
        with(SceneBuffer::modelVertices, SceneBuffer::modelIndices);
        draw.fill = FillMode::lines;
        draw.extra = PreRunUniforms{white, Vec4(0.0F), Vec4(0, 0, 1, 0.002F)};
        break;
    case Pipeline::featureLine:
        raw(SceneBuffer::featureEdges, Topology::lines);
        draw.extra = PreRunUniforms{white, Vec4(0.0F), Vec4(0, 0, 1, 0.002F)};
        break;
    case Pipeline::gizmo:
        draw.vertices = SceneBuffer::gizmoSegments;
        draw.topology = Topology::triangleStrip;
        draw.count = 4;
        draw.instances = count(SceneBuffer::gizmoSegments, 48);
        draw.extra = GizmoUniforms{Vec4(32, 32, 0, 0)};
        draw.box = PixelRect{8, 4, 32, 32};
        break;
    case Pipeline::ring:
        draw.vertices = SceneBuffer::ringX;
        draw.topology = Topology::triangleStrip;
        draw.count = 2 * (count(SceneBuffer::ringX, 16) + 1);
        draw.extra = RingStyle{white, Vec4(pixels, pixels, 1.5F, 1),
            Vec4(0, 0, 0, static_cast<float>(count(SceneBuffer::ringX, 16))), Vec4(0, 0, 1000, 0),
            Vec4(0.35F, 0.15F, 0, 0)};
        break;
    }
    frame.draws.push_back(draw);
    return frame.draws.back();
}

QImage FlatScene::picture(RhiScene& scene, int pixels) const {
    const auto image = OffscreenPicture::render(GoldenDevice::current().rhi(), scene,
        {pixels, pixels}, frame, buffers, pointScale, samples);
    EXPECT_TRUE(image) << "the device was lost";
    return image.value_or(QImage());
}

QImage FlatScene::picture(int pixels) const {
    RhiScene scene(GoldenDevice::current().rhi());
    return picture(scene, pixels);
}

bool isNear(const QColor& a, const QColor& b, int tolerance) {
    return std::abs(a.red() - b.red()) <= tolerance &&
           std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

} // namespace ostrella
