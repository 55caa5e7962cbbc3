#include "Solver/Flow/VTKParseError.h"
#include "Solver/Flow/reader/VTKLiterals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace ostrella {

namespace {

using test::header;
using test::volumeFailure;
using test::volumeOf;

TEST(VTKVolume, PointsAndOneVector) {
    const auto volume = volumeOf(test::square + test::squareFields);
    EXPECT_EQ(volume.positions, (SharedArray<Vec3>{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}));
    EXPECT_EQ(
        volume.velocity, (SharedArray<Vec3>{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {-10, -11, -12}}));
    EXPECT_EQ(volume.boundingMin, Vec3(0, 0, 0));
    EXPECT_EQ(volume.boundingMax, Vec3(1, 1, 0));
}

TEST(VTKVolume, NoPoints) {
    const auto volume =
        volumeOf(header + "POINTS 0 double CELLS 0 0 CELL_TYPES 0 VECTORS Velocity double");
    EXPECT_TRUE(volume.positions.empty());
    EXPECT_TRUE(volume.velocity.empty());
    EXPECT_EQ(volume.boundingMax, Vec3(0, 0, 0));
}

TEST(VTKVolume, AVectorAheadOfTheGeometryIsNotFound) {
    EXPECT_EQ(volumeFailure(header + "VECTORS Velocity float 1 2 3 "
                                     "POINTS 1 float 0 0 0 CELLS 0 0 CELL_TYPES 0"),
        "VTK missing vector field 'Velocity'.");
}

TEST(VTKVolume, ANameIsComparedExactly) {
    const std::string file = test::square + test::squareFields;
    EXPECT_EQ(volumeFailure(file, "velocity"), "VTK missing vector field 'velocity'.");
    EXPECT_EQ(volumeFailure(file, "Y_Plus"), "VTK missing vector field 'Y_Plus'.");
}

TEST(VTKVolume, ARenamedField) {
    std::string file = test::square + test::squareFields;
    file.replace(file.find("Velocity"), 8, "Momentum");
    EXPECT_EQ(volumeFailure(file), "VTK missing vector field 'Velocity'.");
    EXPECT_EQ(volumeOf(file, "Momentum").velocity[0], Vec3(1, 2, 3));
}

TEST(VTKVolume, ANameAsLastWordIsMissing) {
    const std::string file =
        header + "POINTS 1 float 0 0 0 CELLS 0 0 CELL_TYPES 0 VECTORS Velocity";
    EXPECT_EQ(volumeFailure(file), "VTK missing vector field 'Velocity'.");
    EXPECT_EQ(volumeFailure(file + " float"), "Malformed VTK: expected float at token 24");
    EXPECT_EQ(volumeFailure(file + " float 1 2"), "Malformed VTK: expected float at token 26");
    EXPECT_EQ(volumeFailure(file + " float 1 2 3"), "");
}

TEST(VTKVolume, TheCellsAreCheckedAlthoughTheyAreDropped) {
    std::string file = test::square + test::squareFields;
    file.replace(file.find("3\t0\t2\t3"), 7, "3\t0\tx\t3");
    EXPECT_EQ(volumeFailure(file), "Malformed VTK: expected int at token 34");
}

TEST(VTKVolume, TheTypesAreCheckedAlthoughTheyAreDropped) {
    std::string file = test::square + test::squareFields;
    file.replace(file.find("5\t5\t"), 4, "5\t5.\t");
    EXPECT_EQ(volumeFailure(file), "Malformed VTK: expected int at token 39");
}

TEST(VTKVolume, NumbersThatAreNotFiniteAreRead) {
    std::string file = test::square + test::squareFields;
    file.replace(file.find("4.000000e+00"), 12, "nan");
    file.replace(file.find("5.000000e+00"), 12, "-inf");
    const auto velocity = volumeOf(file).velocity;
    EXPECT_TRUE(std::isnan(velocity[1].x));
    EXPECT_EQ(velocity[1].y, -INFINITY);
}

} // namespace

} // namespace ostrella
