// Runs whose solver is missing, dies, or leaves nothing that could be read.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "run/support/ToolScripts.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class SolverFailureTest : public testing::Test {
protected:
    SolverFailureTest() { package_.scriptGoodTools(); }

    /// The closing line of a run that ends with `status`.
    std::string failure(int status = 4) {
        const fs::path json = directory_.path() / "run.json";
        EXPECT_EQ(batch_.run({"--sample", "sphere", "--json", json.string()}), status)
            << batch_.output();
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        report_ = nlohmann::json::parse(readFile(json));
        EXPECT_EQ(report_["phase"], "failed");
        EXPECT_EQ(report_["failure"]["stage"], status == 4 ? "solver" : "results");
        return batch_.line("[ERR] ");
    }

    TemporaryDirectory directory_;
    Package package_;
    BatchProcess batch_{package_.program()};
    nlohmann::json report_;
};

TEST_F(SolverFailureTest, NoSolver) {
    fs::remove(package_.tool("SU2_CFD"));
    EXPECT_EQ(failure(), "[ERR] Solver failed · SU2_CFD is missing from Ostrella "
                         "(libexec/ostrella). The app is incomplete; download and install "
                         "Ostrella again");
    EXPECT_THAT(batch_.output(), Not(HasSubstr("Using gmsh")));
}

TEST_F(SolverFailureTest, NoTemplateOrNoAerofoilMesh) {
    fs::remove(package_.resources() / "su2" / "fixtures");
    EXPECT_EQ(batch_.run({"--demo"}), 4);
    EXPECT_EQ(
        batch_.line("[ERR] "), "[ERR] Solver failed · Bundled NACA0012 mesh fixture is missing");
    fs::remove_all(package_.resources() / "su2" / "templates");
    EXPECT_EQ(failure(), "[ERR] Solver failed · Bundled SU2 config template is missing");
}

TEST_F(SolverFailureTest, ASolverThatDiesKeepsItsFiguresSoFar) {
    package_.script("SU2_CFD", ToolScripts::writingHistory(7) + "echo 'Error Exit'\nexit 3\n");
    EXPECT_EQ(failure(), "[ERR] Solver failed · SU2_CFD exited with code 3");
    EXPECT_EQ(report_["failure"]["message"], "SU2_CFD exited with code 3.");
    EXPECT_EQ(report_["iterations"], 7);
    EXPECT_EQ(report_["cl"], 0.25);
    EXPECT_EQ(report_["cells"], 1);
    EXPECT_THAT(batch_.output(), Not(HasSubstr("SU2_CFD finished in")));
}

TEST_F(SolverFailureTest, ASolverThatIsKilledHasTheBareSignalNumber) {
    package_.script("SU2_CFD", "kill -ABRT $$\n");
    EXPECT_EQ(failure(), "[ERR] Solver failed · SU2_CFD exited with code 6");
}

TEST_F(SolverFailureTest, ASolverThatEndsAtOnceWithoutFiles) {
    package_.script("SU2_CFD", "exit 0\n");
    EXPECT_EQ(failure(5), "[ERR] Results failed · SU2_CFD finished but neither surface_flow.vtk "
                          "nor flow.vtk could be read");
    EXPECT_EQ(report_["iterations"], nullptr);
    EXPECT_EQ(report_["stopReason"], nullptr);
}

TEST_F(SolverFailureTest, ASolverThatLeavesEmptyFiles) {
    package_.script("SU2_CFD", "touch flow.vtk surface_flow.vtk history.csv\n");
    EXPECT_THAT(failure(5), HasSubstr("neither surface_flow.vtk nor flow.vtk could be read"));
}

TEST_F(SolverFailureTest, ASolverThatWritesRubbishEndsTheRunAndNothingElse) {
    package_.script("SU2_CFD", "head -c 300000 /dev/urandom\n"
                               "head -c 300000 /dev/urandom >history.csv\nexit 1\n");
    EXPECT_EQ(failure(), "[ERR] Solver failed · SU2_CFD exited with code 1");
    EXPECT_EQ(report_["coefficients"], nlohmann::json::object());
}

TEST_F(SolverFailureTest, ASolverThatRemovesItsDirectory) {
    package_.script("SU2_CFD", "rm -rf \"$PWD\"\n");
    EXPECT_THAT(failure(5), HasSubstr("[ERR] Results failed · "));
}

TEST_F(SolverFailureTest, ASolverThatFloodsTheLogIsHeardOut) {
    package_.script(
        "SU2_CFD", "yes '| a row of the table |' | head -n 200000\n" + ToolScripts::goodSolver);
    EXPECT_EQ(batch_.run({"--sample", "sphere"}), 0);
    std::size_t count = 0;
    for (const std::string& line : batch_.lines()) {
        count += line == "[SU2] | a row of the table |";
    }
    EXPECT_EQ(count, 200000U);
    EXPECT_THAT(
        batch_.line("[OK] Converged"), HasSubstr("Converged at iter 3 · CL 0.2500 · CD 0.5"));
}

TEST_F(SolverFailureTest, ADaemonOfTheSolversOnThePipeDelaysTheEndALittleOnly) {
    const fs::path note = directory_.path() / "daemon";
    package_.script("SU2_CFD", "sh -c '" + std::string("echo $$ >\"$0\"; exec sleep 1000' '") +
                                   note.string() + "' &\n" + "while [ ! -s '" + note.string() +
                                   "' ]; do :; done\n" + ToolScripts::goodSolver);
    batch_.start({"--sample", "sphere"});
    EXPECT_EQ(batch_.finish(std::chrono::seconds(30)), 0);
    EXPECT_TRUE(isAlive(note)) << "a descendant is nobody's business of ours";
    kill(static_cast<pid_t>(std::stol(readFile(note))), SIGKILL);
}

} // namespace
} // namespace ostrella::test
