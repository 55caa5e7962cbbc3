// The windows beside the main one: the settings and what the application says of itself.

#include "ui/support/AppUnderTest.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace ostrella::test {
namespace {

class SideWindows : public AppUnderTest {
protected:
    static bool isShown(const SideWindow& side) {
        return side.window() != nullptr && side.window()->isExposed();
    }
    /// Brings the main window to where its middle is not the screen's.
    void moveMainWindow() {
        const QRect place(200, 100, 1200, 800);
        ASSERT_GT((place.center() - screenMiddle()).manhattanLength(), 50);
        window->window().setGeometry(place);
        ASSERT_TRUE(waitFor([&] { return window->window().geometry() == place; }));
        user->settle();
    }
    QPoint screenMiddle() const { return window->window().screen()->availableGeometry().center(); }
    /// Whether its middle lies there, to a point of rounding.
    static bool isCentred(const SideWindow& side, QPoint middle) {
        const QPoint off = side.window()->geometry().center() - middle;
        return std::abs(off.x()) <= 1 && std::abs(off.y()) <= 1;
    }
    static int shownWindows() {
        const auto windows = QGuiApplication::topLevelWindows();
        return static_cast<int>(std::count_if(
            windows.begin(), windows.end(), [](const QWindow* one) { return one->isVisible(); }));
    }
};

TEST_F(SideWindows, areNotMadeBeforeTheyAreAskedFor) {
    EXPECT_EQ(window->settings().window(), nullptr);
    EXPECT_EQ(window->about().window(), nullptr);
}

TEST_F(SideWindows, settingsOpenFromTheMenuTheToolbarAndTheKeyboardButOnce) {
    ASSERT_NO_FATAL_FAILURE(moveMainWindow());
    choose("Edit", "Settings…");
    ASSERT_TRUE(waitFor([&] { return isShown(window->settings()); }));
    EXPECT_TRUE(isCentred(window->settings(), window->window().geometry().center()));
    EXPECT_EQ(window->settings().window()->transientParent(), &window->window());
    const QQuickWindow* first = window->settings().window();
    const int count = shownWindows();
    click("Settings", QAccessible::Button);
    user = std::make_unique<RealInput>(window->window());
    user->type(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(window->settings().window(), first);
    EXPECT_EQ(shownWindows(), count);
    window->settings().close();
    EXPECT_TRUE(waitFor([&] { return !isShown(window->settings()); }));
    user = std::make_unique<RealInput>(window->window());
    user->type(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_TRUE(waitFor([&] { return isShown(window->settings()); }));
    EXPECT_EQ(window->settings().window(), first);
}

TEST_F(SideWindows, settingsCountForTheNextRun) {
    window->showSettings();
    ASSERT_TRUE(waitFor([&] { return isShown(window->settings()); }));
    window->settings().window()->property("model").value<SettingsModel*>()->setMaxIterations(150);
    EXPECT_EQ(app->appSettings.defaultMaxIterations(), 150);
    EXPECT_EQ(app->parameters.snapshot(&app->appSettings).maxIterations, 150);
}

TEST_F(SideWindows, aboutTellsThePackagesTools) {
    choose("Help", "About Ostrella");
    ASSERT_TRUE(waitFor([&] { return isShown(window->about()); }));
    const auto* about = window->about().window()->property("model").value<AboutModel*>();
    EXPECT_TRUE(waitFor([&] { return about->mesher().startsWith(QLatin1String("gmsh ")); }));
    EXPECT_NE(about->solver(), QStringLiteral("·"));
    EXPECT_EQ(about->renderer(), QStringLiteral("OpenGL on paper"));
}

TEST_F(SideWindows, aboutOpensInTheMiddleOfTheScreenWhereverTheMainWindowIs) {
    ASSERT_NO_FATAL_FAILURE(moveMainWindow());
    window->showAbout();
    ASSERT_TRUE(waitFor([&] { return isShown(window->about()); }));
    EXPECT_TRUE(isCentred(window->about(), screenMiddle()));
    EXPECT_EQ(window->about().window()->transientParent(), &window->window());
}

TEST_F(SideWindows, leaveTheWayToQuitByTheKeyboard) {
    window->showSettings();
    ASSERT_TRUE(waitFor([&] { return isShown(window->settings()); }));
    RealInput onSettings(*window->settings().window());
    onSettings.type(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quits, 1);
    window->settings().close();
    EXPECT_TRUE(waitFor([&] { return !isShown(window->settings()); }));
    user = std::make_unique<RealInput>(window->window());
    user->type(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quits, 2) << "and once only";
}

TEST_F(SideWindows, goWithTheMainWindow) {
    window->showSettings();
    window->showAbout();
    ASSERT_TRUE(waitFor([&] { return isShown(window->settings()) && isShown(window->about()); }));
    window->hide();
    EXPECT_TRUE(waitFor([&] { return shownWindows() == 0; }));
}

} // namespace
} // namespace ostrella::test
