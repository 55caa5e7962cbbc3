// The vortex surface of fields that nobody vouches for.

#include "Models/Cancellation.h"
#include "Solver/Flow/FlowScreen.h"
#include "Solver/Flow/VortexExtractor.h"
#include "Solver/Flow/vortex/TestFlows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace ostrella {

namespace {

using test::CancelAt;
using test::cube;
using test::LambOseen;
using test::scattered;
using testing::HasSubstr;

VolumeField vortexAt(const Vec3& center, float coreRadius) {
    const LambOseen vortex{coreRadius, coreRadius, 1.0F, center};
    const Vec3 reach(8.0F * coreRadius);
    return scattered(
        center - reach, center + reach, 20, [&](const Vec3& p) { return vortex.velocity(p); });
}

std::string errorOf(const VolumeField& volume, const StreamlineFocus& focus) {
    try {
        FlowScreen::extract(volume, focus, 16, 80.0F);
    } catch (const FlowScreenError& error) {
        return error.what();
    }
    return {};
}

TEST(ScreenedVortex, givesTheSameSurfaceAsBehindTheScreen) {
    const auto volume = vortexAt(Vec3(0.0F), 0.5F);
    const auto focus = cube(Vec3(0.0F), 1.0F);
    const auto screened = FlowScreen::extract(volume, focus, 24, 80.0F);
    const auto direct = VortexExtractor::extract(volume, focus, 24, 80.0F);
    ASSERT_TRUE(screened);
    ASSERT_TRUE(direct);
    EXPECT_EQ(screened->positions, direct->positions);
    EXPECT_EQ(screened->normals, direct->normals);
    EXPECT_EQ(screened->indices, direct->indices);
    EXPECT_EQ(screened->boundingMin, direct->boundingMin);
    EXPECT_EQ(screened->boundingMax, direct->boundingMax);
    EXPECT_EQ(screened->isoValue, direct->isoValue);
}

TEST(ScreenedVortex, givesNothingWhereThereIsNothingToLookAt) {
    const auto volume = vortexAt(Vec3(0.0F), 0.5F);
    EXPECT_FALSE(FlowScreen::extract(volume, std::nullopt, 16, 80.0F));
    EXPECT_FALSE(FlowScreen::extract(volume, StreamlineFocus{}, 16, 80.0F));
    EXPECT_FALSE(FlowScreen::extract({}, cube(Vec3(0.0F), 1.0F), 16, 80.0F));
}

TEST(ScreenedVortex, passesCancellationOn) {
    const auto volume = vortexAt(Vec3(0.0F), 0.5F);
    CancelAt cancel{20};
    EXPECT_THROW(FlowScreen::extract(volume, cube(Vec3(0.0F), 1.0F), 16, 80.0F, cancel.question()),
        CancellationError);
    EXPECT_EQ(cancel.asked, 20U);
}

TEST(ScreenedVortex, turnsNumbersThatAreNotFiniteAway) {
    const auto volume = vortexAt(Vec3(0.0F), 0.5F);
    const auto focus = cube(Vec3(0.0F), 1.0F);
    for (const float bad :
        {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), -2e12F}) {
        std::vector<Vec3> positions(volume.positions.begin(), volume.positions.end());
        std::vector<Vec3> velocities(volume.velocity.begin(), volume.velocity.end());
        positions[17].y = bad;
        EXPECT_THAT(errorOf({positions, velocities}, focus), HasSubstr("not finite"));
        positions[17].y = 0.0F;
        velocities[4000].z = bad;
        EXPECT_THAT(errorOf({positions, velocities}, focus), HasSubstr("not finite"));
    }
}

TEST(ScreenedVortex, turnsABoxBeyondAllBoundsAway) {
    const auto volume = vortexAt(Vec3(0.0F), 0.5F);
    auto focus = cube(Vec3(0.0F), 1.0F);
    focus.downstreamFactor = 2e12F;
    EXPECT_THAT(errorOf(volume, focus), HasSubstr("upstream and downstream factors"));
    focus.downstreamFactor = 2.0F;
    focus.upstreamFactor = std::numeric_limits<float>::quiet_NaN();
    EXPECT_THAT(errorOf(volume, focus), HasSubstr("upstream and downstream factors"));
}

TEST(ScreenedVortex, saysThatASurfaceTooFarAwayCannotBeWelded) {
    const Vec3 far(1000.0F, 0.0F, 0.0F);
    EXPECT_EQ(errorOf(vortexAt(far, 0.005F), cube(far, 0.01F)),
        "The vortex surface is so small and so far from the origin that its vertices cannot be "
        "told apart. Move the model closer to the origin.");
    EXPECT_EQ(errorOf(vortexAt(Vec3(0.0F), 0.005F), cube(Vec3(0.0F), 0.01F)), "");
}

TEST(ScreenedVortex, noFiniteFieldEndsTheProcess) {
    // Numbers of all sizes that pass the screen, around bodies of all sizes: a surface, nothing or
    // an error, but always an answer.
    std::uint32_t state = 3;
    const auto random = [&state] {
        state = state * 1664525U + 1013904223U;
        return static_cast<float>(state >> 8) / 16777216.0F;
    };
    const auto number = [&](float decades) {
        const float size = std::pow(10.0F, decades * (2.0F * random() - 1.0F));
        return random() < 0.5F ? -size : size;
    };
    int answers = 0;
    for (int trial = 0; trial < 60; ++trial) {
        const float decades = 12.0F * random();
        std::vector<Vec3> positions;
        std::vector<Vec3> velocities;
        for (int i = 0; i < 300; ++i) {
            positions.emplace_back(number(decades), number(decades), number(decades));
            velocities.emplace_back(number(12.0F), number(12.0F), number(12.0F));
        }
        auto focus = cube(positions[0], std::abs(number(11.0F)));
        try {
            answers += FlowScreen::extract({positions, velocities}, focus, 16, 50.0F) ? 1 : 0;
        } catch (const FlowScreenError& error) {
            EXPECT_THAT(error.what(), HasSubstr("."));
        }
    }
    EXPECT_GT(answers, 10);
}

} // namespace

} // namespace ostrella
