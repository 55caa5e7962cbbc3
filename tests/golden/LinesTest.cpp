#include "golden/BrightPixels.h"
#include "golden/FlatScene.h"
#include "golden/GoldenDevice.h"
#include "golden/PictureCompare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ostrella {
namespace {

constexpr int middle = FlatScene::size / 2;

/// A fan of four triangles around the origin.
FlatScene fan() {
    FlatScene scene;
    std::vector<Vec4> vertices;
    for (const Vec2 corner :
        {Vec2(0, 0), Vec2(-0.8F, -0.7F), Vec2(0.7F, -0.8F), Vec2(0.8F, 0.7F), Vec2(-0.7F, 0.8F)}) {
        vertices.emplace_back(corner, 0, 0);
        vertices.emplace_back(0, 0, 1, 0);
    }
    scene.fill(SceneBuffer::modelVertices, vertices);
    scene.fill<std::uint32_t>(SceneBuffer::modelIndices, {0, 1, 2, 0, 2, 3, 0, 3, 4, 0, 4, 1});
    return scene;
}

double lit(const QImage& picture) {
    double sum = 0;
    for (int x = 0; x < picture.width(); ++x)
        sum += widthInColumn(picture, x, flatGround, Qt::white);
    return sum;
}

TEST(LineModes, trianglesAsALineListAreTheirLinesAgain) {
    for (const Pipeline pipeline : {Pipeline::preRunWire, Pipeline::mesh}) {
        FlatScene scene = fan();
        scene.draw(pipeline, DepthState::readOnly).fill = FillMode::lines;
        GoldenDevice& golden = GoldenDevice::current();
        RhiScene own(golden.rhi());
        RhiScene lists(golden.rhi(), {.lineLists = true});
        const QImage expected = scene.picture(own);
        const QImage picture = scene.picture(lists);
        EXPECT_GT(lit(expected), 100);
        EXPECT_TRUE(PictureDifference::between(picture, expected).isAlike());
        EXPECT_NEAR(lit(picture), lit(expected), 0.05 * lit(expected));
    }
}

TEST(LineModes, linesAreNotFilled) {
    FlatScene scene = fan();
    scene.draw(Pipeline::preRunWire, DepthState::readOnly);
    const QImage picture = scene.picture();
    EXPECT_EQ(picture.pixelColor(middle, middle + 12), flatGround);
    EXPECT_NE(picture.pixelColor(middle, middle), flatGround);
}

TEST(LineModes, bodiesAsLinesAreLitAndNeverBlack) {
    FlatScene scene = fan();
    scene.draw(Pipeline::mesh).fill = FillMode::lines;
    const QImage picture = scene.picture();
    for (int y = 0; y < FlatScene::size; ++y) {
        for (int x = 0; x < FlatScene::size; ++x)
            EXPECT_GE(picture.pixelColor(x, y).blue(), flatGround.blue()) << x << ", " << y;
    }
}

TEST(FeatureLines, areOnePointWideAtAnyScale) {
    for (const float scale : {1.0F, 2.0F, 3.0F}) {
        FlatScene scene;
        scene.pointScale = scale;
        scene.fill<Vec4>(SceneBuffer::featureEdges, {{-0.9F, 0.013F, 0, 1}, {0.9F, 0.013F, 0, 1}});
        scene.draw(Pipeline::featureLine, DepthState::overlay);
        const QImage picture = scene.picture();
        // Half as strong as white.
        for (int x = 8; x < 56; ++x)
            EXPECT_NEAR(
                2 * widthInColumn(picture, x, flatGround, Qt::white), scale, 0.03 * scale + 0.02);
    }
}

TEST(FeatureLines, areSmoothWhereTheyAreSteep) {
    FlatScene scene;
    scene.fill<Vec4>(SceneBuffer::featureEdges, {{-0.9F, -0.2F, 0, 1}, {0.9F, 0.25F, 0, 1}});
    scene.draw(Pipeline::featureLine, DepthState::overlay);
    const QImage picture = scene.picture();
    // A line of slope 1/4 is a little higher in a column than it is wide, and in no column broken.
    for (int x = 8; x < 56; ++x)
        EXPECT_NEAR(2 * widthInColumn(picture, x, flatGround, Qt::white), 1.03, 0.08) << x;
}

TEST(FeatureLines, whatIsBehindTheEyeDoesNotDisturbWhatIsBeforeIt) {
    FlatScene scene;
    // A perspective of 90 degrees from the origin along −z.
    Uniforms& block = scene.frame.uniforms[0];
    block.viewMatrix = Mat4(1.0F);
    block.projectionMatrix = Mat4(1.0F);
    block.projectionMatrix[2] = Vec4(0, 0, -1.0001F, -1);
    block.projectionMatrix[3] = Vec4(0, 0, -0.01F, 0);
    // Along the view, half a unit below: it rises from the bottom towards the middle.
    scene.fill<Vec4>(SceneBuffer::featureEdges, {{0, -0.5F, 40, 1}, {0, -0.5F, -40, 1}});
    scene.pointScale = 2;
    scene.draw(Pipeline::featureLine, DepthState::overlay);
    const QImage picture = scene.picture();
    for (int y = middle + 4; y < FlatScene::size; ++y)
        EXPECT_GT(shareOf(picture.pixelColor(middle, y), flatGround, Qt::white), 0.3) << y;
    for (int y = 0; y < middle - 2; ++y)
        EXPECT_EQ(picture.pixelColor(middle, y), flatGround) << y;
}

TEST(GridLines, areAPointWideAndFadeToNothing) {
    for (const float scale : {1.0F, 2.0F}) {
        FlatScene scene;
        scene.pointScale = scale;
        // Flat on the picture: the grid's x and z become x and y.
        scene.frame.uniforms[0].modelMatrix =
            Mat4(Vec4(1, 0, 0, 0), Vec4(0, 0, 1, 0), Vec4(0, 1, 0, 0), Vec4(0, 0, 0, 1));
        std::swap(scene.frame.uniforms[0].viewMatrix, scene.frame.uniforms[0].modelMatrix);
        scene.frame.uniforms[0].viewMatrix[3] = Vec4(0, 0, -20, 1);
        scene.frame.uniforms[0].modelMatrix = Mat4(1.0F);
        scene.fill<Vec4>(SceneBuffer::gridMinor, {{-1, 0, 0.03F, 1}, {1, 0, 0.03F, 1}});
        scene.draw(Pipeline::grid, DepthState::overlay);
        const QImage picture = scene.picture();
        const auto width = [&](int x) { return widthInColumn(picture, x, flatGround, Qt::white); };
        EXPECT_NEAR(width(middle), scale, 0.05);
        EXPECT_NEAR(width(middle + 6), scale, 0.05) << "whole up to a quarter of the way";
        EXPECT_GT(width(middle + 18), 0.3 * scale);
        EXPECT_LT(width(middle + 18), 0.7 * scale);
        EXPECT_LT(width(middle + 31), 0.02 * scale);
        for (int x = middle; x + 1 < FlatScene::size; ++x)
            EXPECT_LE(width(x + 1), width(x) + 0.02) << x;
    }
}

TEST(Gizmo, segmentsHaveRoundEndsAndSoftEdges) {
    FlatScene scene;
    // A dot: a line without length.
    scene.fill<Vec4>(SceneBuffer::gizmoSegments, {{16, 16, 16, 16}, {1, 1, 1, 1}, {8, 2, 0, 0}});
    scene.draw(Pipeline::gizmo, DepthState::overlay);
    const QImage picture = scene.picture();
    EXPECT_NEAR(lit(picture), std::numbers::pi * 64, 6);
    // The box's middle is 24 from the left and 20 from below.
    EXPECT_EQ(picture.pixelColor(24, FlatScene::size - 20), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(24 - 7, FlatScene::size - 20 - 7), flatGround);
}

TEST(Rings, areAClosedBandWhoseFarHalfStepsBack) {
    FlatScene scene;
    std::vector<Vec4> points;
    for (int i = 0; i < 128; ++i) {
        const double angle = 2 * std::numbers::pi * i / 128;
        const auto x = static_cast<float>(0.7 * std::cos(angle));
        const auto z = static_cast<float>(0.7 * std::sin(angle));
        points.emplace_back(x, -0.8F * z, z, 1); // tilted towards the viewer
    }
    scene.fill(SceneBuffer::ringX, points);
    scene.draw(Pipeline::ring, DepthState::overlay);
    const QImage picture = scene.picture();
    const auto strongest = [&](int x, int top, int bottom) {
        double most = 0;
        for (int y = top; y < bottom; ++y)
            most = std::max(most, shareOf(picture.pixelColor(x, y), flatGround, Qt::white));
        return most;
    };
    EXPECT_NEAR(strongest(middle, middle, FlatScene::size), 0.5, 0.01);
    EXPECT_NEAR(strongest(middle, 0, middle), 0.5 * 0.35, 0.01);
    // Three pixels wide, in front and behind, and where the last point meets the first.
    EXPECT_NEAR(2 * widthInColumn(picture, middle, flatGround, Qt::white), 3 * 1.35, 0.12);
    double right = 0;
    for (int x = middle; x < FlatScene::size; ++x)
        right += shareOf(picture.pixelColor(x, middle), flatGround, Qt::white);
    EXPECT_NEAR(right, 3 * 0.5 * 0.675, 0.15);
}

} // namespace
} // namespace ostrella
