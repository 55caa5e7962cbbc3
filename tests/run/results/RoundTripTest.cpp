// What a run exported gives the same results again, bit by bit, without being told how it was run.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "run/support/ToolScripts.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using Json = nlohmann::json;

class RoundTripTest : public testing::Test {
protected:
    RoundTripTest() {
        package_.scriptGoodTools();
        package_.script("SU2_CFD", ToolScripts::writingHistory(7) + ToolScripts::vortexFields +
                                       "echo 'All convergence criteria satisfied.'\n");
    }

    Json run(std::vector<std::string> arguments) {
        const fs::path json = place_ / "run.json";
        arguments.insert(arguments.end(), {"--json", json.string()});
        EXPECT_EQ(batch_.run(arguments), 0) << batch_.output() << batch_.errors();
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        return Json::parse(readFile(json));
    }
    /// A run with its export.
    Json solve(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--export", exported_.string()});
        return run(arguments);
    }

    /// Expects that two reports tell of the same results; how long it took is another matter.
    static void expectSameResults(Json before, Json after) {
        for (Json* report : {&before, &after}) {
            ASSERT_TRUE((*report)["results"].is_object());
            (*report)["results"].erase("times_s");
        }
        EXPECT_EQ(after["results"], before["results"]);
        for (const char* key : {"coefficients", "cl", "cd", "iterations", "cells"}) {
            EXPECT_EQ(after[key], before[key]) << key;
        }
        for (const char* key :
            {"velocity_m_s", "turbulenceModel", "regime", "streamlineUpstreamFactor",
                "streamlineDownstreamFactor", "streamlineSeedCount", "alpha_deg", "density_kg_m3",
                "maxIterations", "saRotationCorrection", "saTransition"}) {
            EXPECT_EQ(after["inputs"][key], before["inputs"][key]) << key;
        }
    }

    TemporaryDirectory directory_;
    fs::path place_ = directory_.path();
    fs::path exported_ = place_ / "exported";
    Package package_;
    BatchProcess batch_{package_.program()};
};

TEST_F(RoundTripTest, OfARunWithTheDefaults) {
    const Json before = solve({"--sample", "sphere"});
    EXPECT_EQ(before["results"]["surface"]["points"], 8);
    EXPECT_EQ(before["results"]["volume"]["points"], 4225);
    EXPECT_EQ(before["results"]["streamlines"]["seeds"], 100);
    EXPECT_GT(before["results"]["vortex"]["triangles"], 10);
    EXPECT_EQ(std::string(before["results"]["ribbons"]["sha256"]).size(), 64U);
    const Json after = run({"--results", exported_.string()});
    expectSameResults(before, after);
    EXPECT_EQ(after["phase"], "finished");
    EXPECT_EQ(after["iterations"], 7);
    EXPECT_EQ(after["cd"], 0.5);
    // Nobody saw how the solver ended, and nothing was run.
    EXPECT_EQ(after["converged"], nullptr);
    EXPECT_EQ(after["stopReason"], nullptr);
    EXPECT_EQ(after["tools"], nullptr);
    EXPECT_EQ(after["inputs"]["results"], exported_.string());
    EXPECT_NEAR(after["referenceArea_m2"], before["referenceArea_m2"], 1e-6);
}

TEST_F(RoundTripTest, OfARunWithOddValuesOfEverything) {
    const Json before = solve({"--sample", "simple_wing", "--velocity", "41.3719", "--alpha",
        "-3.1417", "--beta", "2.5", "--density", "0.9091", "--iterations", "77", "--turbulence",
        "spalartAllmaras", "--sa-transition", "--inlet-offset", "0.35", "--wake-length", "3.3",
        "--seed-count", "61"});
    EXPECT_EQ(before["results"]["streamlines"]["seeds"], 64) << "eight by eight";
    expectSameResults(before, run({"--results", exported_.string()}));
}

TEST_F(RoundTripTest, OfACompressibleRunWhoseMachNumberIsRounded) {
    const Json before = solve({"--sample", "sphere", "--regime", "compressible", "--velocity",
        "170.0213", "--turbulence", "sst"});
    expectSameResults(before, run({"--results", exported_.string()}));
}

