// --write-streamlines and --write-vortex, on new runs and on earlier ones.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "run/support/ToolScripts.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

#include <sstream>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using Json = nlohmann::json;

class ResultFileTest : public testing::Test {
protected:
    ResultFileTest() {
        package_.scriptGoodTools();
        package_.script("SU2_CFD", solver_);
    }

    int run(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(),
            {"--write-streamlines", lines_.string(), "--write-vortex", vortex_.string()});
        return batch_.run(arguments);
    }

    const std::string solver_ = ToolScripts::writingHistory(3) + ToolScripts::vortexFields;
    TemporaryDirectory directory_;
    fs::path place_ = directory_.path();
    fs::path lines_ = place_ / "lines.vtk";
    fs::path vortex_ = place_ / "vortex.ply";
    Package package_;
    BatchProcess batch_{package_.program()};
};

/// The number behind the first `keyword` of a text.
std::size_t numberBehind(const std::string& text, const std::string& keyword) {
    const std::size_t found = text.find(keyword);
    EXPECT_NE(found, std::string::npos) << keyword;
    return std::stoul(text.substr(found + keyword.size()));
}

TEST_F(ResultFileTest, OfANewRunHoldWhatItsReportCounts) {
    const fs::path json = place_ / "run.json";
    const fs::path exported = place_ / "out";
    ASSERT_EQ(
        run({"--sample", "sphere", "--json", json.string(), "--export", exported.string()}), 0);
    const auto log = batch_.lines();
    ASSERT_GE(log.size(), 3U);
    EXPECT_THAT(std::vector(log.end() - 3, log.end()),
        ElementsAre("[OK] Exported 4 files to " + exported.string(),
            "[OK] Streamlines written to " + lines_.string(),
            "[OK] Vortex surface written to " + vortex_.string()));
    const Json report = Json::parse(readFile(json));
    EXPECT_EQ(report["streamlinesFile"], lines_.string());
    EXPECT_EQ(report["vortexFile"], vortex_.string());

    const std::string lines = readFile(lines_);
    EXPECT_THAT(lines, StartsWith("# vtk DataFile Version 3.0\n"));
    EXPECT_THAT(lines, HasSubstr("\nDATASET POLYDATA\n"));
    EXPECT_EQ(numberBehind(lines, "\nPOINTS "), report["results"]["streamlines"]["vertices"]);
    EXPECT_EQ(numberBehind(lines, "\nLINES "), report["results"]["streamlines"]["lines"]);
    EXPECT_THAT(lines, HasSubstr("\nSCALARS Speed float 1\n"));
    const std::string vortex = readFile(vortex_);
    EXPECT_THAT(vortex, StartsWith("ply\nformat ascii 1.0\n"));
    EXPECT_EQ(numberBehind(vortex, "element vertex "), report["results"]["vortex"]["vertices"]);
    EXPECT_EQ(numberBehind(vortex, "element face "), report["results"]["vortex"]["triangles"]);

    // An earlier run's are the same, and take the place of what was written before.
    ASSERT_EQ(run({"--results", exported.string()}), 0);
    EXPECT_EQ(readFile(lines_), lines);
    EXPECT_EQ(readFile(vortex_), vortex);
    EXPECT_THAT(
        BatchProcess::contents(place_), ElementsAre("lines.vtk", "out", "run.json", "vortex.ply"));
}

TEST_F(ResultFileTest, AreNotWrittenOverOtherFiles) {
    writeFile(lines_, "mine");
    EXPECT_EQ(run({"--sample", "sphere"}), 2);
    EXPECT_THAT(
        batch_.errors(), HasSubstr("is no streamlines file of an earlier run. Name another file."));
    EXPECT_EQ(readFile(lines_), "mine");
}

TEST_F(ResultFileTest, OfTheBuiltInCaseIsTheVortexRefusedAhead) {
    package_.script("SU2_CFD", ToolScripts::goodSolver);
    ASSERT_EQ(run({"--demo"}), 0);
    EXPECT_EQ(batch_.lines()[2], "[WARN] --write-vortex has no effect: the built-in case is "
                                 "two-dimensional and has no vortex surface.");
    EXPECT_THAT(batch_.output(), Not(HasSubstr("Vortex surface")));
    EXPECT_THAT(BatchProcess::contents(place_), ElementsAre("lines.vtk"));
}

TEST_F(ResultFileTest, ThatThereIsNothingForCostALineEach) {
    package_.script("SU2_CFD", solver_ + "rm flow.vtk\n");
    ASSERT_EQ(run({"--sample", "sphere"}), 0);
    EXPECT_THAT(batch_.lines(), Contains("[WARN] Streamlines not written · flow.vtk gave no "
                                         "volume"));
    EXPECT_THAT(batch_.lines(), Contains("[WARN] Vortex surface not written · flow.vtk gave no "
                                         "volume"));
    EXPECT_THAT(BatchProcess::contents(place_), IsEmpty());
}

TEST_F(ResultFileTest, ThatCannotBeWrittenKeepTheRunForAnotherTry) {
    const fs::path folder = place_ / "folder";
    fs::create_directory(folder);
    lines_ = folder / "lines.vtk";
    package_.script("SU2_CFD", solver_ + "rm -r '" + folder.string() + "'\n");
    EXPECT_EQ(run({"--sample", "sphere"}), 5);
    EXPECT_THAT(batch_.line("[ERR] "),
        StartsWith("[ERR] Streamlines not written · Cannot write " + lines_.string() + ": "));
    EXPECT_TRUE(fs::exists(vortex_));
    const std::string beginning = "[INFO] Run directory kept · ";
    const std::string kept = batch_.line(beginning);
    ASSERT_FALSE(kept.empty());
    lines_ = place_ / "lines.vtk";
    EXPECT_EQ(run({"--results", kept.substr(beginning.size())}), 0);
    EXPECT_TRUE(fs::exists(lines_));
}

TEST_F(ResultFileTest, OfARunThatFailedAreNone) {
    package_.script("SU2_CFD", "exit 3\n");
    EXPECT_EQ(run({"--sample", "sphere"}), 4);
    EXPECT_THAT(BatchProcess::contents(place_), IsEmpty());
    EXPECT_THAT(batch_.output(), Not(HasSubstr("not written")));
}

} // namespace
} // namespace ostrella::test
