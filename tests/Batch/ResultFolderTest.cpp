#include "Batch/ResultFolder.h"

#include "support/FieldFiles.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
namespace FieldFiles = test::FieldFiles;

class ResultFolderTest : public testing::Test {
protected:
    void write(const std::string& name, const std::string& text) const {
        test::writeFile(place_ / name, text);
    }
    std::optional<int> dimensions() const { return ResultFolder::dimensions(place_, mesh_); }
    std::optional<std::int64_t> cells() const { return ResultFolder::cells(place_, mesh_); }

    /// A surface of one cell in the plane z = `z`, but for its last point.
    static std::string surface(int cellType, float z, float lastZ) {
        return FieldFiles::grid({Vec3(0, 0, z), Vec3(1, 0, z), Vec3(0, 1, lastZ)},
                   {cellType == 3 ? std::vector{0, 1} : std::vector{0, 1, 2}}, cellType) +
               FieldFiles::pointData(3) + FieldFiles::scalars("Pressure_Coefficient", {0, 0, 0});
    }
    static std::string volume(float depth) {
        return FieldFiles::volume(
            Vec3(0), Vec3(1, 1, depth), {2, 2, 2}, [](const Vec3&) { return Vec3(1, 0, 0); });
    }

    test::TemporaryDirectory directory_;
    fs::path place_ = directory_.path();
    std::optional<std::string> mesh_;
};

constexpr int line = 3;
constexpr int triangle = 5;
constexpr int quadrilateral = 9;

TEST_F(ResultFolderTest, AnEmptyFolderTellsNothing) {
    EXPECT_EQ(dimensions(), std::nullopt);
    EXPECT_EQ(cells(), std::nullopt);
}

TEST_F(ResultFolderTest, TheMeshFileHasTheFirstWord) {
    write("mesh.su2", "NDIME= 2\nNELEM= 57344\n");
    write("surface_flow.vtk", surface(triangle, 0, 1));
    write("flow.vtk", volume(1));
    EXPECT_EQ(dimensions(), 2);
    EXPECT_EQ(cells(), 57344);
    mesh_ = "other.su2";
    write("other.su2", "NDIME= 3\nNELEM= 12\n");
    EXPECT_EQ(dimensions(), 3);
    EXPECT_EQ(cells(), 12);
    mesh_ = "gone.su2";
    EXPECT_EQ(cells(), 1);
}

TEST_F(ResultFolderTest, TrianglesOnTheBodyMeanThreeDimensionsThoughItBeAPlate) {
    write("surface_flow.vtk", surface(triangle, 0, 0));
    EXPECT_EQ(dimensions(), 3);
}

TEST_F(ResultFolderTest, ABodyThatIsNotFlatMeansThreeDimensionsWhateverItsCells) {
    write("surface_flow.vtk", surface(quadrilateral, 0, 0.5F));
    write("flow.vtk", volume(0));
    EXPECT_EQ(dimensions(), 3);
}

TEST_F(ResultFolderTest, AFlatBodyOfLinesLeavesItToTheVolume) {
    write("surface_flow.vtk", surface(line, 0, 0));
    EXPECT_EQ(dimensions(), 2) << "and without one it is an aerofoil";
    write("flow.vtk", volume(0));
    EXPECT_EQ(dimensions(), 2);
    write("flow.vtk", volume(0.001F));
    EXPECT_EQ(dimensions(), 3);
}

TEST_F(ResultFolderTest, WithoutAReadableSurfaceTheVolumeTells) {
    write("flow.vtk", volume(2));
    EXPECT_EQ(dimensions(), 3);
    write("surface_flow.vtk", "rubbish");
    EXPECT_EQ(dimensions(), 3);
    write("flow.vtk", volume(0));
    EXPECT_EQ(dimensions(), 2);
    write("flow.vtk", "rubbish");
    EXPECT_EQ(dimensions(), std::nullopt);
}

TEST_F(ResultFolderTest, RecordedRunsTellTheirs) {
    const fs::path runs = OSTRELLA_RECORDED_RUNS;
    EXPECT_EQ(ResultFolder::dimensions(runs / "sphere_inc_sa", std::nullopt), 3);
    EXPECT_EQ(ResultFolder::dimensions(runs / "naca_inc_sa_a5", std::nullopt), 2);
    EXPECT_EQ(ResultFolder::cells(runs / "sphere_inc_sa", std::nullopt), 45259);
    EXPECT_EQ(ResultFolder::cells(runs / "naca_inc_sa_a5", std::nullopt), 32768);
}

TEST_F(ResultFolderTest, CellsAreCountedByTheirSectionsHead) {
    const auto count = [this](const std::string& text) {
        write("flow.vtk", text);
        return ResultFolder::cellsInVTK(place_ / "flow.vtk");
    };
    EXPECT_EQ(count("POINTS 1 double 0 0 0 CELLS 12 60"), 12);
    EXPECT_EQ(count("CELLS 5 POINTS 1 double\r\nCELLS\t7"), 7) << "behind the points only";
    EXPECT_EQ(count("xPOINTS POINTS CELLSx aCELLS CELLS 3"), 3) << "whole words only";
    EXPECT_EQ(count("POINTS 1 CELL_TYPES 4"), std::nullopt);
    EXPECT_EQ(count("POINTS 1 CELLS"), std::nullopt);
    EXPECT_EQ(count("POINTS 1 CELLS "), std::nullopt);
    EXPECT_EQ(count("POINTS 1 CELLS -3 "), std::nullopt);
    EXPECT_EQ(count("POINTS 1 CELLS 3.5 "), std::nullopt);
    EXPECT_EQ(count("POINTS 1 CELLS 99999999999999999999 "), std::nullopt);
    EXPECT_EQ(count(""), std::nullopt);
}

TEST_F(ResultFolderTest, CellsAreCountedWhereverThePiecesOfALargeFileEnd) {
    // The file is read in pieces of a mebibyte.
    constexpr std::size_t piece = std::size_t{1} << 20;
    for (std::size_t at = piece - 16; at < piece + 16; ++at) {
        std::string text = "POINTS 1 ";
        text.resize(at, '0');
        write("flow.vtk", text + " CELLS 1234567 60\n");
        EXPECT_EQ(ResultFolder::cellsInVTK(place_ / "flow.vtk"), 1234567) << at;
    }
}

} // namespace
} // namespace ostrella
