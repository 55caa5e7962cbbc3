#include "Solver/Flow/QCriterion.h"

#include "Models/Cancellation.h"
#include "Solver/Flow/vortex/PlainVortex.h"
#include "Solver/Flow/vortex/TestFlows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace ostrella {

namespace {

using test::CancelAt;
using test::LambOseen;
using test::onLattice;

const float nan = std::numeric_limits<float>::quiet_NaN();

const Lattice small{5, Vec3(-1.0F, -2.0F, -4.0F), Vec3(0.5F, 1.0F, 2.0F)};

std::vector<float> qOf(const Lattice& lattice, const test::Flow& flow) {
    return qCriterion(onLattice(lattice, flow), lattice);
}

bool isInner(const Lattice& lattice, std::size_t i, std::size_t j, std::size_t k) {
    return std::min({i, j, k}) >= 1 && std::max({i, j, k}) + 1 < lattice.points;
}

/// `value` on all inner points, NaN on the outer layer.
void expectInside(const std::vector<float>& q, const Lattice& lattice, float value) {
    for (std::size_t k = 0; k < lattice.points; ++k) {
        for (std::size_t j = 0; j < lattice.points; ++j) {
            for (std::size_t i = 0; i < lattice.points; ++i) {
                const float at = q[lattice.index(i, j, k)];
                if (isInner(lattice, i, j, k)) {
                    EXPECT_EQ(at, value);
                } else {
                    EXPECT_TRUE(std::isnan(at));
                }
            }
        }
    }
}

/// The largest difference from the formula over the inner points, as a share of the peak.
double errorOf(const LambOseen& vortex, std::size_t points, float extent) {
    const float spacing = 2.0F * extent / static_cast<float>(points - 1);
    const Lattice lattice{points, Vec3(-extent), Vec3(spacing)};
    const auto q = qOf(lattice, [&](const Vec3& p) { return vortex.velocity(p); });
    double worst = 0;
    for (std::size_t k = 1; k + 1 < points; ++k) {
        for (std::size_t j = 1; j + 1 < points; ++j) {
            for (std::size_t i = 1; i + 1 < points; ++i) {
                const double exact = vortex.q(lattice.position(i, j, k));
                worst = std::max(worst, std::abs(q[lattice.index(i, j, k)] - exact));
            }
        }
    }
    return worst / vortex.q(0.0);
}

TEST(QCriterion, isTheSquareOfTheTurnInASolidRotation) {
    // At 3 rad/s about x: Ω has two entries of 3, S none.
    expectInside(
        qOf(small, [](const Vec3& p) { return Vec3(7.0F, -3.0F * p.z, 3.0F * p.y); }), small, 9.0F);
    expectInside(
        qOf(small, [](const Vec3& p) { return Vec3(2.0F * p.z, 1.0F, -2.0F * p.x); }), small, 4.0F);
    expectInside(qOf(small, [](const Vec3& p) { return Vec3(-p.y, p.x, 5.0F); }), small, 1.0F);
}

TEST(QCriterion, isZeroInAShear) {
    expectInside(
        qOf(small, [](const Vec3& p) { return Vec3(4.0F * p.y, 0.0F, 0.0F); }), small, 0.0F);
}

TEST(QCriterion, isNegativeInAStagnationFlow) {
    // ‖S‖² = 2² + 1² + 1² without rotation.
    expectInside(
        qOf(small, [](const Vec3& p) { return Vec3(-2.0F * p.x, p.y, p.z); }), small, -3.0F);
}

TEST(QCriterion, isNowherePositiveInAUniformFlow) {
    expectInside(qOf(small, [](const Vec3&) { return Vec3(50.0F, 3.0F, 1.0F); }), small, 0.0F);
}

TEST(QCriterion, followsTheFormulaOfALambOseenVortex) {
    // 16 spacings to the core radius: central differences are off by less than 1.5 % of the peak.
    const LambOseen vortex{12.0F, 0.5F, 20.0F, Vec3(0.0F)};
    EXPECT_LT(errorOf(vortex, 65, 1.0F), 0.015);
}

TEST(QCriterion, convergesWithTheSquareOfTheSpacing) {
    const LambOseen vortex{12.0F, 0.5F, 0.0F, Vec3(0.0F)};
    const double coarse = errorOf(vortex, 17, 1.0F);
    const double fine = errorOf(vortex, 33, 1.0F);
    EXPECT_NEAR(coarse / fine, 4.0, 0.6);
}

TEST(QCriterion, stepsOverTheNeighboursOfAHole) {
    const Lattice lattice{7, Vec3(-3.0F), Vec3(1.0F)};
    auto velocities = onLattice(lattice, [](const Vec3& p) { return Vec3(0.0F, -p.z, p.y); });
    const std::size_t hole = lattice.index(3, 3, 3);
    velocities.x[hole] = velocities.y[hole] = velocities.z[hole] = nan;
    const auto q = qCriterion(velocities, lattice);
    EXPECT_EQ(q[hole], 1.0F);
    for (const std::size_t step : {std::size_t{1}, std::size_t{7}, std::size_t{49}}) {
        EXPECT_TRUE(std::isnan(q[hole + step]));
        EXPECT_TRUE(std::isnan(q[hole - step]));
    }
    EXPECT_EQ(q[lattice.index(2, 2, 3)], 1.0F);
    EXPECT_EQ(q[lattice.index(5, 3, 3)], 1.0F);
}

TEST(QCriterion, judgesAHoleByItsXComponent) {
    const Lattice lattice{3, Vec3(-1.0F), Vec3(1.0F)};
    for (const float value : {nan, std::numeric_limits<float>::infinity()}) {
        auto velocities = onLattice(lattice, [](const Vec3& p) { return Vec3(0.0F, -p.z, p.y); });
        velocities.x[lattice.index(1, 1, 0)] = value;
        EXPECT_TRUE(std::isnan(qCriterion(velocities, lattice)[lattice.index(1, 1, 1)]));
    }
}

TEST(QCriterion, givesTheSameBytesAsThePlainOne) {
    const Lattice lattice{23, Vec3(-0.7F, -1.1F, -0.3F), Vec3(0.061F, 0.097F, 0.029F)};
    auto velocities = onLattice(lattice, [](const Vec3& p) {
        return Vec3(40.0F + std::sin(3.0F * p.y) * p.z, std::cos(5.0F * p.x + p.z),
            10.0F * std::sin(4.0F * p.x * p.y));
    });
    for (std::size_t i = 0; i < lattice.count(); i += 61)
        velocities.x[i] = velocities.y[i] = velocities.z[i] = nan;
    std::vector<Vec3> together;
    for (std::size_t i = 0; i < lattice.count(); ++i)
        together.emplace_back(velocities.x[i], velocities.y[i], velocities.z[i]);
    const auto q = qCriterion(velocities, lattice);
    const auto plain = plain::Vortex::q(together, lattice);
    ASSERT_EQ(q.size(), plain.size());
    for (std::size_t i = 0; i < q.size(); ++i) {
        EXPECT_EQ(std::isnan(q[i]), std::isnan(plain[i])) << i;
        if (!std::isnan(q[i])) {
            EXPECT_EQ(std::bit_cast<std::uint32_t>(q[i]), std::bit_cast<std::uint32_t>(plain[i]))
                << i;
        }
    }
}

TEST(QCriterion, asksForCancellationOnceAnInnerLayer) {
    const auto velocities = onLattice(small, [](const Vec3& p) { return p; });
    CancelAt never;
    qCriterion(velocities, small, never.question());
    EXPECT_EQ(never.asked, 3U);
    CancelAt cancel{3};
    EXPECT_THROW(qCriterion(velocities, small, cancel.question()), CancellationError);
    EXPECT_EQ(cancel.asked, 3U);
}

} // namespace

} // namespace ostrella
