#include "Solver/Geometry/MeshOperations.h"

#include "Solver/Geometry/MatrixMath.h"
#include "Solver/Geometry/STLParser.h"
#include "Solver/Geometry/TestMeshes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <numbers>

#include <unistd.h>

namespace ostrella {

namespace {

constexpr float quarter = std::numbers::pi_v<float> / 2;

void expectNear(const Vec3& actual, const Vec3& expected) {
    for (int axis = 0; axis < 3; ++axis)
        EXPECT_NEAR(actual[axis], expected[axis], 1e-6F) << "axis " << axis;
}

Vec3 turned(const Vec3& point, const Vec3& angles) {
    return transformed(eulerXYZ(angles), point, 1);
}

TEST(EulerXYZ, EachAngleTurnsRightHandedAboutItsAxis) {
    expectNear(turned({0, 1, 0}, {quarter, 0, 0}), {0, 0, 1});
    expectNear(turned({0, 0, 1}, {0, quarter, 0}), {1, 0, 0});
    expectNear(turned({1, 0, 0}, {0, 0, quarter}), {0, 1, 0});
}

TEST(EulerXYZ, TurnsAboutXFirstThenYThenZ) {
    // +Y goes to +Z about X, then to +X about Y, then to +Y about Z.
    expectNear(turned({0, 1, 0}, {quarter, quarter, quarter}), {0, 1, 0});
    // +X stays about X, goes to −Z about Y, stays about Z.
    expectNear(turned({1, 0, 0}, {quarter, quarter, quarter}), {0, 0, -1});
}

TEST(Rotated, NoAngleGivesTheSameArrays) {
    const auto cube = test::unitCube();
    const auto same = rotated(cube, {0, -0.0F, 0});
    EXPECT_TRUE(same.positions().sharesBufferWith(cube.positions()));
    EXPECT_TRUE(same.normals().sharesBufferWith(cube.normals()));
}

TEST(Rotated, AQuarterTurnAboutXMapsYToZ) {
    const TriangleMesh mesh({{0, 1, 0}, {0, 2, 0}, {1, 0, 0}}, {{0, 5, 0}, {0, 0, 2}, {3, 0, 0}});
    const auto result = rotated(mesh, {quarter, 0, 0});
    expectNear(result.positions()[0], {0, 0, 1});
    expectNear(result.positions()[2], {1, 0, 0});
    expectNear(result.normals()[0], {0, 0, 1}); // and of unit length
    expectNear(result.normals()[1], {0, -1, 0});
    expectNear(result.boundingMax(), {1, 0, 2});
}

TEST(Rotated, ANormalOfNoLengthBecomesNaN) {
    const TriangleMesh mesh({{0, 1, 0}, {0, 2, 0}, {1, 0, 0}}, {{0, 0, 0}, {0, 0, 1}, {0, 0, 1}});
    const auto normal = rotated(mesh, {0, 1, 0}).normals()[0];
    EXPECT_TRUE(std::isnan(normal.x) && std::isnan(normal.y) && std::isnan(normal.z));
}

TEST(ProjectedArea, OfAUnitCubeAlongAnAxisIsOne) {
    for (const Vec3& along : {Vec3(1, 0, 0), Vec3(0, -1, 0), Vec3(0, 0, 1)})
        EXPECT_EQ(projectedArea(test::unitCube(), along), 1.0F);
}

TEST(ProjectedArea, TakesTheDirectionAsPassed) {
    EXPECT_EQ(projectedArea(test::unitCube(), {0, 0, 3}), 3.0F);
}

TEST(ProjectedArea, OnlyFacetsThatFaceTheDirectionCount) {
    const auto facet = test::soup({{0, 0, 0}, {2, 0, 0}, {0, 2, 0}});
    EXPECT_EQ(projectedArea(facet, {0, 0, 1}), 2.0F);
    EXPECT_EQ(projectedArea(facet, {0, 0, -1}), 0.0F);
    EXPECT_EQ(projectedArea(facet, {1, 0, 0}), 0.0F);
    EXPECT_EQ(projectedArea(TriangleMesh(), {0, 0, 1}), 0.0F);
}

TEST(ProjectedArea, SumsManySmallFacetsBesideAGreatOne) {
    std::vector<Vec3> corners = {
        {0, 0, 0}, {8192, 0, 0}, {0, 8192, 0}}; // 2²⁵, where floats are 4 apart
    for (int i = 0; i < 1000; ++i)
        corners.insert(corners.end(), {{0, 0, 0}, {1, 0, 0}, {0, 2, 0}});
    EXPECT_EQ(projectedArea(test::soup(corners), {0, 0, 1}), 33554432.0F + 1000.0F);
}

TEST(WriteBinarySTL, ReadsBackWithTheNormalOfEachFirstCorner) {
    const test::TemporaryDirectory folder;
    const auto path = folder.path() / "mit Leerzeichen 'ü'.stl";
    const TriangleMesh mesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 5}, {1, 0, 5}, {0, 1, 5}},
        {{1, 2, 3}, {9, 9, 9}, {9, 9, 9}, {4, 5, 6}, {9, 9, 9}, {9, 9, 9}});
    writeBinarySTL(mesh, path);
    const auto back = STLParser::parse(path);
    EXPECT_EQ(back.positions(), mesh.positions());
    EXPECT_EQ(back.normals(),
        SharedArray<Vec3>({{1, 2, 3}, {1, 2, 3}, {1, 2, 3}, {4, 5, 6}, {4, 5, 6}, {4, 5, 6}}));
}

