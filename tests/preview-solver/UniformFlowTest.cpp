#include "Case.h"
#include "MeshReader.h"
#include "SmallMeshes.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>

using namespace ostrella::preview;
using SmallMeshes::Filling;

namespace {

struct Situation {
    std::string name;
    std::string mesh;
    std::string solver;
    std::string limiter;
};

/// Names the situation in the list of tests, without its mesh.
void PrintTo(const Situation& situation, std::ostream* out) {
    *out << situation.name;
}

class UniformFlow : public testing::TestWithParam<Situation> {};

std::string text(const Situation& s) {
    return fmt::format("SOLVER= {}\nKIND_TURB_MODEL= {}\nINC_VELOCITY_INIT= ( 40, 8, 6 )\n"
                       "INC_NONDIM= DIMENSIONAL\nMU_CONSTANT= 1.8e-5\nMACH_NUMBER= 0.4\nAOA= 7\n"
                       "SIDESLIP_ANGLE= -4\nINIT_OPTION= TD_CONDITIONS\nMARKER_FAR= ( box )\n"
                       "SLOPE_LIMITER_FLOW= {}\nCFL_NUMBER= 20\nLINEAR_SOLVER_ERROR= 1e-3\n",
        s.solver, s.solver.find("RANS") == std::string::npos ? "NONE" : "SA", s.limiter);
}

std::vector<Situation> situations() {
    std::vector<Situation> all;
    const std::pair<std::string, std::string> meshes[] = {{"square", SmallMeshes::square(5)},
        {"tetrahedra", SmallMeshes::cube(3, Filling::tetrahedra)},
        {"hexahedra", SmallMeshes::cube(3, Filling::hexahedra)},
        {"prisms", SmallMeshes::cube(2, Filling::prisms)},
        {"pyramids", SmallMeshes::cube(2, Filling::pyramids)}};
    for (const auto& [name, mesh] : meshes)
        for (const char* solver :
            {"INC_EULER", "INC_NAVIER_STOKES", "INC_RANS", "EULER", "NAVIER_STOKES", "RANS"})
            all.push_back({name + "_" + solver, mesh, solver,
                solver[0] == 'I' ? "VENKATAKRISHNAN" : "VENKATAKRISHNAN_WANG"});
    return all;
}

} // namespace

TEST_P(UniformFlow, staysUniform) {
    const Config config = Config::parse(text(GetParam()));
    const Mesh mesh = MeshReader::parse(GetParam().mesh);
    Case flow(config, mesh);
    const std::vector<double> before = flow.fields().state;
    flow.flow().prepare();
    for (const double each : flow.flow().residual())
        EXPECT_NEAR(each, 0, 1e-14);
    for (int iteration = 0; iteration < 3; ++iteration)
        flow.iterate(iteration);
    for (std::size_t k = 0; k < before.size(); ++k)
        EXPECT_NEAR(flow.fields().state[k], before[k], 1e-11);
}

INSTANTIATE_TEST_SUITE_P(EveryCellAndRegime, UniformFlow, testing::ValuesIn(situations()),
    [](const auto& each) { return each.param.name; });

TEST(DisturbedFlow, returnsToUniform) {
    const Config config = Config::parse(
        "SOLVER= INC_NAVIER_STOKES\nINC_VELOCITY_INIT= ( 1, 0, 0 )\nMU_CONSTANT= 0.01\n"
        "INC_DENSITY_INIT= 1\nMARKER_FAR= ( box )\nCFL_NUMBER= 20\nSLOPE_LIMITER_FLOW= NONE\n");
    const Mesh mesh = MeshReader::parse(SmallMeshes::cube(4, Filling::tetrahedra));
    Case flow(config, mesh);
    auto& state = flow.fields().state;
    for (std::size_t k = 0; k < state.size(); ++k)
        state[k] += 0.2 * std::sin(static_cast<double>(3 * k));
    for (int iteration = 0; iteration < 60; ++iteration)
        flow.iterate(iteration);
    for (std::size_t k = 0; k < state.size(); ++k)
        EXPECT_NEAR(state[k], k % 4 == 1 ? 1.0 : 0.0, 1e-6);
}

// Flat cells: every second layer of points nearly touches the next one. Slopes that are not limited
// feed themselves there.
TEST(DisturbedFlow, doesNotGrowOnFlatCellsOnceTheLimiterIsHeld) {
    Mesh mesh = MeshReader::parse(SmallMeshes::cube(4, Filling::tetrahedra));
    for (auto& point : mesh.points) {
        const long layer = std::lround(4 * point.z);
        point.z += layer == 1 || layer == 3 ? 0.9 / 4 : 0.0;
    }
    const auto disturbanceAfter = [&mesh](const std::string& limiter) {
        const Config config = Config::parse(
            "SOLVER= INC_NAVIER_STOKES\nINC_VELOCITY_INIT= ( 1, 0, 0 )\nMU_CONSTANT= 0.001\n"
            "INC_DENSITY_INIT= 1\nMARKER_FAR= ( box )\nCFL_NUMBER= 20\nSLOPE_LIMITER_FLOW= " +
            limiter);
        Case flow(config, mesh);
        // The limiter sees a flow without slopes, and lets all pass from then on.
        flow.iterate(0);
        auto& state = flow.fields().state;
        for (std::size_t k = 0; k < state.size(); ++k)
            state[k] += 0.2 * std::sin(static_cast<double>(3 * k));
        for (int iteration = 1; iteration < 100; ++iteration)
            flow.iterate(iteration);
        double most = 0;
        for (std::size_t k = 0; k < state.size(); ++k)
            most = std::max(most, std::abs(state[k] - (k % 4 == 1 ? 1 : 0)));
        return most;
    };
    EXPECT_GT(disturbanceAfter("NONE\n"), 1);
    EXPECT_LT(
        disturbanceAfter("VENKATAKRISHNAN\nVENKAT_LIMITER_COEFF= 0.1\nLIMITER_ITER= 0\n"), 0.05);
}

TEST(Case, refusesMarkersWithoutACondition) {
    const Mesh mesh = MeshReader::parse(SmallMeshes::square(2));
    const auto reason = [&](const std::string& markers) -> std::string {
        const Config config = Config::parse("SOLVER= INC_EULER\n" + markers);
        try {
            const Case flow(config, mesh);
        } catch (const std::exception& error) {
            return error.what();
        }
        return "accepted";
    };
    EXPECT_EQ(reason(""), "The configuration doesn't have any definition for marker box.");
    EXPECT_EQ(reason("MARKER_FAR= ( box )\nMARKER_EULER= ( box )\n"),
        "The configuration gives marker box two conditions.");
    EXPECT_EQ(reason("MARKER_FAR= ( box, sky )\n"),
        "MARKER_FAR names marker sky, which the mesh does not have.");
    EXPECT_EQ(reason("MARKER_FAR= ( box )\nMARKER_PLOTTING= ( body )\n"),
        "MARKER_PLOTTING names marker body, which the mesh does not have.");
    EXPECT_EQ(reason("MARKER_FAR= ( box )\n"), "accepted");
}
