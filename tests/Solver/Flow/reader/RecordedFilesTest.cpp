// What a real solver wrote, read by the fast reader and by the plain one.

#include "Solver/Flow/VTKLegacyParser.h"
#include "fuzz/PlainVTKReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>

namespace ostrella {

namespace {

namespace fs = std::filesystem;

fs::path recorded(const std::string& run, const std::string& file) {
    return fs::path(OSTRELLA_RECORDED_RUNS) / run / file;
}

std::string contentsOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::span<const float> flat(const SharedArray<Vec3>& points) {
    return {&points[0].x, 3 * points.size()};
}

class RecordedFiles : public testing::TestWithParam<const char*> {};

TEST_P(RecordedFiles, SurfaceAndWallDistance) {
    const auto path = recorded(GetParam(), "surface_flow.vtk");
    fuzz::PlainVTKReader plain(contentsOf(path));
    const auto expected = plain.surface("Pressure_Coefficient");
    ASSERT_EQ(expected.failure, "");
    const auto surface = VTKLegacyParser::parseSurface(path, "Pressure_Coefficient");
    EXPECT_TRUE(std::ranges::equal(flat(surface.positions), expected.positions));
    EXPECT_TRUE(std::ranges::equal(surface.scalar, expected.scalar));
    EXPECT_TRUE(std::ranges::equal(surface.indices, expected.indices));
    EXPECT_EQ(VTKLegacyParser::extractScalarStats(path, "Y_Plus"), plain.stats("Y_Plus").stats);
}

TEST_P(RecordedFiles, Volume) {
    const auto path = recorded(GetParam(), "flow.vtk");
    const auto expected = fuzz::PlainVTKReader(contentsOf(path)).volume("Velocity");
    ASSERT_EQ(expected.failure, "");
    const auto volume = VTKLegacyParser::parseVolume(path, "Velocity");
    EXPECT_TRUE(std::ranges::equal(flat(volume.positions), expected.positions));
    EXPECT_TRUE(std::ranges::equal(flat(volume.velocity), expected.velocity));
}

INSTANTIATE_TEST_SUITE_P(
    Runs, RecordedFiles, testing::Values("sphere_inc_sa", "naca_inc_sa_a5", "wing_inc_sa_a5"));

} // namespace

} // namespace ostrella
