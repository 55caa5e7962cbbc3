// The recorded runs of the real solver, through everything that a harvest computes. The expected
// hashes and figures come from a plain program of a few hundred lines, written apart from this code
// and compiled both without optimisation and with every instruction of its machine: what is drawn
// is the same bytes in every build, on every compiler and on every run.

#include "Solver/Flow/FlowScreen.h"
#include "Solver/Flow/StreamlineGenerator.h"
#include "Solver/Flow/StreamlineRibbons.h"
#include "Solver/Flow/VTKLegacyParser.h"
#include "Solver/Flow/VortexExtractor.h"
#include "Solver/Geometry/SolverFrame.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

using namespace ostrella;

namespace {

/// FNV-1a over the bytes of an array, 64 bits.
template <class Array>
std::uint64_t hash(const Array& array) {
    std::uint64_t value = 14695981039346656037U;
    for (const std::byte byte : std::as_bytes(std::span(array.data(), array.size())))
        value = (value ^ std::to_integer<std::uint64_t>(byte)) * 1099511628211U;
    return value;
}

/// What the harvest of a case computes, with the settings' initial values.
class RecordedRun {
public:
    RecordedRun(const std::string& name, bool isThreeDimensional) {
        const auto folder = std::filesystem::path(OSTRELLA_RECORDED_RUNS) / name;
        surface =
            VTKLegacyParser::parseSurface(folder / "surface_flow.vtk", "Pressure_Coefficient");
        volume = VTKLegacyParser::parseVolume(folder / "flow.vtk", "Velocity");
        if (isThreeDimensional) {
            surface = SolverFrame::toApp(surface);
            volume = SolverFrame::toApp(volume);
        }
        focus = StreamlineFocus::around(surface.boundingMin, surface.boundingMax, 0.5F, 2.0F);
        lines = StreamlineGenerator::generate(volume, 50.0F, focus, 100, 400);
        ribbons = StreamlineRibbons::build(lines);
        vortex = VortexExtractor::extract(volume, focus, 64, 99.5F);
    }

