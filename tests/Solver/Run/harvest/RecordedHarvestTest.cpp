// The harvest of what the real solver left.

#include "HarvestFixture.h"

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class RecordedHarvest : public HarvestTest {
protected:
    static fs::path recorded(const std::string& name) {
        return fs::path(OSTRELLA_RECORDED_RUNS) / name;
    }
    /// The beginning of a line, by its place in the log.
    std::string beginning(std::size_t place, std::size_t length) const {
        return texts()[place].substr(0, length);
    }
};

TEST_F(RecordedHarvest, OfAWingHasAllParts) {
    const SimulationResult result = harvestOf(recorded("wing_inc_sa_a5"));
    ASSERT_TRUE(result.surfaceField && result.volumeField && result.streamlines && result.vortex);
    // Points and triangles as the files' heads tell them.
    EXPECT_EQ(result.surfaceField->positions.size(), 9760U);
    EXPECT_EQ(result.surfaceField->indices.size(), 3U * 19516);
    EXPECT_EQ(result.volumeField->positions.size(), 56053U);
    // Chord 1 m along x and a span of 2 m, which lies along z in the application's frame.
    const Vec3 size = result.surfaceField->boundingMax - result.surfaceField->boundingMin;
    EXPECT_NEAR(size.x, 1, 0.01);
    EXPECT_NEAR(size.z, 2, 0.01);
    // The lines begin half a chord ahead of the leading edge and end two behind the trailing one.
    EXPECT_NEAR(result.streamlines->boundingMin.x, result.surfaceField->boundingMin.x - 0.5F, 0.01);
    EXPECT_LE(result.streamlines->boundingMax.x, result.surfaceField->boundingMax.x + 2.0F + 0.01F);
    EXPECT_GT(result.vortex->isoValue, 0);
    EXPECT_THAT(
        texts(), ElementsAre("Surface: 9760 points, 29274 primitives, Cp ∈ [-0.589, 1.129]",
                     "y⁺ on body: min 3.60 · mean 106.09 · p95 181.20 · max 311.38",
                     StartsWith("Wall mesh too coarse for y⁺ ≲ 5 (SA, low-Re) · p95 y⁺ = "
                                "181. The boundary layer"),
                     "Volume: 56053 points parsed in 0.0 s", "Generating streamlines…",
                     StartsWith("Streamlines: 100 seeds → "),
                     "Extracting vortex iso-surface (Q-criterion)…", StartsWith("Vortex: ")));
}

TEST_F(RecordedHarvest, OfAnAerofoilHasLinesInItsPlane) {
    const SimulationResult result = harvestOf(recorded("naca_inc_sa_a5"), 2);
    ASSERT_TRUE(result.surfaceField && result.volumeField && result.streamlines);
    EXPECT_EQ(result.surfaceField->primitive, SurfaceField::Primitive::line);
    EXPECT_EQ(result.surfaceField->positions.size(), 256U);
    EXPECT_EQ(result.volumeField->positions.size(), 33024U);
    EXPECT_EQ(result.streamlines->seedCount, 100U);
    EXPECT_EQ(result.streamlines->boundingMin.z, 0);
    EXPECT_EQ(result.streamlines->boundingMax.z, 0);
    EXPECT_FALSE(result.vortex);
    EXPECT_THAT(linesWith("Wall mesh"), IsEmpty()) << "its walls are resolved";
    EXPECT_THAT(linesWith("Vortex"), IsEmpty());
}

/// The sphere's run with a file cut off at so many hundredths of it.
class RecordedHarvestCut : public RecordedHarvest, public testing::WithParamInterface<int> {};

TEST_P(RecordedHarvestCut, NeverEndsTheProcess) {
    fs::create_directories(run_);
    const fs::path sphere = recorded("sphere_inc_sa");
    const std::string surface = readFile(sphere / "surface_flow.vtk");
    const std::string volume = readFile(sphere / "flow.vtk");
    writeSurface(surface.substr(0, surface.size() * static_cast<std::size_t>(GetParam()) / 100));
    writeVolume(volume);
    const SimulationResult withoutSurface = harvest();
    EXPECT_TRUE(withoutSurface.streamlines);
    writeSurface(surface);
    writeVolume(volume.substr(0, volume.size() * static_cast<std::size_t>(GetParam()) / 100));
    const SimulationResult withoutVolume = harvest();
    EXPECT_TRUE(withoutVolume.surfaceField);
    EXPECT_EQ(withoutVolume.volumeField.has_value(), withoutVolume.streamlines.has_value());
}

INSTANTIATE_TEST_SUITE_P(
    Hundredths, RecordedHarvestCut, testing::Values(1, 10, 30, 50, 70, 90, 99));

} // namespace
} // namespace ostrella::test
