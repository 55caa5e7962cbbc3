#include "Batch/BatchProgress.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

BatchProgress solving() {
    BatchProgress progress;
    progress.phase = RunPhase::solving();
    progress.maxIterations = 200;
    progress.elapsedSeconds = 65;
    return progress;
}

TEST(BatchProgress, MeshingTellsTheTime) {
    BatchProgress progress;
    progress.phase = RunPhase::meshing();
    progress.maxIterations = 200;
    progress.elapsedSeconds = 3.4;
    EXPECT_EQ(progressLine(progress), "Meshing… · 3 s elapsed");
}

TEST(BatchProgress, TheSolverIsStartingUntilItsFirstIteration) {
    EXPECT_EQ(progressLine(solving()), "Starting solver… · 1 min 05 s elapsed");
}

TEST(BatchProgress, ASolveHasIterationResidualLiftDragElapsedAndRemaining) {
    BatchProgress progress = solving();
    progress.iteration = 120;
    progress.residual = {"P", -4.156};
    progress.cl = 0.51234;
    progress.cd = -0.00001;
    progress.remainingSeconds = 3700;
    EXPECT_EQ(progressLine(progress), "Iter 120 / 200 · rms[P] -4.16 · CL 0.5123 · CD 0.0000 · "
                                      "1 min 05 s elapsed · ~1 h 01 min remaining");
}

TEST(BatchProgress, WhatIsNotKnownYetIsLeftOut) {
    BatchProgress progress = solving();
    progress.iteration = 1;
    progress.cd = 0.5;
    EXPECT_EQ(progressLine(progress), "Iter 1 / 200 · CD 0.5000 · 1 min 05 s elapsed");
}

TEST(BatchProgress, FiguresBelongToTheSolve) {
    BatchProgress progress = solving();
    progress.phase = RunPhase::postProcessing();
    progress.iteration = 200;
    progress.residual = {"P", -4};
    progress.cl = 0.5;
    EXPECT_EQ(progressLine(progress), "Processing results… · 1 min 05 s elapsed");
}

TEST(BatchProgress, AStopThatWasAskedForIsAllThereIsToTell) {
    BatchProgress progress = solving();
    progress.isCancelling = true;
    progress.iteration = 120;
    progress.cl = 0.5;
    progress.remainingSeconds = 3700;
    EXPECT_EQ(progressLine(progress), "Cancelling… · 1 min 05 s elapsed");
}

} // namespace
} // namespace ostrella
