// Whole runs with the real mesher and the solver of the tools directory: that each road leads to
// its end, with figures of the right size. How far they converge is for the slow tests.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

#include <csignal>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class RealRunTest : public testing::Test {
protected:
    nlohmann::json run(std::vector<std::string> arguments) {
        const fs::path json = directory_.path() / "run.json";
        arguments.insert(arguments.end(), {"--iterations", "50", "--json", json.string()});
        EXPECT_EQ(batch_.run(arguments), 0) << batch_.output() << batch_.errors();
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        EXPECT_THAT(batch_.output(), Not(HasSubstr("[ERR]")));
        return nlohmann::json::parse(readFile(json));
    }
    /// Expects that what was exported gives the same results again without a word on the run.
    void expectSameAgain(const fs::path& exported, nlohmann::json before) {
        const fs::path json = directory_.path() / "again.json";
        EXPECT_EQ(batch_.run({"--results", exported.string(), "--json", json.string()}), 0)
            << batch_.output() << batch_.errors();
        auto after = nlohmann::json::parse(readFile(json));
        before["results"].erase("times_s");
        after["results"].erase("times_s");
        for (const char* key : {"results", "coefficients", "iterations", "cells"}) {
            EXPECT_EQ(after[key], before[key]) << key;
        }
    }

    TemporaryDirectory directory_;
    BatchProcess batch_{stagedProgram()};
};

TEST_F(RealRunTest, TheSphereIncompressible) {
    const fs::path folder = directory_.path() / "out";
    const auto report = run({"--sample", "sphere", "--export", folder.string()});
    EXPECT_EQ(report["phase"], "finished");
    EXPECT_EQ(report["iterations"], 50);
    EXPECT_EQ(report["openEdges"], 0);
    EXPECT_EQ(report["coefficients"].size(), 10U);
    EXPECT_NEAR(report["referenceArea_m2"], 3.14159, 0.01);
    EXPECT_GT(report["cells"], 10000);
    // A bluff body in a turbulent stream, some way from its end.
    EXPECT_GT(report["cd"], 0.1);
    EXPECT_LT(report["cd"], 2.0);
    EXPECT_NEAR(report["cl"], 0.0, 0.1);
    EXPECT_THAT(BatchProcess::contents(folder),
        ElementsAre("flow.vtk", "history.csv", "run.cfg", "surface_flow.vtk"));
    EXPECT_THAT(readFile(folder / "surface_flow.vtk"), HasSubstr("Pressure_Coefficient"));
    EXPECT_THAT(std::string(report["tools"]["mesher"]), testing::StartsWith("gmsh "));
    EXPECT_EQ(report["results"]["surface"]["kind"], "triangle");
    EXPECT_EQ(report["results"]["streamlines"]["lines"], 100);
    EXPECT_GT(report["results"]["vortex"]["triangles"], 0);
    expectSameAgain(folder, report);
}

TEST_F(RealRunTest, TheWingCompressible) {
    const auto report = run({"--sample", "simple_wing", "--regime", "compressible", "--velocity",
        "150", "--alpha", "5"});
    EXPECT_EQ(report["inputs"]["regime"], "compressible");
    EXPECT_EQ(report["phase"], "finished");
    // A wing of two spans to a chord has less than half of a thin aerofoil's 2 pi alpha = 0.548.
    EXPECT_GT(report["cl"], 0.03);
    EXPECT_LT(report["cl"], 0.548);
    EXPECT_GT(report["cd"], 0.0);
}

TEST_F(RealRunTest, TheBuiltInAerofoil) {
    const fs::path folder = directory_.path() / "out";
    const auto report = run({"--demo", "--alpha", "5", "--export", folder.string()});
    EXPECT_EQ(report["phase"], "finished");
    EXPECT_EQ(report["cells"], 896 * 256);
    EXPECT_GT(report["cl"], 0.0);
    EXPECT_LT(report["cl"], 1.0);
    EXPECT_EQ(report["results"]["surface"]["kind"], "line");
    EXPECT_EQ(report["results"]["streamlines"]["lines"], 100);
    EXPECT_EQ(report["results"]["vortex"], nullptr);
    expectSameAgain(folder, report);
}

TEST_F(RealRunTest, APreparedCaseIsSolvedByHand) {
    const fs::path folder = directory_.path() / "case";
    ASSERT_EQ(batch_.run({"--sample", "rounded_box", "--iterations", "50", "--turbulence",
                  "laminar", "--prepare", folder.string()}),
        0)
        << batch_.output();
    BatchProcess shell("/bin/sh");
    const fs::path solver =
        stagedProgram().parent_path().parent_path() / "libexec" / "ostrella" / "SU2_CFD";
    EXPECT_EQ(
        shell.run({"-c", "cd '" + folder.string() + "' && '" + solver.string() + "' run.cfg"}), 0)
        << shell.output();
    for (const char* name : {"history.csv", "flow.vtk", "surface_flow.vtk"}) {
        EXPECT_GT(fs::file_size(folder / name), 0U) << name;
    }
}

TEST_F(RealRunTest, CancelledWhileTheRealMesherOrSolverWorks) {
    for (const char* moment : {"gmsh · external aero volume mesh", "[SU2] |           1|"}) {
        batch_.start({"--sample", "simple_wing"});
        ASSERT_TRUE(batch_.waitForOutput(moment)) << batch_.output();
        const auto asked = std::chrono::steady_clock::now();
        batch_.signal(SIGINT);
        EXPECT_EQ(batch_.finish(), 130) << batch_.output();
        EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(6));
        EXPECT_THAT(batch_.lines().back(), HasSubstr("[WARN] Cancelled by user after "));
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
    }
}

} // namespace
} // namespace ostrella::test
