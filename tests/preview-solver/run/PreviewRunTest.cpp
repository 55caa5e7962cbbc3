#include "preview-solver/SmallMeshes.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// A working directory of its own, and the solver run in it as a child.
class PreviewRun : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "preview-run-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
    }
    void TearDown() override {
        std::error_code error;
        fs::remove_all(folder_, error);
    }

    void put(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }

    std::string get(const std::string& name) const {
        std::ifstream file(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    pid_t start() const {
        const pid_t child = fork();
        if (child == 0) {
            const bool ready =
                chdir(folder_.c_str()) == 0 && std::freopen("output.txt", "wb", stdout) != nullptr;
            if (ready)
                execl(OSTRELLA_STAGE_DIR "/libexec/ostrella/ostrella-preview-solver",
                    "ostrella-preview-solver", "run.cfg", static_cast<char*>(nullptr));
            _exit(127);
        }
        return child;
    }

    /// Runs to the end: the exit status, or minus the signal.
    int run() const {
        int status = 0;
        waitpid(start(), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    /// The last row's value in the history's column `name`.
    double last(const std::string& name) const {
        std::istringstream file(get("history.csv"));
        std::string line, header, row;
        std::getline(file, header);
        while (std::getline(file, line))
            row = line;
        const auto cells = [](const std::string& text) {
            std::vector<std::string> result;
            std::istringstream stream(text);
            std::string cell;
            while (std::getline(stream, cell, ',')) {
                cell.erase(std::remove_if(cell.begin(), cell.end(),
                               [](char c) { return c == ' ' || c == '"'; }),
                    cell.end());
                result.push_back(cell);
            }
            return result;
        };
        const auto names = cells(header);
        const auto values = cells(row);
        for (std::size_t k = 0; k < names.size() && k < values.size(); ++k)
            if (names[k] == name)
                return std::stod(values[k]);
        ADD_FAILURE() << "no column " << name;
        return std::nan("");
    }

    fs::path folder_;
};

/// Flow about a cylinder of radius 1 at the Reynolds number of its diameter, reference length 2.
std::string cylinder(
    const std::string& solver, double reynolds, double vx, double vy, const std::string& more) {
    return fmt::format(
        "SOLVER= {}\nINC_DENSITY_INIT= 1.0\nINC_NONDIM= DIMENSIONAL\n"
        "INC_VELOCITY_INIT= ( {}, {}, 0 )\nMU_CONSTANT= {}\nREF_AREA= 2.0\n"
        "MARKER_HEATFLUX= ( wall, 0.0 )\nMARKER_FAR= ( far )\n"
        "MARKER_PLOTTING= ( wall )\nMARKER_MONITORING= ( wall )\n"
        "NUM_METHOD_GRAD= WEIGHTED_LEAST_SQUARES\nCFL_NUMBER= 50\n"
        "LINEAR_SOLVER_ERROR= 0.01\nLINEAR_SOLVER_ITER= 20\n"
        "MESH_FILENAME= mesh.su2\nCONV_FILENAME= history\nVOLUME_FILENAME= flow\n"
        "SURFACE_FILENAME= surface_flow\n"
        "OUTPUT_FILES= ( PARAVIEW_ASCII, SURFACE_PARAVIEW_ASCII )\n"
        "VOLUME_OUTPUT= ( COORDINATES, SOLUTION, PRIMITIVE, VORTEX_IDENTIFICATION )\n{}",
        solver, vx, vy, 2.0 / reynolds, more);
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

} // namespace

TEST_F(PreviewRun, cylinderAtReynoldsFortyHasTheKnownDrag) {
    // Steady flow at Re 40: CD 1.52 (Dennis & Chang, J. Fluid Mech. 42, 1970).
    put("mesh.su2", SmallMeshes::ring(96, 64, 0.02));
    put("run.cfg", cylinder("INC_NAVIER_STOKES", 40, 1, 0,
                       "SLOPE_LIMITER_FLOW= NONE\nITER= 600\nCONV_FIELD= RMS_PRESSURE\n"
                       "CONV_RESIDUAL_MINVAL= -9\n"));
    EXPECT_EQ(run(), 0);
    const std::string output = get("output.txt");
    EXPECT_EQ(output.substr(0, output.find('\n')),
        "Ostrella preview solver: a stand-in for SU2_CFD, its figures are indicative.");
    EXPECT_TRUE(contains(output, "\nAll convergence criteria satisfied.\n"))
        << output.substr(0, 3000);
    EXPECT_TRUE(contains(output, "|                      rms[P]|"));
    EXPECT_NEAR(last("CD"), 1.52, 0.04);
    EXPECT_NEAR(last("CL"), 0, 1e-4);
    for (const char* name : {"flow.vtk", "surface_flow.vtk"}) {
        const std::string vtk = get(name);
        EXPECT_TRUE(contains(vtk, "\nVECTORS Velocity double\n")) << name;
        EXPECT_TRUE(
            contains(vtk, "\nSCALARS Pressure_Coefficient double 1\nLOOKUP_TABLE default\n"));
        EXPECT_TRUE(contains(vtk, "\nSCALARS Y_Plus double 1\n"));
        EXPECT_TRUE(contains(vtk, "\nSCALARS Vorticity double 1\n"));
        EXPECT_TRUE(contains(vtk, "\nSCALARS Q_Criterion double 1\n"));
        EXPECT_FALSE(contains(vtk, "nan"));
    }
}

TEST_F(PreviewRun, limiterOfAnEarlyFlowStaysWhereItIsFrozen) {
    // Frozen in the first iterations it belongs to a flow that is long gone, and the drag shows it.
    put("mesh.su2", SmallMeshes::ring(48, 32, 0.05));
    const std::string limited = "SLOPE_LIMITER_FLOW= VENKATAKRISHNAN\n"
                                "VENKAT_LIMITER_COEFF= 0.01\nITER= 150\n";
    const auto drag = [&](const std::string& more) {
        put("run.cfg", cylinder("INC_NAVIER_STOKES", 40, 1, 0, limited + more));
        EXPECT_EQ(run(), 0);
        return last("CD");
    };
    const double free = drag("");
    EXPECT_GT(std::abs(drag("LIMITER_ITER= 2\n") - free), 1e-3);
    EXPECT_NEAR(drag("LIMITER_ITER= 120\n"), free, 1e-4);
}

TEST_F(PreviewRun, dragTurnsWithTheStream) {
    put("mesh.su2", SmallMeshes::ring(48, 32, 0.05));
    for (const double vy : {0.6, -0.6}) {
        put("run.cfg", cylinder("INC_NAVIER_STOKES", 20, 0.8, vy, "ITER= 80\n"));
        EXPECT_EQ(run(), 0);
        EXPECT_GT(last("CD"), 1);
        EXPECT_NEAR(last("CL"), 0, 0.01);
        EXPECT_NEAR(last("CFy") / last("CFx"), vy / 0.8, 0.01);
    }
    EXPECT_TRUE(contains(get("output.txt"),
        "\nMaximum number of iterations reached (ITER = 80) before convergence.\n"));
}

TEST_F(PreviewRun, gasAboutACylinderStaysNearTheIncompressibleDrag) {
    put("mesh.su2", SmallMeshes::ring(64, 48, 0.04));
    // Reynolds number 40 by the diameter of 2.
    put("run.cfg", cylinder("NAVIER_STOKES", 40, 1, 0,
                       "MACH_NUMBER= 0.2\nAOA= 0\nINIT_OPTION= REYNOLDS\nREYNOLDS_NUMBER= 40\n"
                       "REYNOLDS_LENGTH= 2\nREF_DIMENSIONALIZATION= DIMENSIONAL\nITER= 300\n"
                       "SLOPE_LIMITER_FLOW= NONE\nCONV_NUM_METHOD_FLOW= ROE\n"));
    EXPECT_EQ(run(), 0);
    EXPECT_NEAR(last("CD"), 1.55, 0.1);
    EXPECT_NEAR(last("CL"), 0, 1e-3);
    EXPECT_TRUE(contains(get("flow.vtk"), "\nVECTORS Momentum double\n"));
    EXPECT_TRUE(contains(get("flow.vtk"), "\nSCALARS Mach double 1\n"));
}

TEST_F(PreviewRun, endsInWordsWithoutMeshOrConfiguration) {
    EXPECT_EQ(run(), 1);
    EXPECT_TRUE(contains(get("output.txt"), "Error: There is no configuration file run.cfg."));
    put("run.cfg", cylinder("INC_NAVIER_STOKES", 40, 1, 0, ""));
    EXPECT_EQ(run(), 1);
    EXPECT_TRUE(contains(get("output.txt"), "Error: There is no mesh file mesh.su2."));
    put("mesh.su2", "NDIME= 2\nNELEM= 0\nNPOIN= 0\n");
    EXPECT_EQ(run(), 1);
    EXPECT_TRUE(contains(get("output.txt"), "Error: The mesh has no cells."));
    EXPECT_TRUE(contains(get("output.txt"), "Error Exit"));
}

TEST_F(PreviewRun, reportsADivergedFlow) {
    // Residuals count in SI units: this stream's exceed the limit from the start.
    put("mesh.su2", SmallMeshes::ring(24, 16, 0.05));
    put("run.cfg", cylinder("INC_NAVIER_STOKES", 40, 1e15, 0, "ITER= 50\n"));
    EXPECT_EQ(run(), 1);
    const std::string output = get("output.txt");
    EXPECT_TRUE(contains(output, "Error Exit"));
    EXPECT_TRUE(contains(output, "\nThe flow has diverged (Residual > 10^20 detected).\n"));
    EXPECT_FALSE(fs::exists(folder_ / "flow.vtk"));
}

TEST_F(PreviewRun, endsAtOnceWhenTerminated) {
    put("mesh.su2", SmallMeshes::ring(128, 96, 0.01));
    put("run.cfg",
        cylinder("INC_NAVIER_STOKES", 40, 1, 0, "ITER= 1000000\nCONV_RESIDUAL_MINVAL= -40\n"));
    const pid_t child = start();
    const auto begin = std::chrono::steady_clock::now();
    // The first history row shows that the iterations are under way.
    while (get("history.csv").find("\n          0,") == std::string::npos &&
           std::chrono::steady_clock::now() - begin < std::chrono::seconds(60))
        usleep(1000);
    const auto sent = std::chrono::steady_clock::now();
    ASSERT_EQ(kill(child, SIGTERM), 0);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_LT(std::chrono::steady_clock::now() - sent, std::chrono::seconds(1));
    EXPECT_TRUE(WIFSIGNALED(status));
}
