// What a run leaves: the log, exported files, the report, a prepared case.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "run/support/ToolScripts.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

class OutputTest : public testing::Test {
protected:
    OutputTest() { package_.scriptGoodTools(); }

    void runSphere(std::vector<std::string> more, int status = 0) {
        more.insert(more.begin(), {"--sample", "sphere"});
        ASSERT_EQ(batch_.run(more), status) << batch_.output() << batch_.errors();
        EXPECT_EQ(batch_.errors(), "");
    }
    nlohmann::json report() const { return nlohmann::json::parse(readFile(json_)); }

    TemporaryDirectory directory_;
    fs::path place_ = directory_.path();
    fs::path json_ = place_ / "run.json";
    Package package_;
    BatchProcess batch_{package_.program()};
};

TEST_F(OutputTest, TheLogHasTheLinesOfTheDesktopInTheirOrder) {
    runSphere({});
    std::vector<std::string> own;
    for (const std::string& line : batch_.lines()) {
        if (!line.starts_with("[SU2]")) {
            own.push_back(line);
        }
    }
    EXPECT_THAT(own,
        ElementsAre(MatchesRegex("\\[INFO\\] Ostrella [0-9.]+ · Linux [0-9.]+ · .+"),
            "[INFO] Awaiting geometry. Drop an STL onto the viewport, press Ctrl+O, or pick a "
            "sample.",
            MatchesRegex("\\[INFO\\] Loaded sphere.stl · [0-9 ]+ facets · 2.00 × 2.00 × 2.00 m"),
            "[INFO] Ready. Press Ctrl+R to run.",
            "[INFO] Using solver: " + package_.tool("SU2_CFD").string(),
            MatchesRegex("\\[INFO\\] Working dir: .*/Ostrella-[0-9A-F]{8}"),
            "[INFO] Regime: Incompressible (M < 0.3)",
            "[INFO] Geometry turned into the solver frame (app Y up → SU2 Z up)",
            "[INFO] Surface judged · 5 120 facets · 1 shell · closed · fit for meshing",
            "[INFO] Using gmsh: " + package_.tool("gmsh").string(),
            "[INFO] Body extent (solver frame, Z up): 2.00 × 2.00 × 2.00 m",
            "[INFO] Far-field pads: −10.00 / +30.00 (X), ±8.00 (Y/Z) · 5.0 c upstream, 15.0 c down",
            "[INFO] Far-field box: [-11.00, -9.00, -9.00] → [31.00, 9.00, 9.00]",
            "[INFO] Mesh size: lc=[0.1000, 2.0000]", "[INFO] gmsh · external aero volume mesh",
            MatchesRegex("\\[OK\\] Mesh built · 1 cells · 3D · [0-9.]+ s"),
            MatchesRegex("\\[INFO\\] Reference area \\(planform, top view\\): 3\\.1[0-9]+ m²"),
            "[INFO] V=50.00 m/s, α=0.00°, β=0.00°, ρ=1.225 kg/m³, ITER=200",
            "[INFO] Launching SU2_CFD…", MatchesRegex("\\[INFO\\] SU2_CFD finished in [0-9.]+ s"),
            "[OK] Surface: 3 points, 1 primitives, Cp ∈ [-0.500, 0.500]",
            MatchesRegex("\\[INFO\\] Volume: 4 points parsed in [0-9.]+ s"),
            "[INFO] Generating streamlines…",
            MatchesRegex("\\[OK\\] Streamlines: 100 seeds → 0 segments in [0-9.]+ s, \\|V\\| ∈ "
                         "\\[50.00, 50.00\\] m/s"),
            MatchesRegex("\\[OK\\] Converged at iter 3 · CL 0.2500 · CD 0.5000 · [0-9.]+ s")));
}

TEST_F(OutputTest, NothingIsLeftInTheTemporaryDirectoryOrTheHome) {
    runSphere({"--iterations", "75"});
    EXPECT_THAT(batch_.output(), HasSubstr("ITER=75"));
    EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
    EXPECT_THAT(BatchProcess::contents(batch_.home()), IsEmpty())
        << "the user's preferences were touched";
}

