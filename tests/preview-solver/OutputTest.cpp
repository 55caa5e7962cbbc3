#include "CflControl.h"
#include "ConvergenceMonitor.h"
#include "Forces.h"
#include "HistoryWriter.h"
#include "MeshReader.h"
#include "SpalartAllmaras.h"
#include "VtkWriter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

using namespace ostrella::preview;

namespace {

Config configOf(const std::string& text) {
    return Config::parse(text);
}

const std::string rans = "SOLVER= INC_RANS\nKIND_TURB_MODEL= SA\n";

} // namespace

TEST(PreviewHistory, headerIsQuotedAndPadded) {
    EXPECT_EQ(historyHeader(historyColumns(configOf(rans), 3)),
        "\"Time_Iter\",\"Outer_Iter\",\"Inner_Iter\",     \"rms[P]\"     ,     \"rms[U]\"     ,"
        "     \"rms[V]\"     ,     \"rms[W]\"     ,     \"rms[nu]\"    ,    \"RefForce\"    ,"
        "       \"CD\"       ,       \"CL\"       ,       \"CSF\"      ,       \"CMx\"      ,"
        "       \"CMy\"      ,       \"CMz\"      ,       \"CFx\"      ,       \"CFy\"      ,"
        "       \"CFz\"      ,      \"CEff\"      \n");
}

TEST(PreviewHistory, columnsFollowRegimeModelAndDimensions) {
    const auto join = [](const std::vector<std::string>& columns) {
        std::string text;
        for (const auto& column : columns)
            text += column + ' ';
        return text;
    };
    EXPECT_EQ(
        join(residualColumns(configOf("SOLVER= INC_NAVIER_STOKES\n"), 2)), "rms[P] rms[U] rms[V] ");
    const Config gas = configOf("SOLVER= RANS\nKIND_TURB_MODEL= SA\nMACH_NUMBER= 0.5\n"
                                "INIT_OPTION= TD_CONDITIONS\n");
    EXPECT_EQ(join(historyColumns(gas, 3)),
        "Time_Iter Outer_Iter Inner_Iter rms[Rho] rms[RhoU] rms[RhoV] rms[RhoW] rms[RhoE] rms[nu] "
        "RefForce CD CL CSF CMx CMy CMz CFx CFy CFz CEff Buffet ");
}

TEST(PreviewHistory, rowsHaveTenDigits) {
    EXPECT_EQ(historyRow({"Time_Iter", "Outer_Iter", "Inner_Iter", "rms[P]", "CD", "CL"},
                  {{"Inner_Iter", 12}, {"rms[P]", -32}, {"CD", 1.0 / 3}, {"CL", -1.25e-7}}),
        "          0,           0,          12,               -32,      0.3333333333,"
        "         -1.25e-07\n");
}

TEST(Coefficients, windAxesOfThreeDimensionsHaveLiftUpwards) {
    FreeStream stream;
    stream.alpha = std::asin(0.6);
    const auto c = Coefficients::of({1, 2, 3}, {4, 5, 6}, stream);
    EXPECT_NEAR(c.cd, 0.8 * 1 + 0.6 * 3, 1e-15);
    EXPECT_NEAR(c.cl, -0.6 * 1 + 0.8 * 3, 1e-15);
    EXPECT_NEAR(c.csf, 2, 1e-15);
    EXPECT_EQ(c.cfz, 3);
    EXPECT_EQ(c.cmy, 5);
    EXPECT_NEAR(c.efficiency, 1.8 / 2.6, 1e-14);
}

TEST(Coefficients, sideslipTurnsDragTowardsY) {
    FreeStream stream;
    stream.beta = std::asin(0.6);
    const auto c = Coefficients::of({1, 2, 3}, {0, 0, 0}, stream);
    EXPECT_NEAR(c.cd, 0.8 * 1 + 0.6 * 2, 1e-15);
    EXPECT_NEAR(c.csf, -0.6 * 1 + 0.8 * 2, 1e-15);
    EXPECT_NEAR(c.cl, 3, 1e-15);
}

TEST(Coefficients, liftOfTwoDimensionsIsAlongY) {
    FreeStream stream;
    stream.dimensions = 2;
    stream.alpha = std::asin(0.6);
    const auto c = Coefficients::of({1, 2, 0}, {0, 0, 6}, stream);
    EXPECT_NEAR(c.cd, 0.8 * 1 + 0.6 * 2, 1e-15);
    EXPECT_NEAR(c.cl, -0.6 * 1 + 0.8 * 2, 1e-15);
    EXPECT_EQ(c.csf, 0);
}

