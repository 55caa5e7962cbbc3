#include "Models/TriangleMesh.h"

#include "Models/SurfaceField.h"
#include "Models/VolumeField.h"
#include "Solver/Geometry/TestMeshes.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace ostrella {

namespace {

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

TEST(TriangleMesh, AnEmptyMeshHasABoxOfZeros) {
    const TriangleMesh mesh(std::vector<Vec3>{}, std::vector<Vec3>{});
    EXPECT_EQ(mesh.boundingMin(), Vec3(0, 0, 0));
    EXPECT_EQ(mesh.boundingMax(), Vec3(0, 0, 0));
    EXPECT_EQ(mesh.facetCount(), 0U);
    EXPECT_TRUE(mesh.empty());
}

TEST(TriangleMesh, TheBoxIsTheLeastAndGreatestOfEachComponent) {
    const auto mesh =
        test::soup({{1, -2, 3}, {4, 5, -6}, {-7, 8, 9}, {0, 0, 0}, {0.5F, -9, 1}, {2, 2, 10}});
    EXPECT_EQ(mesh.boundingMin(), Vec3(-7, -9, -6));
    EXPECT_EQ(mesh.boundingMax(), Vec3(4, 8, 10));
    EXPECT_EQ(mesh.size(), Vec3(11, 17, 16));
    EXPECT_EQ(mesh.facetCount(), 2U);
}

TEST(TriangleMesh, TheBoxFindsAnExtremeAtAnyPlace) {
    for (std::size_t place = 0; place < 15; ++place) {
        std::vector<Vec3> corners(15, Vec3(1, 1, 1));
        corners[place] = Vec3(-5, 7, -9);
        const auto mesh = test::soup(corners);
        EXPECT_EQ(mesh.boundingMin(), Vec3(-5, 1, -9)) << place;
        EXPECT_EQ(mesh.boundingMax(), Vec3(1, 7, 1)) << place;
    }
}

TEST(TriangleMesh, ANaNIsPassedOverByTheBoxUnlessItComesFirst) {
    const auto later = test::soup({{1, 1, 1}, {nan, 2, 2}, {3, 3, 3}});
    EXPECT_EQ(later.boundingMin(), Vec3(1, 1, 1));
    EXPECT_EQ(later.boundingMax(), Vec3(3, 3, 3));
    const auto first = test::soup({{nan, 1, 1}, {2, 2, 2}, {3, 3, 3}});
    EXPECT_NE(first.boundingMin().x, first.boundingMin().x);
    EXPECT_EQ(first.boundingMax().y, 3.0F);
}

TEST(TriangleMesh, CopiesShareTheirArrays) {
    const auto mesh = test::unitCube();
    const auto copy = mesh;
    EXPECT_TRUE(copy.positions().sharesBufferWith(mesh.positions()));
    EXPECT_TRUE(copy.normals().sharesBufferWith(mesh.normals()));
}

TEST(TriangleMesh, EqualityComparesPositionsAndNormals) {
    const std::vector<Vec3> corners = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    const TriangleMesh mesh(corners, std::vector<Vec3>(3, Vec3(0, 0, 1)));
    EXPECT_EQ(mesh, TriangleMesh(corners, std::vector<Vec3>(3, Vec3(0, 0, 1))));
    EXPECT_NE(mesh, TriangleMesh(corners, std::vector<Vec3>(3, Vec3(0, 0, -1))));
    EXPECT_NE(mesh, test::soup({{0, 0, 0}, {1, 0, 0}, {0, 0.5F, 0}}));
    EXPECT_NE(mesh, TriangleMesh());
}

TEST(TriangleMeshDeathTest, ArraysThatDoNotFitEndTheProcess) {
    const std::vector<Vec3> three(3);
    const std::vector<Vec3> four(4);
    const std::vector<Vec3> six(6);
    EXPECT_DEATH(TriangleMesh(three, six), "one normal for each position");
    EXPECT_DEATH(TriangleMesh(four, four), "multiple of 3");
}

TEST(SurfaceField, DerivesItsRangeAndBox) {
    const SurfaceField field({{0, 0, 0}, {1, -2, 3}}, {0.5F, -1.5F}, "Pressure_Coefficient", {0, 1},
        SurfaceField::Primitive::line);
    EXPECT_EQ(field.scalarMin, -1.5F);
    EXPECT_EQ(field.scalarMax, 0.5F);
    EXPECT_EQ(field.boundingMin, Vec3(0, -2, 0));
    EXPECT_EQ(field.boundingMax, Vec3(1, 0, 3));
    EXPECT_EQ(field.scalarName, "Pressure_Coefficient");
}

TEST(SurfaceField, WithoutPointsTheRangeIsZeroToOne) {
    const SurfaceField field({}, {}, "x", {}, SurfaceField::Primitive::triangle);
    EXPECT_EQ(field.scalarMin, 0.0F);
    EXPECT_EQ(field.scalarMax, 1.0F);
    EXPECT_EQ(field.boundingMin, Vec3(0, 0, 0));
    EXPECT_EQ(field.boundingMax, Vec3(0, 0, 0));
}

TEST(SurfaceField, ANaNIsPassedOverByTheRangeUnlessItComesFirst) {
    const SharedArray<Vec3> points = {Vec3(0), Vec3(0), Vec3(0)};
    const auto primitive = SurfaceField::Primitive::line;
    const SurfaceField later(points, {2.0F, nan, 1.0F}, "x", {}, primitive);
    EXPECT_EQ(later.scalarMin, 1.0F);
    EXPECT_EQ(later.scalarMax, 2.0F);
    const SurfaceField first(points, {nan, 2.0F, 1.0F}, "x", {}, primitive);
    EXPECT_NE(first.scalarMin, first.scalarMin);
}

TEST(SurfaceFieldDeathTest, AScalarOfAnotherLengthEndsTheProcess) {
    EXPECT_DEATH(SurfaceField({Vec3(0)}, {1.0F, 2.0F}, "x", {}, SurfaceField::Primitive::line),
        "one scalar for each position");
}

TEST(VolumeField, DerivesItsBox) {
    const VolumeField field({{1, 2, 3}, {-1, 5, 0}}, {{0, 0, 0}, {9, 9, 9}});
    EXPECT_EQ(field.boundingMin, Vec3(-1, 2, 0));
    EXPECT_EQ(field.boundingMax, Vec3(1, 5, 3));
    EXPECT_EQ(VolumeField({}, {}).boundingMax, Vec3(0, 0, 0));
}

TEST(VolumeFieldDeathTest, ArraysOfDifferentLengthEndTheProcess) {
    EXPECT_DEATH(VolumeField({Vec3(0)}, {}), "one velocity for each position");
}

} // namespace

} // namespace ostrella
