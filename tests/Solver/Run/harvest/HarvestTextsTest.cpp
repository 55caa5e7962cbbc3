#include "Solver/Run/HarvestTexts.h"
#include "Solver/Flow/VTKParseError.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace ostrella {
namespace {

TEST(HarvestTexts, RoundAsThePlatformDoes) {
    SurfaceField surface;
    surface.scalarMin = -1.0625F;
    surface.scalarMax = 1.00049F;
    EXPECT_EQ(HarvestTexts::surfaceLine(surface),
        "Surface: 0 points, 0 primitives, Cp ∈ [-1.062, 1.000]");
    EXPECT_EQ(HarvestTexts::volumeLine({}, 12.34), "Volume: 0 points parsed in 12.3 s");
    Streamlines lines;
    lines.seedCount = 144;
    lines.indexCount = 2468;
    lines.magnitudeMin = 0.125F;
    lines.magnitudeMax = 61.999F;
    EXPECT_EQ(HarvestTexts::streamlinesLine(lines, 0.045),
        "Streamlines: 144 seeds → 1234 segments in 0.04 s, |V| ∈ [0.12, 62.00] m/s");
}

TEST(HarvestTexts, GiveTheLevelOfAVortexThreeFigures) {
    IsoSurface vortex;
    vortex.indices = {0, 1, 2, 0, 2, 3};
    vortex.isoValue = 2561.25F;
    EXPECT_EQ(
        HarvestTexts::vortexLine(vortex, 0.1), "Vortex: 2 triangles in 0.10 s, iso Q = 2.56e+03");
    vortex.isoValue = 12.3456F;
    EXPECT_EQ(HarvestTexts::vortexLine(vortex, 2), "Vortex: 2 triangles in 2.00 s, iso Q = 12.3");
    vortex.isoValue = 0.00001F;
    EXPECT_EQ(HarvestTexts::vortexLine(vortex, 2), "Vortex: 2 triangles in 2.00 s, iso Q = 1e-05");
}

std::string reasonOf(const std::exception_ptr& error) {
    return HarvestTexts::reason(error, "flow.vtk");
}

TEST(HarvestTexts, TellAnErrorInItsOwnWords) {
    EXPECT_EQ(reasonOf(std::make_exception_ptr(VTKParseError::missingVector("Velocity"))),
        "VTK missing vector field 'Velocity'.");
}

TEST(HarvestTexts, TellWhatHelpsWhereTheMemoryIsNotEnough) {
    const std::string advice = "There is not enough memory for flow.vtk. Close other programs, or "
                               "open the run's folder on a machine with more.";
    EXPECT_EQ(reasonOf(std::make_exception_ptr(std::bad_alloc())), advice);
    EXPECT_EQ(reasonOf(std::make_exception_ptr(std::bad_array_new_length())), advice);
    EXPECT_EQ(reasonOf(std::make_exception_ptr(std::length_error("vector::reserve"))), advice);
}

} // namespace
} // namespace ostrella
