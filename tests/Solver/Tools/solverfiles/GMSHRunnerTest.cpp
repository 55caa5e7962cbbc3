#include "Solver/Tools/GMSHRunner.h"

#include "Solver/Tools/solverfiles/FakePackage.h"

#include <gmock/gmock.h>

#include <thread>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// Writes a mesh of 12 345 cells.
const std::string goodMesh = R"(printf 'NDIME= 3\nNELEM= 12345\n' > mesh.su2)";

class GMSHRunnerTest : public testing::Test {
protected:
    test::FakePackage package;
    const TriangleMesh body = test::boxMesh({0, 0, 0}, {1, 2, 0.5F});
};

TEST_F(GMSHRunnerTest, tellsAndReturnsWhatWasBuilt) {
    package.setGmsh("echo 'Info    : Meshing 3D'\n" + goodMesh);
    const GMSHRunner::Output output = package.makeMesh(body);
    EXPECT_EQ(output.meshURL, package.run() / "mesh.su2");
    EXPECT_EQ(output.header, (SU2Output::MeshHeader{3, 12345}));
    EXPECT_THAT(package.lines(),
        ElementsAre("info: Using gmsh: " + package.gmsh().string(),
            "info: Body extent (solver frame, Z up): 1.00 × 2.00 × 0.50 m",
            "info: Far-field pads: −5.00 / +15.00 (X), ±5.00 (Y/Z) · 5.0 c upstream, 15.0 c down",
            "info: Far-field box: [-5.00, -5.00, -5.00] → [16.00, 7.00, 5.50]",
            "info: Mesh size: lc=[0.1000, 2.0000]", "info: gmsh · external aero volume mesh",
            "su2: Info    : Meshing 3D", "ok: Mesh built · 12 345 cells · 3D · 2.5 s"));
}

TEST_F(GMSHRunnerTest, callsTheMesherInTheRunDirectoryWithRelativeNames) {
    package.setGmsh("pwd -P > where; printf '%s\\n' \"$#\" \"$@\" > arguments\n" + goodMesh);
    package.makeMesh(body);
    EXPECT_EQ(test::readFile(package.run() / "where"), package.run().string() + "\n");
    EXPECT_EQ(
        test::readFile(package.run() / "arguments"), "5\nmesh.geo\n-3\n-o\nmesh.su2\n-nopopup\n");
}

TEST_F(GMSHRunnerTest, fillsTheTemplateEverywhere) {
    package.setTemplate(
        "{{STL_FILENAME}} {{STL_FILENAME}}\n{{XMIN}} {{XMAX}} {{YMIN}} {{YMAX}} {{ZMIN}} "
        "{{ZMAX}}\n{{LC_MIN}} {{LC_MAX}} {{LC_MAX}}\n{{SURFACE_ROAD}} {{OTHER}}\n");
    package.setGmsh(goodMesh);
    package.makeMesh(body);
    // Coarse facets of a closed body are to be meshed anew: road 0.
    EXPECT_EQ(test::readFile(package.run() / "mesh.geo"),
        "input.stl input.stl\n-5.000000 16.000000 -5.000000 7.000000 -5.000000 5.500000\n"
        "0.100000 2.000000 2.000000\n0 {{OTHER}}\n");
}

TEST_F(GMSHRunnerTest, writesTheBodyAsBinarySTL) {
    package.setGmsh(goodMesh);
    package.makeMesh(body);
    EXPECT_EQ(fs::file_size(package.run() / "input.stl"), 84U + 12U * 50U);
}