TEST_F(RoundTripTest, OfTheBuiltInCaseInTwoDimensions) {
    package_.script("SU2_CFD", ToolScripts::goodSolver);
    // Its cells of the volume file are one, those of its mesh more.
    Json before = solve({"--demo", "--velocity", "33.3", "--alpha", "4"});
    EXPECT_EQ(before["results"]["vortex"], nullptr);
    Json after = run({"--results", exported_.string(), "--dimensions", "2"});
    before.erase("cells");
    after.erase("cells");
    expectSameResults(before, after);
}

TEST_F(RoundTripTest, OfAnExportOfAnExport) {
    const Json before = solve({"--sample", "sphere", "--velocity", "12.34"});
    const fs::path again = place_ / "again";
    const Json first = run({"--results", exported_.string(), "--export", again.string()});
    EXPECT_EQ(first["exported"].size(), 4U);
    EXPECT_THAT(BatchProcess::contents(again),
        ElementsAre("flow.vtk", "history.csv", "run.cfg", "surface_flow.vtk"));
    for (const char* name : {"flow.vtk", "history.csv", "run.cfg", "surface_flow.vtk"}) {
        EXPECT_EQ(readFile(again / name), readFile(exported_ / name)) << name;
    }
    expectSameResults(before, first);
    expectSameResults(before, run({"--results", again.string()}));
}

TEST_F(RoundTripTest, OfAKeptRunDirectory) {
    const fs::path json = place_ / "run.json";
    ASSERT_EQ(
        batch_.run({"--sample", "sphere", "--keep-run-directory", "--json", json.string()}), 0);
    const Json before = Json::parse(readFile(json));
    ASSERT_EQ(batch_.run({"--results", before["runDirectory"], "--json", json.string()}), 0);
    expectSameResults(before, Json::parse(readFile(json)));
}

TEST_F(RoundTripTest, OfACaseThatWasSolvedElsewhere) {
    const fs::path folder = place_ / "case";
    ASSERT_EQ(batch_.run({"--sample", "sphere", "--velocity", "70", "--seed-count", "25",
                  "--prepare", folder.string()}),
        0);
    BatchProcess shell("/bin/sh");
    ASSERT_EQ(shell.run({"-c", "cd '" + folder.string() + "' && '" +
                                   package_.tool("SU2_CFD").string() + "' run.cfg"}),
        0);
    const Json after = run({"--results", folder.string()});
    const Json before = solve({"--sample", "sphere", "--velocity", "70", "--seed-count", "25"});
    expectSameResults(before, after);
}

TEST_F(RoundTripTest, TheUsersWordsGoBeforeTheConfigurations) {
    const Json before = solve({"--sample", "sphere", "--velocity", "20"});
    const Json after =
        run({"--results", exported_.string(), "--velocity", "50", "--seed-count", "36"});
    EXPECT_EQ(after["inputs"]["velocity_m_s"], 50.0);
    EXPECT_EQ(after["results"]["streamlines"]["seeds"], 36);
    EXPECT_NE(
        after["results"]["streamlines"]["sha256"], before["results"]["streamlines"]["sha256"]);
    EXPECT_EQ(after["results"]["vortex"]["sha256"], before["results"]["vortex"]["sha256"]);
    EXPECT_EQ(after["inputs"]["maxIterations"], 200);
}

/// Runs of the real solver.
class RecordedRoundTripTest : public RoundTripTest,
                              public testing::WithParamInterface<const char*> {};

TEST_P(RecordedRoundTripTest, GivesTheSameResultsAgain) {
    const fs::path recorded = fs::path(OSTRELLA_RECORDED_RUNS) / GetParam();
    const Json before = run({"--results", recorded.string(), "--export", exported_.string()});
    EXPECT_EQ(before["inputs"]["velocity_m_s"], 50.0);
    EXPECT_GT(before["results"]["streamlines"]["segments"], 30000);
    EXPECT_TRUE(before["results"]["yPlus"].is_object());
    EXPECT_EQ(before["coefficients"].size(), 10U);
    expectSameResults(before, run({"--results", exported_.string()}));
}

INSTANTIATE_TEST_SUITE_P(Of, RecordedRoundTripTest,
    testing::Values("wing_inc_sa_a5", "sphere_inc_sa", "naca_inc_sa_a5"));

} // namespace
} // namespace ostrella::test
