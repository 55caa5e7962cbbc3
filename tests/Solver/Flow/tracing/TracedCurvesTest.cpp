// Lines through flows whose curves are known, and beside the generator written plainly.

#include "Solver/Flow/StreamlineGenerator.h"
#include "Solver/Flow/tracing/PlainStreamlines.h"
#include "Solver/Flow/tracing/TestClouds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <vector>

using namespace ostrella;
using ostrella::testing::cube;
using ostrella::testing::Dice;
using ostrella::testing::field;
using ostrella::testing::lattice;

namespace {

/// The vertices of each line, x, y, z and speed. A line begins where no segment leads to.
std::vector<std::vector<Vec4>> linesOf(const Streamlines& lines) {
    std::vector<std::vector<Vec4>> result;
    std::vector<bool> continues(lines.vertexCount);
    for (std::size_t i = 1; i < lines.indexCount; i += 2)
        continues[lines.indices[i]] = true;
    for (std::size_t i = 0; i < lines.vertexCount; ++i) {
        if (!continues[i])
            result.emplace_back();
        const float* v = &lines.interleavedVertices[4 * i];
        result.back().emplace_back(v[0], v[1], v[2], v[3]);
    }
    return result;
}

/// The greatest difference between what was found and what should be.
struct Worst {
    float error = 0.0F;
    void see(float found, float exact) { error = std::max(error, std::abs(found - exact)); }
};

/// From a lattice's points to the next, m. Where the shells end, an interpolated velocity is off by
/// what it changes by over that distance or a little more: half as much again is allowed.
constexpr float spacing = 0.02F;

/// The points of a lattice of 201 × 201 in the plane z = 0 over ±2 m.
std::vector<Vec3> plane() {
    std::vector<Vec3> points;
    for (int j = -100; j <= 100; ++j)
        for (int i = -100; i <= 100; ++i)
            points.emplace_back(
                spacing * static_cast<float>(i), spacing * static_cast<float>(j), 0.0F);
    return points;
}

TEST(TracedCurves, ofASolidRotationAreCirclesAtOneSpeed) {
    // One turn a second about (−1, 0), on whose column the seeds stand: y = −0.75 … 0.75.
    const float omega = 2.0F * std::numbers::pi_v<float>;
    const auto volume = field(
        plane(), [&](const Vec3& p) { return Vec3(-omega * p.y, omega * (p.x + 1.0F), 0.0F); });
    const StreamlineFocus focus{Vec3(0.0F), {1.0F, 1.0F, 0.0F}, false, 0.5F, 1.0F};
    // The path is 2.5 m, so at 2.5 m/s the 1000 steps take a second.
    const auto lines = linesOf(StreamlineGenerator::generate(volume, 2.5F, focus, 6, 1000));
    ASSERT_EQ(lines.size(), 6U);
    for (const auto& line : lines) {
        ASSERT_EQ(line.size(), 1000U);
        const float radius = std::abs(line[0].y);
        Worst offCircle;
        Worst offSpeed;
        for (const Vec4& v : line) {
            offCircle.see(std::hypot(v.x + 1.0F, v.y), radius);
            offSpeed.see(v.w, omega * radius);
        }
        EXPECT_LT(offCircle.error, 0.004F);
        EXPECT_LT(offSpeed.error, 1.5F * omega * spacing);
        // A thousandth of a turn short of its beginning.
        EXPECT_NEAR(line.back().x, -1.0F, 0.02F);
        EXPECT_NEAR(line.back().y, line[0].y, 0.004F);
    }
}

TEST(TracedCurves, towardsAStagnationPointAreHyperbolas) {
    // v = (x + 2, −y) with its stagnation point at (−2, 0), and seeds at x = −1.
    const auto volume = field(plane(), [](const Vec3& p) { return Vec3(p.x + 2.0F, -p.y, 0.0F); });
    const StreamlineFocus focus{Vec3(0.0F), {1.0F, 1.0F, 0.0F}, false, 0.5F, 1.0F};
    const auto lines = linesOf(StreamlineGenerator::generate(volume, 1.0F, focus, 8, 400));
    ASSERT_EQ(lines.size(), 8U);
    for (const auto& line : lines) {
        const float constant = line[0].y; // at a distance of 1 from the point
        // x + 2 = exp(t): the limit at 1.5 comes after ln 3.5 s, at 2.5 s for 400 steps.
        EXPECT_NEAR(static_cast<float>(line.size()), 400.0F / 2.5F * std::log(3.5F), 2.0F);
        Worst offHyperbola;
        Worst offSpeed;
        for (const Vec4& v : line) {
            offHyperbola.see((v.x + 2.0F) * v.y, constant);
            offSpeed.see(v.w, std::hypot(v.x + 2.0F, v.y));
        }
        EXPECT_LT(offHyperbola.error, 0.01F);
        EXPECT_LT(offSpeed.error, 1.5F * spacing);
    }
}

TEST(TracedCurves, ofAHelixKeepTheirDistanceFromItsAxis) {
    // 1 m/s along x and half a turn a second about it, on a lattice 5 cm apart.
    const float omega = std::numbers::pi_v<float>;
    const auto volume = field(lattice(Vec3(-1.5F), Vec3(1.5F), 61),
        [&](const Vec3& p) { return Vec3(1.0F, -omega * p.z, omega * p.y); });
    const StreamlineFocus focus{Vec3(0.0F), Vec3(1.0F), true, 0.0F, 0.75F};
    const auto lines = linesOf(StreamlineGenerator::generate(volume, 1.0F, focus, 9, 200));
    ASSERT_EQ(lines.size(), 9U);
    for (const auto& line : lines) {
        ASSERT_EQ(line.size(), 200U);
        const float radius = std::hypot(line[0].y, line[0].z);
        const float phase = std::atan2(line[0].z, line[0].y);
        Worst offHelix;
        for (const Vec4& v : line) {
            const float angle = phase + omega * (v.x + 0.5F);
            offHelix.see(v.y, radius * std::cos(angle));
            offHelix.see(v.z, radius * std::sin(angle));
        }
        EXPECT_LT(offHelix.error, 0.02F);
    }
}

template <class T>
bool sameBytes(const SharedArray<T>& a, const SharedArray<T>& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

void expectPlain(const VolumeField& volume, float freeStreamVelocity,
    const std::optional<StreamlineFocus>& focus, std::optional<int> seeds, int steps) {
    const auto fast =
        StreamlineGenerator::generate(volume, freeStreamVelocity, focus, seeds, steps);
    const auto slow = plain::streamlines(volume, freeStreamVelocity, focus, seeds, steps);
    EXPECT_TRUE(sameBytes(fast.interleavedVertices, slow.interleavedVertices));
    EXPECT_TRUE(sameBytes(fast.indices, slow.indices));
    EXPECT_EQ(fast.vertexCount, slow.vertexCount);
    EXPECT_EQ(fast.indexCount, slow.indexCount);
    EXPECT_EQ(fast.magnitudeMin, slow.magnitudeMin);
    EXPECT_EQ(fast.magnitudeMax, slow.magnitudeMax);
    EXPECT_EQ(fast.seedCount, slow.seedCount);
    EXPECT_EQ(fast.boundingMin, slow.boundingMin);
    EXPECT_EQ(fast.boundingMax, slow.boundingMax);
    EXPECT_GT(fast.vertexCount, 0U);
}

/// A stream around a ball of half a metre with a wake that swirls, its points crowded near the
/// ball.
VolumeField aroundABall(const Vec3& centre, float flatness) {
    auto points = cube(6000, 3.0F);
    Dice dice(21);
    for (int i = 0; i < 9000; ++i) {
        const Vec3 p = dice.inCube(-1.0F, 1.0F);
        points.push_back(centre + p * (0.5F + 0.6F * dice.unit()));
    }
    for (Vec3& p : points)
        p.z *= flatness;
    return field(points, [&](const Vec3& point) {
        const Vec3 p = point - centre;
        const float r2 = squaredLength(p);
        if (r2 < 0.25F)
            return Vec3(0.0F);
        const float swirl = p.x > 0.0F ? 8.0F / (1.0F + r2) : 0.0F;
        return Vec3(50.0F - 10.0F / r2, 6.0F * p.y / r2 - swirl * p.z, swirl * p.y);
    });
}

TEST(TracedCurves, areThoseOfTheGeneratorWrittenPlainly) {
    const auto volume = aroundABall(Vec3(0.0F), 1.0F);
    const auto ball = StreamlineFocus::around(Vec3(-0.5F), Vec3(0.5F), 0.5F, 2.0F);
    expectPlain(volume, 50.0F, ball, 100, 120);
    expectPlain(volume, 50.0F, ball, {}, 30);
    expectPlain(volume, 0.0F, ball, 9, 40);
    expectPlain(volume, 500.0F, ball, 16, 3);
    const auto elsewhere = StreamlineFocus::around(Vec3(40.0F), Vec3(41.0F), 0.5F, 2.0F);
    expectPlain(volume, 50.0F, elsewhere, 16, 20);
}

TEST(TracedCurves, inAFlatFlowAreThoseOfTheGeneratorWrittenPlainly) {
    const auto volume = aroundABall(Vec3(0.0F), 0.0F);
    const auto disc = StreamlineFocus::around({-0.5F, -0.5F, 0.0F}, {0.5F, 0.5F, 0.0F}, 0.5F, 2.0F);
    expectPlain(volume, 50.0F, disc, 60, 200);
    expectPlain(volume, 50.0F, disc, {}, 40);
    expectPlain(volume, 50.0F, disc, 1, 40);
}

TEST(TracedCurves, withoutAFocusAreThoseOfTheGeneratorWrittenPlainly) {
    const Vec3 aside(1.5F, 1.0F, 0.0F);
    expectPlain(aroundABall(aside, 1.0F), 50.0F, {}, 36, 60);
    expectPlain(aroundABall(aside, 1.0F), 50.0F, {}, {}, 40);
    expectPlain(aroundABall(aside, 0.0F), 50.0F, {}, {}, 40);
}

} // namespace
