// Runs whose mesher is missing, dies, or writes rubbish.

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

class MesherFailureTest : public testing::Test {
protected:
    MesherFailureTest() { package_.scriptGoodTools(); }

    /// The closing line of a run that ends at the stage of the mesh.
    std::string failure(const std::vector<std::string>& arguments = {"--sample", "sphere"}) {
        EXPECT_EQ(batch_.run(arguments), 3) << batch_.output();
        EXPECT_THAT(batch_.output(), Not(HasSubstr("Launching SU2_CFD…")));
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        return batch_.line("[ERR] ");
    }

    Package package_;
    BatchProcess batch_{package_.program()};
};

TEST_F(MesherFailureTest, NoMesher) {
    fs::remove(package_.tool("gmsh"));
    EXPECT_EQ(failure(), "[ERR] Mesh failed · gmsh is missing from Ostrella (libexec/ostrella). "
                         "The app is incomplete; download and install Ostrella again");
}

TEST_F(MesherFailureTest, AMesherThatIsAFolderOrNotExecutableIsNone) {
    fs::permissions(package_.tool("gmsh"), fs::perms(0644));
    EXPECT_THAT(failure(), HasSubstr("gmsh is missing from Ostrella"));
    fs::remove(package_.tool("gmsh"));
    fs::create_directory(package_.tool("gmsh"));
    EXPECT_THAT(failure(), HasSubstr("gmsh is missing from Ostrella"));
}

TEST_F(MesherFailureTest, AMesherThatCannotBeStarted) {
    package_.script("gmsh", "");
    writeFile(package_.tool("gmsh"), "#!/no/such/interpreter\n");
    EXPECT_THAT(failure(), HasSubstr("[ERR] Mesh failed · Cannot start"));
}

TEST_F(MesherFailureTest, NoTemplate) {
    fs::remove(package_.resources() / "su2" / "templates" / "stl_external_aero.geo");
    EXPECT_EQ(failure(), "[ERR] Mesh failed · STL meshing template missing from app bundle");
}

TEST_F(MesherFailureTest, AMesherThatDiesWithItsFirstError) {
    package_.script("gmsh", "echo 'Info    : Reading'\necho 'Error   : foo'\n"
                            "echo 'Error   : bar' >&2\nexit 1\n");
    EXPECT_EQ(failure(), "[ERR] Mesh failed · gmsh exited with code 1 and produced no usable mesh "
                         "(Error   : foo)");
    EXPECT_THAT(batch_.lines(), testing::Contains("[SU2] Error   : bar"));
    EXPECT_EQ(batch_.line("[INFO] Run directory removed"),
        "[INFO] Run directory removed · --keep-run-directory keeps it for a look");
}

TEST_F(MesherFailureTest, AMesherThatIsKilled) {
    package_.script("gmsh", "kill -SEGV $$\n");
    EXPECT_EQ(
        failure(), "[ERR] Mesh failed · gmsh exited with code 11 and produced no usable mesh");
}

TEST_F(MesherFailureTest, AMesherThatSaysNothingAndWritesNothing) {
    package_.script("gmsh", "exit 0\n");
    EXPECT_EQ(failure(), "[ERR] Mesh failed · gmsh exited with code 0 and produced no usable mesh");
    package_.script("gmsh", "touch mesh.su2\n");
    EXPECT_EQ(failure(), "[ERR] Mesh failed · gmsh exited with code 0 and produced no usable mesh");
}

TEST_F(MesherFailureTest, AMeshWithoutCells) {
    package_.script("gmsh", "printf 'NDIME= 3\\nNELEM= 0\\nNPOIN= 0\\n' >mesh.su2\n");
    EXPECT_EQ(failure(), "[ERR] Mesh failed · gmsh produced a mesh with no volume cells; the "
                         "surface is probably not closed");
}

