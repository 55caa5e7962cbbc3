#include "Solver/Flow/CroppedFlow.h"

#include "Solver/Flow/tracing/PlainStreamlines.h"
#include "Solver/Flow/tracing/TestClouds.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

using namespace ostrella;
using ostrella::testing::cube;
using ostrella::testing::Dice;
using ostrella::testing::field;

namespace {

constexpr Vec3 alongX(1.0F, 0.0F, 0.0F);
constexpr Vec3 alongY(0.0F, 1.0F, 0.0F);
constexpr Vec3 wall(0.0F);

/// A body of a metre about the origin whose lines end at its trailing face: the crop reaches 2 m.
const StreamlineFocus body{Vec3(0.0F), Vec3(1.0F), true, 0.0F, 0.0F};

CroppedFlow flow(std::vector<Vec3> points, std::vector<Vec3> velocities) {
    return {VolumeField(std::move(points), std::move(velocities)), body};
}

std::array<std::uint32_t, 3> bits(const Vec3& v) {
    return {std::bit_cast<std::uint32_t>(v.x), std::bit_cast<std::uint32_t>(v.y),
        std::bit_cast<std::uint32_t>(v.z)};
}

TEST(CroppedFlow, keepsThePointsOfTheCubeWithItsFaces) {
    const auto cropped = flow({{2.0F, -2.0F, 2.0F}, {2.1F, 0.0F, 0.0F}, {0.0F, 0.0F, 0.0F},
                                  {0.0F, -2.1F, 0.0F}, {0.0F, 0.0F, 2.1F}, {-2.0F, 0.0F, 0.0F}},
        std::vector<Vec3>(6, alongX));
    EXPECT_EQ(cropped.grid().cellPoints().size(), 3U);
    EXPECT_EQ(cropped.grid().boundingMin(), Vec3(-2.0F, -2.0F, 0.0F));
}

TEST(CroppedFlow, keepsAllWhereTheCubeHoldsNone) {
    const auto cropped = flow({{9.0F, 0.0F, 0.0F}, {8.0F, 0.0F, 0.0F}}, {alongX, alongY});
    EXPECT_EQ(cropped.grid().cellPoints().size(), 2U);
    EXPECT_EQ(cropped.grid().boundingMin(), Vec3(8.0F, 0.0F, 0.0F));
}

TEST(CroppedFlow, takesNoNoticeOfVelocitiesBehindTheLastPoint) {
    VolumeField volume({{0.0F, 0.0F, 0.0F}}, {alongX});
    volume.velocity = {alongX, alongY};
    EXPECT_EQ(CroppedFlow(volume, body).velocityAt(Vec3(0.5F)), alongX);
    volume.positions = {{9.0F, 0.0F, 0.0F}};
    EXPECT_EQ(CroppedFlow(volume, body).velocityAt(Vec3(0.5F)), alongX);
}

TEST(CroppedFlow, hasAboutOnePointInACellAndAtLeastEightCellsAnAxis) {
    const auto cells = [](int count) {
        const CroppedFlow cropped(
            field(cube(count, 1.0F), [](const Vec3&) { return alongX; }), body);
        return cropped.grid().cellsX();
    };
    EXPECT_EQ(cells(8), 8);
    EXPECT_EQ(cells(728), 8);
    EXPECT_EQ(cells(729), 9);
    EXPECT_EQ(cells(3374), 14);
    EXPECT_EQ(cells(3375), 15);
}

TEST(CroppedFlow, weighsByTheInverseSquareOfTheDistance) {
    const auto two = flow({{-1.0F, 0.0F, 0.0F}, {0.0F, 2.0F, 0.0F}}, {alongX, alongY});
    // Weights 1 and 1/4.
    EXPECT_EQ(two.velocityAt(Vec3(0.0F)), Vec3(0.8F, 0.2F, 0.0F));
    EXPECT_EQ(two.latticeVelocityAt(Vec3(0.0F)), Vec3(0.8F, 0.2F, 0.0F));
}

TEST(CroppedFlow, boundsTheWeightOfAPointNextToThePosition) {
    const auto two = flow({{0.0F, 0.0F, 0.0F}, {1.0F, 0.0F, 0.0F}}, {alongX, alongY});
    const float weight = 1.0F / 1e-9F;
    EXPECT_EQ(
        two.velocityAt(Vec3(0.0F)), Vec3(weight / (weight + 1.0F), 1.0F / (weight + 1.0F), 0.0F));
}

TEST(CroppedFlow, letsTheWallHaveNoSay) {
    const Vec3 slow(0.0009F, 0.0F, 0.0F);
    const Vec3 fast(0.0F, 0.0011F, 0.0F);
    const auto near = flow({{0.1F, 0.0F, 0.0F}, {1.0F, 0.0F, 0.0F}}, {slow, fast});
    EXPECT_EQ(near.velocityAt(Vec3(0.0F)), fast);
}

TEST(CroppedFlow, standsStillWhereAllAreWall) {
    const auto still = flow({{1.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F}}, {wall, wall});
    EXPECT_EQ(still.velocityAt(Vec3(0.0F)), Vec3(0.0F));
}

/// Eight points at growing distances from the origin, the first `walls` of them on the wall.
CroppedFlow besideWall(std::size_t walls) {
    std::vector<Vec3> points;
    std::vector<Vec3> velocities;
    for (std::size_t i = 0; i < 8; ++i) {
        points.emplace_back(0.1F + 0.1F * static_cast<float>(i), 0.0F, 0.0F);
        velocities.push_back(i < walls ? wall : alongX);
    }
    return flow(points, velocities);
}

TEST(CroppedFlow, onALatticeIsNoNumberWhereMoreThanThreeOfSixAreWall) {
    EXPECT_EQ(besideWall(3).latticeVelocityAt(Vec3(0.0F)), alongX);
    for (const std::size_t walls : {4U, 5U, 6U, 8U}) {
        const Vec3 inside = besideWall(walls).latticeVelocityAt(Vec3(0.0F));
        EXPECT_TRUE(std::isnan(inside.x) && std::isnan(inside.y) && std::isnan(inside.z)) << walls;
    }
}

TEST(CroppedFlow, alongALineStandsStillOnlyWhereAllEightAreWall) {
    EXPECT_EQ(besideWall(7).velocityAt(Vec3(0.0F)), alongX);
    EXPECT_EQ(besideWall(8).velocityAt(Vec3(0.0F)), Vec3(0.0F));
}

TEST(CroppedFlow, onALatticeIsNoNumberWhereFewPointsAreAllWall) {
    const auto three =
        flow({{1.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F}, {0.0F, 0.0F, 1.0F}}, {wall, wall, wall});
    EXPECT_TRUE(std::isnan(three.latticeVelocityAt(Vec3(0.0F)).y));
}

/// A turning flow around a body without flow, in clumps.
VolumeField turningFlow() {
    auto points = cube(4000, 1.5F);
    const auto near = cube(3000, 0.6F, 9);
    points.insert(points.end(), near.begin(), near.end());
    return field(points, [](const Vec3& p) {
        return squaredLength(p) < 0.16F ? wall : Vec3(2.0F - p.y, p.x + 0.3F * p.z, p.y * p.z);
    });
}

TEST(CroppedFlow, isTheOneWrittenPlainlyBitByBit) {
    const auto volume = turningFlow();
    const CroppedFlow fast(volume, body);
    const plain::Flow slow(volume, body);
    Dice dice(2);
    for (int i = 0; i < 3000; ++i) {
        const Vec3 at = dice.inCube(-1.7F, 1.7F);
        ASSERT_EQ(bits(fast.velocityAt(at)), bits(slow.velocityAt(at)));
        const Vec3 a = fast.latticeVelocityAt(at);
        const Vec3 b = slow.latticeVelocityAt(at);
        ASSERT_TRUE(bits(a) == bits(b) || (std::isnan(a.x) && std::isnan(b.x)));
    }
}

TEST(CroppedFlow, givesAProbeTheSameBits) {
    const CroppedFlow cropped(turningFlow(), body);
    CroppedFlow::Probe probe(cropped);
    Dice dice(4);
    Vec3 at(0.0F);
    for (int i = 0; i < 20000; ++i) {
        at = i % 200 == 0 ? dice.inCube(-1.7F, 1.7F) : at + dice.inCube(-0.02F, 0.02F);
        ASSERT_EQ(bits(probe.velocityAt(at)), bits(cropped.velocityAt(at)));
        ASSERT_EQ(bits(probe.latticeVelocityAt(at)), bits(cropped.latticeVelocityAt(at)));
    }
}

TEST(CroppedFlowDeathTest, endsTheProcessWithoutPointsOrVelocities) {
    EXPECT_DEATH(CroppedFlow(VolumeField(), body), "without points");
    VolumeField volume({{0.0F, 0.0F, 0.0F}, {1.0F, 0.0F, 0.0F}}, {alongX, alongX});
    volume.velocity = {alongX};
    EXPECT_DEATH(CroppedFlow(volume, body), "fewer velocities");
}

} // namespace
