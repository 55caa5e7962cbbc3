#include "Models/RunState.h"

#include "Models/PlatformWords.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace ostrella {
namespace {

TEST(RunPhase, isActiveWhileARunIsUnderWay) {
    EXPECT_TRUE(RunPhase::meshing().isActive());
    EXPECT_TRUE(RunPhase::solving().isActive());
    EXPECT_TRUE(RunPhase::postProcessing().isActive());
    EXPECT_FALSE(RunPhase::idle().isActive());
    EXPECT_FALSE(RunPhase::finished(true).isActive());
    EXPECT_FALSE(RunPhase::finished(false).isActive());
    EXPECT_FALSE(RunPhase::failed("mesh", "x").isActive());
    EXPECT_FALSE(RunPhase::cancelled().isActive());
}

TEST(RunPhase, isComparedByValue) {
    EXPECT_EQ(RunPhase::failed("mesh", "x"), RunPhase::failed("mesh", "x"));
    EXPECT_NE(RunPhase::failed("mesh", "x"), RunPhase::failed("solver", "x"));
    EXPECT_NE(RunPhase::failed("mesh", "x"), RunPhase::failed("mesh", "y"));
    EXPECT_NE(RunPhase::finished(true), RunPhase::finished(false));
    EXPECT_NE(RunPhase::idle(), RunPhase::cancelled());
    EXPECT_EQ(RunPhase(), RunPhase::idle());
}

TEST(RunStage, hasRawValues) {
    EXPECT_EQ(rawValue(RunStage::mesh), "mesh");
    EXPECT_EQ(rawValue(RunStage::solver), "solver");
    EXPECT_EQ(rawValue(RunStage::results), "results");
}

TEST(SolverError, tellsTheUserWhatHappened) {
    EXPECT_STREQ(SolverError::binaryNotFound(PlatformWords::mac()).what(),
        "SU2_CFD is missing from Ostrella.app (Contents/MacOS). The app is incomplete; download "
        "and install Ostrella again.");
    EXPECT_STREQ(SolverError::binaryNotFound(PlatformWords::freedesktop()).what(),
        "SU2_CFD is missing from Ostrella (libexec/ostrella). The app is incomplete; download and "
        "install Ostrella again.");
    EXPECT_STREQ(SolverError::templateNotFound().what(), "Bundled SU2 config template is missing.");
    EXPECT_STREQ(SolverError::meshNotFound().what(), "Bundled NACA0012 mesh fixture is missing.");
    EXPECT_STREQ(SolverError::noReadableOutput().what(),
        "SU2_CFD finished but neither surface_flow.vtk nor flow.vtk could be read.");
    EXPECT_STREQ(SolverError::nonZeroExit(-1).what(), "SU2_CFD exited with code -1.");
    EXPECT_STREQ(SolverError::nonZeroExit(137).what(), "SU2_CFD exited with code 137.");
}

TEST(RunStageError, addsNoWordsToTheErrorWithin) {
    const auto within = std::make_exception_ptr(SolverError::noReadableOutput());
    const RunStageError error(RunStage::results, within);
    EXPECT_EQ(error.stage(), RunStage::results);
    EXPECT_STREQ(error.what(), SolverError::noReadableOutput().what());
    try {
        std::rethrow_exception(error.underlying());
        FAIL() << "nothing was thrown";
    } catch (const SolverError& known) {
        EXPECT_EQ(known.kind(), SolverError::Kind::noReadableOutput);
    }
}

TEST(ErrorDescription, isTheErrorsOwnText) {
    EXPECT_EQ(errorDescription(std::make_exception_ptr(std::runtime_error("no room"))), "no room");
    EXPECT_EQ(errorDescription(std::make_exception_ptr(7)), "An unknown error occurred.");
}

TEST(StopReason, isComparedByValue) {
    EXPECT_EQ(StopReason::iterationCap(200), StopReason::iterationCap(200));
    EXPECT_NE(StopReason::iterationCap(200), StopReason::iterationCap(std::nullopt));
    EXPECT_NE(StopReason::iterationCap(std::nullopt), StopReason::converged());
}

TEST(RunSummary, isComparedFieldByField) {
    const RunSummary summary{12.5, 200, 200, 45259, 0.1, 0.5, true};
    RunSummary other = summary;
    EXPECT_EQ(summary, other);
    other.cl = 0.2;
    EXPECT_NE(summary, other);
    other = summary;
    other.converged = false;
    EXPECT_NE(summary, other);
}

TEST(SimulationResult, hasNoStopReasonMeshCellsOrConfigurationUntilTheyAreKnown) {
    const SimulationResult result;
    EXPECT_FALSE(result.configFile);
    EXPECT_FALSE(result.stopReason);
    EXPECT_FALSE(result.meshCells);
}

} // namespace
} // namespace ostrella
