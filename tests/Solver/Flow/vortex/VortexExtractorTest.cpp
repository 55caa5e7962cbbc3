#include "Solver/Flow/VortexExtractor.h"

#include "Models/Cancellation.h"
#include "Solver/Flow/Lattice.h"
#include "Solver/Flow/vortex/PlainVortex.h"
#include "Solver/Flow/vortex/TestFlows.h"
#include "Solver/Flow/vortex/TestSurfaces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

namespace {

using test::CancelAt;
using test::cube;
using test::LambOseen;
using test::scattered;

/// Two vortices behind a ball at rest, in a stream.
VolumeField wake() {
    const LambOseen left{6.0F, 0.35F, 0.0F, Vec3(0.0F, -0.7F, 0.1F)};
    const LambOseen right{-9.0F, 0.3F, 0.0F, Vec3(0.0F, 0.8F, -0.2F)};
    return scattered(Vec3(-1.5F, -2.0F, -2.0F), Vec3(3.0F, 2.0F, 2.0F), 24, [=](const Vec3& p) {
        if (squaredLength(p) < 0.25F)
            return Vec3(0.0F);
        return Vec3(30.0F + 0.1F * p.z, 0.0F, 0.0F) + left.velocity(p) + right.velocity(p);
    });
}

StreamlineFocus wakeFocus() {
    return cube(Vec3(0.0F), 1.0F);
}

std::vector<std::uint32_t> bits(std::span<const Vec3> points) {
    std::vector<std::uint32_t> result;
    for (const Vec3& p : points) {
        for (int axis = 0; axis < 3; ++axis)
            result.push_back(std::bit_cast<std::uint32_t>(p[axis]));
    }
    return result;
}

void expectSameBytes(const std::optional<IsoSurface>& a, const std::optional<IsoSurface>& b) {
    ASSERT_TRUE(a);
    ASSERT_TRUE(b);
    EXPECT_EQ(bits(a->positions.span()), bits(b->positions.span()));
    EXPECT_EQ(bits(a->normals.span()), bits(b->normals.span()));
    EXPECT_EQ(a->indices, b->indices);
    EXPECT_EQ(a->boundingMin, b->boundingMin);
    EXPECT_EQ(a->boundingMax, b->boundingMax);
    EXPECT_EQ(a->isoValue, b->isoValue);
}

TEST(VortexExtractor, givesTheSameBytesAsThePlainOne) {
    const auto volume = wake();
    for (const auto& [resolution, percentile] :
        {std::pair(32, 99.5F), std::pair(32, 90.0F), std::pair(25, 60.0F), std::pair(16, 97.0F)}) {
        const auto lattice = Lattice::around(wakeFocus(), resolution);
        const auto plain = plain::Vortex::extract(volume, wakeFocus(), lattice, percentile);
        ASSERT_GT(plain->indices.size(), 3U * 8U);
        expectSameBytes(
            VortexExtractor::extract(volume, wakeFocus(), resolution, percentile), plain);
    }
}

TEST(VortexExtractor, givesTheSameBytesAsThePlainOneOfAllPointsIfTheCropIsEmpty) {
    const auto volume = wake();
    // The crop ends at 0.7 of the lines' path, 15 m behind the body, the lattice at 20.5 m.
    auto focus = wakeFocus();
    focus.center.x = -18.0F;
    focus.downstreamFactor = 20.0F;
    for (const Vec3& p : volume.positions)
        ASSERT_GT(p.x - focus.center.x, focus.cropHalfWidth());
    const auto lattice = Lattice::around(focus, 40);
    const auto plain = plain::Vortex::extract(volume, focus, lattice, 70.0F);
    expectSameBytes(VortexExtractor::extract(volume, focus, 40, 70.0F), plain);
}

TEST(VortexExtractor, findsTheTubeOfALambOseenVortexOnRegularPoints) {
    // The cloud is the lattice itself, so that sampling gives the formula's velocities.
    const LambOseen vortex{20.0F, 0.5F, 30.0F, Vec3(0.0F, 0.1F, -0.05F)};
    const auto focus = cube(Vec3(0.0F), 1.0F);
    const auto lattice = Lattice::around(focus, 48);
    std::vector<Vec3> positions;
    std::vector<Vec3> velocities;
    for (std::size_t at = 0; at < lattice.count(); ++at) {
        positions.push_back(lattice.position(at % 48, at / 48 % 48, at / 48 / 48));
        velocities.push_back(vortex.velocity(positions.back()));
    }
    const auto surface = VortexExtractor::extract({positions, velocities}, focus, 48, 70.0F);
    ASSERT_TRUE(surface);
    EXPECT_EQ(test::pieces(surface->indices.span()), 1U);
    // Differences and the mean of 27 are off by a few per cent of the peak at 8 spacings to the
    // core radius.
    const double peak = vortex.q(0.0);
    EXPECT_GT(surface->isoValue, 0.05 * peak);
    for (const Vec3& p : surface->positions)
        EXPECT_NEAR(vortex.q(p), surface->isoValue, 0.05 * peak);
    // The tube runs through all of the lattice but its outer layer.
    EXPECT_FLOAT_EQ(surface->boundingMin.x, lattice.position(1, 0, 0).x);
    EXPECT_FLOAT_EQ(surface->boundingMax.x, lattice.position(46, 0, 0).x);
    for (std::size_t i = 0; i < surface->positions.size(); ++i) {
        const Vec3 away = (surface->positions[i] - vortex.center) * Vec3(0.0F, 1.0F, 1.0F);
        EXPECT_GT(dot(surface->normals[i], away), 0.0F);
    }
}

TEST(VortexExtractor, findsTheCoreOfALambOseenVortexInAScatteredCloud) {
    const LambOseen vortex{20.0F, 0.6F, 30.0F, Vec3(0.0F)};
    const auto volume = scattered(Vec3(-1.7F, -1.7F, -1.7F), Vec3(3.2F, 1.7F, 1.7F), 40,
        [&](const Vec3& p) { return vortex.velocity(p); });
    const auto surface = VortexExtractor::extract(volume, cube(Vec3(0.0F), 1.0F), 32, 80.0F);
    ASSERT_TRUE(surface);
    // Weights over six neighbours make a rough gradient. Still the surface lies in the core, where
    // rotation outweighs strain, and the level is of the formula's size.
    for (const Vec3& p : surface->positions)
        EXPECT_LT(std::hypot(p.y, p.z), 1.12F * vortex.coreRadius);
    EXPECT_GT(surface->isoValue, 0.1 * vortex.q(0.0));
    EXPECT_LT(surface->isoValue, 2.0 * vortex.q(0.0));
}

TEST(VortexExtractor, normalsAreOfUnitLengthAndTheBoxIsThatOfTheVertices) {
    const auto surface = VortexExtractor::extract(wake(), wakeFocus(), 32, 80.0F);
    ASSERT_TRUE(surface);
    ASSERT_EQ(surface->normals.size(), surface->positions.size());
    Vec3 low = surface->positions[0];
    Vec3 high = low;
    for (std::size_t i = 0; i < surface->positions.size(); ++i) {
        EXPECT_NEAR(squaredLength(surface->normals[i]), 1.0F, 1e-6F);
        for (int axis = 0; axis < 3; ++axis) {
            low[axis] = std::min(low[axis], surface->positions[i][axis]);
            high[axis] = std::max(high[axis], surface->positions[i][axis]);
        }
    }
    EXPECT_EQ(surface->boundingMin, low);
    EXPECT_EQ(surface->boundingMax, high);
    for (const std::uint32_t index : surface->indices)
        EXPECT_LT(index, surface->positions.size());
}

TEST(VortexExtractor, aHigherPercentileGivesAHigherLevel) {
    const auto volume = wake();
    float last = 0.0F;
    for (const float percentile : {10.0F, 50.0F, 90.0F, 99.0F}) {
        const auto surface = VortexExtractor::extract(volume, wakeFocus(), 24, percentile);
        ASSERT_TRUE(surface);
        EXPECT_GT(surface->isoValue, last);
        last = surface->isoValue;
    }
}

TEST(VortexExtractor, aResolutionBelow16Counts16) {
    const auto volume = wake();
    const auto sixteen = VortexExtractor::extract(volume, wakeFocus(), 16, 80.0F);
    for (const int resolution : {-1, 0, 3, 15})
        expectSameBytes(VortexExtractor::extract(volume, wakeFocus(), resolution, 80.0F), sixteen);
    EXPECT_NE(
        VortexExtractor::extract(volume, wakeFocus(), 17, 80.0F)->positions, sixteen->positions);
}

TEST(VortexExtractor, aUniformStreamAlongAnAxisGivesNothing) {
    for (const Vec3& stream :
        {Vec3(50.0F, 0.0F, 0.0F), Vec3(0.0F, -3.0F, 0.0F), Vec3(0.0F, 0.0F, 0.7F)}) {
        const auto volume =
            scattered(Vec3(-2.0F), Vec3(3.0F), 15, [&](const Vec3&) { return stream; });
        CancelAt counter;
        EXPECT_FALSE(VortexExtractor::extract(volume, wakeFocus(), 20, 99.5F, counter.question()));
        // Sampling, Q and the filter ran; there was no level to look for a surface with.
        EXPECT_EQ(counter.asked, 20U + 18U + 18U);
    }
}

TEST(VortexExtractor, aLevelThatNothingLiesBelowGivesNothing) {
    // Q is positive throughout a solid rotation, and its least value is the level.
    const auto volume =
        scattered(Vec3(-2.0F), Vec3(3.0F), 25, [](const Vec3& p) { return Vec3(9.0F, -p.z, p.y); });
    CancelAt counter;
    EXPECT_FALSE(VortexExtractor::extract(volume, wakeFocus(), 16, 0.0F, counter.question()));
    EXPECT_EQ(counter.asked, 16U + 14U + 14U + 15U);
}

TEST(VortexExtractor, aFluidAtRestGivesNothing) {
    const auto volume =
        scattered(Vec3(-2.0F), Vec3(3.0F), 12, [](const Vec3&) { return Vec3(0.0F); });
    EXPECT_FALSE(VortexExtractor::extract(volume, wakeFocus(), 20, 99.5F));
}

TEST(VortexExtractor, givesNothingWithoutALookWhereThereIsNothingToLookAt) {
    CancelAt counter;
    const auto volume = wake();
    EXPECT_FALSE(VortexExtractor::extract(volume, std::nullopt, 64, 99.5F, counter.question()));
    auto flat = wakeFocus();
    flat.isVolumetric = false;
    EXPECT_FALSE(VortexExtractor::extract(volume, flat, 64, 99.5F, counter.question()));
    EXPECT_FALSE(VortexExtractor::extract({}, wakeFocus(), 64, 99.5F, counter.question()));
    // A search would end the process for want of velocities.
    VolumeField broken = volume;
    broken.velocity = {};
    EXPECT_FALSE(VortexExtractor::extract(broken, flat, 64, 99.5F, counter.question()));
    EXPECT_EQ(counter.asked, 0U);
    EXPECT_DEATH(VortexExtractor::extract(broken, wakeFocus(), 16, 99.5F), "fewer velocities");
}

TEST(VortexExtractor, canBeCancelledAtEachLayerOfEachStage) {
    const auto volume = wake();
    CancelAt never;
    ASSERT_TRUE(VortexExtractor::extract(volume, wakeFocus(), 16, 80.0F, never.question()));
    // Sampling, Q, the filter, marching cubes, and once ahead of the weld.
    EXPECT_EQ(never.asked, 16U + 14U + 14U + 15U + 1U);
    for (std::size_t turn = 1; turn <= never.asked; ++turn) {
        CancelAt cancel{turn};
        EXPECT_THROW(VortexExtractor::extract(volume, wakeFocus(), 16, 80.0F, cancel.question()),
            CancellationError);
        EXPECT_EQ(cancel.asked, turn);
    }
}

TEST(VortexExtractor, endsTheProcessAtASurfaceTooFarAwayToBeWelded) {
    const LambOseen vortex{0.001F, 0.005F, 1.0F, Vec3(1000.0F, 0.0F, 0.0F)};
    const Vec3 reach(0.04F);
    const auto volume = scattered(vortex.center - reach, vortex.center + reach, 20,
        [&](const Vec3& p) { return vortex.velocity(p); });
    EXPECT_DEATH(VortexExtractor::extract(volume, cube(vortex.center, 0.01F), 16, 80.0F),
        "too far from the origin to be welded");
}

} // namespace

} // namespace ostrella
