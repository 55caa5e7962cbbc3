#include "Solver/Flow/StreamlineRibbons.h"
#include "golden/BrightPixels.h"
#include "golden/FlatScene.h"
#include "golden/PictureCompare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ostrella {
namespace {

constexpr int middle = FlatScene::size / 2;

/// A line through points at one speed, as a ribbon in the scene.
void addRibbon(FlatScene& scene, const std::vector<Vec2>& through, float speed = 0.5F) {
    std::vector<float> vertices;
    std::vector<std::uint32_t> segments;
    for (const Vec2& p : through)
        vertices.insert(vertices.end(), {p.x, p.y, 0, speed});
    for (std::uint32_t i = 0; i + 1 < through.size(); ++i)
        segments.insert(segments.end(), {i, i + 1});
    Streamlines lines;
    lines.vertexCount = through.size();
    lines.indexCount = segments.size();
    lines.interleavedVertices = vertices;
    lines.indices = segments;
    const StreamlineRibbons ribbons = StreamlineRibbons::build(lines);
    scene.fill(SceneBuffer::ribbonPoints, ribbons.points);
    scene.fill(SceneBuffer::ribbonIndices, ribbons.indices);
}

/// The legend's middle, the colour of half the speed.
const QColor yellow = QColor::fromRgbF(0.871F, 0.875F, 0.094F);

RibbonUniforms& block(DrawCommand& draw) {
    return std::get<RibbonUniforms>(draw.extra);
}

double strongest(const QImage& picture) {
    double most = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            most = std::max(most, shareOf(picture.pixelColor(x, y), flatGround, yellow));
    }
    return most;
}

TEST(Ribbons, haveTheirWidthInPixelsAlsoWhenSplitFinely) {
    for (const int pieces : {1, 3, 150}) {
        FlatScene scene;
        std::vector<Vec2> points;
        for (int i = 0; i <= pieces; ++i)
            points.emplace_back(-0.8F + 1.6F * static_cast<float>(i) / pieces, 0.01F);
        addRibbon(scene, points);
        scene.draw(Pipeline::ribbon, DepthState::lessEqualReadOnly);
        const QImage picture = scene.picture();
        const double strength = strongest(picture);
        EXPECT_NEAR(strength, 0.8, 0.02);
        for (int x = 12; x < 52; ++x)
            EXPECT_NEAR(widthInColumn(picture, x, flatGround, yellow) / strength, 4, 0.15)
                << x << " in " << pieces;
    }
}

TEST(Ribbons, jointsAreRoundAndNowhereDrawnTwice) {
    FlatScene scene;
    addRibbon(scene, {{-0.7F, -0.7F}, {0.3F, -0.7F}, {0.3F, 0.6F}, {0.1F, -0.5F}});
    block(scene.draw(Pipeline::ribbon, DepthState::lessEqualReadOnly)).view.z = 6;
    const QImage picture = scene.picture();
    EXPECT_LT(strongest(picture), 0.83) << "two pieces lie over each other";
    // The outer side of the first bend: within the half width all around the joint, and no corner.
    const int x = static_cast<int>(std::lround(middle + 0.3 * middle));
    const int y = static_cast<int>(std::lround(middle + 0.7 * middle));
    const auto at = [&](double angle, double radius) {
        const double a = angle * std::numbers::pi / 180;
        return shareOf(picture.pixelColor(static_cast<int>(std::lround(x + radius * std::cos(a))),
                           static_cast<int>(std::lround(y + radius * std::sin(a)))),
            flatGround, yellow);
    };
    for (const double angle : {0, 20, 45, 70, 90})
        EXPECT_GT(at(angle, 4), 0.75) << angle;
    EXPECT_LT(at(45, 8), 0.05) << "a mitre sticks out";
}

