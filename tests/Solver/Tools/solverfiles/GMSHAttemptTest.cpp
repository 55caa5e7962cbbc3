// Attempts at a mesh beside the plain one: with a prepared surface, after another one, and within a
// time.

#include "Solver/Geometry/ModelFile.h"
#include "Solver/Tools/GMSHRunner.h"

#include "Solver/Tools/solverfiles/FakePackage.h"

#include <gmock/gmock.h>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string goodMesh = R"(printf 'NDIME= 3\nNELEM= 12345\n' > mesh.su2)";

class GMSHAttempt : public testing::Test {
protected:
    GMSHAttempt() {
        package.setGmsh(goodMesh);
        package.setTemplate("{{XMIN}} {{XMAX}} {{YMIN}} {{LC_MIN}} {{LC_MAX}} {{SURFACE_ROAD}}\n");
    }
    std::string script() const { return test::readFile(package.run() / "mesh.geo"); }

    test::FakePackage package;
    const TriangleMesh body = test::boxMesh({0, 0, 0}, {1, 2, 0.5F});
    /// Stands out of the body by 0.01 m on every side.
    const TriangleMesh wrap = test::boxMesh({-0.01F, -0.01F, -0.01F}, {1.01F, 2.01F, 0.51F});
};

TEST_F(GMSHAttempt, keepsTheFacetsOfAPreparedSurfaceInTheBoxOfTheBody) {
    package.makeMesh(body, {}, {.prepared = wrap});
    // Each edge counts twice, once a facet: in order 8 of 0.52, 8 of 1.02, 4 diagonals of 1.1449
    // (1.02 by 0.52), 8 of 2.02, 4 of 2.0859 and 4 of 2.2629; the middle of the 36 is a diagonal.
    EXPECT_EQ(script(), "-5.000000 16.000000 -5.000000 0.100000 2.000000 1.1449\n");
    EXPECT_EQ(loadModelFile(package.run() / "input.stl").boundingMin(), wrap.boundingMin());
    EXPECT_EQ(package.lines()[1], "info: Body extent (solver frame, Z up): 1.00 × 2.00 × 0.50 m");
}

TEST_F(GMSHAttempt, asksForBetterCellsAroundAPreparedSurface) {
    package.setTemplate("{{OPTIMIZE_BELOW}}\n");
    package.makeMesh(body, {}, {});
    EXPECT_EQ(script(), "0.3\n") << "the mesher's own measure";
    package.makeMesh(body, {}, {.prepared = wrap});
    EXPECT_EQ(script(), "0.6\n");
}

TEST_F(GMSHAttempt, growsTheCellsToTheSizeThatThePreparedFacetsWereMadeFor) {
    package.makeMesh(body, {}, {.prepared = wrap, .facetEdge = 1.5F});
    EXPECT_EQ(script(), "-5.000000 16.000000 -5.000000 0.100000 2.000000 1.5\n");
    package.makeMesh(body, {}, {.prepared = wrap, .facetEdge = 1.1F});
    EXPECT_EQ(script(), "-5.000000 16.000000 -5.000000 0.100000 2.000000 1.1449\n")
        << "never under their median edge";
}

TEST_F(GMSHAttempt, measuresTheBoxOfAPlateAcrossTheFlowByWhatItBecame) {
    // The plate's own length along the flow would give a box that its thickness stands out of.
    const TriangleMesh plate = test::boxMesh({0, 0, 0}, {0, 1, 1});
    const TriangleMesh thick = test::boxMesh({-0.05F, -0.05F, -0.05F}, {0.05F, 1.05F, 1.05F});
    package.makeMesh(plate, {}, {.prepared = thick});
    // Five and fifteen tenths of a metre in x, 2.5 times 1.1 m to the sides; sizes of the plate.
    EXPECT_THAT(script(), testing::StartsWith("-0.550000 1.550000 -2.800000 0.050000 1.000000 "));
    EXPECT_THAT(package.lines()[1], HasSubstr("0.10 × 1.10 × 1.10 m"));
}

TEST_F(GMSHAttempt, thatIsAFurtherOneSaysLessAndTakesNoMeshOfTheFormer) {
    test::writeFile(package.run() / "mesh.su2", "NDIME= 3\nNELEM= 777\n");
    package.setGmsh("exit 3");
    EXPECT_EQ(package.failure(body, {.prepared = wrap, .isFurther = true}),
        "gmsh exited with code 3 and produced no usable mesh");
    EXPECT_THAT(package.lines(), ElementsAre("info: gmsh · external aero volume mesh"));
}

TEST_F(GMSHAttempt, endsWhenItsTimeIsOver) {
    package.setGmsh("echo started; exec sleep 600");
    try {
        package.makeMesh(body, {}, {.timeLimit = 0.2});
        FAIL() << "a mesh of a mesher that hangs";
    } catch (const GMSHError& error) {
        EXPECT_STREQ(error.what(), "gmsh produced no mesh within 0 s and was stopped");
        EXPECT_EQ(error.kind(), GMSHError::Kind::meshNotProduced);
        EXPECT_TRUE(error.isOfSurface());
    }
    EXPECT_EQ(package.lines().back(), "su2: started");
}

TEST_F(GMSHAttempt, isNotHeldUpByATimeThatIsNotOver) {
    const auto output = package.makeMesh(body, {}, {.timeLimit = 600});
    EXPECT_EQ(output.header, (SU2Output::MeshHeader{3, 12345}));
}

TEST_F(GMSHAttempt, thatIsCancelledWithinItsTimeIsCancelled) {
    package.setGmsh("echo started; exec sleep 600");
    const CancellationSource source;
    QObject::connect(&package.log(), &LogStore::linesChanged, [&] {
        if (package.log().lines().back().text == "started") {
            source.cancel();
        }
    });
    EXPECT_THROW(package.makeMesh(body, source.token(), {.timeLimit = 600}), CancellationError);
}

TEST(GMSHErrors, ofTheSurfaceAreThoseThatAnotherSurfaceMayNotMeet) {
    EXPECT_TRUE(GMSHError::meshNotProduced(1, std::nullopt).isOfSurface());
    EXPECT_TRUE(GMSHError::emptyVolumeMesh().isOfSurface());
    EXPECT_FALSE(GMSHError::templateNotFound().isOfSurface());
    EXPECT_FALSE(GMSHError::binaryNotFound(PlatformWords::freedesktop()).isOfSurface());
}

} // namespace
} // namespace ostrella