TEST_F(OutputTest, TheValuesOfTheOptionsReachTheCase) {
    runSphere(
        {"--velocity", "60.5", "--alpha", "-5", "--beta", "3", "--density", "1.1", "--iterations",
            "75", "--regime", "compressible", "--turbulence", "laminar", "--keep-run-directory"});
    EXPECT_THAT(batch_.lines(), Contains("[INFO] Regime: Compressible (transonic+)"));
    EXPECT_THAT(
        batch_.lines(), Contains("[INFO] V=60.50 m/s, α=-5.00°, β=3.00°, ρ=1.100 kg/m³, ITER=75"));
    const std::string kept = batch_.line("[INFO] Run directory kept · ");
    const fs::path run = kept.substr(std::string("[INFO] Run directory kept · ").size());
    EXPECT_THAT(
        BatchProcess::contents(run), ElementsAre("flow.vtk", "history.csv", "input.stl", "mesh.geo",
                                         "mesh.su2", "run.cfg", "surface_flow.vtk"));
    EXPECT_THAT(readFile(run / "run.cfg"), HasSubstr("NAVIER_STOKES"));
    EXPECT_THAT(readFile(run / "run.cfg"), Not(HasSubstr("{{")));
    EXPECT_THAT(readFile(run / "mesh.geo"), Not(HasSubstr("{{")));
}

TEST_F(OutputTest, TheModelIsTurned) {
    ASSERT_EQ(batch_.run({"--sample", "rounded_box", "--rotate", "0,90,0"}), 0);
    // Two metres along x and one along the others; a quarter about the upward axis swaps x and the
    // side.
    EXPECT_THAT(
        batch_.lines(), Contains("[INFO] Body extent (solver frame, Z up): 1.00 × 2.00 × 1.00 m"));
}

TEST_F(OutputTest, AnExportCopiesTheFourFilesAndNeverWritesOver) {
    const fs::path folder = place_ / "deep" / "out";
    runSphere({"--export", folder.string(), "--json", json_.string()});
    EXPECT_EQ(batch_.lines().back(), "[OK] Exported 4 files to " + folder.string());
    EXPECT_THAT(BatchProcess::contents(folder),
        ElementsAre("flow.vtk", "history.csv", "run.cfg", "surface_flow.vtk"));
    EXPECT_EQ(report()["exported"][0], (folder / "surface_flow.vtk").string());
    writeFile(folder / "run.cfg", "mine");
    runSphere({"--export", folder.string()});
    EXPECT_THAT(BatchProcess::contents(folder),
        ElementsAre("flow 2.vtk", "flow.vtk", "history 2.csv", "history.csv", "run 2.cfg",
            "run.cfg", "surface_flow 2.vtk", "surface_flow.vtk"));
    EXPECT_EQ(readFile(folder / "run.cfg"), "mine");
}

TEST_F(OutputTest, AnExportThatFailsKeepsTheRunDirectory) {
    const fs::path folder = place_ / "out";
    package_.script("SU2_CFD", ToolScripts::goodSolver + "echo mine >'" + folder.string() + "'\n");
    runSphere({"--export", folder.string(), "--json", json_.string()}, 5);
    EXPECT_THAT(
        batch_.line("[ERR] Export failed"), HasSubstr("Cannot make the folder " + folder.string()));
    EXPECT_EQ(readFile(folder), "mine\n");
    const std::string kept = batch_.line("[INFO] Run directory kept · ");
    const fs::path run = kept.substr(std::string("[INFO] Run directory kept · ").size());
    EXPECT_TRUE(fs::exists(run / "flow.vtk"));
    EXPECT_EQ(report()["runDirectory"], run.string());
}

TEST_F(OutputTest, TheReportOfARunHasItsFigures) {
    runSphere({"--json", json_.string(), "--velocity", "60", "--iterations", "75"});
    const auto json = report();
    EXPECT_EQ(json["phase"], "finished");
    EXPECT_EQ(json["inputs"]["sample"], "sphere");
    EXPECT_EQ(json["inputs"]["velocity_m_s"], 60.0);
    EXPECT_EQ(json["inputs"]["maxIterations"], 75);
    EXPECT_EQ(json["stopReason"]["kind"], "converged");
    EXPECT_EQ(json["converged"], true);
    EXPECT_EQ(json["iterations"], 3);
    EXPECT_EQ(json["cells"], 1);
    EXPECT_EQ(json["cl"], 0.25);
    EXPECT_EQ(json["cd"], 0.5);
    EXPECT_EQ(json["coefficients"],
        nlohmann::json({{"CD", 0.5}, {"CL", 0.25}, {"CSF", 0.125}, {"CMx", 1.0}, {"CMy", 2.0},
            {"CMz", 3.0}, {"CFx", 4.0}, {"CFy", 5.0}, {"CFz", 6.0}, {"CEff", 7.0}}));
    EXPECT_NEAR(json["referenceArea_m2"], 3.14159, 0.01);
    EXPECT_EQ(json["openEdges"], 0);
    EXPECT_EQ(json["tools"]["mesher"], "gmsh 4.99.1 (GPL)");
    EXPECT_EQ(json["tools"]["solverIsStandIn"], false);
    for (const char* stage : {"mesh", "solver", "results"}) {
        EXPECT_GE(json["times_s"][stage], 0.0) << stage;
    }
    EXPECT_EQ(json["runDirectory"], nullptr);
}

