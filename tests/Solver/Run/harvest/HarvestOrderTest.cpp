// What a harvest gives and says, part by part.

#include "HarvestFixture.h"

#include "Solver/Flow/StreamlineGenerator.h"
#include "Solver/Flow/VortexExtractor.h"

#include <cmath>
#include <set>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::Gt;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::Pair;
using testing::StartsWith;

class Harvest : public HarvestTest {};

TEST_F(Harvest, OfAWholeRunGivesEveryPartInOrder) {
    writeWholeRun();
    const SimulationResult result = harvest();
    ASSERT_TRUE(result.surfaceField && result.volumeField && result.streamlines && result.vortex);
    EXPECT_EQ(result.streamlines->seedCount, 100U);
    EXPECT_GT(result.streamlines->indexCount, 1000U);
    EXPECT_GT(result.vortex->indices.size(), 30U);
    const std::string segments = std::to_string(result.streamlines->indexCount / 2);
    const std::string triangles = std::to_string(result.vortex->indices.size() / 3);
    EXPECT_THAT(lines(),
        ElementsAre(
            // 36 ids of 12 triangles.
            TextLine("Surface: 8 points, 18 primitives, Cp ∈ [-0.500, 0.500]", Level::ok),
            // The mean of 0.5 to 4; 7 × 0.95 = 6.65, so the value at place 6.
            TextLine("y⁺ on body: min 0.50 · mean 2.25 · p95 3.50 · max 4.00", Level::info),
            TextLine("Volume: 4225 points parsed in 0.0 s", Level::info),
            TextLine("Generating streamlines…", Level::info),
            Pair(MatchesRegex("Streamlines: 100 seeds → " + segments +
                              " segments in 0.00 s, \\|V\\| ∈ \\[[0-9]+\\.[0-9][0-9], "
                              "[0-9]+\\.[0-9][0-9]\\] m/s"),
                Level::ok),
            TextLine("Extracting vortex iso-surface (Q-criterion)…", Level::info),
            Pair(MatchesRegex("Vortex: " + triangles + " triangles in 0.00 s, iso Q = [0-9.e+]+"),
                Level::ok)));
}

TEST_F(Harvest, HandsEachStepWhatItNeeds) {
    writeWholeRun();
    inputs_.velocity = 40;
    inputs_.streamlineSeedCount = 49;
    inputs_.streamlineUpstreamFactor = 0.25F;
    inputs_.streamlineDownstreamFactor = 3;
    const SimulationResult result = harvest();
    ASSERT_TRUE(result.streamlines && result.vortex);
    const StreamlineFocus focus{Vec3(0), Vec3(1), true, 0.25F, 3};
    const auto lines = StreamlineGenerator::generate(*result.volumeField, 40, focus, 49, 400);
    EXPECT_EQ(result.streamlines->interleavedVertices, lines.interleavedVertices);
    EXPECT_EQ(result.streamlines->indices, lines.indices);
    EXPECT_EQ(result.streamlines->seedCount, 49U);
    const auto vortex = VortexExtractor::extract(*result.volumeField, focus, 64, 99.5F);
    ASSERT_TRUE(vortex);
    EXPECT_EQ(result.vortex->positions, vortex->positions);
    EXPECT_EQ(result.vortex->isoValue, vortex->isoValue);
}

TEST_F(Harvest, CarriesWhatTheSolveGaveAndWhereTheFilesLie) {
    writeWholeRun();
    const SimulationResult without = harvest();
    EXPECT_EQ(without.runDirectory, run_);
    EXPECT_EQ(without.surfaceVTK, surface_);
    EXPECT_EQ(without.flowVTK, volume_);
    EXPECT_EQ(without.historyCSV, std::nullopt);
    EXPECT_EQ(without.configFile, std::nullopt);
    EXPECT_EQ(without.elapsedSeconds, 12.5);
    EXPECT_EQ(without.stopReason, StopReason::iterationCap(200));
    EXPECT_EQ(without.meshCells, 1234);
    writeFile(run_ / "history.csv", "");
    writeFile(run_ / "run.cfg", "");
    const SimulationResult with = harvest();
    EXPECT_EQ(with.historyCSV, run_ / "history.csv");
    EXPECT_EQ(with.configFile, run_ / "run.cfg");
}

TEST_F(Harvest, TurnsARunInThreeDimensionsBackToTheApplicationsFrame) {
    writeSurface(FieldFiles::box(Vec3(0), Vec3(1, 2, 3)));
    writeVolume(FieldFiles::volume(
        Vec3(0), Vec3(4, 5, 6), {2, 2, 2}, [](const Vec3&) { return Vec3(7, 8, 9); }));
    const SimulationResult turned = harvest(3);
    // The solver's (x, y, z) is the application's (x, z, −y).
    EXPECT_EQ(turned.surfaceField->positions[7], Vec3(1, 3, -2));
    EXPECT_EQ(turned.surfaceField->boundingMin, Vec3(0, 0, -2));
    EXPECT_EQ(turned.surfaceField->boundingMax, Vec3(1, 3, 0));
    EXPECT_EQ(turned.volumeField->positions[7], Vec3(4, 6, -5));
    EXPECT_EQ(turned.volumeField->velocity[0], Vec3(7, 9, -8));
    const SimulationResult kept = harvest(2);
    EXPECT_EQ(kept.surfaceField->positions[7], Vec3(1, 2, 3));
    EXPECT_EQ(kept.volumeField->positions[7], Vec3(4, 5, 6));
    EXPECT_EQ(kept.volumeField->velocity[0], Vec3(7, 8, 9));
}