TEST_F(GMSHRunnerTest, replacesTheBodyOfAnEarlierRun) {
    package.setGmsh(goodMesh);
    test::writeFile(package.run() / "input.stl", std::string(100'000, 'x'));
    package.makeMesh(body);
    EXPECT_EQ(fs::file_size(package.run() / "input.stl"), 84U + 12U * 50U);
    package.makeMesh(body);
    EXPECT_EQ(fs::file_size(package.run() / "input.stl"), 84U + 12U * 50U);
}

TEST_F(GMSHRunnerTest, sharesNothingWithAFileTheBodyIsLinkedTo) {
    package.setGmsh(goodMesh);
    test::writeFile(package.run() / "users.stl", "the user's own");
    fs::create_symlink(package.run() / "users.stl", package.run() / "input.stl");
    package.makeMesh(body);
    EXPECT_EQ(test::readFile(package.run() / "users.stl"), "the user's own");
}

TEST_F(GMSHRunnerTest, needsTheMesher) {
    EXPECT_EQ(package.failure(body),
        "gmsh is missing from Ostrella (libexec/ostrella). The app is incomplete; download and "
        "install Ostrella again.");
    EXPECT_THAT(package.lines(), IsEmpty());
    EXPECT_FALSE(fs::exists(package.run() / "input.stl"));
}

TEST_F(GMSHRunnerTest, needsAMesherThatMayBeExecuted) {
    package.setGmsh(goodMesh);
    fs::permissions(package.gmsh(), fs::perms::owner_read);
    EXPECT_THAT(package.failure(body), StartsWith("gmsh is missing from "));
}

TEST_F(GMSHRunnerTest, needsTheTemplate) {
    package.setGmsh(goodMesh);
    package.removeTemplate();
    EXPECT_EQ(package.failure(body), "STL meshing template missing from app bundle.");
    EXPECT_THAT(package.lines(), ElementsAre("info: Using gmsh: " + package.gmsh().string()));
}

TEST_F(GMSHRunnerTest, passesTheErrorOfADamagedTemplateOn) {
    package.setGmsh(goodMesh);
    package.setTemplate("caf\xE9");
    EXPECT_THAT(package.failure(body), AllOf(StartsWith("Cannot read "), HasSubstr(".geo")));
}

TEST_F(GMSHRunnerTest, passesTheErrorOfTheRunDirectoryOn) {
    package.setGmsh(goodMesh);
    fs::remove_all(package.run());
    EXPECT_EQ(package.failure(body),
        "Cannot write " + (package.run() / "input.stl").string() + ": No such file or directory");
}

TEST_F(GMSHRunnerTest, passesTheErrorOfABodyThatCannotBeReplacedOn) {
    package.setGmsh(goodMesh);
    test::writeFile(package.run() / "input.stl" / "file", "x");
    EXPECT_EQ(package.failure(body),
        "Cannot remove " + (package.run() / "input.stl").string() + ": Directory not empty");
}

TEST_F(GMSHRunnerTest, passesTheErrorOfAScriptThatCannotBeWrittenOn) {
    package.setGmsh(goodMesh);
    fs::create_directories(package.run() / "mesh.geo");
    EXPECT_EQ(package.failure(body),
        "Cannot write " + (package.run() / "mesh.geo").string() + ": Is a directory");
}

TEST_F(GMSHRunnerTest, goesOnAfterANonZeroExitWithAMesh) {
    package.setGmsh(goodMesh + "\necho 'Error   : something small'\nexit 1");
    const GMSHRunner::Output output = package.makeMesh(body);
    EXPECT_EQ(output.header, (SU2Output::MeshHeader{3, 12345}));
    const auto lines = package.lines();
    ASSERT_EQ(lines.size(), 9U);
    EXPECT_EQ(lines[6], "su2: Error   : something small");
    EXPECT_EQ(lines[7], "warn: gmsh exited with code 1 · non-fatal warnings, mesh still produced");
    EXPECT_EQ(lines[8], "ok: Mesh built · 12 345 cells · 3D · 2.5 s");
}

TEST_F(GMSHRunnerTest, failsWithoutAMeshWhateverTheExit) {
    package.setGmsh("exit 0");
    EXPECT_EQ(package.failure(body), "gmsh exited with code 0 and produced no usable mesh");
    package.setGmsh("exit 3");
    EXPECT_EQ(package.failure(body), "gmsh exited with code 3 and produced no usable mesh");
    package.setGmsh("kill -9 $$");
    EXPECT_EQ(package.failure(body), "gmsh exited with code 9 and produced no usable mesh");
}

TEST_F(GMSHRunnerTest, failsWithAnEmptyMeshFile) {
    package.setGmsh(": > mesh.su2");
    EXPECT_EQ(package.failure(body), "gmsh exited with code 0 and produced no usable mesh");
}

TEST_F(GMSHRunnerTest, quotesTheFirstErrorOfTheMesher) {
    package.setGmsh("echo 'Info    : Error ahead'\necho 'Error   : foo'\necho 'Error   : bar' >&2\n"
                    "exit 1");
    EXPECT_EQ(package.failure(body),
        "gmsh exited with code 1 and produced no usable mesh (Error   : foo)");
    EXPECT_THAT(package.lines().back(), EndsWith("Error   : bar"));
}

TEST_F(GMSHRunnerTest, failsWithoutVolumeCells) {
    package.setGmsh(R"(printf 'NDIME= 3\nNELEM= 0\nNPOIN= 8\n' > mesh.su2; exit 1)");
    EXPECT_EQ(package.failure(body),
        "gmsh produced a mesh with no volume cells; the surface is probably not closed");
    EXPECT_EQ(package.lines().back(),
        "warn: gmsh exited with code 1 · non-fatal warnings, mesh still produced");
}

TEST_F(GMSHRunnerTest, tellsTheSizeOfAMeshWhoseHeaderDoesNotRead) {
    package.setGmsh("head -c 1572864 /dev/zero > mesh.su2");
    const GMSHRunner::Output output = package.makeMesh(body);
    EXPECT_EQ(output.header, std::nullopt);
    EXPECT_EQ(output.meshURL, package.run() / "mesh.su2");
    EXPECT_EQ(package.lines().back(), "ok: Mesh built · 1.5 MB · 2.5 s");
}

TEST_F(GMSHRunnerTest, endsTheMesherWhenItIsCancelled) {
    package.setGmsh("echo started; exec sleep 600");
    const CancellationSource source;
    QObject::connect(&package.log(), &LogStore::linesChanged, [&] {
        if (package.log().lines().back().text == "started") {
            source.cancel();
        }
    });
    EXPECT_THROW(package.makeMesh(body, source.token()), CancellationError);
    EXPECT_TRUE(source.isCancelled());
    EXPECT_TRUE(fs::exists(package.run() / "input.stl")) << "the files stay";
    EXPECT_TRUE(fs::exists(package.run() / "mesh.geo"));
    EXPECT_EQ(package.lines().back(), "su2: started") << "no closing line of its own";
}

TEST_F(GMSHRunnerTest, isCancelledAheadOfItsStart) {
    package.setGmsh(goodMesh);
    const CancellationSource source;
    source.cancel();
    EXPECT_THROW(package.makeMesh(body, source.token()), CancellationError);
}

TEST_F(GMSHRunnerTest, takesOneCallAtATime) {
    package.setGmsh(
        "if mkdir busy; then sleep 0.05; rmdir busy; else echo overlap > overlap; fi\n" + goodMesh);
    GMSHRunner runner(package.environment());
    test::onWorker([&] {
        const auto mesh = [&] { runner.makeMesh(body, package.run(), package.log(), {}); };
        std::thread other(mesh);
        mesh();
        other.join();
    });
    EXPECT_FALSE(fs::exists(package.run() / "overlap"));
    EXPECT_FALSE(fs::exists(package.run() / "busy"));
}

TEST_F(GMSHRunnerTest, copesWithStrangePaths) {
    const test::TemporaryDirectory parent;
    const fs::path strange = parent.path() / "a b'c\"d é 'x'";
    fs::create_directories(strange);
    package.setGmsh(goodMesh);
    GMSHRunner::Output output;
    test::onWorker([&] {
        output = GMSHRunner(package.environment()).makeMesh(body, strange, package.log(), {});
    });
    EXPECT_EQ(output.meshURL, strange / "mesh.su2");
    EXPECT_TRUE(fs::exists(strange / "input.stl"));
}

} // namespace
} // namespace ostrella
