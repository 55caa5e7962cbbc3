#include "Brand/Brand.h"

#include "Brand/ViewportStyle.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <string_view>

namespace ostrella::Brand {
namespace {

/// The number of a shade, as colours are written in tables.
std::string hex(const Vec3& rgb) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (int i = 0; i < 3; ++i) {
        const auto byte = static_cast<unsigned>(std::lround(rgb[i] * 255.0F));
        text += {digits[byte / 16], digits[byte % 16]};
    }
    return text;
}

struct Row {
    const Color& color;
    std::string_view dark;
    std::string_view light;
};

TEST(Brand, everyOpaqueColourHasItsTwoShades) {
    const std::array rows{Row{surfaceBase, "0B0E14", "FCFBF8"},
        Row{surfaceRaised, "11151D", "FFFFFF"}, Row{surfaceSunken, "070910", "F4F2EC"},
        Row{textPrimary, "ECEEF2", "0F1722"}, Row{textSecondary, "A8AEBB", "4A5161"},
        Row{textTertiary, "6B7180", "6B7180"}, Row{textDisabled, "3E4452", "C6CAD3"},
        Row{accentPrimary, "F5A524", "D88A0A"}, Row{accentPressed, "D88A0A", "A36608"},
        Row{accentOn, "1A1212", "FFFFFF"}, Row{statusSuccess, "4ADE80", "16A34A"},
        Row{statusWarning, "FBBF24", "B45309"}, Row{statusError, "F87171", "DC2626"},
        Row{statusInfo, "60A5FA", "2563EB"}};
    for (const Row& row : rows) {
        EXPECT_EQ(hex(row.color.resolved(Appearance::dark).rgb), row.dark);
        EXPECT_EQ(hex(row.color.resolved(Appearance::light).rgb), row.light);
        EXPECT_EQ(row.color.dark.alpha, 1.0F) << row.dark;
        EXPECT_EQ(row.color.light.alpha, 1.0F) << row.dark;
    }
}

TEST(Brand, componentsAreSharesOf255) {
    // 0xF5 = 245, 0xA5 = 165, 0x24 = 36
    EXPECT_NEAR(accentPrimary.dark.rgb.x, 0.960784F, 1e-6F);
    EXPECT_NEAR(accentPrimary.dark.rgb.y, 0.647059F, 1e-6F);
    EXPECT_NEAR(accentPrimary.dark.rgb.z, 0.141176F, 1e-6F);
}

TEST(Brand, bordersAreWhiteOnDarkAndNearlyBlackOnLight) {
    EXPECT_EQ(borderSubtle.dark, (Shade{Vec3(1), 0.06F}));
    EXPECT_EQ(borderSubtle.light, (Shade{Vec3(0.06F), 0.08F}));
    EXPECT_EQ(borderStrong.dark, (Shade{Vec3(1), 0.12F}));
    EXPECT_EQ(borderStrong.light, (Shade{Vec3(0.06F), 0.16F}));
}

TEST(Brand, theSubtleAccentIsTheAccentThinned) {
    EXPECT_EQ(hex(accentSubtle.dark.rgb), "F5A524");
    EXPECT_EQ(accentSubtle.dark.alpha, 0.14F);
    EXPECT_EQ(hex(accentSubtle.light.rgb), "D88A0A");
    EXPECT_EQ(accentSubtle.light.alpha, 0.12F);
}

TEST(Brand, theShadowIsBlack) {
    EXPECT_EQ(floatingShadow, (Shade{Vec3(0), 0.45F}));
}

TEST(Brand, typefaces) {
    EXPECT_EQ(Typeface::label, (Typeface{11, Weight::semibold, Design::proportional}));
    EXPECT_EQ(Typeface::monoSmall, (Typeface{11, Weight::regular, Design::monospaced}));
    EXPECT_EQ(Typeface::mono, (Typeface{12, Weight::regular, Design::monospaced}));
    EXPECT_EQ(Typeface::caption, (Typeface{12, Weight::regular, Design::proportional}));
    EXPECT_EQ(Typeface::body, (Typeface{13, Weight::regular, Design::proportional}));
    EXPECT_EQ(Typeface::bodyMedium, (Typeface{13, Weight::medium, Design::proportional}));
    EXPECT_EQ(Typeface::hero, (Typeface{15, Weight::semibold, Design::proportional}));
    EXPECT_EQ(Typeface::title, (Typeface{20, Weight::semibold, Design::proportional}));
    EXPECT_EQ(Typeface::display, (Typeface{34, Weight::semibold, Design::proportional}));
}

TEST(ViewportStyle, isDarkWhateverTheAppearance) {
    EXPECT_EQ(hex(ViewportStyle::darkRGB(surfaceBase)), "0B0E14");
    EXPECT_EQ(hex(ViewportStyle::darkRGB(statusError)), "F87171");
    EXPECT_EQ(hex(ViewportStyle::background), "0B0E14");
    EXPECT_EQ(hex(ViewportStyle::accent), "F5A524");
}

TEST(ViewportStyle, namesTheRenderersColours) {
    EXPECT_EQ(ViewportStyle::shadedBaseColor, Vec3(0.62F, 0.72F, 0.85F));
    EXPECT_EQ(ViewportStyle::streamlineFloorColor, Vec3(0.55F, 0.55F, 0.70F));
    EXPECT_EQ(ViewportStyle::vortexTint, Vec3(0.80F, 0.85F, 0.90F));
    EXPECT_EQ(ViewportStyle::vortexRimColor, Vec3(0.93F, 0.95F, 0.98F));
    EXPECT_EQ(ViewportStyle::gizmoAxisX, Vec4(0.84F, 0.48F, 0.47F, 0.72F));
    EXPECT_EQ(ViewportStyle::gizmoAxisY, Vec4(0.52F, 0.76F, 0.52F, 0.72F));
    EXPECT_EQ(ViewportStyle::gizmoAxisZ, Vec4(0.50F, 0.62F, 0.88F, 0.72F));
}

} // namespace
} // namespace ostrella::Brand
