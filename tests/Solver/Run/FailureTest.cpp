// What goes wrong around a run, and the text that the user reads then.

#include "RunFixture.h"
#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Geometry/ModelScreen.h"

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class Failure : public RunTest {
protected:
    Failure() { placeCube(); }

    void expectFailure(const std::string& stage, const std::string& message) const {
        EXPECT_EQ(phase(), RunPhase::failed(stage, message));
        EXPECT_FALSE(app_->parameters.isRunning());
        expectNoChildLeft();
    }
};

TEST_F(Failure, withoutTheSolver) {
    fs::remove(package_.tool("SU2_CFD"));
    runToEnd();
    expectFailure("solver", "SU2_CFD is missing from Ostrella (libexec/ostrella). The app is "
                            "incomplete; download and install Ostrella again.");
    EXPECT_THAT(runDirectoryNames(), IsEmpty());
    EXPECT_FALSE(app_->simulation.discardedRunDirectory());
}

TEST_F(Failure, withASolverThatMayNotBeExecuted) {
    fs::permissions(package_.tool("SU2_CFD"), fs::perms::owner_read);
    runToEnd();
    EXPECT_THAT(phase().message, StartsWith("SU2_CFD is missing"));
}

TEST_F(Failure, withASolverThatIsNoProgram) {
    writeFile(package_.tool("SU2_CFD"), "\x7f"
                                        "ELF and then rubbish");
    runToEnd();
    expectFailure(
        "solver", "Cannot start " + package_.tool("SU2_CFD").string() + ": Exec format error");
}

TEST_F(Failure, withoutTheTemplate) {
    fs::remove(package_.resource("su2/templates/incompressible_rans_sa_3d.cfg"));
    runToEnd();
    expectFailure("solver", "Bundled SU2 config template is missing.");
    EXPECT_THAT(runDirectoryNames(), IsEmpty());
}

TEST_F(Failure, withATemplateThatIsNoText) {
    writeFile(package_.resource("su2/templates/incompressible_rans_sa_3d.cfg"), "\xff\xfe");
    runToEnd();
    EXPECT_EQ(phase().stage, "solver");
    EXPECT_THAT(phase().message, StartsWith("Cannot read "));
    EXPECT_THAT(runDirectoryNames(), IsEmpty());
}

TEST_F(Failure, withoutAPlaceForTheRunDirectory) {
    fs::remove_all(runs_);
    writeFile(runs_, "a file where the folder was");
    runToEnd();
    expectFailure(
        "solver", "Cannot make a run directory in " + runs_.string() + ": Not a directory");
    EXPECT_EQ(readFile(runs_), "a file where the folder was");
    EXPECT_FALSE(app_->simulation.discardedRunDirectory());
}

TEST_F(Failure, withoutTheMesher) {
    fs::remove(package_.tool("gmsh"));
    runToEnd();
    expectFailure("mesh", "gmsh is missing from Ostrella (libexec/ostrella). The app is "
                          "incomplete; download and install Ostrella again.");
    EXPECT_EQ(app_->simulation.discardedRunDirectory(), runDirectory());
}

TEST_F(Failure, withoutTheMeshersTemplate) {
    fs::remove(package_.resource("su2/templates/stl_external_aero.geo"));
    runToEnd();
    expectFailure("mesh", "STL meshing template missing from app bundle.");
}

TEST_F(Failure, ofTheMesherThatDies) {
    package_.setMesher("kill -SEGV $$\n");
    runToEnd();
    expectFailure("mesh", "gmsh exited with code 11 and produced no usable mesh");
}

TEST_F(Failure, ofTheMesherThatLeavesAnEmptyFile) {
    package_.setMesher("> mesh.su2\n");
    runToEnd();
    expectFailure("mesh", "gmsh exited with code 0 and produced no usable mesh");
}

TEST_F(Failure, ofTheMesherThatFillsNoVolume) {
    package_.setMesher("printf 'NDIME= 3\\nNELEM= 0\\n' > mesh.su2\n");
    runToEnd();
    expectFailure(
        "mesh", "gmsh produced a mesh with no volume cells; the surface is probably not closed");
}

