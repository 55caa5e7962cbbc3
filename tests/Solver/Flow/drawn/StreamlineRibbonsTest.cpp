#include "Solver/Flow/StreamlineRibbons.h"

#include "TestLines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

namespace ostrella {

namespace {

using Indices = std::vector<std::uint32_t>;
using test::joined;
using test::traced;

/// The x of each point, which tells the vertices of `traced` apart.
std::vector<float> places(const StreamlineRibbons& ribbons) {
    std::vector<float> result;
    for (const auto& point : ribbons.points)
        result.push_back(point.positionSpeed.x);
    return result;
}

/// One component of the parameters of each point.
std::vector<float> parameters(const StreamlineRibbons& ribbons, int component) {
    std::vector<float> result;
    for (const auto& point : ribbons.points)
        result.push_back(point.params[component]);
    return result;
}

TEST(StreamlineRibbons, OneSegmentIsTwoPointsAndTwoTriangles) {
    const auto ribbons = StreamlineRibbons::build(joined({{1, 2, 3, 40}, {4, 6, 15, 50}}, {0, 1}));
    EXPECT_EQ(ribbons.lineCount, 1U);
    EXPECT_EQ(ribbons.indices, (Indices{0, 1, 2, 1, 3, 2}));
    // (3, 4, 12) is 13 long.
    EXPECT_EQ(ribbons.points, (std::vector<StreamlineRibbons::Point>{{{1, 2, 3, 40}, {0, 13, 0, 1}},
                                  {{4, 6, 15, 50}, {13, 13, 0, 2}}}));
}

TEST(StreamlineRibbons, TheBandsOfALineShareItsPointsAndThoseOfTwoLinesDoNot) {
    const auto ribbons = StreamlineRibbons::build(traced({3, 2}));
    EXPECT_EQ(ribbons.lineCount, 2U);
    EXPECT_EQ(ribbons.points.size(), 5U);
    EXPECT_EQ(ribbons.indices, (Indices{0, 1, 2, 1, 3, 2, 2, 3, 4, 3, 5, 4, 6, 7, 8, 7, 9, 8}));
}

TEST(StreamlineRibbons, TheFirstAndTheLastPointOfALineAreMarked) {
    const auto ribbons = StreamlineRibbons::build(traced({4, 2, 3}));
    EXPECT_EQ(parameters(ribbons, 3), (std::vector<float>{1, 0, 0, 2, 1, 2, 1, 0, 2}));
}

TEST(StreamlineRibbons, ArcLengthsStartAgainWithEachLine) {
    const auto ribbons = StreamlineRibbons::build(traced({3, 2}));
    EXPECT_EQ(parameters(ribbons, 0), (std::vector<float>{0, 1, 2, 0, 1}));
    EXPECT_EQ(parameters(ribbons, 1), (std::vector<float>{2, 2, 2, 1, 1}));
}

TEST(StreamlineRibbons, ArcLengthsLeaveTheSpeedOut) {
    const auto ribbons = StreamlineRibbons::build(joined({{0, 0, 0, 0}, {0, 2, 0, 1000}}, {0, 1}));
    EXPECT_EQ(parameters(ribbons, 0), (std::vector<float>{0, 2}));
}

TEST(StreamlineRibbons, ArcLengthsAreSummedAsFloats) {
    // From 2²⁴ on, a 32-bit float that grows by 1 stays where it is.
    const auto ribbons = StreamlineRibbons::build(
        joined({{0, 0, 0, 0}, {16777216, 0, 0, 0}, {16777216, 1, 0, 0}, {16777216, 2, 0, 0}},
            {0, 1, 1, 2, 2, 3}));
    EXPECT_EQ(parameters(ribbons, 0), (std::vector<float>{0, 16777216, 16777216, 16777216}));
}

TEST(StreamlineRibbons, LengthsAreSummedFromXToZ) {
    // Any other order, a fused multiply-add or a sum of doubles gives 0.860232532.
    const auto ribbons =
        StreamlineRibbons::build(joined({{0, 0, 0, 0}, {0.1F, 0.3F, 0.8F, 0}}, {0, 1}));
    EXPECT_EQ(ribbons.points[1].params.x, 0.860232592F);
}

TEST(StreamlineRibbons, ARepeatedPointAddsNoLength) {
    const auto ribbons = StreamlineRibbons::build(
        joined({{0, 0, 0, 1}, {3, 0, 4, 1}, {3, 0, 4, 1}, {3, 1, 4, 1}}, {0, 1, 1, 2, 2, 3}));
    EXPECT_EQ(parameters(ribbons, 0), (std::vector<float>{0, 5, 5, 6}));
    EXPECT_EQ(ribbons.indices.size(), 18U);
}

TEST(StreamlineRibbons, PhasesFollowTheGoldenRatio) {
    const auto ribbons = StreamlineRibbons::build(traced({2, 2, 2, 2}));
    EXPECT_EQ(parameters(ribbons, 2),
        (std::vector<float>{0.0F, 0.0F, 0.618033988749895F, 0.618033988749895F, 0.236067977499790F,
            0.236067977499790F, 0.854101966249685F, 0.854101966249685F}));
}

TEST(StreamlineRibbons, PhasesStayBelowOne) {
    constexpr std::uint32_t lines = 1000000;
    const std::vector<Vec4> vertices = {{0, 0, 0, 0}, {1, 0, 0, 0}};
    Indices indices(2 * lines);
    for (std::size_t i = 0; i < indices.size(); ++i)
        indices[i] = i % 2;
    const auto ribbons = StreamlineRibbons::build(joined(vertices, std::move(indices)));
    ASSERT_EQ(ribbons.lineCount, lines);
    float lowest = 1.0F;
    float highest = 0.0F;
    for (std::size_t i = 2; i < ribbons.points.size(); ++i) {
        lowest = std::min(lowest, ribbons.points[i].params.z);
        highest = std::max(highest, ribbons.points[i].params.z);
    }
    // The nearest approaches to a whole number are those of the lines 514 229 and 832 040, which
    // are Fibonacci numbers: 1 / (√5 × line).
    EXPECT_NEAR(lowest, 8.697e-7F, 1e-9F);
    EXPECT_NEAR(1.0F - highest, 5.375e-7F, 3e-8F);
    EXPECT_LT(highest, 1.0F);
}

TEST(StreamlineRibbons, NothingComesOfTooLittle) {
    const auto isEmpty = [](const Streamlines& lines) {
        return StreamlineRibbons::build(lines) == StreamlineRibbons::empty();
    };
    EXPECT_TRUE(isEmpty({}));
    EXPECT_TRUE(isEmpty(joined({{0, 0, 0, 0}, {1, 0, 0, 0}}, {})));
    EXPECT_TRUE(isEmpty(joined({{0, 0, 0, 0}, {1, 0, 0, 0}}, {0})));
    EXPECT_TRUE(isEmpty(joined({}, {0, 1})));
    Streamlines threeFloats;
    threeFloats.interleavedVertices = {1, 2, 3};
    threeFloats.indices = {0, 0};
    EXPECT_TRUE(isEmpty(threeFloats));
}

TEST(StreamlineRibbons, EmptyIsNoPointNoIndexAndNoLine) {
    const auto ribbons = StreamlineRibbons::empty();
    EXPECT_TRUE(ribbons.points.empty());
    EXPECT_TRUE(ribbons.indices.empty());
    EXPECT_EQ(ribbons.lineCount, 0U);
}

TEST(StreamlineRibbons, ALineOfOneVertexDoesNotAppear) {
    const auto ribbons = StreamlineRibbons::build(traced({2, 1, 3, 1, 1}));
    EXPECT_EQ(ribbons.lineCount, 2U);
    EXPECT_EQ(places(ribbons), (std::vector<float>{0, 1, 3, 4, 5}));
}

TEST(StreamlineRibbons, ASegmentBeyondTheVerticesDoesNotEndItsLine) {
    auto lines = traced({3});
    lines.indices = {0, 1, 7, 1, 1, 3, 1, 2};
    const auto ribbons = StreamlineRibbons::build(lines);
    EXPECT_EQ(ribbons.lineCount, 1U);
    EXPECT_EQ(places(ribbons), (std::vector<float>{0, 1, 2}));
}

TEST(StreamlineRibbons, AfterASegmentThatIsLeftOutAnotherStartStartsALine) {
    auto lines = traced({4});
    lines.indices = {0, 1, 1, 4, 2, 3};
    const auto ribbons = StreamlineRibbons::build(lines);
    EXPECT_EQ(ribbons.lineCount, 2U);
    EXPECT_EQ(places(ribbons), (std::vector<float>{0, 1, 2, 3}));
}

TEST(StreamlineRibbons, SegmentsThatAllLieBeyondTheVerticesGiveNothing) {
    auto lines = traced({2});
    lines.indices = {2, 3, 0, 2, 4294967295U, 0};
    EXPECT_EQ(StreamlineRibbons::build(lines), StreamlineRibbons::empty());
}

TEST(StreamlineRibbons, HalfASegmentAtTheEndIsLeftOut) {
    auto lines = traced({3});
    lines.indices = {0, 1, 1};
    EXPECT_EQ(places(StreamlineRibbons::build(lines)), (std::vector<float>{0, 1}));
}

TEST(StreamlineRibbons, ALineFollowsItsSegmentsAndNotTheOrderOfTheVertices) {
    auto lines = traced({4});
    lines.indices = {3, 1, 1, 0, 0, 3};
    const auto ribbons = StreamlineRibbons::build(lines);
    EXPECT_EQ(ribbons.lineCount, 1U);
    EXPECT_EQ(places(ribbons), (std::vector<float>{3, 1, 0, 3}));
    EXPECT_EQ(parameters(ribbons, 0), (std::vector<float>{0, 2, 3, 6}));
}

TEST(StreamlineRibbons, FloatsBehindTheLastWholeVertexAreNoVertex) {
    Streamlines lines;
    lines.interleavedVertices = {0, 0, 0, 0, 1, 0, 0, 0, 9, 9, 9};
    lines.indices = {0, 1, 1, 2};
    EXPECT_EQ(places(StreamlineRibbons::build(lines)), (std::vector<float>{0, 1}));
}

TEST(StreamlineRibbons, PointsThatAreNoNumbersPass) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto ribbons = StreamlineRibbons::build(joined({{0, 0, 0, 1}, {nan, 0, 0, 1}}, {0, 1}));
    EXPECT_EQ(ribbons.points.size(), 2U);
    EXPECT_TRUE(std::isnan(ribbons.points[0].params.y));
}

TEST(StreamlineRibbons, APointIsTwoVectorsInTheVertexBuffer) {
    const auto ribbons = StreamlineRibbons::build(joined({{1, 2, 3, 4}, {1, 2, 5, 6}}, {0, 1}));
    std::array<float, 16> buffer{};
    static_assert(sizeof(buffer) == 2 * sizeof(StreamlineRibbons::Point));
    std::memcpy(buffer.data(), ribbons.points.data(), sizeof(buffer));
    EXPECT_EQ(buffer, (std::array<float, 16>{1, 2, 3, 4, 0, 2, 0, 1, 1, 2, 5, 6, 2, 2, 0, 2}));
}

} // namespace

} // namespace ostrella