TEST(FreeStream, anglesOfIncompressibleRunsFollowTheVelocity) {
    const auto stream =
        FreeStream::of(configOf("SOLVER= INC_EULER\nAOA= 33\nINC_VELOCITY_INIT= ( 4, 3, 2 )\n"), 3);
    EXPECT_DOUBLE_EQ(stream.alpha, std::atan(0.5));
    EXPECT_DOUBLE_EQ(stream.beta, std::atan(0.75));
    const auto plane =
        FreeStream::of(configOf("SOLVER= INC_EULER\nINC_VELOCITY_INIT= ( 4, 3, 2 )\n"), 2);
    EXPECT_DOUBLE_EQ(plane.alpha, std::atan(0.75));
    EXPECT_DOUBLE_EQ(plane.speed, 5);
}

TEST(FreeStream, ofAGasFollowsMachNumberPressureAndTemperature) {
    // Figures of a recorded run: 1.22498 kg/m3, 170.012 m/s, 1.7893e-5 Pa s.
    const auto stream = FreeStream::of(configOf("SOLVER= NAVIER_STOKES\nMACH_NUMBER= 0.4996\n"
                                                "INIT_OPTION= TD_CONDITIONS\n"
                                                "FREESTREAM_PRESSURE= 101325.26\n"
                                                "FREESTREAM_TEMPERATURE= 288.15\n"),
        3);
    EXPECT_NEAR(stream.density, 1.22498, 3e-5);
    EXPECT_NEAR(stream.speed, 170.012, 1e-3);
    EXPECT_NEAR(stream.viscosity, 1.7893e-5, 1e-9);
}

TEST(ConvergenceMonitor, wantsEveryField) {
    const Config c =
        configOf(rans + "CONV_FIELD= ( RMS_PRESSURE, DRAG )\nCONV_RESIDUAL_MINVAL= -3\n"
                        "CONV_CAUCHY_ELEMS= 3\nCONV_CAUCHY_EPS= 1e-3\nCONV_STARTITER= 5\n");
    std::vector<std::string> warnings;
    ConvergenceMonitor monitor(c, residualColumns(c, 3), warnings);
    EXPECT_TRUE(warnings.empty());
    for (int i = 0; i < 5; ++i)
        EXPECT_FALSE(monitor.update(i, {{"rms[P]", -4.0}, {"CD", 0.5}})) << i;
    EXPECT_FALSE(monitor.update(5, {{"rms[P]", -2.0}, {"CD", 0.5}}));
    EXPECT_TRUE(monitor.rows()[1].converged);
    EXPECT_FALSE(monitor.rows()[0].converged);
    EXPECT_FALSE(monitor.update(6, {{"rms[P]", -4.0}, {"CD", 0.6}}));
    EXPECT_FALSE(monitor.rows()[1].converged);
    for (int i = 7; i < 9; ++i)
        EXPECT_FALSE(monitor.update(i, {{"rms[P]", -4.0}, {"CD", 0.6}}));
    EXPECT_TRUE(monitor.update(9, {{"rms[P]", -4.0}, {"CD", 0.6}}));
    EXPECT_EQ(monitor.rows()[0].field, "rms[P]");
    EXPECT_EQ(monitor.rows()[0].criterion, "< -3");
}

TEST(ConvergenceMonitor, measuresRelativeResidualsFromTheFirstOnes) {
    const Config c = configOf(
        rans + "CONV_FIELD= ( REL_RMS_PRESSURE )\nCONV_RESIDUAL_MINVAL= -3\nCONV_STARTITER= 0\n");
    std::vector<std::string> warnings;
    ConvergenceMonitor monitor(c, residualColumns(c, 3), warnings);
    EXPECT_FALSE(monitor.update(0, {{"rms[P]", -1.0}}));
    EXPECT_FALSE(monitor.update(1, {{"rms[P]", -0.5}}));
    EXPECT_FALSE(monitor.update(2, {{"rms[P]", -3.4}}));
    EXPECT_TRUE(monitor.update(3, {{"rms[P]", -3.6}}));
    EXPECT_EQ(monitor.rows()[0].field, "relrms[P]");
}

TEST(ConvergenceMonitor, leavesOutForeignFieldsAndSaysSo) {
    const Config c = configOf("SOLVER= INC_NAVIER_STOKES\nCONV_FIELD= ( RMS_DENSITY )\n");
    std::vector<std::string> warnings;
    const ConvergenceMonitor monitor(c, residualColumns(c, 3), warnings);
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_NE(warnings[0].find("RMS_DENSITY"), std::string::npos);
    EXPECT_EQ(monitor.rows()[0].field, "rms[P]");
}