TEST_F(Failure, ofTheMesherQuotesItsFirstErrorOnly) {
    package_.setMesher("echo 'Error   : foo'\necho 'Error   : bar'\nexit 1\n");
    runToEnd();
    expectFailure("mesh", "gmsh exited with code 1 and produced no usable mesh (Error   : foo)");
}

TEST_F(Failure, ofTheSolverThatDies) {
    package_.setSolver(Script::history + "kill -KILL $$\n");
    runToEnd();
    expectFailure("solver", "SU2_CFD exited with code 9.");
    EXPECT_EQ(lastLine(), TextLine("Solver failed · SU2_CFD exited with code 9", Level::error));
}

TEST_F(Failure, ofTheSolverThatWritesNothing) {
    package_.setSolver(Script::convergedMessage);
    runToEnd();
    expectFailure(
        "results", "SU2_CFD finished but neither surface_flow.vtk nor flow.vtk could be read.");
    EXPECT_THAT(texts(), Contains("SU2_CFD finished in 0.0 s"));
    EXPECT_EQ(lastLine(), TextLine("Results failed · SU2_CFD finished but neither "
                                   "surface_flow.vtk nor flow.vtk could be read",
                              Level::error));
}

TEST_F(Failure, ofTheSolverThatWritesEmptyFiles) {
    package_.setSolver("> flow.vtk\n> surface_flow.vtk\n");
    runToEnd();
    EXPECT_EQ(phase().stage, "results");
}

TEST_F(Failure, ofTheSolverDoesNotHideWhatItSaid) {
    package_.setSolver("echo 'on one'\necho 'on the other' >&2\nprintf 'bad \\377 bytes, no end'\n"
                       "exit 1\n");
    runToEnd();
    EXPECT_THAT(lines(), Contains(TextLine("on one", Level::su2)));
    EXPECT_THAT(lines(), Contains(TextLine("on the other", Level::su2)));
    EXPECT_THAT(lines(), Contains(TextLine("bad \xEF\xBF\xBD bytes, no end", Level::su2)));
}

TEST_F(Failure, ofATurnThatCarriesAFarBodyBeyondWhatCanBeWelded) {
    // On its edge and 20 km out on each of two axes it can be welded; laid flat by the turn, it is
    // smaller and farther out on one axis.
    const TriangleMesh onEdge = rotated(cube(), Vec3(0, 0, 0.785398F));
    std::vector<Vec3> positions;
    for (const Vec3& corner : onEdge.positions()) {
        positions.push_back(corner + Vec3(20000, 20000, 0));
    }
    screenModel(TriangleMesh(positions, onEdge.normals()));
    app_->parameters.setMesh(TriangleMesh(positions, onEdge.normals()));
    app_->parameters.setRotationZ(45);
    runToEnd();
    expectFailure("mesh", "The model is too far from the origin for its size: its corners cannot "
                          "be told apart there. Move it to the origin, and export it again.");
    EXPECT_THAT(package_.starts("gmsh"), IsEmpty());
}

TEST_F(Failure, leavesTheRunDirectoryOnTheDisk) {
    package_.setSolver("exit 1\n");
    runToEnd();
    EXPECT_TRUE(fs::exists(runDirectory() / "run.cfg"));
    EXPECT_TRUE(fs::exists(runDirectory() / "mesh.su2"));
    EXPECT_EQ(app_->simulation.discardedRunDirectory(), runDirectory());
    EXPECT_FALSE(app_->simulation.activeRunDirectory());
}

TEST_F(Failure, ofAnUnusableFolderNamesIt) {
    writeFile(directory_.path() / "file", "");
    const fs::path folder = directory_.path() / "file" / "case";
    onWorker([&] {
        const SolverRunner runner(environment(), {}, folder);
        try {
            runner.prepareSTL({"cube.stl", cube()}, SimulationInputs(), app_->logStore, {});
            ADD_FAILURE() << "a folder within a file";
        } catch (const RunStageError& error) {
            EXPECT_EQ(error.stage(), RunStage::solver);
            EXPECT_EQ(std::string(error.what()),
                "Cannot make the folder " + folder.string() + ": Not a directory");
        }
    });
}

} // namespace
} // namespace ostrella::test
