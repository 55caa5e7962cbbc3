#include "Solver/Flow/StreamlineGenerator.h"

#include "Models/Cancellation.h"
#include "Solver/Flow/tracing/TestClouds.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

using namespace ostrella;
using ostrella::testing::cube;
using ostrella::testing::field;
using Indices = std::vector<std::uint32_t>;

namespace {

/// A body of a metre about the origin: seeds at x = −1, lines up to x = 1.5, a path of 2.5 m.
const StreamlineFocus body{Vec3(0.0F), Vec3(1.0F), true, 0.5F, 1.0F};
/// Lines up to x = 2. The path is 3 m, so with 48 steps at 1 m/s the time step is 1/16 s.
const StreamlineFocus wideBody{Vec3(0.0F), Vec3(1.0F), true, 0.5F, 1.5F};

VolumeField uniform(const Vec3& velocity, float half = 2.0F) {
    return field(cube(500, half), [&](const Vec3&) { return velocity; });
}

std::vector<float> vertices(const Streamlines& lines) {
    return {lines.interleavedVertices.begin(), lines.interleavedVertices.end()};
}

Indices indices(const Streamlines& lines) {
    return {lines.indices.begin(), lines.indices.end()};
}

void expectNothing(const Streamlines& lines) {
    EXPECT_TRUE(lines.interleavedVertices.empty());
    EXPECT_TRUE(lines.indices.empty());
    EXPECT_EQ(lines.vertexCount, 0U);
    EXPECT_EQ(lines.indexCount, 0U);
}

TEST(StreamlineGenerator, givesNothingForAnEmptyVolume) {
    const auto lines = StreamlineGenerator::generate({}, 50.0F, body, 100, 400);
    expectNothing(lines);
    EXPECT_EQ(lines.seedCount, 0U);
    EXPECT_EQ(lines.magnitudeMin, 0.0F);
    EXPECT_EQ(lines.magnitudeMax, 1.0F);
    EXPECT_EQ(lines.boundingMin, Vec3(0.0F));
    EXPECT_EQ(lines.boundingMax, Vec3(0.0F));
}

TEST(StreamlineGenerator, neverAsksForCancellationInAnEmptyVolume) {
    EXPECT_NO_THROW(StreamlineGenerator::generate({}, 50.0F, body, 4, 400, [] { return true; }));
}

TEST(StreamlineGenerator, stillFlowHasNoLinesButTheVolumesBox) {
    const auto lines = StreamlineGenerator::generate(uniform(Vec3(0.0F)), 50.0F, body, 9, 40);
    expectNothing(lines);
    EXPECT_EQ(lines.seedCount, 9U);
    EXPECT_EQ(lines.magnitudeMin, 0.0F);
    EXPECT_EQ(lines.magnitudeMax, 50.0F);
    EXPECT_EQ(lines.boundingMin, Vec3(-2.0F));
    EXPECT_EQ(lines.boundingMax, Vec3(2.0F));
}

TEST(StreamlineGenerator, stillFlowHasARangeUpToOneAtLeast) {
    const auto lines = StreamlineGenerator::generate(uniform(Vec3(0.0F)), 0.25F, body, 9, 40);
    EXPECT_EQ(lines.magnitudeMax, 1.0F);
}

TEST(StreamlineGenerator, tooSlowAFlowHasNoLines) {
    // 1 mm/s lets the points have a say; the limit for a line is a tenth of a millimetre, which
    // only opposite velocities in the mean get below.
    const auto volume = field(cube(500, 2.0F), [](const Vec3&) { return Vec3(0.0011F, 0, 0); });
    EXPECT_GT(StreamlineGenerator::generate(volume, 1.0F, body, 4, 4).vertexCount, 0U);
    const std::vector<Vec3> pair{{-1.0F, 1.0F, 0.0F}, {-1.0F, -1.0F, 0.0F}};
    const VolumeField opposite(pair, std::vector<Vec3>{{1.0F, 0.0F, 0.0F}, {-1.0F, 0.0F, 0.0F}});
    StreamlineFocus flat = body;
    flat.isVolumetric = false;
    // Three seeds, of which the middle one is as far from both.
    const auto lines = StreamlineGenerator::generate(opposite, 1.0F, flat, 3, 1);
    EXPECT_EQ(lines.vertexCount, 2U);
    EXPECT_EQ(lines.seedCount, 3U);
}

// The mean of equal velocities whose components are powers of two is exact, and so is 6 × v × dt /
// 6 with a time step of a sixteenth.
TEST(StreamlineGenerator, uniformFlowGivesExactStraightLines) {
    const auto lines =
        StreamlineGenerator::generate(uniform({1.0F, 0.0F, 0.0F}), 1.0F, wideBody, 4, 48);
    // From −1 to the limit at 2 by 1/16: the last step ends on the limit itself, which is inside,
    // but the steps are used up.
    ASSERT_EQ(lines.vertexCount, 4U * 48U);
    for (std::size_t line = 0; line < 4; ++line) {
        for (std::size_t step = 0; step < 48; ++step) {
            const float* vertex = &lines.interleavedVertices[4 * (48 * line + step)];
            ASSERT_EQ(vertex[0], -1.0F + 0.0625F * static_cast<float>(step));
            ASSERT_EQ(vertex[1], line % 2 == 0 ? -0.75F : 0.75F);
            ASSERT_EQ(vertex[2], line / 2 == 0 ? -0.75F : 0.75F);
            ASSERT_EQ(vertex[3], 1.0F);
        }
    }
    EXPECT_EQ(lines.magnitudeMin, 1.0F);
    EXPECT_EQ(lines.magnitudeMax, 1.0F);
    EXPECT_EQ(lines.boundingMin, Vec3(-1.0F, -0.75F, -0.75F));
    EXPECT_EQ(lines.boundingMax, Vec3(-1.0F + 47.0F * 0.0625F, 0.75F, 0.75F));
}

TEST(StreamlineGenerator, obliqueUniformFlowGivesExactObliqueLines) {
    const auto lines =
        StreamlineGenerator::generate(uniform({1.0F, 0.5F, -0.25F}), 1.0F, wideBody, 4, 48);
    const float* third = &lines.interleavedVertices[8];
    EXPECT_EQ(third[0], -0.875F);
    EXPECT_EQ(third[1], -0.6875F);
    EXPECT_EQ(third[2], -0.78125F);
}

TEST(StreamlineGenerator, joinsEachVertexToTheNextOfItsLine) {
    const auto lines = StreamlineGenerator::generate(uniform({1.0F, 0.0F, 0.0F}), 1.0F, body, 4, 3);
    EXPECT_EQ(lines.vertexCount, 12U);
    EXPECT_EQ(lines.indexCount, 16U);
    EXPECT_EQ(indices(lines), (Indices{0, 1, 1, 2, 3, 4, 4, 5, 6, 7, 7, 8, 9, 10, 10, 11}));
}

TEST(StreamlineGenerator, ofOneStepHasVerticesWithoutSegments) {
    const auto lines = StreamlineGenerator::generate(uniform({2.0F, 0.0F, 0.0F}), 1.0F, body, 4, 1);
    EXPECT_EQ(
        vertices(lines), (std::vector<float>{-1.0F, -0.75F, -0.75F, 2.0F, -1.0F, 0.75F, -0.75F,
                             2.0F, -1.0F, -0.75F, 0.75F, 2.0F, -1.0F, 0.75F, 0.75F, 2.0F}));
    EXPECT_TRUE(lines.indices.empty());
}

TEST(StreamlineGenerator, ofNoStepHasNothing) {
    const auto lines = StreamlineGenerator::generate(uniform({2.0F, 0.0F, 0.0F}), 1.0F, body, 4, 0);
    expectNothing(lines);
    EXPECT_EQ(lines.seedCount, 4U);
}

TEST(StreamlineGenerator, endsALineAheadOfTheLimitDownstream) {
    // At twice the speed of the free stream a step is 1/8 m: −1 up to 1.5, the limit.
    const auto volume = uniform({2.0F, 0.0F, 0.0F});
    const auto lines = StreamlineGenerator::generate(volume, 1.0F, body, 4, 40);
    EXPECT_EQ(lines.vertexCount, 4U * 21U);
    EXPECT_EQ(lines.boundingMax.x, 1.5F);
}

TEST(StreamlineGenerator, endsALineAheadOfTheVolumesBox) {
    const auto volume = uniform({0.0F, 0.0F, 1.0F});
    const auto lines = StreamlineGenerator::generate(volume, 1.0F, wideBody, 4, 48);
    // Up from z = ∓0.75 by 1/16 to 2, the box's face, which is inside.
    EXPECT_EQ(lines.vertexCount, 2U * 45U + 2U * 21U);
    EXPECT_EQ(lines.boundingMax.z, 2.0F);
}

TEST(StreamlineGenerator, recordsASeedOutsideTheVolumesBox) {
    // Seeds at x = −1, points from −0.5 on: the first vertex stands, the next would be outside.
    const auto lines =
        StreamlineGenerator::generate(uniform({1.0F, 0.0F, 0.0F}, 0.5F), 1.0F, wideBody, 4, 48);
    EXPECT_EQ(lines.vertexCount, 4U);
    EXPECT_TRUE(lines.indices.empty());
    EXPECT_EQ(lines.boundingMin, Vec3(-1.0F, -0.75F, -0.75F));
}

TEST(StreamlineGenerator, hasNoRangeOfSpeedsThatAreNotFinite) {
    // The speed's square overflows; the next point is far outside.
    const auto volume = uniform({1e30F, 0.0F, 0.0F});
    const auto lines = StreamlineGenerator::generate(volume, 50.0F, body, 4, 40);
    EXPECT_EQ(lines.vertexCount, 4U);
    EXPECT_EQ(lines.magnitudeMin, 0.0F);
    EXPECT_EQ(lines.magnitudeMax, 50.0F);
    EXPECT_EQ(lines.boundingMin, Vec3(-1.0F, -0.75F, -0.75F));
}

TEST(StreamlineGenerator, takesATenthOfAMetrePerSecondForAStillFreeStream) {
    // dt = 3 m / (0.1 m/s × 48); at 1/128 m/s nothing leaves.
    const auto volume = uniform({0.0078125F, 0.0F, 0.0F});
    for (const float freeStream : {0.0F, -3.0F, 0.1F}) {
        const auto lines = StreamlineGenerator::generate(volume, freeStream, wideBody, 4, 48);
        const float dt = 3.0F / (0.1F * 48.0F);
        EXPECT_EQ(lines.interleavedVertices[4], -1.0F + 6.0F * 0.0078125F * dt / 6.0F);
    }
}

TEST(StreamlineGenerator, makesAFocusOfTheVolumeWhereThereIsNone) {
    // A box of 20 × 8 × 4 m about (10, 4, 2): the focus is 1 × 0.4 × 0.2 m, its seeds at x = 9.
    std::vector<Vec3> points;
    for (const Vec3& p : cube(3000, 1.0F))
        points.push_back((p + 1.0F) * Vec3(10.0F, 4.0F, 2.0F));
    const auto volume = field(points, [](const Vec3&) { return Vec3(1.0F, 0.0F, 0.0F); });
    const auto lines = StreamlineGenerator::generate(volume, 1.0F, {}, {}, 10);
    EXPECT_EQ(lines.seedCount, 196U);
    EXPECT_FLOAT_EQ(lines.boundingMin.x, 9.0F);
    EXPECT_FLOAT_EQ(lines.boundingMin.y, 3.7F);
    EXPECT_FLOAT_EQ(lines.boundingMax.y, 4.3F);
    EXPECT_FLOAT_EQ(lines.boundingMin.z, 1.75F);
    EXPECT_FLOAT_EQ(lines.boundingMax.z, 2.25F);
    // Nine steps of 0.35 m.
    EXPECT_NEAR(lines.boundingMax.x, 12.15F, 1e-5F);
}

TEST(StreamlineGenerator, seedsAColumnOfAHundredInAFlatVolume) {
    std::vector<Vec3> points;
    for (const Vec3& p : cube(900, 10.0F))
        points.emplace_back(p.x, p.y, 0.5F);
    const auto volume = field(points, [](const Vec3&) { return Vec3(1.0F, 0.0F, 0.0F); });
    const auto lines = StreamlineGenerator::generate(volume, 1.0F, {}, {}, 1);
    EXPECT_EQ(lines.seedCount, 100U);
    EXPECT_EQ(lines.vertexCount, 100U);
    EXPECT_EQ(lines.boundingMin, Vec3(-1.0F, -0.75F, 0.5F));
    EXPECT_EQ(lines.boundingMax, Vec3(-1.0F, 0.75F, 0.5F));
}

TEST(StreamlineGenerator, countsTheSeedsThatWereMade) {
    const auto volume = uniform({1.0F, 0.0F, 0.0F});
    EXPECT_EQ(StreamlineGenerator::generate(volume, 1.0F, body, 150, 2).seedCount, 144U);
    EXPECT_EQ(StreamlineGenerator::generate(volume, 1.0F, body, 5, 2).seedCount, 4U);
    EXPECT_EQ(StreamlineGenerator::generate(volume, 1.0F, body, {}, 2).seedCount, 196U);
    StreamlineFocus flat = body;
    flat.isVolumetric = false;
    EXPECT_EQ(StreamlineGenerator::generate(volume, 1.0F, flat, 7, 2).seedCount, 7U);
    EXPECT_EQ(StreamlineGenerator::generate(volume, 1.0F, flat, {}, 2).seedCount, 100U);
    const auto none = StreamlineGenerator::generate(volume, 5.0F, flat, 0, 2);
    expectNothing(none);
    EXPECT_EQ(none.seedCount, 0U);
    EXPECT_EQ(none.magnitudeMax, 5.0F);
}

TEST(StreamlineGenerator, asksForCancellationAheadOfEachSeed) {
    int asked = 0;
    const auto volume = uniform({1.0F, 0.0F, 0.0F});
    StreamlineGenerator::generate(volume, 1.0F, body, 9, 4, [&] { return ++asked < 0; });
    EXPECT_EQ(asked, 9);
}

TEST(StreamlineGenerator, isCancelledAheadOfASeed) {
    int asked = 0;
    const auto volume = uniform({1.0F, 0.0F, 0.0F});
    EXPECT_THROW(
        StreamlineGenerator::generate(volume, 1.0F, body, 9, 4, [&] { return ++asked == 3; }),
        CancellationError);
    EXPECT_EQ(asked, 3);
    EXPECT_THROW(StreamlineGenerator::generate(volume, 1.0F, body, 9, 4, [] { return true; }),
        CancellationError);
}

TEST(StreamlineGenerator, finishesTheLastLineOfACancelledTask) {
    // It is cancelled behind the answer to the last question.
    int asked = 0;
    bool isCancelled = false;
    const auto lines =
        StreamlineGenerator::generate(uniform({1.0F, 0.0F, 0.0F}), 1.0F, body, 9, 4, [&] {
            const bool answer = isCancelled;
            isCancelled = ++asked == 9;
            return answer;
        });
    EXPECT_TRUE(isCancelled);
    EXPECT_EQ(lines.vertexCount, 36U);
}

TEST(StreamlineGeneratorDeathTest, endsTheProcessAtBrokenPreconditions) {
    auto volume = uniform({1.0F, 0.0F, 0.0F});
    constexpr int most = std::numeric_limits<int>::max();
    EXPECT_DEATH(StreamlineGenerator::generate(volume, 1.0F, body, most, most), "overflows");
    EXPECT_DEATH(StreamlineGenerator::generate(volume, 1.0F, body, -1, 4), "negative number");
    EXPECT_DEATH(StreamlineGenerator::generate(volume, 1.0F, body, 4, -1), "negative number");
    volume.velocity = {Vec3(1.0F)};
    EXPECT_DEATH(StreamlineGenerator::generate(volume, 1.0F, body, 4, 4), "fewer velocities");
}

} // namespace