TEST(Divergence, isSeenInResidualsAndDrag) {
    const std::vector<std::string> residuals{"rms[P]", "rms[U]"};
    const double nan = std::nan("");
    EXPECT_EQ(divergence({{"rms[P]", -3}, {"rms[U]", 20}, {"CD", 0.1}}, residuals), nullptr);
    EXPECT_STREQ(divergence({{"rms[P]", -3}, {"rms[U]", nan}, {"CD", 0.1}}, residuals),
        "The flow has diverged (NaN detected).");
    EXPECT_STREQ(divergence({{"rms[P]", 21}, {"rms[U]", 0}, {"CD", 0.1}}, residuals),
        "The flow has diverged (Residual > 10^20 detected).");
    EXPECT_STREQ(divergence({{"rms[P]", -3}, {"rms[U]", 0}, {"CD", nan}}, residuals),
        "The flow has diverged (NaN detected).");
}

TEST(CflControl, risesOnGoodStepsAndFallsOnBadOnes) {
    const Config c = configOf(
        rans + "CFL_NUMBER= 10\nCFL_ADAPT= YES\nCFL_ADAPT_PARAM= ( 0.5, 2, 5, 100, 0.001, 0 )\n");
    CflControl control(c);
    StepReport good;
    good.residuals = {1.0};
    good.linearReduction = 0.01;
    control.update(0, good);
    EXPECT_DOUBLE_EQ(control.value(), 20);
    for (int i = 1; i < 6; ++i)
        control.update(i, good);
    EXPECT_DOUBLE_EQ(control.value(), 100);
    StepReport bad = good;
    bad.linearReduction = 0.95;
    control.update(6, bad);
    EXPECT_DOUBLE_EQ(control.value(), 50);
    for (int i = 7; i < 20; ++i)
        control.update(i, bad);
    EXPECT_DOUBLE_EQ(control.value(), 5);
}

TEST(CflControl, keepsAFixedNumber) {
    const Config c = configOf(rans + "CFL_NUMBER= 7\n");
    CflControl control(c);
    StepReport bad;
    bad.residuals = {1.0};
    control.update(0, bad);
    EXPECT_DOUBLE_EQ(control.value(), 7);
}

TEST(SpalartAllmarasModel, holdsTheLogarithmicLayer) {
    // In a layer of constant stress, nuTilde = κ uτ d, vorticity = uτ/(κ d): production,
    // destruction and diffusion balance, so source + (1 + cb2)/σ (κ uτ)² vanishes far above nu.
    const double kappa = 0.41, speed = 2.0, distance = 0.01;
    const double nuTilde = kappa * speed * distance;
    const auto source =
        spalartAllmarasSource(nuTilde, 1e-9, speed / (kappa * distance), 0, distance, false, 1.0);
    const double diffusion = (1 + 0.622) / (2.0 / 3.0) * kappa * kappa * speed * speed;
    EXPECT_NEAR(source.value / diffusion, -1.0, 1e-3);
    EXPECT_GT(source.sink, 0);
}

TEST(SpalartAllmarasModel, eddyViscosityVanishesWithTheVariable) {
    EXPECT_EQ(spalartAllmarasFv1(0), 0);
    EXPECT_NEAR(spalartAllmarasFv1(7.1), 0.5, 1e-15);
    EXPECT_NEAR(spalartAllmarasFv1(1e4), 1, 1e-6);
}

TEST(PreviewVtk, writesTheSolversFormat) {
    const Mesh mesh =
        MeshReader::parse("NDIME= 2\nNELEM= 1\n5 0 1 2 0\nNPOIN= 3\n0 0 0\n1 0 1\n0 1 2\n"
                          "NMARK= 2\nMARKER_TAG= rim\nMARKER_ELEMS= 2\n3 0 1\n3 1 2\nMARKER_TAG= "
                          "top\nMARKER_ELEMS= 1\n3 2 0\n");
    const auto path = std::filesystem::temp_directory_path() /
                      ("preview-vtk-" + std::to_string(getpid()) + ".vtk");
    VtkWriter::write(path.string(), VtkWriter::surfaceGrid(mesh, {"top"}),
        {{"Pressure", 1, {1, 2, -3.25e-7}}, {"Velocity", 2, {1, 2, 3, 4, 5, 6}}});
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    std::filesystem::remove(path);
    EXPECT_EQ(text, "# vtk DataFile Version 3.0\nvtk output\nASCII\nDATASET UNSTRUCTURED_GRID\n"
                    "POINTS 2 double\n"
                    "0.000000e+00\t0.000000e+00\t0.0\t0.000000e+00\t1.000000e+00\t0.0\t\n"
                    "CELLS 1\t3\n2\t1\t0\t\nCELL_TYPES 1\n3\t\nPOINT_DATA 2\n"
                    "\nSCALARS Pressure double 1\nLOOKUP_TABLE default\n"
                    "1.000000e+00\t-3.250000e-07\t"
                    "\nVECTORS Velocity double\n"
                    "1.000000e+00\t2.000000e+00\t0.0\t5.000000e+00\t6.000000e+00\t0.0\t");
}
