#include "Solver/Tools/SU2ConfigTemplate.h"

#include "support/Wait.h"

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>

namespace ostrella {
namespace {

using SU2ConfigTemplate::freeStreamVelocity;
using SU2ConfigTemplate::renderCompressible;
using SU2ConfigTemplate::renderIncompressible;
using testing::HasSubstr;
using testing::Not;

SimulationInputs withModel(TurbulenceModel model, bool rotation = false, bool transition = false) {
    SimulationInputs inputs;
    inputs.turbulenceModel = model;
    inputs.saRotationCorrection = rotation;
    inputs.saTransition = transition;
    return inputs;
}

std::string incompressible(
    const std::string& text, const SimulationInputs& inputs, int dimensions = 3) {
    return renderIncompressible(text, inputs, "mesh.su2", dimensions);
}

std::string compressible(const std::string& text, const SimulationInputs& inputs) {
    return renderCompressible(text, inputs, "mesh.su2");
}

TEST(SolverOfATemplate, followsTheTurbulenceModel) {
    const std::string text = "{{SOLVER}} {{KIND_TURB_MODEL}}";
    const SimulationInputs sa = withModel(TurbulenceModel::spalartAllmaras);
    const SimulationInputs sst = withModel(TurbulenceModel::sst);
    const SimulationInputs laminar = withModel(TurbulenceModel::laminar);
    EXPECT_EQ(incompressible(text, sa), "INC_RANS SA");
    EXPECT_EQ(incompressible(text, sst), "INC_RANS SST");
    EXPECT_EQ(incompressible(text, laminar), "INC_NAVIER_STOKES NONE");
    EXPECT_EQ(compressible(text, sa), "RANS SA");
    EXPECT_EQ(compressible(text, sst), "RANS SST");
    EXPECT_EQ(compressible(text, laminar), "NAVIER_STOKES NONE");
}

TEST(SAOptionsLine, listsTheOptionsThatAreSet) {
    const std::string line = "<{{SA_OPTIONS_LINE}}>";
    using enum TurbulenceModel;
    EXPECT_EQ(incompressible(line, withModel(spalartAllmaras)), "<>");
    EXPECT_EQ(incompressible(line, withModel(spalartAllmaras, true)), "<SA_OPTIONS= (ROTATION)>");
    EXPECT_EQ(incompressible(line, withModel(spalartAllmaras, false, true)), "<SA_OPTIONS= (BCM)>");
    EXPECT_EQ(compressible(line, withModel(spalartAllmaras, true, true)),
        "<SA_OPTIONS= (ROTATION, BCM)>");
}

TEST(SAOptionsLine, isEmptyForOtherModels) {
    const std::string line = "<{{SA_OPTIONS_LINE}}>";
    EXPECT_EQ(incompressible(line, withModel(TurbulenceModel::sst, false, true)), "<>");
    EXPECT_EQ(incompressible(line, withModel(TurbulenceModel::laminar, true, true)), "<>");
    EXPECT_EQ(compressible(line, withModel(TurbulenceModel::laminar, true, true)), "<>");
}

TEST(FreeStreamVelocity, isAlongXAtNoIncidence) {
    EXPECT_EQ(freeStreamVelocity(SimulationInputs(), 3), glm::dvec3(50, 0, 0));
    EXPECT_EQ(freeStreamVelocity(SimulationInputs(), 2), glm::dvec3(50, 0, 0));
}

TEST(FreeStreamVelocity, tiltsUpAndSidewardsInThreeDimensions) {
    SimulationInputs inputs;
    inputs.velocity = 100;
    inputs.alpha = 30;
    inputs.beta = 60;
    const glm::dvec3 velocity = freeStreamVelocity(inputs, 3);
    EXPECT_NEAR(velocity.x, 43.30127018922193, 1e-12); // 100 · √3/2 · 1/2
    EXPECT_NEAR(velocity.y, 86.60254037844386, 1e-12); // 100 · √3/2
    EXPECT_NEAR(velocity.z, 25, 1e-12);                // 100 · 1/2 · 1/2
    inputs.alpha = -30;
    inputs.beta = -60;
    EXPECT_LT(freeStreamVelocity(inputs, 3).y, 0);
    EXPECT_LT(freeStreamVelocity(inputs, 3).z, 0);
}

TEST(FreeStreamVelocity, tiltsTowardsYInTwoDimensionsAndIgnoresTheSideslip) {
    SimulationInputs inputs;
    inputs.alpha = 90;
    inputs.beta = 40;
    const glm::dvec3 velocity = freeStreamVelocity(inputs, 2);
    EXPECT_NEAR(velocity.x, 0, 1e-12);
    EXPECT_EQ(velocity.y, 50);
    EXPECT_EQ(velocity.z, 0);
}

TEST(IncompressibleTemplate, isFilledWithSixPlaces) {
    SimulationInputs inputs;
    inputs.velocity = 50;
    inputs.alpha = 5;
    inputs.beta = -2.25;
    inputs.density = 1.2250004;
    inputs.maxIterations = 200;
    EXPECT_EQ(renderIncompressible("{{INC_DENSITY}} {{VX}} {{VY}} {{VZ}} {{AOA_DEG}} {{BETA_DEG}} "
                                   "{{ITER}} {{MESH_FILENAME}}",
                  inputs, "mesh.su2", 3),
        "1.225000 49.771333 -1.962991 4.354427 5.000000 -2.250000 200 mesh.su2");
    EXPECT_EQ(
        renderIncompressible("{{VX}} {{VY}} {{VZ}} {{MESH_FILENAME}}", inputs, "n0012.su2", 2),
        "49.809735 4.357787 0.000000 n0012.su2");
}

TEST(IncompressibleTemplate, isPlainAtNoIncidence) {
    EXPECT_EQ(
        incompressible("{{VX}} {{VY}} {{VZ}}", SimulationInputs()), "50.000000 0.000000 0.000000");
}

TEST(CompressibleTemplate, isFilledWithMachAnglesPressureAndTemperature) {
    SimulationInputs inputs;
    inputs.velocity = 150;
    inputs.alpha = 5;
    inputs.beta = -2.25;
    inputs.density = 1.225;
    inputs.maxIterations = 50000;
    EXPECT_EQ(compressible("{{MACH}} {{AOA_DEG}} {{BETA_DEG}} {{FREESTREAM_PRESSURE}} "
                           "{{FREESTREAM_TEMPERATURE}} {{ITER}} {{MESH_FILENAME}}",
                  inputs),
        "0.4408 5.0000 -2.2500 101326.81 288.15 50000 mesh.su2");
}

TEST(CompressibleTemplate, isAtMachOneAtTheSpeedOfSound) {
    SimulationInputs inputs;
    inputs.velocity = 340.2970287557621;
    EXPECT_EQ(compressible("{{MACH}}", inputs), "1.0000");
    EXPECT_NEAR(SU2ConfigTemplate::speedOfSound, std::sqrt(1.4 * 287.058 * 288.15), 1e-10);
}

TEST(CompressibleTemplate, knowsNoVelocityOrDensity) {
    const std::string text = "{{VX}} {{VY}} {{VZ}} {{INC_DENSITY}}";
    EXPECT_EQ(compressible(text, SimulationInputs()), text);
}

TEST(AnyTemplate, isFilledEverywhere) {
    EXPECT_EQ(incompressible("{{ITER}}\n% {{ITER}}{{ITER}}", SimulationInputs()), "200\n% 200200");
    EXPECT_EQ(compressible("{{ITER}}\n% {{ITER}}{{ITER}}", SimulationInputs()), "200\n% 200200");
}

TEST(AnyTemplate, comesBackUnchangedWithoutPlaceholders) {
    for (const std::string text : {"", "SOLVER= EULER\n% {{UNKNOWN}} {VX} {{ VX }}\n"}) {
        EXPECT_EQ(incompressible(text, SimulationInputs()), text);
        EXPECT_EQ(compressible(text, SimulationInputs()), text);
    }
}

TEST(AnyTemplate, leavesTheReferenceAreaToTheCaller) {
    EXPECT_EQ(incompressible("{{REF_AREA}}", SimulationInputs()), "{{REF_AREA}}");
    EXPECT_EQ(compressible("{{REF_AREA}}", SimulationInputs()), "{{REF_AREA}}");
}

/// The templates of the package hold what is filled, and nothing that stays open but the area.
TEST(OwnTemplates, areFilledWhole) {
    const auto folder = std::filesystem::path(OSTRELLA_SOURCE_DIR) / "resources" / "templates";
    const auto read = [&folder](const char* name) { return test::readFile(folder / name); };
    const SimulationInputs inputs = withModel(TurbulenceModel::spalartAllmaras, true, true);
    for (std::string text : {incompressible(read("incompressible_rans_sa_2d.cfg"), inputs, 2),
             incompressible(read("incompressible_rans_sa_3d.cfg"), inputs, 3),
             compressible(read("compressible_rans_sa_3d.cfg"), inputs)}) {
        const std::size_t area = text.find("{{REF_AREA}}");
        ASSERT_NE(area, std::string::npos);
        text.erase(area, std::string_view("{{REF_AREA}}").size());
        EXPECT_THAT(text, Not(HasSubstr("{{")));
        EXPECT_THAT(text, HasSubstr("\nSA_OPTIONS= (ROTATION, BCM)\n"));
        EXPECT_THAT(text, HasSubstr("mesh.su2"));
    }
}

} // namespace
} // namespace ostrella
