#include "Solver/Flow/SmallComponents.h"

#include "Solver/Flow/vortex/PlainVortex.h"
#include "Solver/Flow/vortex/TestSurfaces.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace ostrella {

namespace {

TriangleSurface strips(std::initializer_list<std::size_t> lengths) {
    TriangleSurface surface;
    float z = 0.0F;
    for (const std::size_t triangles : lengths)
        test::appendStrip(surface, triangles, z++);
    return surface;
}

std::size_t triangles(const TriangleSurface& surface) {
    return surface.indices.size() / 3;
}

TEST(SmallComponents, nineTrianglesGoBeside150) {
    const auto kept = filterSmallComponents(strips({9, 150}));
    EXPECT_EQ(triangles(kept), 150U);
    EXPECT_EQ(kept.positions.size(), 152U);
    for (const Vec3& position : kept.positions)
        EXPECT_EQ(position.z, 1.0F);
    EXPECT_EQ(triangles(filterSmallComponents(strips({150, 10}))), 160U);
}

TEST(SmallComponents, nineteenGoBeside400AndTwentyStay) {
    EXPECT_EQ(triangles(filterSmallComponents(strips({400, 19}))), 400U);
    EXPECT_EQ(triangles(filterSmallComponents(strips({400, 20}))), 420U);
    EXPECT_EQ(triangles(filterSmallComponents(strips({19, 400, 20, 3}))), 420U);
}

TEST(SmallComponents, theThresholdIsATwentiethFrom200On) {
    EXPECT_EQ(triangles(filterSmallComponents(strips({199, 9}))), 199U);
    EXPECT_EQ(triangles(filterSmallComponents(strips({200, 9, 10}))), 210U);
    // 439 / 20 is 21 in whole numbers.
    EXPECT_EQ(triangles(filterSmallComponents(strips({439, 20, 21}))), 460U);
}

TEST(SmallComponents, fragmentsAloneAllStay) {
    const auto fragments = strips({9, 3, 1, 8});
    EXPECT_EQ(filterSmallComponents(fragments), fragments);
}

TEST(SmallComponents, lessThanATriangleStaysAsItIs) {
    EXPECT_EQ(filterSmallComponents({}), TriangleSurface{});
    TriangleSurface points;
    points.positions = {Vec3(1.0F), Vec3(2.0F)};
    points.normals = {Vec3(0.0F, 1.0F, 0.0F), Vec3(0.0F, 1.0F, 0.0F)};
    points.indices = {0, 1};
    EXPECT_EQ(filterSmallComponents(points), points);
}

TEST(SmallComponents, verticesAreNumberedInTheOrderOfTheirFirstUse) {
    auto surface = strips({2, 12});
    // The long strip's triangles from the last to the first.
    std::vector<std::uint32_t> turned(surface.indices.begin(), surface.indices.begin() + 6);
    for (std::size_t t = 14; t-- > 2;)
        turned.insert(turned.end(), surface.indices.begin() + static_cast<std::ptrdiff_t>(3 * t),
            surface.indices.begin() + static_cast<std::ptrdiff_t>(3 * t + 3));
    surface.indices = turned;
    surface.normals[static_cast<std::size_t>(turned[6])] = Vec3(1.0F, 0.0F, 0.0F);
    const auto kept = filterSmallComponents(surface);
    ASSERT_EQ(triangles(kept), 12U);
    EXPECT_EQ(kept.indices[0], 0U);
    EXPECT_EQ(kept.indices[1], 1U);
    EXPECT_EQ(kept.indices[2], 2U);
    EXPECT_EQ(kept.positions[0], surface.positions[turned[6]]);
    EXPECT_EQ(kept.normals[0], Vec3(1.0F, 0.0F, 0.0F));
    for (std::size_t i = 0; i < kept.indices.size(); ++i)
        EXPECT_EQ(kept.positions[kept.indices[i]], surface.positions[turned[6 + i]]);
}

TEST(SmallComponents, piecesMayTouchAtASingleVertex) {
    auto surface = strips({9, 150});
    surface.indices[0] = surface.indices[27];
    EXPECT_EQ(triangles(filterSmallComponents(surface)), 159U);
}

TEST(SmallComponents, givesTheSameAsPaintingThePieces) {
    auto surface = strips({7, 30, 260, 12, 13, 14, 1, 90});
    // Every second triangle goes to the end, so that the pieces lie mixed.
    std::vector<std::uint32_t> mixed;
    for (const std::size_t start : {0U, 1U}) {
        for (std::size_t t = start; t < triangles(surface); t += 2)
            mixed.insert(mixed.end(), surface.indices.begin() + static_cast<std::ptrdiff_t>(3 * t),
                surface.indices.begin() + static_cast<std::ptrdiff_t>(3 * t + 3));
    }
    surface.indices = mixed;
    const auto kept = filterSmallComponents(surface);
    EXPECT_EQ(triangles(kept), 30U + 260U + 13U + 14U + 90U);
    EXPECT_EQ(kept, plain::Vortex::withoutFragments(surface));
}

} // namespace

} // namespace ostrella
