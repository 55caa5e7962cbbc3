#include "Views/Format/SidebarFormat.h"

#include "Views/Format/SidebarText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ostrella {
namespace {

using namespace SidebarFormat;
using Tone = StateLine::Tone;

TriangleMesh triangle(Vec3 a, Vec3 b, Vec3 c) {
    const Vec3 up(0, 0, 1);
    return {std::vector<Vec3>{a, b, c}, std::vector<Vec3>{up, up, up}};
}

RunSummary figures() {
    RunSummary summary;
    summary.elapsedSeconds = 12.34;
    summary.iterations = 12345;
    summary.cl = 0.25;
    summary.cd = -0.00001;
    return summary;
}

TEST(SidebarFormat, FixedDropsTheSignOfZero) {
    EXPECT_EQ(fixed(-0.004, 2), "0.00");
    EXPECT_EQ(fixed(-0.006, 2), "-0.01");
    EXPECT_EQ(fixed(1.005, 0), "1");
    EXPECT_EQ(fixed(-0.2, 0), "0");
}

TEST(SidebarFormat, LoadingMessage) {
    EXPECT_EQ(loadingMessage("wing.stl"), "Loading wing.stl…");
    EXPECT_EQ(loadingMessage(""), "Loading STL…");
}

TEST(SidebarFormat, BoundsOfTurnedPoints) {
    EXPECT_FALSE(bounds({}, {0, 0, 0}));
    const std::vector<Vec3> points{{1, 0, 0}, {3, 2, -1}};
    // A quarter turn about z takes (x, y) to (-y, x).
    const auto box = bounds(points, {0, 0, 90});
    ASSERT_TRUE(box);
    EXPECT_NEAR(box->min.x, -2, 1e-5);
    EXPECT_NEAR(box->max.x, 0, 1e-5);
    EXPECT_NEAR(box->min.y, 1, 1e-5);
    EXPECT_NEAR(box->max.y, 3, 1e-5);
    EXPECT_NEAR(box->min.z, -1, 1e-5);
    EXPECT_NEAR(box->max.z, 0, 1e-5);
}

TEST(SidebarFormat, BoundsTurnAboutXThenYThenZ) {
    const std::vector<Vec3> points{{0, 1, 0}};
    // y to z by the turn about x, z to x by the one about y, x to y by the one about z.
    const auto box = bounds(points, {90, 90, 90});
    ASSERT_TRUE(box);
    EXPECT_NEAR(box->min.x, 0, 1e-5);
    EXPECT_NEAR(box->min.y, 1, 1e-5);
    EXPECT_NEAR(box->min.z, 0, 1e-5);
}

TEST(SidebarFormat, BoundingBox) {
    EXPECT_EQ(boundingBox({0, -1, 0.5F}, {1, 0, 2.75F}), "1.00 × 1.00 × 2.25 m");
}

TEST(SidebarFormat, BoundingBoxTextIsOfTheTurnedModelAndNotOfTheTurnedBox) {
    const TriangleMesh mesh = triangle({0, 0, 0}, {1, 1, 0}, {0, 0, 0});
    EXPECT_EQ(boundingBoxText(mesh, {0, 0, 0}), "1.00 × 1.00 × 0.00 m");
    // The diagonal comes to lie along y; a turned box would be as wide as it is long.
    EXPECT_EQ(boundingBoxText(mesh, {0, 0, 45}), "0.00 × 1.41 × 0.00 m");
    EXPECT_EQ(boundingBoxText(TriangleMesh(), {0, 0, 45}), "0.00 × 0.00 × 0.00 m");
}

TEST(SidebarFormat, Duration) {
    EXPECT_EQ(duration(0), "0 s");
    EXPECT_EQ(duration(59.4), "59 s");
    EXPECT_EQ(duration(59.5), "1 min 00 s");
    EXPECT_EQ(duration(3599.4), "59 min 59 s");
    EXPECT_EQ(duration(3599.6), "1 h 00 min");
    EXPECT_EQ(duration(7199), "1 h 59 min");
    EXPECT_EQ(duration(-3), "0 s");
    EXPECT_DEATH(duration(std::nan("")), "finite");
    EXPECT_DEATH(duration(std::numeric_limits<double>::infinity()), "finite");
}

TEST(SidebarFormat, SummaryParts) {
    using Parts = std::vector<std::string>;
    EXPECT_EQ(summaryParts(figures()), (Parts{"12.3 s", "12345 iter", "CL 0.2500", "CD 0.0000"}));
    EXPECT_EQ(summaryParts({}), Parts{"0.0 s"});
}

TEST(SidebarFormat, NoStateLineUntilARunHasEnded) {
    for (const RunPhase& phase :
        {RunPhase::idle(), RunPhase::meshing(), RunPhase::solving(), RunPhase::postProcessing()}) {
        EXPECT_FALSE(stateLine(phase, figures()));
    }
}

TEST(SidebarFormat, StateLineOfAnEndedRun) {
    EXPECT_EQ(stateLine(RunPhase::cancelled(), figures()), (StateLine{"Cancelled", Tone::muted}));
    EXPECT_EQ(stateLine(RunPhase::failed("mesh", "a message"), figures()),
        (StateLine{"Failed · mesh", Tone::failure}));
    EXPECT_EQ(stateLine(RunPhase::finished(true), figures()),
        (StateLine{"Converged · 12345 iter · 12.3 s", Tone::good}));
    EXPECT_EQ(stateLine(RunPhase::finished(false), figures()),
        (StateLine{"Stopped at iteration cap · 12345 iter · 12.3 s", Tone::caution}));
    EXPECT_EQ(stateLine(RunPhase::finished(true), RunSummary()),
        (StateLine{"Converged · 0.0 s", Tone::good}));
    EXPECT_EQ(stateLine(RunPhase::finished(false), std::nullopt),
        (StateLine{"Stopped at iteration cap", Tone::caution}));
}

TEST(SidebarFormat, TonesHaveNames) {
    EXPECT_EQ(rawValue(Tone::good), "good");
    EXPECT_EQ(rawValue(Tone::caution), "caution");
    EXPECT_EQ(rawValue(Tone::failure), "failure");
    EXPECT_EQ(rawValue(Tone::muted), "muted");
}

TEST(SidebarFormat, ProgressTitle) {
    EXPECT_EQ(progressTitle(RunPhase::postProcessing(), 12, 200), "Processing results…");
    EXPECT_EQ(progressTitle(RunPhase::solving(), 1200, 50000), "Iter 1200 / 50000");
    EXPECT_EQ(progressTitle(RunPhase::meshing(), 12, 200), "Iter 12 / 200");
    EXPECT_EQ(progressTitle(RunPhase::meshing(), std::nullopt, 200), "Meshing…");
    EXPECT_EQ(progressTitle(RunPhase::solving(), std::nullopt, 200), "Starting solver…");
}

TEST(SidebarFormat, TimingLine) {
    EXPECT_EQ(timingLine(75, 3700), "1 min 15 s elapsed · ~1 h 01 min remaining");
    EXPECT_EQ(timingLine(5, std::nullopt), "5 s elapsed");
    EXPECT_EQ(timingLine(5, 0), "5 s elapsed · ~0 s remaining");
}

TEST(SidebarFormat, ProgressFraction) {
    EXPECT_EQ(progressFraction(RunPhase::postProcessing(), std::nullopt, 0), 1);
    EXPECT_EQ(progressFraction(RunPhase::solving(), 50, 200), 0.25);
    EXPECT_EQ(progressFraction(RunPhase::solving(), 300, 200), 1);
    EXPECT_EQ(progressFraction(RunPhase::solving(), -5, 200), 0);
    EXPECT_EQ(progressFraction(RunPhase::solving(), std::nullopt, 200), 0);
    EXPECT_EQ(progressFraction(RunPhase::solving(), 5, 0), 0);
}

TEST(SidebarFormat, ProgressAsItIsReadOut) {
    EXPECT_EQ(progressValue(0.425, "5 s elapsed"), "43 percent, 5 s elapsed");
    EXPECT_EQ(progressValue(1, "5 s elapsed"), "100 percent, 5 s elapsed");
}

TEST(SidebarFormat, HintUnderTheRunButton) {
    EXPECT_EQ(hint("wing.stl", false), (Hint{"Loading wing.stl…", "", true}));
    EXPECT_EQ(hint("", true), (Hint{"Loading STL…", "", true}));
    EXPECT_EQ(
        hint(std::nullopt, false), (Hint{"Load an STL to enable Run.", "info.circle", false}));
    EXPECT_FALSE(hint(std::nullopt, true));
}

TEST(SidebarText, NamesThePlatformsShortcuts) {
    EXPECT_EQ(SidebarText::loadHelp(PlatformWords::mac()), "Open an STL file (⌘O)");
    EXPECT_EQ(SidebarText::loadHelp(PlatformWords::freedesktop()), "Open an STL file (Ctrl+O)");
    EXPECT_EQ(SidebarText::runHelp(PlatformWords::mac()), "Run the simulation (⌘R)");
    EXPECT_EQ(SidebarText::runHelp(PlatformWords::freedesktop()), "Run the simulation (Ctrl+R)");
}

TEST(SidebarText, TitlesOfTheOptions) {
    EXPECT_EQ(SidebarText::title(FlowRegime::incompressible), "Incompressible (M < 0.3)");
    EXPECT_EQ(SidebarText::title(FlowRegime::compressible), "Compressible (transonic+)");
    EXPECT_EQ(SidebarText::title(TurbulenceModel::spalartAllmaras), "Spalart-Allmaras (RANS)");
    EXPECT_EQ(SidebarText::title(TurbulenceModel::sst), "k-ω SST (RANS)");
    EXPECT_EQ(SidebarText::title(TurbulenceModel::laminar), "Laminar");
}

} // namespace
} // namespace ostrella