TEST_F(OutputTest, AReportIsReplacedByTheNext) {
    runSphere({"--json", json_.string()});
    const std::string first = readFile(json_);
    runSphere({"--json", json_.string(), "--alpha", "2"});
    EXPECT_EQ(report()["inputs"]["alpha_deg"], 2.0);
    EXPECT_THAT(BatchProcess::contents(place_), ElementsAre("run.json"));
}

TEST_F(OutputTest, AMesherThatHangsOverItsVersionDelaysNoRun) {
    package_.script(
        "gmsh", "[ \"$1\" != --version ] || exec sleep 1000\n" + ToolScripts::goodMesher);
    runSphere({"--json", json_.string()});
    EXPECT_EQ(report()["phase"], "finished");
    EXPECT_THAT(std::string(report()["tools"]["mesher"]), testing::StartsWith("gmsh"));
}

TEST_F(OutputTest, TheStandInIsSaidToBeOne) {
    package_.script("ostrella-preview-solver", ToolScripts::goodSolver);
    fs::remove(package_.tool("SU2_CFD"));
    fs::create_symlink("ostrella-preview-solver", package_.tool("SU2_CFD"));
    runSphere({"--json", json_.string()});
    const auto lines = batch_.lines();
    const auto used = std::find(
        lines.begin(), lines.end(), "[INFO] Using solver: " + package_.tool("SU2_CFD").string());
    ASSERT_NE(used, lines.end());
    EXPECT_EQ(*(used + 1), "[WARN] The built-in preview solver stands in for SU2_CFD · figures are "
                           "indicative");
    EXPECT_EQ(report()["tools"]["solverIsStandIn"], true);
}

TEST_F(OutputTest, TheBuiltInCaseNeedsNoMesher) {
    fs::remove(package_.tool("gmsh"));
    ASSERT_EQ(batch_.run({"--demo", "--alpha", "5", "--regime", "compressible", "--export",
                  (place_ / "out").string(), "--json", json_.string()}),
        0);
    EXPECT_THAT(batch_.lines(), Contains("[WARN] --regime has no effect: the built-in case is "
                                         "incompressible."));
    EXPECT_THAT(batch_.lines(), Contains("[INFO] V=50.00 m/s, α=5.00°, ρ=1.225 kg/m³, ITER=200"));
    EXPECT_THAT(readFile(place_ / "out" / "run.cfg"), HasSubstr("INC_RANS"));
    EXPECT_EQ(report()["inputs"]["regime"], "incompressible");
    // Structured quadrilaterals between 897 by 257 points.
    EXPECT_EQ(report()["cells"], 896 * 256);
    EXPECT_EQ(report()["referenceArea_m2"], 1.0);
}

TEST_F(OutputTest, SeveralRunsAtOnceDoNotTouchEachOther) {
    const fs::path go = place_ / "go";
    package_.script("SU2_CFD", ToolScripts::waitingFor(go) + ToolScripts::goodSolver);
    BatchProcess other(package_.program());
    other.setVariable("TMPDIR", batch_.temporary().string());
    batch_.start({"--demo"});
    other.start({"--sample", "sphere"});
    ASSERT_TRUE(batch_.waitForOutput("Launching"));
    ASSERT_TRUE(other.waitForOutput("Launching"));
    BatchProcess third(package_.program());
    third.setVariable("TMPDIR", batch_.temporary().string());
    third.start({"--demo"});
    ASSERT_TRUE(third.waitForOutput("Launching"));
    EXPECT_EQ(BatchProcess::contents(batch_.temporary()).size(), 3U);
    writeFile(go, "");
    EXPECT_EQ(batch_.finish(), 0);
    EXPECT_EQ(other.finish(), 0);
    EXPECT_EQ(third.finish(), 0);
    EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
}

TEST_F(OutputTest, RunsWithoutAnyStandardStream) {
    BatchProcess shell("/bin/sh");
    EXPECT_EQ(shell.run({"-c", "'" + package_.program().string() + "' --demo --json '" +
                                   json_.string() + "' <&- >&- 2>&-"}),
        0);
    EXPECT_EQ(report()["phase"], "finished");
    EXPECT_EQ(report()["iterations"], 3);
}

} // namespace
} // namespace ostrella::test
