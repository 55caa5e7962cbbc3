// Counts and ids that cannot be: they end the process where the file is vouched for, and are errors
// where it is not.

#include "Solver/Flow/FlowScreen.h"
#include "Solver/Flow/reader/VTKLiterals.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace ostrella {

namespace {

using test::failureOf;
using test::header;

struct Case {
    std::string contents; ///< behind the header
    std::string failure;
};

const std::string scalar = "SCALARS Pressure_Coefficient f LOOKUP_TABLE t 7 ";
const std::string vector = "VECTORS Velocity f 1 2 3 ";
const std::string fields = scalar + vector;

/// What makes surfaces and volumes alike impossible.
const std::vector<Case> geometries = {
    {"POINTS -1 f CELLS 0 0 CELL_TYPES 0 ",
        "Malformed VTK: negative number of points (-1) at token 11"},
    {"POINTS -9223372036854775808 f ",
        "Malformed VTK: negative number of points (-9223372036854775808) at token 11"},
    {"POINTS 1 f 0 0 0 CELLS -2 0 CELL_TYPES 0 ",
        "Malformed VTK: negative number of cells (-2) at token 17"},
    {"POINTS 1 f 0 0 0 CELLS 1 2 -1 0 CELL_TYPES 0 ",
        "Malformed VTK: negative number of point ids (-1) at token 19"},
    {"POINTS 1 f 0 0 0 CELLS 1 2 1 -1 CELL_TYPES 0 ",
        "Malformed VTK: negative point id (-1) at token 20"},
    {"POINTS 1 f 0 0 0 CELLS 1 2 1 4294967296 CELL_TYPES 0 ",
        "Malformed VTK: point id beyond 32 bits (4294967296) at token 20"},
    {"POINTS 1 f 0 0 0 CELLS 1 2 1 0 CELL_TYPES -1 ",
        "Malformed VTK: negative number of cell types (-1) at token 22"},
};

TEST(VTKTrust, AScreenedSurfaceCannotEndTheProcess) {
    for (const auto& one : geometries)
        EXPECT_EQ(failureOf([&] { test::screenedSurfaceOf(header + one.contents + fields); }),
            one.failure);
    EXPECT_THROW(test::screenedSurfaceOf(header + geometries[0].contents), FlowScreenError);
}

TEST(VTKTrust, AScreenedVolumeCannotEndTheProcess) {
    for (const auto& one : geometries)
        EXPECT_EQ(failureOf([&] { test::screenedVolumeOf(header + one.contents + fields); }),
            one.failure);
    EXPECT_THROW(test::screenedVolumeOf(header + geometries[0].contents), FlowScreenError);
}

TEST(VTKTrust, ATrustedFileEndsTheProcess) {
    for (const auto& [contents, failure] : geometries) {
        const std::string text = failure.substr(0, failure.find('(')) + "\\(-?[0-9]+\\)" +
                                 failure.substr(failure.find(')') + 1);
        EXPECT_DEATH(test::surfaceOf(header + contents + fields), "Fatal: " + text);
        EXPECT_DEATH(test::volumeOf(header + contents + fields), "Fatal: " + text);
    }
}

const std::string point = "POINTS 1 f 0 0 0 CELLS 0 0 CELL_TYPES 0 ";

TEST(VTKTrust, ANegativeNumberOfComponents) {
    const std::string file = header + point + "SCALARS Pressure_Coefficient f -1 LOOKUP_TABLE t 7";
    EXPECT_EQ(failureOf([&] { test::screenedSurfaceOf(file); }),
        "Malformed VTK: negative number of components (-1) at token 24");
    EXPECT_DEATH(test::surfaceOf(file), "Fatal: Malformed VTK: negative number of components");
    // What else is wrong is told first.
    EXPECT_EQ(
        failureOf([&] { test::surfaceOf(header + point + "SCALARS Pressure_Coefficient f -1 7"); }),
        "Malformed VTK: LOOKUP_TABLE after Pressure_Coefficient missing");
}

TEST(VTKTrust, FiguresOfANegativeNumberOfPointsOrComponents) {
    const std::string points = header + "POINTS -3 f SCALARS Y_Plus f LOOKUP_TABLE t 7";
    EXPECT_EQ(failureOf([&] { test::screenedStatsOf(points); }),
        "Malformed VTK: negative number of points (-3) at token 11");
    EXPECT_DEATH(test::statsOf(points), "Fatal: Malformed VTK: negative number of points");
    const std::string components = header + "POINTS 1 f SCALARS Y_Plus f -3 LOOKUP_TABLE t 7";
    EXPECT_EQ(failureOf([&] { test::screenedStatsOf(components); }),
        "Malformed VTK: negative number of components (-3) at token 16");
    EXPECT_DEATH(test::statsOf(components), "Fatal: Malformed VTK: negative number of components");
}

TEST(VTKTrust, AnIdBeyondThePointsIsForTheScreenToFind) {
    const std::string file = header +
                             "POINTS 2 f 0 0 0 1 1 1 CELLS 2 6 2 0 1 2 1 2 CELL_TYPES 2 3 3 "
                             "SCALARS Pressure_Coefficient f LOOKUP_TABLE t 7 8";
    EXPECT_EQ(test::surfaceOf(file).indices, (SharedArray<std::uint32_t>{0, 1, 1, 2}));
    EXPECT_EQ(failureOf([&] { test::screenedSurfaceOf(file); }),
        "Malformed VTK: a cell has the point id 2, but there are 2 points");
}

TEST(VTKTrust, CountsBeyondTheFileEndWhereTheFileEnds) {
    const std::string many = "1000000000000000";
    const std::string most = std::to_string(std::numeric_limits<std::int64_t>::max());
    for (const auto& count : {many, most}) {
        for (const std::string& contents :
            {"POINTS " + count + " f 0 0 0", "POINTS 1 f 0 0 0 CELLS " + count,
                "POINTS 1 f 0 0 0 CELLS 1 " + count + " " + count + " 0 0",
                "POINTS 1 f 0 0 0 CELLS 0 0 CELL_TYPES " + count + " 5 5"}) {
            const auto trusted = failureOf([&] { test::volumeOf(header + contents); });
            EXPECT_TRUE(trusted.starts_with("Malformed VTK: expected ")) << trusted;
            EXPECT_EQ(failureOf([&] { test::screenedVolumeOf(header + contents); }), trusted);
            EXPECT_EQ(failureOf([&] { test::surfaceOf(header + contents); }), trusted);
            EXPECT_EQ(failureOf([&] { test::screenedSurfaceOf(header + contents); }), trusted);
        }
        EXPECT_EQ(test::volumeFailure(header + "POINTS " + count + " f 0 0 0"),
            "Malformed VTK: expected float at token 16");
        EXPECT_EQ(test::volumeFailure(header + "POINTS 1 f 0 0 0 CELLS 1 1 " + count + " 0 0"),
            "Malformed VTK: expected int at token 22");
        EXPECT_EQ(test::statsFailure(
                      header + "POINTS " + count + " f SCALARS Y_Plus f LOOKUP_TABLE t 1 2"),
            "Malformed VTK: expected float at token 20");
        EXPECT_EQ(test::statsFailure(
                      header + "POINTS 2 f SCALARS Y_Plus f " + count + " LOOKUP_TABLE t 1 2"),
            "Malformed VTK: expected float at token 21");
    }
}

TEST(VTKTrust, TheScreenGivesTheSameFields) {
    const std::string file = test::square + test::squareFields;
    EXPECT_EQ(test::screenedSurfaceOf(file).scalar, test::surfaceOf(file).scalar);
    EXPECT_EQ(test::screenedSurfaceOf(file).indices, test::surfaceOf(file).indices);
    EXPECT_EQ(test::screenedVolumeOf(file).velocity, test::volumeOf(file).velocity);
    EXPECT_EQ(test::screenedStatsOf(file), test::statsOf(file));
}

} // namespace

} // namespace ostrella
