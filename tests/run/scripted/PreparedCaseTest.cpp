// Cases that are written to be solved elsewhere.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "run/support/ToolScripts.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class PreparedCaseTest : public testing::Test {
protected:
    PreparedCaseTest() { package_.scriptGoodTools(); }

    int prepare(std::vector<std::string> more = {}) {
        more.insert(more.end(), {"--prepare", folder_.string()});
        const int status = batch_.run(more);
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        EXPECT_THAT(batch_.output(), Not(HasSubstr("Launching SU2_CFD…")));
        return status;
    }
    /// Solves the case as a user would on another machine.
    int solveByHand() const {
        BatchProcess shell("/bin/sh");
        return shell.run({"-c", "cd '" + folder_.string() + "' && '" +
                                    package_.tool("SU2_CFD").string() + "' run.cfg"});
    }

    TemporaryDirectory directory_;
    fs::path folder_ = directory_.path() / "deep" / "case";
    Package package_;
    BatchProcess batch_{package_.program()};
};

TEST_F(PreparedCaseTest, OfAModelIsComplete) {
    const fs::path json = directory_.path() / "run.json";
    EXPECT_EQ(prepare({"--sample", "sphere", "--json", json.string()}), 0);
    EXPECT_EQ(
        batch_.lines().back(), "[OK] Case prepared · run SU2_CFD run.cfg in " + folder_.string());
    EXPECT_THAT(BatchProcess::contents(folder_),
        ElementsAre("input.stl", "mesh.geo", "mesh.su2", "run.cfg"));
    EXPECT_THAT(readFile(folder_ / "run.cfg"), Not(HasSubstr("{{")));
    const auto report = nlohmann::json::parse(readFile(json));
    EXPECT_EQ(report["phase"], "prepared");
    EXPECT_EQ(report["cells"], 1);
    EXPECT_EQ(report["iterations"], nullptr);
    EXPECT_EQ(report["runDirectory"], folder_.string());
    EXPECT_GE(report["times_s"]["mesh"], 0.0);
    EXPECT_EQ(solveByHand(), 0);
    EXPECT_TRUE(fs::exists(folder_ / "flow.vtk"));
}

TEST_F(PreparedCaseTest, OfTheAerofoilIsComplete) {
    EXPECT_EQ(prepare({"--demo"}), 0);
    EXPECT_THAT(BatchProcess::contents(folder_), ElementsAre("mesh.su2", "run.cfg"));
    EXPECT_EQ(solveByHand(), 0);
}

TEST_F(PreparedCaseTest, TakesAnEmptyFolderAndARelativeName) {
    fs::create_directories(folder_);
    batch_.setWorkingDirectory(folder_.parent_path());
    EXPECT_EQ(batch_.run({"--sample", "sphere", "--prepare", "case"}), 0);
    EXPECT_EQ(batch_.lines().back(), "[OK] Case prepared · run SU2_CFD run.cfg in case");
    EXPECT_TRUE(fs::exists(folder_ / "run.cfg"));
}

TEST_F(PreparedCaseTest, RefusesAFolderThatHoldsSomething) {
    writeFile(folder_ / "run.cfg", "mine");
    EXPECT_EQ(prepare({"--sample", "sphere"}), 2);
    EXPECT_EQ(batch_.errors(), "--prepare wants a new or empty folder: " + folder_.string() +
                                   " holds something already.\n");
    EXPECT_THAT(BatchProcess::contents(folder_), ElementsAre("run.cfg"));
    EXPECT_EQ(readFile(folder_ / "run.cfg"), "mine");
}

TEST_F(PreparedCaseTest, ThatFailsLeavesNothing) {
    package_.script("gmsh", "echo mine >notes.txt\nexit 1\n");
    EXPECT_EQ(prepare({"--sample", "sphere"}), 3);
    EXPECT_THAT(batch_.line("[ERR] "), HasSubstr("Mesh failed · gmsh exited with code 1"));
    // What is no file of a case is not ours to remove.
    EXPECT_THAT(BatchProcess::contents(folder_), ElementsAre("notes.txt"));

    fs::remove_all(folder_);
    package_.script("gmsh", "exit 1\n");
    EXPECT_EQ(prepare({"--sample", "sphere"}), 3);
    EXPECT_FALSE(fs::exists(folder_));

    fs::create_directory(folder_);
    EXPECT_EQ(prepare({"--sample", "sphere"}), 3);
    EXPECT_THAT(BatchProcess::contents(folder_), IsEmpty());

    EXPECT_EQ(prepare({"--sample", "sphere", "--keep-run-directory"}), 3);
    EXPECT_THAT(BatchProcess::contents(folder_), ElementsAre("input.stl", "mesh.geo"));
}

} // namespace
} // namespace ostrella::test
