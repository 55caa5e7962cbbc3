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
