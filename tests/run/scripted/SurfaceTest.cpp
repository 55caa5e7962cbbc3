// What becomes of a model's surface ahead of the mesher, as the options, the log and the report
// have it.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "run/support/ToolScripts.h"

#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Geometry/ModelFile.h"
#include "Solver/Geometry/SolverFrame.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

#include <csignal>
#include <numbers>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class SurfaceTest : public testing::Test {
protected:
    SurfaceTest() { package_.scriptGoodTools(); }

    int run(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--json", json_.string()});
        const int status = batch_.run(arguments);
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        report_ = nlohmann::json::parse(readFile(json_));
        return status;
    }
    /// A mesher that notes each start of its own and fails on surfaces of `facets` facets.
    void failOn(std::size_t facets) {
        package_.script(
            "gmsh", "[ \"$1\" != --version ] || exit 0\necho >>'" + starts_.string() +
                        "'\nif [ $(stat -c %s input.stl) = " + std::to_string(84 + 50 * facets) +
                        " ]; then echo 'Error   : no'; exit 1; fi\n" + ToolScripts::goodMesher);
    }
    /// The same, but with a flat cell around such surfaces; its gamma is 2.12 times its height.
    void flattenOn(std::size_t facets) {
        failOn(0);
        const std::string script = readFile(package_.tool("gmsh"));
        package_.script(
            "gmsh", script.substr(script.find('\n') + 1) +
                        "if [ $(stat -c %s input.stl) = " + std::to_string(84 + 50 * facets) +
                        " ]; then sed -i 's/^0 0 1 3/0 0 0.004 3/' mesh.su2; fi\n");
    }
    std::size_t meshings() const { return readFile(starts_).size(); }
    TriangleMesh sphere() const { return loadModelFile(package_.sample("sphere")); }

    TemporaryDirectory directory_;
    fs::path json_ = directory_.path() / "run.json";
    fs::path surface_ = directory_.path() / "surface.stl";
    fs::path starts_ = directory_.path() / "starts";
    nlohmann::json report_;
    Package package_;
    BatchProcess batch_{package_.program()};
};

TEST_F(SurfaceTest, OfASoundModelIsMeshedAsItIs) {
    failOn(0);
    EXPECT_EQ(run({"--sample", "sphere"}), 0) << batch_.output();
    EXPECT_EQ(meshings(), 1U);
    const auto lines = batch_.lines();
    const auto judged = std::find_if(lines.begin(), lines.end(),
        [](const std::string& line) { return line.starts_with("[INFO] Surface judged · "); });
    ASSERT_NE(judged, lines.end());
    EXPECT_THAT(*(judged + 1), StartsWith("[INFO] Using gmsh: "));
    const auto& surface = report_["surface"];
    EXPECT_EQ(surface["choice"], "auto");
    EXPECT_EQ(surface["road"], "as-is");
    EXPECT_EQ(surface["fitness"]["fit"], true);
    EXPECT_EQ(surface["fitness"]["facets"], sphere().facetCount());
    EXPECT_NEAR(surface["fitness"]["volume_m3"], 4.0 / 3 * std::numbers::pi, 0.05);
    EXPECT_EQ(surface["preparation"], nullptr);
    EXPECT_EQ(surface["file"], nullptr);
    // The one cell is a cube's corner.
    EXPECT_NEAR(surface["meshQuality"]["leastGamma"], std::numbers::sqrt3 - 1, 1e-9);
    EXPECT_NEAR(surface["meshQuality"]["firstPercentileGamma"], std::numbers::sqrt3 - 1, 1e-6);
    EXPECT_EQ(surface["meshQuality"]["invertedCells"], 0);
    EXPECT_GE(report_["times_s"]["surface"], 0.0);
    EXPECT_LE(report_["times_s"]["surface"], report_["times_s"]["mesh"]);
}

TEST_F(SurfaceTest, ThatTheMesherFailsOnIsPrepared) {
    failOn(sphere().facetCount());
    EXPECT_EQ(run({"--sample", "sphere"}), 0) << batch_.output();
    EXPECT_EQ(meshings(), 2U);
    EXPECT_THAT(
        batch_.lines(), Contains("[WARN] No mesh of the surface as it is · gmsh exited with "
                                 "code 1 and produced no usable mesh (Error   : no)"));
    EXPECT_THAT(batch_.line("[INFO] Surface prepared"), HasSubstr(" of the model"));
    EXPECT_EQ(report_["surface"]["road"], "prepared");
    EXPECT_GT(report_["surface"]["preparation"]["facets"], 0);
}

TEST_F(SurfaceTest, WithCellsAroundItThatAreTooFlatIsPrepared) {
    flattenOn(sphere().facetCount());
    const fs::path folder = directory_.path() / "case";
    EXPECT_EQ(run({"--sample", "sphere", "--prepare", folder.string()}), 0) << batch_.output();
    EXPECT_EQ(meshings(), 2U);
    EXPECT_THAT(batch_.lines(), Contains("[WARN] Cells as flat as 0.0085 around the surface as it "
                                         "is · a solver may diverge there, so it is prepared"));
    EXPECT_EQ(report_["surface"]["road"], "prepared");
    EXPECT_NEAR(report_["surface"]["meshQuality"]["leastGamma"], std::numbers::sqrt3 - 1, 1e-9);
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    EXPECT_THAT(names, Not(Contains(testing::EndsWith(".aside"))));
}

