#include "golden/FlatScene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ostrella {
namespace {

struct Stop {
    double location; // 0 is the legend's top, the greatest value
    QColor color;
};

const std::vector<Stop>& legend() {
    static const std::vector<Stop> stops{{0, QColor::fromRgbF(0.48F, 0.016F, 0.012F)},
        {0.2, QColor::fromRgbF(0.87F, 0.247F, 0.027F)},
        {0.35, QColor::fromRgbF(0.978F, 0.621F, 0.082F)},
        {0.5, QColor::fromRgbF(0.871F, 0.875F, 0.094F)},
        {0.65, QColor::fromRgbF(0.345F, 0.882F, 0.388F)},
        {0.8, QColor::fromRgbF(0.149F, 0.541F, 0.929F)},
        {1, QColor::fromRgbF(0.19F, 0.071F, 0.235F)}};
    return stops;
}

/// The middle pixel of a quad that has one scalar all over.
QColor drawn(float scalar, Vec2 range, float tilt = 0) {
    FlatScene scene;
    scene.frame.uniforms[0].scalarRange = Vec4(range, 0, 0);
    scene.addScalarQuad({-0.9F, -0.9F}, {0.9F, 0.9F}, scalar, 0, tilt);
    scene.draw(Pipeline::surface);
    return scene.picture().pixelColor(FlatScene::size / 2, FlatScene::size / 2);
}

std::string text(const QColor& c) {
    return c.name().toStdString();
}

TEST(LegendColors, surfacesThatFaceTheViewerHaveTheLegendsOwn) {
    // A pressure coefficient from −0.72 to 1.07.
    const Vec2 range(-0.72F, 1.07F);
    for (const Stop& stop : legend()) {
        const double value = range.y - stop.location * (range.y - range.x);
        const QColor color = drawn(static_cast<float>(value), range);
        EXPECT_TRUE(isNear(color, stop.color, 2))
            << stop.location << ": " << text(color) << " for " << text(stop.color);
    }
}

TEST(LegendColors, betweenTwoStopsTheyAreMixedEvenly) {
    for (std::size_t i = 1; i < legend().size(); ++i) {
        const Stop& a = legend()[i - 1];
        const Stop& b = legend()[i];
        const QColor half((a.color.red() + b.color.red()) / 2,
            (a.color.green() + b.color.green()) / 2, (a.color.blue() + b.color.blue()) / 2);
        const double location = (a.location + b.location) / 2;
        const QColor color = drawn(static_cast<float>(1 - location), {0, 1});
        EXPECT_TRUE(isNear(color, half, 2)) << location << ": " << text(color);
    }
}

TEST(LegendColors, valuesBeyondTheRangeHaveItsEnds) {
    EXPECT_TRUE(isNear(drawn(9, {0, 1}), legend().front().color, 2));
    EXPECT_TRUE(isNear(drawn(-9, {0, 1}), legend().back().color, 2));
}

TEST(LegendColors, aRangeOfOneValueHasTheMiddle) {
    EXPECT_TRUE(isNear(drawn(3, {3, 3}), legend()[3].color, 2));
}

TEST(LegendColors, lightTakesAFifthAtMostAndNoHue) {
    int darkest = 255;
    for (const float tilt : {-80.0F, -60.0F, -30.0F, 30.0F, 60.0F, 80.0F}) {
        FlatScene scene;
        scene.frame.uniforms[0].lightDirection = Vec4(0.259F, 0.432F, 0.864F, 0);
        scene.addScalarQuad({-0.9F, -0.9F}, {0.9F, 0.9F}, 0.5F, 0, tilt);
        scene.draw(Pipeline::surface);
        const QColor full = legend()[3].color;
        const QColor color = scene.picture().pixelColor(FlatScene::size / 2, FlatScene::size / 2);
        SCOPED_TRACE(tilt);
        EXPECT_GE(color.red(), 0.8 * full.red() - 2);
        EXPECT_LE(color.red(), full.red() + 2);
        EXPECT_NEAR(double(color.green()) / color.red(), double(full.green()) / full.red(), 0.02);
        darkest = std::min(darkest, color.red());
    }
    EXPECT_LT(darkest, 0.9 * legend()[3].color.red()) << "the shape is to be read as well";
}

TEST(LegendColors, segmentsHaveThemUnlit) {
    FlatScene scene;
    scene.pointScale = 4; // lines of eight pixels
    scene.fill<Vec4>(SceneBuffer::surfaceVertices, {{-0.9F, 0, 0, 0.35F}, {0.9F, 0, 0, 0.35F}});
    scene.fill<std::uint32_t>(SceneBuffer::surfaceIndices, {0, 1});
    scene.frame.uniforms[0].lightDirection = Vec4(0, 0, -1, 0);
    scene.draw(Pipeline::surface).topology = Topology::lines;
    const QImage picture = scene.picture();
    EXPECT_TRUE(isNear(picture.pixelColor(32, 32), legend()[4].color, 2));
    int rows = 0;
    for (int y = 0; y < FlatScene::size; ++y)
        rows += isNear(picture.pixelColor(32, y), legend()[4].color, 2) ? 1 : 0;
    EXPECT_EQ(rows, 8);
}

TEST(LegendColors, whatIsNoNumberIsGrey) {
    for (const float scalar : {std::numeric_limits<float>::quiet_NaN(),
             std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity()}) {
        const QColor color = drawn(scalar, {0, 1});
        EXPECT_EQ(color.red(), color.green());
        EXPECT_EQ(color.green(), color.blue());
        EXPECT_NEAR(color.red(), 107, 3);
    }
}

TEST(LegendColors, oneCornerWithoutANumberLeavesItsNeighboursTheirColors) {
    FlatScene scene;
    scene.fill<Vec4>(
        SceneBuffer::surfaceVertices, {{-0.9F, -0.9F, 0, 0.5F}, {0.9F, -0.9F, 0, 0.5F},
                                          {0, 0.9F, 0, std::numeric_limits<float>::quiet_NaN()}});
    scene.fill<std::uint32_t>(SceneBuffer::surfaceIndices, {0, 1, 2});
    scene.draw(Pipeline::surface);
    const QImage picture = scene.picture();
    const QColor foot = picture.pixelColor(32, 59);
    EXPECT_TRUE(isNear(foot, legend()[3].color, 8)) << text(foot);
    const QColor top = picture.pixelColor(32, 6);
    EXPECT_NEAR(top.red(), top.blue(), 12);
    for (int y = 6; y < 60; ++y)
        EXPECT_GT(picture.pixelColor(32, y).red(), 90) << y;
}

} // namespace
} // namespace ostrella