    SurfaceField surface;
    VolumeField volume;
    StreamlineFocus focus;
    Streamlines lines;
    StreamlineRibbons ribbons;
    std::optional<IsoSurface> vortex;
};

TEST(RecordedRuns, sphereGivesTheSameBytesEverywhere) {
    const RecordedRun run("sphere_inc_sa", true);
    EXPECT_EQ(run.surface.primitive, SurfaceField::Primitive::triangle);
    EXPECT_EQ(hash(run.surface.positions), 0xf5de06be03a1a389U);
    EXPECT_EQ(hash(run.surface.scalar), 0xbc3c0cc3a24f7530U);
    EXPECT_EQ(hash(run.surface.indices), 0xb407d48eeb32f5efU);
    EXPECT_EQ(hash(run.volume.positions), 0xc6b5dfdae6846f48U);
    EXPECT_EQ(hash(run.volume.velocity), 0x924f5aa54f0d3af3U);
    EXPECT_EQ(run.lines.vertexCount, 39626U);
    EXPECT_EQ(run.lines.indexCount, 79052U);
    EXPECT_EQ(run.lines.seedCount, 100U);
    EXPECT_FLOAT_EQ(run.lines.magnitudeMin, 10.0158529F);
    EXPECT_FLOAT_EQ(run.lines.magnitudeMax, 56.3645592F);
    EXPECT_EQ(hash(run.lines.interleavedVertices), 0x553f4aaa0d80cb1fU);
    EXPECT_EQ(hash(run.lines.indices), 0x692ed9303ed07b3fU);
    EXPECT_EQ(run.ribbons.lineCount, 100U);
    EXPECT_EQ(hash(run.ribbons.points), 0xb35a4f6f7707afccU);
    EXPECT_EQ(hash(run.ribbons.indices), 0x8b03ddd469c2c9ffU);
    ASSERT_TRUE(run.vortex);
    EXPECT_EQ(run.vortex->positions.size(), 159U);
    EXPECT_EQ(run.vortex->indices.size(), 3U * 216U);
    EXPECT_FLOAT_EQ(run.vortex->isoValue, 2478.75488F);
    EXPECT_EQ(hash(run.vortex->positions), 0xddc851f183b173f1U);
    EXPECT_EQ(hash(run.vortex->normals), 0xe3905051ba405648U);
    EXPECT_EQ(hash(run.vortex->indices), 0x7279dfbf2bcac1d2U);
}

TEST(RecordedRuns, wingGivesTheSameBytesEverywhere) {
    const RecordedRun run("wing_inc_sa_a5", true);
    EXPECT_EQ(run.surface.primitive, SurfaceField::Primitive::triangle);
    EXPECT_EQ(hash(run.surface.positions), 0x575991f354208f37U);
    EXPECT_EQ(hash(run.surface.scalar), 0xfbdc43bf14320b88U);
    EXPECT_EQ(hash(run.surface.indices), 0x623bc55f7abadaa5U);
    EXPECT_EQ(hash(run.volume.positions), 0xe3765e5f0ca635afU);
    EXPECT_EQ(hash(run.volume.velocity), 0x64e209c5a7321b80U);
    EXPECT_EQ(run.lines.vertexCount, 39975U);
    EXPECT_EQ(run.lines.indexCount, 79750U);
    EXPECT_FLOAT_EQ(run.lines.magnitudeMin, 4.46120214F);
    EXPECT_FLOAT_EQ(run.lines.magnitudeMax, 56.5830269F);
    EXPECT_EQ(hash(run.lines.interleavedVertices), 0xf8bb661620b6f359U);
    EXPECT_EQ(hash(run.lines.indices), 0x3bb41b8b82d16d52U);
    EXPECT_EQ(run.ribbons.lineCount, 100U);
    EXPECT_EQ(hash(run.ribbons.points), 0x548f37db799e751cU);
    EXPECT_EQ(hash(run.ribbons.indices), 0x2d467db48ab2899fU);
    ASSERT_TRUE(run.vortex);
    EXPECT_EQ(run.vortex->positions.size(), 47U);
    EXPECT_EQ(run.vortex->indices.size(), 3U * 56U);
    EXPECT_FLOAT_EQ(run.vortex->isoValue, 2564.89478F);
    EXPECT_EQ(hash(run.vortex->positions), 0x7f23066976ff60efU);
    EXPECT_EQ(hash(run.vortex->normals), 0x949da3f727cce339U);
    EXPECT_EQ(hash(run.vortex->indices), 0x394f516ec9a131c3U);
}

TEST(RecordedRuns, aerofoilInTwoDimensionsGivesTheSameBytesEverywhere) {
    const RecordedRun run("naca_inc_sa_a5", false);
    EXPECT_EQ(run.surface.primitive, SurfaceField::Primitive::line);
    EXPECT_EQ(hash(run.surface.positions), 0x2edea7ccfb9fef88U);
    EXPECT_EQ(hash(run.surface.scalar), 0x47e0df349661b03aU);
    EXPECT_EQ(hash(run.surface.indices), 0xbdff65420d466b25U);
    EXPECT_EQ(hash(run.volume.positions), 0x79818078395d25dcU);
    EXPECT_EQ(hash(run.volume.velocity), 0xeb7dafa576a635dbU);
    EXPECT_FALSE(run.focus.isVolumetric);
    EXPECT_EQ(run.lines.vertexCount, 39290U);
    EXPECT_EQ(run.lines.indexCount, 78380U);
    EXPECT_FLOAT_EQ(run.lines.magnitudeMin, 14.5811701F);
    EXPECT_FLOAT_EQ(run.lines.magnitudeMax, 82.8239594F);
    EXPECT_EQ(hash(run.lines.interleavedVertices), 0x7a687970b12cabbfU);
    EXPECT_EQ(hash(run.lines.indices), 0xa5a9e48a4e1ffa70U);
    EXPECT_EQ(run.ribbons.lineCount, 100U);
    EXPECT_EQ(hash(run.ribbons.points), 0x468ba463b21aa323U);
    EXPECT_EQ(hash(run.ribbons.indices), 0xcd36260132d26e5dU);
    EXPECT_FALSE(run.vortex);
}

TEST(RecordedRuns, theScreenedDoorGivesTheSameBytes) {
    const auto folder = std::filesystem::path(OSTRELLA_RECORDED_RUNS) / "sphere_inc_sa";
    const auto volume =
        SolverFrame::toApp(FlowScreen::parseVolume(folder / "flow.vtk", "Velocity"));
    const auto surface = SolverFrame::toApp(
        FlowScreen::parseSurface(folder / "surface_flow.vtk", "Pressure_Coefficient"));
    const auto focus =
        StreamlineFocus::around(surface.boundingMin, surface.boundingMax, 0.5F, 2.0F);
    const auto lines = FlowScreen::generate(volume, 50.0F, focus, 100, 400);
    EXPECT_EQ(hash(lines.interleavedVertices), 0x553f4aaa0d80cb1fU);
    const auto vortex = FlowScreen::extract(volume, focus, 64, 99.5F);
    ASSERT_TRUE(vortex);
    EXPECT_EQ(hash(vortex->positions), 0xddc851f183b173f1U);
}

} // namespace
