#include "Platform/DesktopAppearance.h"

#include "Platform/desktop/DesktopBench.h"

#include <QGuiApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPalette>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <chrono>

namespace ostrella {
namespace {

using test::startService;
using test::waitUntil;

/// Sets the colour of windows for as long as it lives.
class WindowColor {
public:
    explicit WindowColor(const QColor& color) {
        QPalette palette;
        palette.setColor(QPalette::Window, color);
        QGuiApplication::setPalette(palette);
    }
    ~WindowColor() { QGuiApplication::setPalette(QPalette()); }
};

QStringList words(const char* text) {
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// The settings of a user who likes it dark, still and large.
const QStringList darkStillLarge = words("org.freedesktop.appearance color-scheme u 1 "
                                         "org.gnome.desktop.interface enable-animations b false "
                                         "org.gnome.desktop.interface text-scaling-factor d 1.5 "
                                         "org.gnome.desktop.interface font-name s Cantarell");

class DesktopAppearanceTest : public testing::Test {
protected:
    bool becomesDarkStillLarge() {
        return waitUntil([this] {
            return appearance_->isDark() && appearance_->prefersReducedMotion() &&
                   appearance_->textScale() == 1.5;
        });
    }

    void expectDefaults() {
        EXPECT_FALSE(appearance_->isDark());
        EXPECT_FALSE(appearance_->prefersReducedMotion());
        EXPECT_EQ(appearance_->textScale(), 1);
    }

    void start() { appearance_.emplace(); }

    test::EnvironmentVariable noAppearance_{"OSTRELLA_APPEARANCE", std::nullopt};
    test::EnvironmentVariable noMotion_{"OSTRELLA_REDUCED_MOTION", std::nullopt};
    test::EnvironmentVariable noScale_{"OSTRELLA_TEXT_SCALE", std::nullopt};
    WindowColor light_{Qt::white};
    test::PrivateBus bus_;
    std::optional<DesktopAppearance> appearance_;
    const QRegularExpression readAll_{QStringLiteral("^ReadAll\\|")};
    const QRegularExpression readInTheOldWay_{QStringLiteral("^Read\\|")};
};

TEST_F(DesktopAppearanceTest, ReadsAllSettingsOfAPortalAtOnce) {
    const auto portal = startService(QStringLiteral("portal"), words("all") + darkStillLarge);
    start();
    EXPECT_TRUE(becomesDarkStillLarge());
    EXPECT_EQ(portal->lines().size(), 2) << "ready, and one call";
}

TEST_F(DesktopAppearanceTest, AsksAPortalThatCannotTellAllForEach) {
    const auto portal = startService(QStringLiteral("portal"), words("one") + darkStillLarge);
    start();
    EXPECT_TRUE(becomesDarkStillLarge());
    // What this one asks comes after everything that the first has asked.
    const DesktopAppearance another;
    EXPECT_TRUE(waitUntil([&] { return portal->lines().filter(readAll_).size() == 2; }));
    EXPECT_EQ(portal->lines().filter(readInTheOldWay_).size(), 0);
}

TEST_F(DesktopAppearanceTest, AsksAnOldPortalInTheOldWay) {
    const auto portal = startService(QStringLiteral("portal"), words("old") + darkStillLarge);
    start();
    EXPECT_TRUE(becomesDarkStillLarge());
}

TEST_F(DesktopAppearanceTest, FollowsEachChangeAndTellsOfItOnce) {
    const auto portal = startService(QStringLiteral("portal"), words("all"));
    start();
    ASSERT_TRUE(portal->waitForLine(QStringLiteral("ReadAll")));
    int dark = 0;
    int motion = 0;
    int scale = 0;
    QObject::connect(&*appearance_, &DesktopAppearance::isDarkChanged, [&] { ++dark; });
    QObject::connect(
        &*appearance_, &DesktopAppearance::prefersReducedMotionChanged, [&] { ++motion; });
    QObject::connect(&*appearance_, &DesktopAppearance::textScaleChanged, [&] { ++scale; });

    portal->say(QStringLiteral("org.freedesktop.appearance color-scheme u 1"));
    EXPECT_TRUE(waitUntil([&] { return appearance_->isDark(); }));
    portal->say(QStringLiteral("org.freedesktop.appearance color-scheme u 1"));
    portal->say(QStringLiteral("org.freedesktop.appearance reduced-motion u 1"));
    EXPECT_TRUE(waitUntil([&] { return appearance_->prefersReducedMotion(); }));
    portal->say(QStringLiteral("org.gnome.desktop.interface text-scaling-factor d 2"));
    EXPECT_TRUE(waitUntil([&] { return appearance_->textScale() == 2; }));
    portal->say(QStringLiteral("org.freedesktop.appearance color-scheme u 2"));
    EXPECT_TRUE(waitUntil([&] { return !appearance_->isDark(); }));
    EXPECT_EQ(dark, 2);
    EXPECT_EQ(motion, 1);
    EXPECT_EQ(scale, 1);
}

TEST_F(DesktopAppearanceTest, APortalThatComesLaterIsAsked) {
    start();
    const auto portal = startService(QStringLiteral("portal"), words("all") + darkStillLarge);
    EXPECT_TRUE(becomesDarkStillLarge());
}

TEST_F(DesktopAppearanceTest, APortalThatHangsAndIsReplacedIsAskedAnew) {
    auto portal = startService(QStringLiteral("portal"), words("hang") + darkStillLarge);
    start();
    ASSERT_TRUE(portal->waitForLine(QStringLiteral("ReadAll")));
    expectDefaults();
    portal->kill();
    portal = startService(QStringLiteral("portal"), words("all") + darkStillLarge);
    EXPECT_TRUE(becomesDarkStillLarge());
}

TEST_F(DesktopAppearanceTest, WhatAHangingPortalAnnouncesIsHeard) {
    const auto portal = startService(QStringLiteral("portal"), words("hang"));
    start();
    ASSERT_TRUE(portal->waitForLine(QStringLiteral("ReadAll")));
    portal->say(QStringLiteral("org.freedesktop.appearance color-scheme u 1"));
    EXPECT_TRUE(waitUntil([&] { return appearance_->isDark(); }));
}

TEST_F(DesktopAppearanceTest, OfNonsenseAndRefusalsTheDefaultsRemain) {
    for (const char* const mode : {"nonsense", "refuse"}) {
        const auto portal = startService(QStringLiteral("portal"), words(mode) + darkStillLarge);
        start();
        // The last form of the last setting, after every other has been tried.
        ASSERT_TRUE(portal->waitForLine(
            QStringLiteral("Read|org.kde.kdeglobals.KDE|AnimationDurationFactor")))
            << mode;
        expectDefaults();
        // A later word of sense is understood; by then every answer has come.
        portal->say(QStringLiteral("org.gnome.desktop.interface text-scaling-factor s huge"));
        portal->say(QStringLiteral("org.freedesktop.appearance color-scheme u 1"));
        EXPECT_TRUE(waitUntil([&] { return appearance_->isDark(); })) << mode;
        EXPECT_FALSE(appearance_->prefersReducedMotion());
        EXPECT_EQ(appearance_->textScale(), 1);
    }
}

TEST_F(DesktopAppearanceTest, TheEnvironmentHasTheLastWord) {
    const test::EnvironmentVariable light("OSTRELLA_APPEARANCE", "light");
    const test::EnvironmentVariable moving("OSTRELLA_REDUCED_MOTION", "0");
    const auto portal = startService(QStringLiteral("portal"), words("all") + darkStillLarge);
    start();
    EXPECT_TRUE(waitUntil([&] { return appearance_->textScale() == 1.5; }));
    EXPECT_FALSE(appearance_->isDark());
    EXPECT_FALSE(appearance_->prefersReducedMotion());
}

TEST_F(DesktopAppearanceTest, MayGoBeforeThePortalAnswers) {
    const auto portal = startService(QStringLiteral("portal"), words("all") + darkStillLarge);
    start();
    appearance_.reset();
    start();
    EXPECT_TRUE(becomesDarkStillLarge());
    appearance_.reset();
    portal->say(QStringLiteral("org.freedesktop.appearance color-scheme u 2"));
    start();
    EXPECT_TRUE(
        waitUntil([&] { return appearance_->textScale() == 1.5 && !appearance_->isDark(); }));
}

TEST_F(DesktopAppearanceTest, ABusThatIsFrozenHoldsNobodyUpAndIsHeardWhenItThaws) {
    const auto portal = startService(QStringLiteral("portal"), words("all") + darkStillLarge);
    bus_.freeze();
    const auto before = std::chrono::steady_clock::now();
    start();
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
    expectDefaults();
    bus_.thaw();
    EXPECT_TRUE(becomesDarkStillLarge());
}

TEST_F(DesktopAppearanceTest, WithoutAPortalThePaletteTellsDarkFromLight) {
    start();
    expectDefaults();
    {
        const WindowColor dark(QColor(30, 30, 30));
        EXPECT_TRUE(waitUntil([&] { return appearance_->isDark(); })) << "it changes meanwhile";
        DesktopAppearance another;
        EXPECT_TRUE(another.isDark()) << "it is known from the beginning";
    }
    EXPECT_TRUE(waitUntil([&] { return !appearance_->isDark(); }));
}

/// An address on which nobody, or nobody sane, lets the application in.
class DeafBusTest : public testing::Test {
protected:
    /// Makes the object, which must not wait for the bus.
    static void expectTheDefaultsAtOnce() {
        const auto before = std::chrono::steady_clock::now();
        const DesktopAppearance appearance;
        EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
        EXPECT_FALSE(appearance.isDark());
        EXPECT_FALSE(appearance.prefersReducedMotion());
        EXPECT_EQ(appearance.textScale(), 1);
    }

    WindowColor light_{Qt::white};
    test::TemporaryDirectory directory_;
    QByteArray socket_ = QByteArray::fromStdString((directory_.path() / "bus").string());
    test::EnvironmentVariable runtime_{
        "XDG_RUNTIME_DIR", QByteArray::fromStdString(directory_.path().string())};
    test::EnvironmentVariable address_{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + socket_};
};

TEST_F(DeafBusTest, WithoutABusTheDefaultsRemain) {
    expectTheDefaultsAtOnce();
    const test::EnvironmentVariable none("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    expectTheDefaultsAtOnce();
    const test::EnvironmentVariable nonsense("DBUS_SESSION_BUS_ADDRESS", "what=;;bus?");
    expectTheDefaultsAtOnce();
}

TEST_F(DeafBusTest, ABusThatLetsNobodyInHoldsNobodyUp) {
    QLocalServer server;
    ASSERT_TRUE(server.listen(QString::fromLocal8Bit(socket_)));
    expectTheDefaultsAtOnce();
    DesktopAppearance appearance;
    // It says nothing to the end of the process, which ends all the same.
    EXPECT_TRUE(waitUntil([&] { return server.hasPendingConnections(); })) << "nobody asked";
    EXPECT_EQ(appearance.textScale(), 1);
}

TEST(DesktopAppearanceOverridesTest, WordsThatMeanNothingAreNoWords) {
    const auto overrides = [](const char* appearance, const char* motion, const char* scale) {
        const test::EnvironmentVariable one("OSTRELLA_APPEARANCE", appearance);
        const test::EnvironmentVariable two("OSTRELLA_REDUCED_MOTION", motion);
        const test::EnvironmentVariable three("OSTRELLA_TEXT_SCALE", scale);
        return DesktopAppearance::overrides();
    };
    EXPECT_EQ(overrides("dark", "1", "1.25"), (DesktopAppearance::Values{true, true, 1.25}));
    EXPECT_EQ(overrides("light", "0", "3"), (DesktopAppearance::Values{false, false, 3}));
    EXPECT_EQ(overrides("Dark", "yes", "1,25"), DesktopAppearance::Values{});
    EXPECT_EQ(overrides("", "", ""), DesktopAppearance::Values{});
    EXPECT_EQ(overrides("grey", "2", "nan"), DesktopAppearance::Values{});
    EXPECT_EQ(overrides("", "", "0"), DesktopAppearance::Values{});
}

} // namespace
} // namespace ostrella
