#include "Platform/PortalSettings.h"

#include <QDBusVariant>

#include <gtest/gtest.h>

#include <limits>

namespace ostrella {
namespace {

constexpr auto common = "org.freedesktop.appearance";
constexpr auto gnome = "org.gnome.desktop.interface";

struct Setting {
    const char* space;
    const char* key;
    QVariant value;
};

DesktopAppearance::Values appearance(const std::vector<Setting>& settings) {
    PortalSettings portal;
    for (const Setting& setting : settings) {
        portal.set(
            {QString::fromLatin1(setting.space), QString::fromLatin1(setting.key)}, setting.value);
    }
    return portal.appearance();
}

QVariant word(const char* text) {
    return QString::fromUtf8(text);
}

QVariant wrapped(const QVariant& value) {
    return QVariant::fromValue(QDBusVariant(value));
}

TEST(PortalSettingsTest, WithoutSettingsNothingIsKnown) {
    EXPECT_EQ(appearance({}), DesktopAppearance::Values{});
}

TEST(PortalSettingsTest, TheCommonColourSchemeTellsDarkFromLight) {
    EXPECT_EQ(appearance({{common, "color-scheme", 1U}}).isDark, true);
    EXPECT_EQ(appearance({{common, "color-scheme", 2U}}).isDark, false);
    EXPECT_EQ(appearance({{common, "color-scheme", 0U}}).isDark, std::nullopt);
    EXPECT_EQ(appearance({{common, "color-scheme", 77U}}).isDark, std::nullopt);
}

TEST(PortalSettingsTest, AValueMayBeWrappedOnceOrTwice) {
    EXPECT_EQ(appearance({{common, "color-scheme", wrapped(1U)}}).isDark, true);
    EXPECT_EQ(appearance({{common, "color-scheme", wrapped(wrapped(1U))}}).isDark, true);
    EXPECT_EQ(PortalSettings::bare(wrapped(wrapped(wrapped(word("x"))))), word("x"));
}

TEST(PortalSettingsTest, WithoutAPreferenceGnomesSchemeThenItsThemeCount) {
    EXPECT_EQ(appearance({{gnome, "color-scheme", word("prefer-dark")}}).isDark, true);
    EXPECT_EQ(appearance({{gnome, "color-scheme", word("prefer-light")},
                             {gnome, "gtk-theme", word("Adwaita-dark")}})
                  .isDark,
        false);
    EXPECT_EQ(appearance({{common, "color-scheme", 0U}, {gnome, "color-scheme", word("default")},
                             {gnome, "gtk-theme", word("Yaru-Dark")}})
                  .isDark,
        true);
    EXPECT_EQ(appearance({{gnome, "gtk-theme", word("Adwaita:dark")}}).isDark, true);
    EXPECT_EQ(appearance({{gnome, "gtk-theme", word("Adwaita")}}).isDark, std::nullopt);
}

TEST(PortalSettingsTest, TheCommonColourSchemeCountsBeforeGnomes) {
    EXPECT_EQ(
        appearance({{common, "color-scheme", 2U}, {gnome, "color-scheme", word("prefer-dark")}})
            .isDark,
        false);
}

TEST(PortalSettingsTest, MotionIsUnwantedWhereAnyoneSaysSo) {
    constexpr auto plasma = "org.kde.kdeglobals.KDE";
    EXPECT_EQ(appearance({{common, "reduced-motion", 1U}}).prefersReducedMotion, true);
    EXPECT_EQ(appearance({{common, "reduced-motion", 0U}}).prefersReducedMotion, false);
    EXPECT_EQ(appearance({{gnome, "enable-animations", false}}).prefersReducedMotion, true);
    EXPECT_EQ(appearance({{gnome, "enable-animations", true}}).prefersReducedMotion, false);
    EXPECT_EQ(appearance({{common, "reduced-motion", 0U}, {gnome, "enable-animations", false}})
                  .prefersReducedMotion,
        true);
    EXPECT_EQ(
        appearance({{plasma, "AnimationDurationFactor", word("0")}}).prefersReducedMotion, true);
    EXPECT_EQ(appearance({{plasma, "AnimationDurationFactor", word("0.5")}}).prefersReducedMotion,
        std::nullopt);
}

TEST(PortalSettingsTest, TheTextScaleIsOneThatUsersCanAskFor) {
    const auto scale = [](double value) {
        return appearance({{gnome, "text-scaling-factor", value}}).textScale;
    };
    EXPECT_EQ(scale(1.25), 1.25);
    EXPECT_EQ(scale(0.5), 0.5);
    EXPECT_EQ(scale(3), 3.0);
    EXPECT_EQ(scale(0.49), std::nullopt);
    EXPECT_EQ(scale(1000), std::nullopt);
    EXPECT_EQ(scale(-1), std::nullopt);
    EXPECT_EQ(scale(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
    EXPECT_EQ(scale(std::numeric_limits<double>::infinity()), std::nullopt);
}

TEST(PortalSettingsTest, ValuesOfOtherTypesSayNothing) {
    EXPECT_EQ(appearance({{common, "color-scheme", word("1")}, {common, "color-scheme", true},
                  {common, "reduced-motion", word("1")},
                  {gnome, "color-scheme", QStringList{QStringLiteral("prefer-dark")}},
                  {gnome, "gtk-theme", 7}, {gnome, "enable-animations", word("false")},
                  {gnome, "text-scaling-factor", word("2")},
                  {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", word("slow")}}),
        DesktopAppearance::Values{});
}

TEST(PortalSettingsTest, ANewValueTakesTheOldOnesPlace) {
    EXPECT_EQ(
        appearance({{common, "color-scheme", 1U}, {common, "color-scheme", 2U}}).isDark, false);
    EXPECT_EQ(
        appearance({{common, "color-scheme", 1U}, {common, "color-scheme", QVariant()}}).isDark,
        std::nullopt);
}

} // namespace
} // namespace ostrella
