#include "Views/Format/ChartPalette.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

using namespace ChartPalette;

TEST(ChartPalette, ColoursOfTheResiduals) {
    EXPECT_EQ(color(residuals, 0), Brand::accentPrimary);
    EXPECT_EQ(color(residuals, 1), Brand::statusInfo);
    EXPECT_EQ(color(residuals, 2), Brand::statusSuccess);
    EXPECT_EQ(color(residuals, 3), Brand::textSecondary);
    EXPECT_EQ(color(residuals, 4), Brand::textTertiary);
}

TEST(ChartPalette, ColoursOfTheCoefficients) {
    EXPECT_EQ(color(coefficients, 0), Brand::accentPrimary);
    EXPECT_EQ(color(coefficients, 1), Brand::statusInfo);
    EXPECT_EQ(color(coefficients, 2), Brand::textSecondary);
    EXPECT_EQ(color(coefficients, 3), Brand::statusSuccess);
    EXPECT_EQ(color(coefficients, 4), Brand::textTertiary);
}

TEST(ChartPalette, ColoursRepeat) {
    EXPECT_EQ(color(residuals, 5), Brand::accentPrimary);
    EXPECT_EQ(color(coefficients, 8), Brand::statusSuccess);
}

} // namespace
} // namespace ostrella