TEST_F(SurfaceTest, WithFlatCellsAroundBothIsTakenAsItIs) {
    failOn(0);
    const std::string script = readFile(package_.tool("gmsh"));
    package_.script("gmsh",
        script.substr(script.find('\n') + 1) + "sed -i 's/^0 0 1 3/0 0 0.004 3/' mesh.su2\n");
    EXPECT_EQ(run({"--sample", "sphere", "--write-surface", surface_.string()}), 0);
    EXPECT_EQ(meshings(), 2U);
    EXPECT_EQ(batch_.line("[INFO] Mesh of"), "[INFO] Mesh of the surface as it is kept · cells as "
                                             "flat as 0.0085 around the prepared one");
    EXPECT_EQ(report_["surface"]["road"], "as-is");
    EXPECT_EQ(report_["surface"]["preparation"], nullptr);
    EXPECT_EQ(loadModelFile(surface_).facetCount(), sphere().facetCount());
}

TEST_F(SurfaceTest, IsNotPreparedIfThatIsNotWanted) {
    failOn(sphere().facetCount());
    EXPECT_EQ(run({"--sample", "sphere", "--surface", "as-is"}), 3);
    EXPECT_EQ(meshings(), 1U);
    EXPECT_THAT(batch_.output(), Not(HasSubstr("Surface prepared")));
    EXPECT_EQ(batch_.line("[ERR] "), "[ERR] Mesh failed · gmsh exited with code 1 and produced no "
                                     "usable mesh (Error   : no)");
    EXPECT_EQ(report_["surface"]["choice"], "as-is");
    EXPECT_EQ(report_["surface"]["road"], "as-is");
    EXPECT_EQ(report_["surface"]["fitness"]["fit"], true);
}

TEST_F(SurfaceTest, IsPreparedIfThatIsWantedAndWritten) {
    failOn(0);
    const fs::path folder = directory_.path() / "case";
    EXPECT_EQ(run({"--sample", "sphere", "--surface", "prepared", "--rotate", "90,0,0",
                  "--write-surface", surface_.string(), "--prepare", folder.string()}),
        0)
        << batch_.output();
    EXPECT_EQ(meshings(), 1U);
    EXPECT_THAT(batch_.lines(), Contains("[OK] Surface written to " + surface_.string()));
    EXPECT_EQ(report_["surface"]["road"], "prepared");
    EXPECT_EQ(report_["surface"]["file"], surface_.string());
    const TriangleMesh written = loadModelFile(surface_);
    EXPECT_EQ(report_["surface"]["preparation"]["facets"], written.facetCount());
    EXPECT_EQ(
        written.positions(), SolverFrame::toApp(loadModelFile(folder / "input.stl")).positions());
}

TEST_F(SurfaceTest, AsItIsIsWrittenAsItWasTurned) {
    EXPECT_EQ(run({"--sample", "simple_wing", "--rotate", "0,30,0", "--write-surface",
                  surface_.string()}),
        0);
    const TriangleMesh wing = loadModelFile(package_.sample("simple_wing"));
    constexpr float radians = 30.0F * 3.1415925F / 180.0F;
    EXPECT_EQ(loadModelFile(surface_).positions(), rotated(wing, Vec3(0, radians, 0)).positions());
    // What was written is a model like any other, but not to be written over by its own run.
    EXPECT_EQ(run({surface_.string()}), 0);
    EXPECT_EQ(batch_.run({surface_.string(), "--write-surface", surface_.string()}), 2);
    EXPECT_EQ(batch_.errors(),
        "--write-surface names the model itself, " + surface_.string() + ". Name another file.\n");
}

TEST_F(SurfaceTest, IsWrittenOfARunWithoutAMeshToo) {
    package_.script("gmsh", "exit 1\n");
    EXPECT_EQ(run({"--sample", "sphere", "--write-surface", surface_.string()}), 3);
    EXPECT_EQ(loadModelFile(surface_).facetCount(), report_["surface"]["preparation"]["facets"]);
}

TEST_F(SurfaceTest, IsNotWrittenOverAFileOfTheUsers) {
    writeFile(surface_, "solid mine\nendsolid\n");
    EXPECT_EQ(batch_.run({"--sample", "sphere", "--write-surface", surface_.string()}), 2);
    EXPECT_EQ(batch_.errors(), "--write-surface " + surface_.string() +
                                   ": the file is there already and is no surface of an earlier "
                                   "run. Name another file.\n");
    EXPECT_EQ(readFile(surface_), "solid mine\nendsolid\n");
}

TEST_F(SurfaceTest, IsNothingToTheBuiltInCase) {
    EXPECT_EQ(run({"--demo", "--surface", "prepared", "--write-surface", surface_.string()}), 0);
    EXPECT_THAT(batch_.lines(),
        Contains("[WARN] --surface has no effect: the built-in case has no model."));
    EXPECT_FALSE(fs::exists(surface_));
    EXPECT_EQ(report_["surface"], nullptr);
}

TEST_F(SurfaceTest, IsNotWrittenOfACancelledRun) {
    const fs::path note = directory_.path() / "child";
    package_.script("gmsh",
        "[ \"$1\" != --version ] || exit 0\n" + ToolScripts::notingIn(note) + ToolScripts::waiting);
    batch_.start({"--sample", "sphere", "--write-surface", surface_.string()});
    ASSERT_TRUE(waitUntil([&] { return fs::exists(note); }));
    batch_.signal(SIGINT);
    EXPECT_EQ(batch_.finish(), 130);
    EXPECT_FALSE(fs::exists(surface_));
}

} // namespace
} // namespace ostrella::test