TEST_F(Harvest, OfTheDemoHasOneColumnOfSeedsAndNoWordOfAVortex) {
    writeSurface(FieldFiles::box(Vec3(0, -0.06F, 0), Vec3(1, 0.06F, 0)));
    writeVolume(FieldFiles::volume(
        Vec3(-2, -2, 0), Vec3(4, 2, 0), {31, 21, 1}, [](const Vec3&) { return Vec3(50, 0, 0); }));
    inputs_.streamlineSeedCount = 20;
    const SimulationResult result = harvest(2);
    ASSERT_TRUE(result.streamlines);
    EXPECT_EQ(result.streamlines->seedCount, 20U);
    // In a uniform flow each line keeps the height of its seed: twenty heights, and no depth.
    std::set<float> heights;
    for (std::size_t i = 0; i < result.streamlines->vertexCount; ++i) {
        heights.insert(std::round(1000 * result.streamlines->interleavedVertices[4 * i + 1]));
        EXPECT_EQ(result.streamlines->interleavedVertices[4 * i + 2], 0.0F);
    }
    EXPECT_EQ(heights.size(), 20U);
    EXPECT_FALSE(result.vortex);
    EXPECT_THAT(texts(), Not(Contains(StartsWith("Extracting"))));
    EXPECT_THAT(texts(), Not(Contains(StartsWith("Vortex"))));
}

TEST_F(Harvest, LooksForNoVortexAroundABodyOfATenthOfItsLengthInDepth) {
    writeVolume(wake());
    writeSurface(FieldFiles::box(Vec3(0), Vec3(1, 1, 0.1F)));
    EXPECT_FALSE(harvest(2).vortex);
    EXPECT_THAT(linesWith("Extracting"), IsEmpty());
    writeSurface(FieldFiles::box(Vec3(0), Vec3(1, 1, std::nextafter(0.1F, 1.0F))));
    harvest(2);
    EXPECT_EQ(linesWith("Extracting").size(), 1U);
}

TEST_F(Harvest, CountsHalfTheIdsAsPrimitivesOfTrianglesToo) {
    const std::vector<std::vector<int>> triangles(1000, {0, 1, 2});
    writeSurface(FieldFiles::grid({Vec3(0), Vec3(1, 0, 0), Vec3(0, 1, 0)}, triangles, 5) +
                 FieldFiles::pointData(3) + FieldFiles::scalars("Pressure_Coefficient", {1, 2, 3}));
    const SimulationResult result = harvest();
    EXPECT_EQ(result.surfaceField->primitive, SurfaceField::Primitive::triangle);
    EXPECT_EQ(result.surfaceField->indices.size(), 3000U);
    EXPECT_THAT(lines(), ElementsAre(TextLine("Surface: 3 points, 1500 primitives, Cp ∈ [1.000, "
                                              "3.000]",
                             Level::ok)));
}

TEST_F(Harvest, SaysWhereTheWakeHasNoVortex) {
    writeSurface(FieldFiles::box(Vec3(-0.5F), Vec3(0.5F)));
    writeVolume(FieldFiles::volume(
        Vec3(-2), Vec3(2), {9, 9, 9}, [](const Vec3&) { return Vec3(50, 0, 0); }));
    const SimulationResult result = harvest();
    EXPECT_FALSE(result.vortex);
    EXPECT_EQ(lines().back(), TextLine("Vortex: no Q > 0 region in the wake.", Level::warn));
    EXPECT_EQ(result.figures.vortexSeconds, std::nullopt);
}

/// Goes on by a second and a half at each look.
class TickingClock final : public Clock {
public:
    Date now() const override { return time_ += std::chrono::milliseconds(1500); }

private:
    mutable Date time_;
};

TEST_F(Harvest, MeasuresEachPart) {
    writeWholeRun();
    const TickingClock clock;
    SimulationResult result;
    onWorker([&, log = RunLog(log_)] {
        result = harvestResult(run_, {}, std::nullopt, 3, inputs_, log, {}, clock);
    });
    EXPECT_EQ(result.figures.surfaceSeconds, 1.5);
    EXPECT_EQ(result.figures.wallReportSeconds, 1.5);
    EXPECT_EQ(result.figures.volumeSeconds, 1.5);
    EXPECT_EQ(result.figures.streamlinesSeconds, 1.5);
    EXPECT_EQ(result.figures.vortexSeconds, 1.5);
    EXPECT_THAT(texts(), Contains("Volume: 4225 points parsed in 1.5 s"));
    EXPECT_THAT(texts(), Contains(MatchesRegex("Streamlines: .* in 1\\.50 s, .*")));
    EXPECT_THAT(texts(), Contains(MatchesRegex("Vortex: .* in 1\\.50 s, .*")));
}

TEST_F(Harvest, KeepsTheFiguresOfTheWall) {
    writeWholeRun();
    const auto figures = harvest().figures;
    EXPECT_EQ(figures.yPlus, (ScalarFieldStats{8, 0.5F, 4, 2.25F, 3.5F}));
}

} // namespace
} // namespace ostrella::test
