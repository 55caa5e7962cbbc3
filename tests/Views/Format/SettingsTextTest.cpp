#include "Views/Format/SettingsText.h"
#include "Views/Format/SettingsFormat.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

TEST(SettingsTabs, areStoredByName) {
    EXPECT_EQ(SettingsText::rawValue(SettingsTab::solver), "solver");
    EXPECT_EQ(SettingsText::rawValue(SettingsTab::streamlines), "streamlines");
    EXPECT_EQ(SettingsText::tab("streamlines"), SettingsTab::streamlines);
    EXPECT_EQ(SettingsText::tab("Streamlines"), std::nullopt);
    EXPECT_EQ(SettingsText::tab(""), std::nullopt);
}

TEST(SettingsTabs, haveATitleAndASymbol) {
    EXPECT_EQ(SettingsText::title(SettingsTab::solver), "Solver");
    EXPECT_EQ(SettingsText::symbol(SettingsTab::solver), "function");
    EXPECT_EQ(SettingsText::title(SettingsTab::streamlines), "Streamlines");
    EXPECT_EQ(SettingsText::symbol(SettingsTab::streamlines), "wind");
}

TEST(SettingsTexts, readAsTheyAreMeant) {
    using namespace SettingsText;
    EXPECT_EQ(windowTitle, "Settings");
    EXPECT_EQ(restoreDefaults, "Restore defaults");
    EXPECT_EQ(iterations, "Iterations");
    EXPECT_EQ(maxIterations, "Max iterations");
    EXPECT_EQ(iterationsCaption,
        "How many inner iterations SU2 runs before stopping. Lower = faster preview, higher = "
        "better convergence for stiff cases. 200 is a good default for incompressible RANS-SA.");
    EXPECT_EQ(updates, "Updates");
    EXPECT_EQ(currentVersion, "Current version");
    EXPECT_EQ(checkAutomatically, "Check for updates automatically");
    EXPECT_EQ(checkNow, "Check Now");
    EXPECT_EQ(updatesCaption,
        "Ostrella looks for a new version every 6 hours and asks before installing. An update "
        "never installs while a simulation is running.");
    EXPECT_EQ(window, "Window around the body");
    EXPECT_EQ(inletOffset, "Inlet offset");
    EXPECT_EQ(wakeLength, "Wake length");
    EXPECT_EQ(windowCaption,
        "Where streamline seeds spawn upstream of the leading edge, and how far past the trailing "
        "edge they continue, both as a multiple of body length along the flow direction. Defaults: "
        "0.5 × c upstream, 2.0 × c downstream.");
    EXPECT_EQ(density, "Density");
    EXPECT_EQ(seedCount, "Seed count");
    EXPECT_EQ(densityCaption,
        "Number of streamlines released from the inlet seed rake. More seeds = denser "
        "visualization, slower generation.");
}

TEST(SettingsNumbers, areHeldInTheirRanges) {
    EXPECT_EQ(SettingsText::maxIterationsRange.from, 50);
    EXPECT_EQ(SettingsText::maxIterationsRange.to, 50000);
    EXPECT_EQ(SettingsText::maxIterationsRange.step, 50);
    EXPECT_EQ(SettingsText::seedCountRange.from, 20);
    EXPECT_EQ(SettingsText::seedCountRange.to, 500);
    EXPECT_EQ(SettingsText::seedCountRange.step, 10);
    EXPECT_EQ(SettingsText::inletOffsetRange.from, 0.1);
    EXPECT_EQ(SettingsText::inletOffsetRange.to, 3.0);
    EXPECT_EQ(SettingsText::inletOffsetRange.step, 0.05);
    EXPECT_EQ(SettingsText::wakeLengthRange.from, 0.5);
    EXPECT_EQ(SettingsText::wakeLengthRange.to, 10.0);
    EXPECT_EQ(SettingsText::wakeLengthRange.step, 0.1);
}

TEST(SettingsFormatTest, countsHaveTheirDigitsInGroups) {
    EXPECT_EQ(SettingsFormat::count(50000), "50 000");
    EXPECT_EQ(SettingsFormat::count(200), "200");
}

TEST(SettingsFormatTest, factorsAreMultiplesOfTheBodysLength) {
    EXPECT_EQ(SettingsFormat::factor(0.5), "0.50 ×c");
    EXPECT_EQ(SettingsFormat::factor(10), "10.00 ×c");
    EXPECT_EQ(SettingsFormat::factor(0.149), "0.15 ×c");
}

} // namespace
} // namespace ostrella
