#include "Batch/PictureScene.h"

#include <glm/geometric.hpp>

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace ostrella {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// A square pyramid's four sides about the origin, 2 m wide and 1 m high.
PreparedModel pyramid() {
    const Vec3 top(0, 1, 0);
    const std::vector<Vec3> base{{-1, 0, 1}, {1, 0, 1}, {1, 0, -1}, {-1, 0, -1}};
    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    for (std::size_t i = 0; i < 4; ++i) {
        const Vec3& from = base[i];
        const Vec3& to = base[(i + 1) % 4];
        positions.insert(positions.end(), {from, to, top});
        normals.insert(normals.end(), 3, glm::normalize(glm::cross(to - from, top - from)));
    }
    return PreparedModel::of({std::move(positions), std::move(normals)});
}

/// One triangle with Cp, one line of three points and one triangle of a vortex.
SimulationResult result() {
    SimulationResult result;
    result.surfaceField = SurfaceField({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {-1.0F, 0.0F, 1.0F}, "Cp",
        {0, 1, 2}, SurfaceField::Primitive::triangle);
    Streamlines lines;
    lines.interleavedVertices = {-1, 0, 0, 40, 0, 0, 0, 50, 1, 0, 0, 45};
    lines.indices = {0U, 1U, 1U, 2U};
    lines.vertexCount = 3;
    lines.indexCount = 4;
    lines.magnitudeMin = 40;
    lines.magnitudeMax = 50;
    lines.boundingMin = {-1, 0, 0};
    lines.boundingMax = {1, 0, 0};
    result.streamlines = lines;
    IsoSurface vortex;
    vortex.positions = {{2, 0, 0}, {3, 0, 0}, {2, 1, 0}};
    vortex.normals = {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}};
    vortex.indices = {0U, 1U, 2U};
    result.vortex = vortex;
    return result;
}

std::vector<Pipeline> pipelines(const PictureScene& scene) {
    std::vector<Pipeline> all;
    for (const DrawCommand& draw : scene.frame.draws) {
        all.push_back(draw.pipeline);
    }
    return all;
}

PictureOptions with(PictureOptions::Layers layers) {
    PictureOptions options;
    options.layers = layers;
    return options;
}

const PictureOptions::Layers none{false, false, false, false, false};

TEST(PictureScene, AModelAloneIsOfGlassOnItsGrid) {
    const auto scene = PictureScene::of({}, pyramid(), Vec3(0.0F), std::nullopt);
    EXPECT_THAT(pipelines(scene), ElementsAre(Pipeline::grid, Pipeline::grid, Pipeline::preRunDepth,
                                      Pipeline::preRunFill, Pipeline::featureLine));
    EXPECT_EQ(scene.width, 1200);
    EXPECT_EQ(scene.height, 800);
    for (const DrawCommand& draw : scene.frame.draws) {
        EXPECT_FALSE(scene.buffers[draw.vertices].bytes.empty());
        EXPECT_TRUE(!draw.indices || !scene.buffers[*draw.indices].bytes.empty());
    }
}

TEST(PictureScene, AModelAloneIsShadedAsAfterARunIfThatIsAskedFor) {
    PictureOptions options = with(none);
    options.shaded = true;
    options.samples = 1;
    const auto scene = PictureScene::of(options, pyramid(), Vec3(0.0F), std::nullopt);
    EXPECT_THAT(pipelines(scene), ElementsAre(Pipeline::mesh));
    EXPECT_EQ(scene.samples, 1);
    EXPECT_EQ(PictureScene::of({}, pyramid(), Vec3(0.0F), std::nullopt).samples, 4);
}

TEST(PictureScene, EachLayerHasItsSwitch) {
    const auto drawn = [](const PictureOptions::Layers& layers) {
        return pipelines(PictureScene::of(with(layers), pyramid(), Vec3(0.0F), result()));
    };
    EXPECT_THAT(drawn({}), ElementsAre(Pipeline::grid, Pipeline::grid, Pipeline::surface,
                               Pipeline::ribbon, Pipeline::vortexDepth, Pipeline::vortex));
    EXPECT_THAT(drawn(none), ElementsAre(Pipeline::mesh)) << "the shaded body";
    auto layers = none;
    layers.cp = true;
    EXPECT_THAT(drawn(layers), ElementsAre(Pipeline::surface));
    layers = none;
    layers.streams = true;
    EXPECT_THAT(drawn(layers), ElementsAre(Pipeline::mesh, Pipeline::ribbon));
    layers = none;
    layers.vortex = true;
    EXPECT_THAT(
        drawn(layers), ElementsAre(Pipeline::mesh, Pipeline::vortexDepth, Pipeline::vortex));
    layers = none;
    layers.wireframe = true;
    const auto wires = PictureScene::of(with(layers), pyramid(), Vec3(0.0F), std::nullopt);
    EXPECT_THAT(pipelines(wires), Contains(Pipeline::preRunWire));
    EXPECT_THAT(pipelines(wires), Not(Contains(Pipeline::grid)));
}

TEST(PictureScene, AResultNeedsNoModel) {
    const auto scene = PictureScene::of({}, std::nullopt, Vec3(0.0F), result());
    EXPECT_THAT(pipelines(scene), Contains(Pipeline::surface));
    EXPECT_THAT(pipelines(scene), Contains(Pipeline::ribbon));
    EXPECT_THAT(
        pipelines(PictureScene::of(with(none), std::nullopt, Vec3(0.0F), result())), IsEmpty());
}

TEST(PictureScene, CarriesNothingThatIsNotDrawn) {
    const auto scene = PictureScene::of({}, pyramid(), Vec3(0.0F), result());
    EXPECT_TRUE(scene.buffers[SceneBuffer::modelVertices].bytes.empty());
    EXPECT_FALSE(scene.buffers[SceneBuffer::surfaceVertices].bytes.empty());
}

TEST(PictureScene, EveryViewLooksFromWhereItsNameSays) {
    const auto eyeDirection = [](ViewPreset view) {
        PictureOptions options = with(none);
        options.view = view;
        const auto scene = PictureScene::of(options, pyramid(), Vec3(0.0F), std::nullopt);
        const Mat4& matrix = scene.frame.uniforms.front().viewMatrix;
        // The third row of a view's rotation points from the scene to the eye.
        return Vec3(matrix[0][2], matrix[1][2], matrix[2][2]);
    };
    for (const ViewPreset view : allViewPresets) {
        const ViewPose expected = pose(view);
        const Vec3 direction(std::cos(expected.elevation) * std::sin(expected.azimuth),
            std::sin(expected.elevation),
            std::cos(expected.elevation) * std::cos(expected.azimuth));
        EXPECT_LT(glm::distance(eyeDirection(view), direction), 1e-3F) << rawValue(view);
    }
}

TEST(PictureScene, TheModelIsTurnedAboutTheMiddleOfItsBox) {
    const auto scene = PictureScene::of(
        {}, pyramid(), {0.0F, 0.0F, static_cast<float>(std::numbers::pi / 2)}, std::nullopt);
    const auto& glass = scene.frame.draws[2];
    ASSERT_EQ(glass.pipeline, Pipeline::preRunDepth);
    // The tip, half a metre above the middle (0, 0.5, 0), goes half a metre along -x.
    const Vec4 tip = scene.frame.uniforms[glass.uniforms].modelMatrix * Vec4(0, 1, 0, 1);
    EXPECT_NEAR(tip.x, -0.5F, 1e-6F);
    EXPECT_NEAR(tip.y, 0.5F, 1e-6F);
}

TEST(PictureScene, ThinPicturesStillHaveACameraThatSeesTheBody) {
    for (const auto& [width, height] : {std::pair(1, 1), std::pair(1, 4000), std::pair(8000, 1)}) {
        PictureOptions options;
        options.width = width;
        options.height = height;
        const auto scene = PictureScene::of(options, pyramid(), Vec3(0.0F), std::nullopt);
        const Uniforms& block = scene.frame.uniforms.front();
        const Vec4 middle =
            block.projectionMatrix * block.viewMatrix * Vec4(0.0F, 0.5F, 0.0F, 1.0F);
        ASSERT_GT(middle.w, 0.0F);
        EXPECT_LT(std::abs(middle.x / middle.w), 0.01F) << width << " × " << height;
        EXPECT_LT(std::abs(middle.y / middle.w), 0.01F) << width << " × " << height;
    }
}

TEST(PictureScene, EqualRequestsGiveEqualFrames) {
    const auto one = PictureScene::of({}, pyramid(), Vec3(0.1F), result());
    const auto other = PictureScene::of({}, pyramid(), Vec3(0.1F), result());
    ASSERT_EQ(one.frame.uniforms.size(), other.frame.uniforms.size());
    for (std::size_t i = 0; i < one.frame.uniforms.size(); ++i) {
        EXPECT_EQ(one.frame.uniforms[i].viewMatrix, other.frame.uniforms[i].viewMatrix);
        EXPECT_EQ(one.frame.uniforms[i].modelMatrix, other.frame.uniforms[i].modelMatrix);
    }
}

} // namespace
} // namespace ostrella