TEST(WriteBinarySTL, WritesTheLayoutByteForByte) {
    const test::TemporaryDirectory folder;
    writeBinarySTL(test::soup({{1, 0, 0}, {0, 0, 0}, {0, 0, 0}}), folder.path() / "a.stl");
    std::string expected(134, '\0');
    expected[80] = 1;
    expected.replace(84 + 8, 4, std::string("\x00\x00\x80\x3F", 4));
    expected.replace(84 + 12, 4, std::string("\x00\x00\x80\x3F", 4));
    EXPECT_EQ(test::readFile(folder.path() / "a.stl"), expected);
}

TEST(BinarySTL, IsTheFileWithATitleInItsHead) {
    const test::TemporaryDirectory folder;
    writeBinarySTL(test::tetrahedron(), folder.path() / "a.stl");
    std::string expected = test::readFile(folder.path() / "a.stl");
    EXPECT_EQ(binarySTL(test::tetrahedron(), ""), expected);
    expected.replace(0, 7, "A title");
    EXPECT_EQ(binarySTL(test::tetrahedron(), "A title"), expected);
    EXPECT_EQ(binarySTL(test::tetrahedron(), std::string(80, 'x')).size(), expected.size());
}

TEST(BinarySTLDeathTest, HasNoTitleThatReadersWouldTakeForTheTextForm) {
    EXPECT_DEATH(static_cast<void>(binarySTL(test::tetrahedron(), "solid body")), "title");
    EXPECT_DEATH(static_cast<void>(binarySTL(test::tetrahedron(), std::string(81, 'x'))), "title");
}

TEST(WriteBinarySTL, ReplacesALongerFile) {
    const test::TemporaryDirectory folder;
    const auto path = test::fileIn(folder, "a.stl", std::string(5000, 'x'));
    writeBinarySTL(TriangleMesh(), path);
    EXPECT_EQ(test::readFile(path), std::string(84, '\0'));
}

TEST(WriteBinarySTL, ThrowsTheFileSystemsError) {
    const test::TemporaryDirectory folder;
    try {
        writeBinarySTL(test::unitCube(), folder.path() / "missing" / "a.stl");
        FAIL() << "nothing was thrown";
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_EQ(error.path1(), folder.path() / "missing" / "a.stl");
    }
    EXPECT_THROW(
        writeBinarySTL(test::unitCube(), folder.path()), std::filesystem::filesystem_error);
}

#ifdef __linux__
TEST(WriteBinarySTL, AFullDiskIsReported) {
    try {
        writeBinarySTL(test::unitCube(), "/dev/full");
        FAIL() << "nothing was thrown";
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_space_on_device);
    }
}
#endif

} // namespace

} // namespace ostrella
