#include "Solver/Flow/FlowScreen.h"

#include "Models/FileError.h"
#include "Solver/Flow/VTKParseError.h"
#include "Solver/Flow/reader/VTKLiterals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace ostrella {

namespace {

using test::failureOf;
using test::header;
using test::screenedSurfaceOf;
using test::screenedVolumeOf;

const float infinity = std::numeric_limits<float>::infinity();
const float nan = std::numeric_limits<float>::quiet_NaN();

/// A surface of three points, the second of which has this y.
std::string surfaceWith(const std::string& y) {
    return header + "POINTS 3 f 0 0 0 1 " + y + " 1 2 2 2 CELLS 0 0 CELL_TYPES 0 " +
           "SCALARS Pressure_Coefficient f LOOKUP_TABLE t 7 8 nan";
}

TEST(FlowScreen, ASurfaceOnlyHasCoordinatesToComputeWith) {
    for (const char* y : {"0", "-1e12", "1e12", "-0", "1e-45"})
        EXPECT_EQ(failureOf([&] { screenedSurfaceOf(surfaceWith(y)); }), "") << y;
    for (const char* y : {"nan", "inf", "-inf", "1.0000001e12", "-3e38", "1e39"})
        EXPECT_EQ(failureOf([&] { screenedSurfaceOf(surfaceWith(y)); }),
            "1 of 3 points has a coordinate that is not finite or beyond 1e+12; the first is "
            "point "
            "1, counted from 0")
            << y;
    EXPECT_NO_THROW(test::surfaceOf(surfaceWith("nan")));
}

TEST(FlowScreen, AScalarMayHoldAnything) {
    EXPECT_TRUE(std::isnan(screenedSurfaceOf(surfaceWith("0")).scalar[2]));
}

TEST(FlowScreen, AVolumeMayHoldAnythingUntilItIsComputedWith) {
    const auto volume = screenedVolumeOf(header + "POINTS 2 f 0 nan 0 1 1 1 CELLS 0 0 CELL_TYPES 0 "
                                                  "VECTORS Velocity f 1 inf 1 2 2 2");
    EXPECT_TRUE(std::isnan(volume.positions[0].y));
    EXPECT_EQ(volume.velocity[0].y, infinity);
    EXPECT_THROW(FlowScreen::requireFinite(volume), FlowScreenError);
}

TEST(FlowScreen, FilesThatCannotBeReadAndFieldsThatAreMissingStayWhatTheyAre) {
    EXPECT_THROW(FlowScreen::parseSurface("/nowhere/flow.vtk", "x"), FileError);
    EXPECT_THROW(FlowScreen::parseVolume("/nowhere/flow.vtk", "x"), FileError);
    EXPECT_THROW(FlowScreen::extractScalarStats("/nowhere/flow.vtk", "x"), FileError);
    EXPECT_THROW(screenedSurfaceOf(test::square), VTKParseError);
    EXPECT_THROW(screenedVolumeOf(test::square), VTKParseError);
    EXPECT_THROW(test::screenedStatsOf(test::square), VTKParseError);
}

TEST(RequireFinite, TellsHowManyPointsAreBadAndTheFirst) {
    const VolumeField volume({{0, 0, 0}, {1, 1, nan}, {2, 2, 2}, {infinity, 3, 3}, {4, 4, 4}},
        {{0, 0, 0}, {-infinity, 1, 1}, {2, 2, 2}, {3, 3, 3}, {4, 2e12F, 4}});
    EXPECT_EQ(failureOf([&] { FlowScreen::requireFinite(volume); }),
        "3 of 5 points have a coordinate or velocity that is not finite or beyond 1e+12; the first "
        "is point 1, counted from 0");
}

TEST(RequireFinite, EveryComponentIsLookedAt) {
    for (int component = 0; component < 6; ++component)
        for (const float bad : {nan, infinity, -infinity, 1.1e12F, -1.1e12F}) {
            Vec3 position(1.0F);
            Vec3 velocity(1.0F);
            (component < 3 ? position : velocity)[component % 3] = bad;
            EXPECT_THROW(
                FlowScreen::requireFinite(VolumeField({position}, {velocity})), FlowScreenError);
        }
}

TEST(RequireFinite, LetsThroughWhatIsFinite) {
    EXPECT_NO_THROW(FlowScreen::requireFinite(VolumeField()));
    EXPECT_NO_THROW(
        FlowScreen::requireFinite(VolumeField({{1e12F, -1e12F, 0}}, {{-0.0F, 1e12F, -1e12F}})));
}

TEST(FlowScreen, NothingIsTracedThroughNumbersThatAreNotFinite) {
    const VolumeField volume({{0, 0, 0}, {1, 1, 1}}, {{1, 0, 0}, {nan, 0, 0}});
    EXPECT_EQ(failureOf([&] { FlowScreen::generate(volume, 50.0F, std::nullopt, 4, 10); }),
        "1 of 2 points has a coordinate or velocity that is not finite or beyond 1e+12; the first "
        "is point 1, counted from 0");
}

} // namespace

} // namespace ostrella