TEST(Ribbons, keepTheirStrengthAroundACurve) {
    FlatScene scene;
    // Its middle lies a little beside the picture's, so that no pixel lies just where pieces meet.
    const double right = 0.013;
    const double up = 0.007;
    std::vector<Vec2> points;
    for (int i = 0; i <= 60; ++i) {
        const double a = std::numbers::pi * i / 60;
        points.emplace_back(right + 0.6 * std::cos(a), up + 0.6 * std::sin(a));
    }
    addRibbon(scene, points);
    scene.draw(Pipeline::ribbon, DepthState::lessEqualReadOnly);
    const QImage picture = scene.picture();
    for (int i = 5; i <= 55; ++i) {
        const double a = std::numbers::pi * i / 60;
        const QColor pixel =
            picture.pixelColor(static_cast<int>(middle * (1 + right + 0.6 * std::cos(a))),
                static_cast<int>(middle * (1 - up - 0.6 * std::sin(a))));
        EXPECT_NEAR(shareOf(pixel, flatGround, yellow), 0.8, 0.05) << i;
    }
}

QImage moving(float phase, float spacing = 0.4F) {
    FlatScene scene;
    addRibbon(scene, {{-0.9F, 0}, {0.9F, 0}});
    RibbonUniforms& ribbon = block(scene.draw(Pipeline::ribbon, DepthState::lessEqualReadOnly));
    ribbon.look.y = 1;
    ribbon.pulse = Vec4(phase, spacing, 4 * spacing, 0);
    return scene.picture();
}

TEST(Ribbons, pulsesLoopWithoutAJump) {
    const QImage first = moving(0);
    EXPECT_LE(PictureDifference::between(first, moving(4)).largest, 1);
    // Sixteen of them pass in the period's four seconds.
    EXPECT_LE(PictureDifference::between(first, moving(0.25F)).largest, 1);
    EXPECT_GT(PictureDifference::between(first, moving(0.125F)).largest, 30);
    // Right ahead of the period's end the pulses stand right ahead of where they start again.
    EXPECT_LT(PictureDifference::between(first, moving(3.9999F)).mean, 0.1);
}

TEST(Ribbons, pulsesTravelWithTheFlowAndTheThreadStaysVisible) {
    const auto head = [](const QImage& picture) {
        // The first place, from the left, from which the strength falls off at once.
        for (int x = 10; x < 50; ++x) {
            const auto strength = [&](int column) {
                return shareOf(picture.pixelColor(column, middle), flatGround, yellow);
            };
            if (strength(x) > strength(x + 2) + 0.2)
                return x;
        }
        return -1;
    };
    const QImage now = moving(0.0F, 0.8F);
    const QImage later = moving(0.02F, 0.8F);
    ASSERT_GT(head(now), 0);
    // 0.02 s at 3.2 units a second, of 32 pixels each.
    EXPECT_NEAR(head(later) - head(now), 0.02 * 3.2 * middle, 1.1);
    for (int x = 6; x < 58; ++x)
        EXPECT_GT(shareOf(now.pixelColor(x, middle), flatGround, yellow), 0.5) << x;
}

TEST(Ribbons, endsFadeAndTheSlowEndIsLifted) {
    FlatScene scene;
    addRibbon(scene, {{-0.9F, 0}, {0.9F, 0}}, 0.0F);
    RibbonUniforms& ribbon = block(scene.draw(Pipeline::ribbon, DepthState::lessEqualReadOnly));
    ribbon.pulse.w = 0.25F;
    const QImage picture = scene.picture();
    const QColor lifted = QColor::fromRgbF(0.55F, 0.55F, 0.70F);
    const auto strength = [&](int x) {
        return shareOf(picture.pixelColor(x, middle), flatGround, lifted);
    };
    EXPECT_NEAR(strength(middle), 0.8, 0.02);
    EXPECT_LT(strength(4), 0.03);
    for (int x = 4; x < 18; ++x)
        EXPECT_LE(strength(x), strength(x + 1) + 0.01) << x;
}

TEST(Ribbons, farOnesSink) {
    const auto strength = [](float near, float far) {
        FlatScene scene;
        addRibbon(scene, {{-0.9F, 0}, {0.9F, 0}});
        block(scene.draw(Pipeline::ribbon, DepthState::lessEqualReadOnly)).depth =
            Vec4(near, far, 0.62F, 1);
        return scene.picture().pixelColor(middle, middle).red();
    };
    EXPECT_GT(strength(20, 30), strength(10, 20) + 30);
}

} // namespace
} // namespace ostrella
