#include "Views/Format/RunNote.h"

#include <gtest/gtest.h>

#include <limits>

namespace ostrella {
namespace {

constexpr bool inFront = true;
constexpr bool elsewhere = false;
const std::string line = "Converged at iter 12 · 60.0 s";

TEST(RunNote, IsTheClosingLine) {
    EXPECT_EQ(
        RunNote::make(RunPhase::finished(true), 60, elsewhere, line), (RunNote{"Ostrella", line}));
    EXPECT_EQ(
        RunNote::make(RunPhase::failed("mesh", "The STL is not water-tight."), 60, elsewhere, ""),
        (RunNote{"Ostrella", "Mesh failed · The STL is not water-tight"}));
    EXPECT_EQ(RunNote::make(RunPhase::failed("results", "No output"), 60, elsewhere, ""),
        (RunNote{"Ostrella", "Results failed · No output"}));
}

TEST(RunNote, OnlyAfterMoreThanTenSeconds) {
    const RunPhase phase = RunPhase::finished(false);
    EXPECT_FALSE(RunNote::make(phase, 0, elsewhere, line));
    EXPECT_FALSE(RunNote::make(phase, 10, elsewhere, line));
    EXPECT_TRUE(RunNote::make(phase, 10.001, elsewhere, line));
    EXPECT_FALSE(RunNote::make(phase, -60, elsewhere, line));
    EXPECT_FALSE(RunNote::make(phase, std::numeric_limits<double>::quiet_NaN(), elsewhere, line));
}

TEST(RunNote, NotWhereTheUserLooks) {
    EXPECT_FALSE(RunNote::make(RunPhase::finished(true), 60, inFront, line));
    EXPECT_FALSE(RunNote::make(RunPhase::failed("solver", "No"), 60, inFront, ""));
}

TEST(RunNote, NotOfWhatHasNotEndedByItself) {
    for (const RunPhase& phase : {RunPhase::idle(), RunPhase::meshing(), RunPhase::solving(),
             RunPhase::postProcessing(), RunPhase::cancelled()}) {
        EXPECT_FALSE(RunNote::make(phase, 60, elsewhere, line));
    }
}

} // namespace
} // namespace ostrella
