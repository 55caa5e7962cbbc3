#include "Views/Controls/Theme.h"

#include <gtest/gtest.h>

#include <limits>

namespace ostrella {

class ThemeTest : public testing::Test {
protected:
    ~ThemeTest() override {
        theme.setDark(true);
        theme.setTextScale(1);
        theme.setReducedMotion(false);
    }

    Theme& theme = Theme::shared();
};

TEST_F(ThemeTest, givesTheColoursOfTheAppearance) {
    theme.setDark(true);
    EXPECT_EQ(theme.surfaceBase().name(), QStringLiteral("#0b0e14"));
    EXPECT_EQ(theme.statusError().name(), QStringLiteral("#f87171"));
    EXPECT_EQ(theme.accentPrimary().name(), QStringLiteral("#f5a524"));
    theme.setDark(false);
    EXPECT_EQ(theme.surfaceBase().name(), QStringLiteral("#fcfbf8"));
    EXPECT_EQ(theme.statusError().name(), QStringLiteral("#dc2626"));
    EXPECT_EQ(theme.accentPrimary().name(), QStringLiteral("#d88a0a"));
}

TEST_F(ThemeTest, keepsTheTransparencyOfBorders) {
    theme.setDark(true);
    EXPECT_EQ(theme.borderSubtle().name(QColor::HexArgb), QStringLiteral("#0fffffff"));
    EXPECT_EQ(theme.accentSubtle().name(QColor::HexArgb), QStringLiteral("#24f5a524"));
    theme.setDark(false);
    EXPECT_EQ(theme.borderStrong().name(QColor::HexArgb), QStringLiteral("#290f0f0f"));
}

TEST_F(ThemeTest, castsOneShadowInBothAppearances) {
    EXPECT_EQ(theme.floatingShadow().name(QColor::HexArgb), QStringLiteral("#73000000"));
    theme.setDark(false);
    EXPECT_EQ(theme.floatingShadow().name(QColor::HexArgb), QStringLiteral("#73000000"));
}

TEST_F(ThemeTest, laysOneColourOverAnother) {
    // (0x00 + 0xFF) / 2, and half of a half.
    EXPECT_EQ(theme.over(Qt::black, QColor(255, 255, 255, 128)).name(), QStringLiteral("#808080"));
    const QColor both = theme.over(QColor(255, 0, 0, 128), QColor(255, 0, 0, 128));
    EXPECT_NEAR(both.alphaF(), 0.75, 0.01);
    EXPECT_EQ(both.red(), 255);
    EXPECT_EQ(theme.over(Qt::transparent, Qt::transparent).alpha(), 0);
}

TEST_F(ThemeTest, growsMeasuresWithTheTextButNeverShrinksThem) {
    EXPECT_EQ(theme.rowHeight(), 32);
    theme.setTextScale(1.5);
    EXPECT_EQ(theme.rowHeight(), 48);
    EXPECT_EQ(theme.length(13), 20); // 19.5 away from zero
    theme.setTextScale(0.8);
    EXPECT_EQ(theme.rowHeight(), 32);
}

TEST_F(ThemeTest, refusesSizesOfTextThatNobodyCanRead) {
    theme.setTextScale(0);
    EXPECT_EQ(theme.textScale(), 0.5);
    theme.setTextScale(100);
    EXPECT_EQ(theme.textScale(), 3);
    theme.setTextScale(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(theme.textScale(), 1);
}

TEST_F(ThemeTest, takesNoTimeWithReducedMotion) {
    EXPECT_EQ(theme.duration(150), 150);
    EXPECT_EQ(theme.motion(), 1);
    theme.setReducedMotion(true);
    EXPECT_EQ(theme.duration(150), 0);
    EXPECT_EQ(theme.motion(), 0);
}

TEST_F(ThemeTest, makesLinesOfWholeDevicePixels) {
    EXPECT_EQ(theme.hairline(1), 1);
    EXPECT_EQ(theme.hairline(2), 0.5);
    EXPECT_EQ(theme.line(1, 2), 1);
    EXPECT_DOUBLE_EQ(theme.line(1, 1.5), 1 / 1.5);
    EXPECT_EQ(theme.line(1, 0), 1);
}

TEST_F(ThemeTest, tellsOfAChangeOnceAndOfNoneNever) {
    int told = 0;
    QObject::connect(&theme, &Theme::changed, &theme, [&] { ++told; });
    theme.setDark(false);
    theme.setDark(false);
    theme.setTextScale(1.25);
    theme.setTextScale(1.25);
    EXPECT_EQ(told, 2);
    theme.disconnect(&theme);
}

} // namespace ostrella
