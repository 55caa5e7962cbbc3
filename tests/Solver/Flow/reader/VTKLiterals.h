#pragma once

#include "Models/SurfaceField.h"
#include "Models/VolumeField.h"
#include "Solver/Flow/VTKLegacyParser.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace ostrella::test {

/// What the reader gives of a file with these contents.
SurfaceField surfaceOf(std::string_view contents, std::string_view name = "Pressure_Coefficient");
VolumeField volumeOf(std::string_view contents, std::string_view name = "Velocity");
ScalarFieldStats statsOf(std::string_view contents, std::string_view name = "Y_Plus");

/// What the screen gives of it.
SurfaceField screenedSurfaceOf(std::string_view contents);
VolumeField screenedVolumeOf(std::string_view contents);
ScalarFieldStats screenedStatsOf(std::string_view contents);

/// The text of the exception that `act` throws, "" if it throws none.
std::string failureOf(const std::function<void()>& act);
std::string surfaceFailure(
    std::string_view contents, std::string_view name = "Pressure_Coefficient");
std::string volumeFailure(std::string_view contents, std::string_view name = "Velocity");
std::string statsFailure(std::string_view contents, std::string_view name = "Y_Plus");

/// The ten words that every file begins with, the number 10 word is the next.
inline const std::string header =
    "# vtk DataFile Version 3.0\nvtk output\nASCII\nDATASET UNSTRUCTURED_GRID\n";

/// Four points on a square, two triangles, and the fields of a solver: words 10 to 24, 25 to 35 …
inline const std::string square = header + "POINTS 4 double\n"
                                           "0 0 0\t1 0 0\t1 1 0\t0 1 0\t\n"
                                           "CELLS 2 8\n"
                                           "3\t0\t1\t2\t3\t0\t2\t3\t\n"
                                           "CELL_TYPES 2\n"
                                           "5\t5\t\n";
inline const std::string squareFields =
    "POINT_DATA 4\n\n"
    "SCALARS Pressure_Coefficient double 1\n"
    "LOOKUP_TABLE default\n"
    "-1.000000e+00\t5.000000e-01\t1.000000e+00\t0.000000e+00\t\n"
    "VECTORS Velocity double\n"
    "1.000000e+00\t2.000000e+00\t3.000000e+00\t"
    "4.000000e+00\t5.000000e+00\t6.000000e+00\t"
    "7.000000e+00\t8.000000e+00\t9.000000e+00\t"
    "-1.000000e+01\t-1.100000e+01\t-1.200000e+01\t\n"
    "SCALARS Y_Plus double 1\n"
    "LOOKUP_TABLE default\n"
    "4.000000e+00\t3.000000e+00\t2.000000e+00\t1.000000e+00\t\n";

} // namespace ostrella::test
