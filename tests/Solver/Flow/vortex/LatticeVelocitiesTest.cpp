#include "Solver/Flow/LatticeVelocities.h"

#include "Models/Cancellation.h"
#include "Solver/Flow/vortex/PlainVortex.h"
#include "Solver/Flow/vortex/TestFlows.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>

namespace ostrella {

namespace {

using test::CancelAt;
using test::cube;

/// A lattice of one point at the origin.
const Lattice origin{1, Vec3(0.0F), Vec3(1.0F)};

/// Six points at distance 1 from the origin, of which so many are at rest on a wall.
VolumeField sixAround(int walls) {
    std::vector<Vec3> velocities(6, Vec3(3.0F, 2.0F, 1.0F));
    for (int i = 0; i < walls; ++i)
        velocities[static_cast<std::size_t>(i)] = Vec3(0.0F, 0.0009F, 0.0F);
    return {
        std::vector<Vec3>{Vec3(-1.0F, 0.0F, 0.0F), Vec3(1.0F, 0.0F, 0.0F), Vec3(0.0F, -1.0F, 0.0F),
            Vec3(0.0F, 1.0F, 0.0F), Vec3(0.0F, 0.0F, -1.0F), Vec3(0.0F, 0.0F, 1.0F)},
        velocities};
}

Vec3 velocityAtOrigin(const VolumeField& volume) {
    const auto sampled =
        LatticeVelocities::sampled(CroppedFlow(volume, cube(Vec3(0.0F), 1.0F)), origin);
    return {sampled.x[0], sampled.y[0], sampled.z[0]};
}

TEST(LatticeVelocities, threeWallPointsOfSixLeaveAValue) {
    for (int walls = 0; walls <= 3; ++walls)
        EXPECT_EQ(velocityAtOrigin(sixAround(walls)), Vec3(3.0F, 2.0F, 1.0F)) << walls;
}

TEST(LatticeVelocities, fourWallPointsOfSixLeaveNone) {
    for (int walls = 4; walls <= 6; ++walls) {
        const Vec3 velocity = velocityAtOrigin(sixAround(walls));
        EXPECT_TRUE(std::isnan(velocity.x) && std::isnan(velocity.y) && std::isnan(velocity.z))
            << walls;
    }
}

TEST(LatticeVelocities, wallPointsOfAFewPointsLeaveNoneOnlyIfAllAre) {
    // Three points in all: three on the wall are no more than 3, but nothing is left to weigh.
    const std::vector<Vec3> positions = {Vec3(1.0F), Vec3(-1.0F), Vec3(0.5F)};
    std::vector<Vec3> velocities(3, Vec3(0.0F));
    EXPECT_TRUE(std::isnan(velocityAtOrigin({positions, velocities}).x));
    velocities[1] = Vec3(4.0F, 0.0F, 0.0F);
    EXPECT_EQ(velocityAtOrigin({positions, velocities}), Vec3(4.0F, 0.0F, 0.0F));
}

TEST(LatticeVelocities, weighByTheInverseSquareOfTheDistance) {
    // At distances 1 and 2: weights 1 and 1/4.
    const VolumeField volume(std::vector<Vec3>{Vec3(1.0F, 0.0F, 0.0F), Vec3(0.0F, 2.0F, 0.0F)},
        std::vector<Vec3>{Vec3(10.0F, 0.0F, 0.0F), Vec3(0.0F, 10.0F, 0.0F)});
    EXPECT_EQ(velocityAtOrigin(volume), Vec3(8.0F, 2.0F, 0.0F));
}

TEST(LatticeVelocities, areThoseOfThePlainSamplingBitByBit) {
    const auto focus = cube(Vec3(0.1F, -0.2F, 0.3F), 0.8F);
    // A ball at rest inside, and points that the crop leaves out.
    const auto volume = test::scattered(Vec3(-3.0F), Vec3(3.5F), 22, [](const Vec3& p) {
        return squaredLength(p) < 0.4F
                   ? Vec3(0.0F)
                   : Vec3(30.0F + p.y, std::sin(3.0F * p.x), std::cos(2.0F * p.z));
    });
    const auto lattice = Lattice::around(focus, 16);
    const auto sampled = LatticeVelocities::sampled(CroppedFlow(volume, focus), lattice);
    const auto plain = plain::Vortex::latticeVelocities(volume, focus, lattice);
    ASSERT_EQ(plain.size(), lattice.count());
    std::size_t holes = 0;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        const Vec3 velocity(sampled.x[i], sampled.y[i], sampled.z[i]);
        holes += std::isnan(velocity.x) ? 1 : 0;
        for (int axis = 0; axis < 3; ++axis) {
            ASSERT_EQ(std::isnan(velocity[axis]), std::isnan(plain[i][axis])) << i;
            if (!std::isnan(velocity[axis])) {
                ASSERT_EQ(std::bit_cast<std::uint32_t>(velocity[axis]),
                    std::bit_cast<std::uint32_t>(plain[i][axis]))
                    << i;
            }
        }
    }
    EXPECT_GT(holes, 10U);
    EXPECT_LT(holes, lattice.count() / 4);
}

TEST(LatticeVelocities, askForCancellationOnceALayer) {
    const auto focus = cube(Vec3(0.0F), 1.0F);
    const CroppedFlow flow(sixAround(0), focus);
    const Lattice lattice{4, Vec3(-1.0F), Vec3(0.5F)};
    CancelAt never;
    LatticeVelocities::sampled(flow, lattice, never.question());
    EXPECT_EQ(never.asked, 4U);
    CancelAt cancel{1};
    EXPECT_THROW(LatticeVelocities::sampled(flow, lattice, cancel.question()), CancellationError);
    EXPECT_EQ(cancel.asked, 1U);
}

} // namespace

} // namespace ostrella
