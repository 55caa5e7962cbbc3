// The streamlines of fields and settings that nobody vouches for.

#include "Solver/Flow/FlowScreen.h"
#include "Solver/Flow/StreamlineGenerator.h"

#include <glm/common.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

/// Points of a coarse lattice about the origin in a uniform stream.
VolumeField stream() {
    std::vector<Vec3> positions;
    for (int i = -4; i <= 4; ++i)
        for (int j = -4; j <= 4; ++j)
            for (int k = -4; k <= 4; ++k)
                positions.emplace_back(i, j, k);
    const std::size_t count = positions.size();
    return {std::move(positions), std::vector<Vec3>(count, Vec3(50.0F, 0.0F, 0.0F))};
}

StreamlineFocus body() {
    return StreamlineFocus::around(Vec3(-0.5F), Vec3(0.5F), 0.5F, 2.0F);
}

std::string errorOf(const VolumeField& volume, const StreamlineFocus& focus, int seeds = 4) {
    try {
        FlowScreen::generate(volume, 50.0F, focus, seeds, 10);
    } catch (const FlowScreenError& error) {
        return error.what();
    }
    return {};
}

constexpr const char* tooFar = "The way that streamlines take past the body is not finite or too "
                               "long. Check the surface's coordinates and the upstream and "
                               "downstream factors.";

TEST(ScreenedStreamlines, GiveTheSameLinesAsBehindTheScreen) {
    const auto screened = FlowScreen::generate(stream(), 50.0F, body(), 9, 20);
    const auto direct = StreamlineGenerator::generate(stream(), 50.0F, body(), 9, 20);
    ASSERT_GT(direct.vertexCount, 0U);
    EXPECT_EQ(screened.interleavedVertices, direct.interleavedVertices);
    EXPECT_EQ(screened.indices, direct.indices);
}

TEST(ScreenedStreamlines, TurnAWayBeyondAllBoundsAway) {
    for (const float factor :
        {std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
            std::numeric_limits<float>::quiet_NaN(), 2e12F, -2e12F}) {
        auto focus = body();
        focus.upstreamFactor = factor;
        EXPECT_EQ(errorOf(stream(), focus), tooFar) << factor;
        focus = body();
        focus.downstreamFactor = factor;
        EXPECT_EQ(errorOf(stream(), focus), tooFar) << factor;
    }
}

TEST(ScreenedStreamlines, TurnFactorsAwayThatOutweighEachOther) {
    auto focus = body();
    focus.upstreamFactor = 1e30F;
    focus.downstreamFactor = -1e30F;
    EXPECT_EQ(errorOf(stream(), focus), tooFar);
}

TEST(ScreenedStreamlines, TurnANegativeNumberOfSeedsAway) {
    EXPECT_EQ(errorOf(stream(), body(), -1), "The number of streamlines to release is negative.");
    EXPECT_EQ(errorOf(stream(), body(), 0), "");
}

TEST(ScreenedStreamlines, NoFiniteFieldEndsTheProcess) {
    // Numbers of all sizes that pass the screen, around bodies of all sizes.
    std::uint32_t state = 5;
    const auto random = [&state] {
        state = state * 1664525U + 1013904223U;
        return static_cast<float>(state >> 8) / 16777216.0F;
    };
    const auto number = [&](float decades) {
        const float size = std::pow(10.0F, decades * (2.0F * random() - 1.0F));
        return random() < 0.5F ? -size : size;
    };
    int answers = 0;
    for (int trial = 0; trial < 300; ++trial) {
        const float decades = 12.0F * random();
        std::vector<Vec3> positions;
        std::vector<Vec3> velocities;
        for (int i = 0; i < 100; ++i) {
            positions.emplace_back(number(decades), number(decades), number(decades));
            velocities.emplace_back(number(12.0F), number(12.0F), number(12.0F));
        }
        const auto focus = StreamlineFocus::around(
            glm::min(positions[0], positions[1]), glm::max(positions[0], positions[1]), 0.5F, 2.0F);
        try {
            const auto lines = FlowScreen::generate({positions, velocities}, 50.0F, focus, 9, 20);
            answers += lines.vertexCount > 0 ? 1 : 0;
        } catch (const FlowScreenError& error) {
            EXPECT_EQ(error.what(), std::string(tooFar));
        }
    }
    EXPECT_GT(answers, 200);
}

} // namespace

} // namespace ostrella
