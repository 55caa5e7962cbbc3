// The windows beside the main one, framed and held to their sizes by a window manager.

#include "ManagedDesktop.h"

#include "Views/Controls/Theme.h"
#include "ui/support/AppUnderTest.h"

#include <QGuiApplication>

#include <algorithm>

namespace ostrella::test {
namespace {

/// The manager is there before the window, and goes after it.
struct WithManager {
    ManagedDesktop desktop;
};

class ManagedSideWindows : protected WithManager, public AppUnderTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(desktop.waitForFront(static_cast<std::uint32_t>(window->window().winId())));
    }
    void TearDown() override { Theme::shared().setTextScale(1); }

    /// Whether the manager shows the window in the size that its content wants, and that all of it
    /// is laid out in.
    bool isWhole(QQuickWindow* side) {
        if (side == nullptr || !side->isExposed()) {
            return false;
        }
        const QSize wanted(
            side->property("fittingWidth").toInt(), side->property("fittingHeight").toInt());
        const QRect shown = desktop.content(static_cast<std::uint32_t>(side->winId()));
        return shown.size() == wanted && side->size() == wanted &&
               side->contentItem()->size().toSize() == wanted;
    }
    QQuickWindow* acknowledgements() const {
        const auto windows = QGuiApplication::topLevelWindows();
        const auto found = std::find_if(windows.begin(), windows.end(), [this](QWindow* one) {
            return one->transientParent() == window->about().window() && one->isVisible();
        });
        return found == windows.end() ? nullptr : qobject_cast<QQuickWindow*>(*found);
    }
};

TEST_F(ManagedSideWindows, settingsHaveTheirSizeAndTakeAnother) {
    window->showSettings();
    EXPECT_TRUE(waitFor([this] { return isWhole(window->settings().window()); }));
    EXPECT_EQ(window->settings().window()->width(), 488);
    Theme::shared().setTextScale(1.25);
    EXPECT_TRUE(waitFor([this] {
        return window->settings().window()->width() == 610 && isWhole(window->settings().window());
    }));
    Theme::shared().setTextScale(1);
    EXPECT_TRUE(waitFor([this] {
        return window->settings().window()->width() == 488 && isWhole(window->settings().window());
    }));
}

TEST_F(ManagedSideWindows, aboutAndAcknowledgementsAreWhole) {
    window->showAbout();
    ASSERT_TRUE(waitFor([this] { return isWhole(window->about().window()); }));
    window->about().window()->property("model").value<AboutModel*>()->setShowAcknowledgements(true);
    EXPECT_TRUE(waitFor([this] { return isWhole(acknowledgements()); }));
}

} // namespace
} // namespace ostrella::test