TEST_F(MesherFailureTest, AnOpenBodyIsToldWhatToDo) {
    TemporaryDirectory directory;
    const fs::path model = directory.path() / "open.stl";
    writeFile(model, "solid open\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n"
                     "vertex 0 1 0\nendloop\nendfacet\nendsolid open\n");
    package_.script("gmsh", "echo 'Error   : no volume'\nexit 1\n");
    const fs::path json = directory.path() / "run.json";
    EXPECT_THAT(
        failure({model.string(), "--json", json.string()}), HasSubstr("(Error   : no volume)"));
    EXPECT_EQ(batch_.line("[WARN] STL"), "[WARN] STL is not water-tight · 3 open edges");
    EXPECT_EQ(batch_.line("[WARN] The STL"),
        "[WARN] The STL is not water-tight: 3 open edges. Close the surface in your CAD tool and "
        "load it again.");
    const auto report = nlohmann::json::parse(readFile(json));
    EXPECT_EQ(report["phase"], "failed");
    EXPECT_EQ(report["failure"]["stage"], "mesh");
    EXPECT_THAT(std::string(report["failure"]["message"]), HasSubstr("Close the surface"));
    EXPECT_EQ(report["surfaceIsOpen"], true);
    EXPECT_EQ(report["openEdges"], 3);
}

TEST_F(MesherFailureTest, AnOpenBodyThatMeshesIsNotToBeTrusted) {
    TemporaryDirectory directory;
    const fs::path model = directory.path() / "open.stl";
    writeFile(model, "solid open\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n"
                     "vertex 0 1 0\nendloop\nendfacet\nendsolid open\n");
    EXPECT_EQ(batch_.run({model.string(), "--surface", "as-is"}), 0);
    const auto lines = batch_.lines();
    const auto built = std::find_if(lines.begin(), lines.end(),
        [](const std::string& line) { return line.starts_with("[OK] Mesh built"); });
    ASSERT_NE(built, lines.end());
    EXPECT_EQ(*(built + 1), "[WARN] Open surface · 3 open edges · the inside may be meshed too, so "
                            "the figures are not to be trusted. Close the surface and run again.");
}

TEST_F(MesherFailureTest, AMesherThatFailsWithAMeshIsForgiven) {
    package_.script("gmsh", ToolScripts::goodMesher + "exit 1\n");
    EXPECT_EQ(batch_.run({"--sample", "sphere"}), 0);
    EXPECT_EQ(batch_.line("[WARN] gmsh"),
        "[WARN] gmsh exited with code 1 · non-fatal warnings, mesh still produced");
}

TEST_F(MesherFailureTest, AMesherThatWritesRubbishIsLeftToTheSolver) {
    package_.script("gmsh", "head -c 200000 /dev/urandom\nhead -c 100000 /dev/urandom >mesh.su2\n");
    package_.script("SU2_CFD", "echo 'Error in the mesh'\nexit 1\n");
    EXPECT_EQ(batch_.run({"--sample", "sphere"}), 4);
    EXPECT_THAT(batch_.output(), HasSubstr("[OK] Mesh built · 0.1 MB"));
    EXPECT_EQ(batch_.line("[ERR] "), "[ERR] Solver failed · SU2_CFD exited with code 1");
}

TEST_F(MesherFailureTest, AMesherThatFloodsTheLogIsHeardOut) {
    package_.script("gmsh", ToolScripts::goodMesher + "yes 'Info : flood' | head -n 200000\n");
    EXPECT_EQ(batch_.run({"--sample", "sphere", "--quiet"}), 0);
    EXPECT_THAT(batch_.output(), Not(HasSubstr("flood")));
    EXPECT_EQ(batch_.run({"--sample", "sphere"}), 0);
    std::size_t count = 0;
    for (const std::string& line : batch_.lines()) {
        count += line == "[SU2] Info : flood";
    }
    EXPECT_EQ(count, 200000U);
}

} // namespace
} // namespace ostrella::test
