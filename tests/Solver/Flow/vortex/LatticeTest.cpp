#include "Solver/Flow/Lattice.h"

#include "Solver/Flow/vortex/TestFlows.h"

#include <gtest/gtest.h>

namespace ostrella {

namespace {

TEST(Lattice, reachesFromUpstreamOfTheBodyIntoItsWake) {
    StreamlineFocus focus;
    focus.center = Vec3(1.0F, 2.0F, 3.0F);
    focus.size = Vec3(4.0F, 0.5F, 2.0F);
    focus.upstreamFactor = 0.5F;
    focus.downstreamFactor = 2.0F;
    const auto lattice = Lattice::around(focus, 33);
    EXPECT_EQ(lattice.points, 33U);
    // x from 1 − 2 − 0.5 × 4 to 1 + 2 + 2 × 4; y and z by 2 + 0.5 × 4 to either side.
    EXPECT_EQ(lattice.origin, Vec3(-3.0F, -2.0F, -1.0F));
    EXPECT_EQ(lattice.cellSize, Vec3(14.0F / 32.0F, 0.25F, 0.25F));
    EXPECT_EQ(lattice.position(32, 32, 32), Vec3(11.0F, 6.0F, 7.0F));
}

TEST(Lattice, takesAQuarterOfTheLargestExtentForABodyThinAlongTheStream) {
    StreamlineFocus focus;
    focus.size = Vec3(0.125F, 8.0F, 1.0F);
    focus.upstreamFactor = 1.0F;
    focus.downstreamFactor = 3.0F;
    const auto lattice = Lattice::around(focus, 17);
    EXPECT_EQ(lattice.origin, Vec3(-2.0625F, -12.0F, -12.0F));
    EXPECT_EQ(lattice.cellSize, Vec3(8.125F / 16.0F, 1.5F, 1.5F));
}

TEST(Lattice, hasAtLeast16PointsAlongEachAxis) {
    const auto focus = test::cube(Vec3(0.0F), 1.0F);
    for (const int resolution : {-5, 0, 2, 15, 16})
        EXPECT_EQ(Lattice::around(focus, resolution), Lattice::around(focus, 16));
    EXPECT_EQ(Lattice::around(focus, 16).points, 16U);
    EXPECT_EQ(Lattice::around(focus, 17).points, 17U);
}

TEST(Lattice, numbersItsPointsAlongXFirst) {
    const Lattice lattice{7, Vec3(0.0F), Vec3(1.0F)};
    EXPECT_EQ(lattice.count(), 343U);
    EXPECT_EQ(lattice.index(1, 0, 0), 1U);
    EXPECT_EQ(lattice.index(0, 1, 0), 7U);
    EXPECT_EQ(lattice.index(0, 0, 1), 49U);
    EXPECT_EQ(lattice.index(6, 6, 6), 342U);
}

} // namespace

} // namespace ostrella
