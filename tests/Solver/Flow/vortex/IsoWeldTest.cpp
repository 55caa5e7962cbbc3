#include "Solver/Flow/IsoWeld.h"

#include "Solver/Flow/vortex/PlainVortex.h"
#include "Solver/Flow/vortex/TestSurfaces.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace ostrella {

namespace {

const float nan = std::numeric_limits<float>::quiet_NaN();

std::vector<float> raw(const std::vector<Vec3>& corners) {
    std::vector<float> floats;
    for (const Vec3& p : corners)
        floats.insert(floats.end(), {p.x, p.y, p.z});
    return floats;
}

std::optional<IsoSurface> welded(const std::vector<Vec3>& corners) {
    return weld(raw(corners), 7.0F);
}

std::vector<Vec3> positionsOf(const IsoSurface& surface) {
    return {surface.positions.begin(), surface.positions.end()};
}

std::vector<std::uint32_t> indicesOf(const IsoSurface& surface) {
    return {surface.indices.begin(), surface.indices.end()};
}

const Vec3 a(0.0F, 0.0F, 0.0F);
const Vec3 b(1.0F, 0.0F, 0.0F);
const Vec3 c(0.0F, 1.0F, 0.0F);
const Vec3 d(1.0F, 1.0F, 0.0F);

TEST(IsoWeld, numbersVerticesInTheOrderOfTheirFirstUse) {
    const auto surface = welded({a, b, c, b, d, c});
    ASSERT_TRUE(surface);
    EXPECT_EQ(positionsOf(*surface), (std::vector<Vec3>{a, b, c, d}));
    EXPECT_EQ(indicesOf(*surface), (std::vector<std::uint32_t>{0, 1, 2, 1, 3, 2}));
    EXPECT_EQ(surface->boundingMin, Vec3(0.0F));
    EXPECT_EQ(surface->boundingMax, Vec3(1.0F, 1.0F, 0.0F));
}

TEST(IsoWeld, carriesTheLevel) {
    EXPECT_EQ(welded({a, b, c})->isoValue, 7.0F);
    EXPECT_EQ(weld(raw({a, b, c}), 99.5F)->isoValue, 99.5F);
}

TEST(IsoWeld, weighsNormalsByArea) {
    // Areas 1/2 facing z and 3/2 facing y meet in a and b.
    const Vec3 e(0.0F, 0.0F, 3.0F);
    const auto surface = welded({a, b, c, a, e, b});
    ASSERT_TRUE(surface);
    const float length = std::sqrt(10.0F);
    EXPECT_EQ(surface->normals[0], Vec3(0.0F, 3.0F / length, 1.0F / length));
    EXPECT_EQ(surface->normals[1], surface->normals[0]);
    EXPECT_EQ(surface->normals[2], Vec3(0.0F, 0.0F, 1.0F));
    EXPECT_EQ(surface->normals[3], Vec3(0.0F, 1.0F, 0.0F));
}

TEST(IsoWeld, normalsThatCancelPointUp) {
    const auto surface = welded({a, b, c, a, c, b});
    ASSERT_TRUE(surface);
    for (const Vec3& normal : surface->normals)
        EXPECT_EQ(normal, Vec3(0.0F, 1.0F, 0.0F));
}

TEST(IsoWeld, normalsTooShortToTrustPointUp) {
    // Squared length of the sum 1e-12: legs of 0.001 × 0.001; just above with 0.00101.
    const auto small = [](float leg) {
        return std::vector<Vec3>{a, Vec3(leg, 0.0F, 0.0F), Vec3(0.0F, leg, 0.0F)};
    };
    EXPECT_EQ(welded(small(0.00099F))->normals[0], Vec3(0.0F, 1.0F, 0.0F));
    EXPECT_EQ(welded(small(0.00101F))->normals[0], Vec3(0.0F, 0.0F, 1.0F));
}

TEST(IsoWeld, degenerateTrianglesGo) {
    const auto surface = welded({a, b, b, a, b, c, a, Vec3(0.5F, 0.0F, 0.0F), b});
    ASSERT_TRUE(surface);
    EXPECT_EQ(positionsOf(*surface), (std::vector<Vec3>{a, b, c}));
    EXPECT_EQ(indicesOf(*surface), (std::vector<std::uint32_t>{0, 1, 2}));
}

TEST(IsoWeld, degenerateIsASquaredNormalBelow1eMinus20) {
    const auto sliver = [](float height) {
        return std::vector<Vec3>{a, b, Vec3(0.0F, height, 0.0F)};
    };
    EXPECT_FALSE(welded(sliver(0.99e-10F)));
    // Its corners a and (0, 1.01e-10, 0) have one key, yet it stays.
    const auto kept = welded(sliver(1.01e-10F));
    ASSERT_TRUE(kept);
    EXPECT_EQ(indicesOf(*kept), (std::vector<std::uint32_t>{0, 1, 0}));
}

TEST(IsoWeld, nothingComesOfNothing) {
    EXPECT_FALSE(weld({}, 1.0F));
    EXPECT_FALSE(welded({a, a, a, b, b, c}));
}

TEST(IsoWeld, cornersOfOneKeyBecomeTheFirstOfThem) {
    // The box measures 1, so a step is 1e-5.
    const Vec3 near(1.000004F, 0.000004F, -0.000004F);
    const auto surface = welded({a, b, c, near, d, c});
    ASSERT_TRUE(surface);
    EXPECT_EQ(positionsOf(*surface), (std::vector<Vec3>{a, b, c, d}));
}

TEST(IsoWeld, cornersOnEitherSideOfARoundingBoundaryStayTwo) {
    // A fiftieth of a step apart along each axis, at 20000.49 and 20000.51 steps.
    const Vec3 below(0.2000049F, 0.2000049F, 0.2000049F);
    const Vec3 above(0.2000051F, 0.2000051F, 0.2000051F);
    const auto surface = welded({a, b, below, a, above, c});
    ASSERT_TRUE(surface);
    EXPECT_EQ(positionsOf(*surface), (std::vector<Vec3>{a, b, below, above, c}));
    const Vec3 beside(0.2000047F, 0.2000047F, 0.2000047F);
    EXPECT_EQ(welded({a, b, below, a, beside, c})->positions.size(), 4U);
}

TEST(IsoWeld, aStepIsAtLeastANanometre) {
    // A hundred-thousandth of 50 µm would be half as much.
    const Vec3 right(5e-5F, 0.0F, 0.0F);
    const Vec3 top(0.0F, 5e-5F, 0.0F);
    const auto fourth = [&](float x) {
        return welded({a, right, top, Vec3(x, 0.0F, 0.0F), right, top});
    };
    EXPECT_EQ(fourth(0.4e-9F)->positions.size(), 3U);
    EXPECT_EQ(fourth(0.6e-9F)->positions.size(), 4U);
}

TEST(IsoWeld, halvesAreRoundedAwayFromZero) {
    // A box 97.65625 wide has steps of 1/1024.
    const float step = 1.0F / 1024.0F;
    const Vec3 right(99999.0F * step, 0.0F, 0.0F);
    const auto at = [&](float steps) { return Vec3(steps * step, 0.0F, 0.0F); };
    const auto surface = welded({at(-1.0F), right, c, at(-0.5F), right, c, at(0.0F), right, c,
        at(0.5F), right, c, at(1.0F), right, c, at(0.49999997F), right, c});
    ASSERT_TRUE(surface);
    EXPECT_EQ(positionsOf(*surface), (std::vector<Vec3>{at(-1.0F), right, c, at(0.0F), at(0.5F)}));
    EXPECT_EQ(indicesOf(*surface),
        (std::vector<std::uint32_t>{0, 1, 2, 0, 1, 2, 3, 1, 2, 4, 1, 2, 4, 1, 2, 3, 1, 2}));
}

TEST(IsoWeld, aVertexWithoutAKeyIsAnError) {
    // A surface of a millimetre has steps of 1e-8 m: 2³¹ of them are 21 m.
    const auto at = [](float x) {
        return std::vector<Vec3>{Vec3(x, 0.0F, 0.0F), Vec3(x, 0.001F, 0.0F), Vec3(x, 0.0F, 0.001F)};
    };
    EXPECT_TRUE(welded(at(21.0F)));
    EXPECT_TRUE(welded(at(-21.0F)));
    EXPECT_THROW(welded(at(22.0F)), IsoWeldError);
    EXPECT_THROW(welded(at(-22.0F)), IsoWeldError);
    EXPECT_THROW(welded({a, b, Vec3(0.0F, nan, 0.0F)}), IsoWeldError);
    EXPECT_THROW(
        welded({a, b, Vec3(0.0F, std::numeric_limits<float>::infinity(), 0.0F)}), IsoWeldError);
}

TEST(IsoWeld, aDegenerateTriangleNeedsNoKeys) {
    const Vec3 far(1000.0F, 0.0F, 0.0F);
    EXPECT_FALSE(welded({far, far, far}));
}

TEST(IsoWeld, fragmentsGo) {
    TriangleSurface strips;
    test::appendStrip(strips, 9, 0.0F);
    test::appendStrip(strips, 150, 5.0F);
    std::vector<Vec3> corners;
    for (const std::uint32_t index : strips.indices)
        corners.push_back(strips.positions[index]);
    const auto surface = welded(corners);
    ASSERT_TRUE(surface);
    EXPECT_EQ(surface->indices.size(), 3U * 150U);
    EXPECT_EQ(surface->boundingMin.z, 5.0F);
}

TEST(IsoWeld, givesTheSameBytesAsThePlainOne) {
    // A bumpy sheet whose corners are off by a few steps each time they come.
    std::vector<Vec3> corners;
    std::uint32_t state = 7;
    const auto point = [&](int i, int j) {
        state = state * 1664525U + 1013904223U;
        const float off = static_cast<float>(state >> 8) / 16777216.0F * 1e-5F;
        const auto x = static_cast<float>(i) * 0.04F;
        const auto y = static_cast<float>(j) * 0.04F;
        return Vec3(x + off, y - off, 0.3F * std::sin(9.0F * x) * std::cos(7.0F * y) + off);
    };
    for (int i = -20; i < 20; ++i) {
        for (int j = -20; j < 20; ++j) {
            for (const auto& [x, y] : {std::pair(0, 0), std::pair(1, 0), std::pair(0, 1),
                     std::pair(1, 0), std::pair(1, 1), std::pair(0, 1)})
                corners.push_back(point(i + x, j + y));
        }
    }
    const auto surface = welded(corners);
    const auto plain = plain::Vortex::withoutFragments(plain::Vortex::shared(corners));
    ASSERT_TRUE(surface);
    EXPECT_LT(plain.positions.size(), corners.size() / 2);
    EXPECT_EQ(positionsOf(*surface), plain.positions);
    EXPECT_EQ(std::vector<Vec3>(surface->normals.begin(), surface->normals.end()), plain.normals);
    EXPECT_EQ(indicesOf(*surface), plain.indices);
}

} // namespace

} // namespace ostrella
