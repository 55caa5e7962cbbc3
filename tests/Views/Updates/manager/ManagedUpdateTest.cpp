#include "Views/Updates/window/UpdateBench.h"
#include "support/Wait.h"
#include "ui/manager/ManagedDesktop.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

#include <xcb/xcb.h>

namespace ostrella::test {
namespace {

/// A window that is not the toolkit's, as if of another program.
class OtherProgram {
public:
    OtherProgram()
        : connection_(xcb_connect(nullptr, nullptr), &xcb_disconnect),
          window_(xcb_generate_id(connection_.get())) {
        const xcb_screen_t* screen =
            xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
        xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, screen->root, 50, 50,
            500, 300, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(connection_.get(), window_);
        xcb_flush(connection_.get());
    }

    std::uint32_t window() const { return window_; }

private:
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection_;
    xcb_window_t window_;
};

class ManagedUpdateTest : public UpdateBench {
protected:
    // On the user's word: a manager does not always let programs do so.
    ManagedUpdateTest()
        : UpdateBench([](QWindow& window) { desktop().bringToFront(id(window)); }) {}

    // One for all: the toolkit does not expect another in its lifetime.
    static void SetUpTestSuite() { desktop_ = std::make_unique<ManagedDesktop>(); }
    static void TearDownTestSuite() { desktop_.reset(); }

    static ManagedDesktop& desktop() { return *desktop_; }
    static std::uint32_t id(QWindow& window) { return static_cast<std::uint32_t>(window.winId()); }
    std::uint32_t other() const { return other_.window(); }
    void bringOtherToFront() {
        desktop().bringToFront(other());
        ASSERT_TRUE(desktop().waitForFront(other()));
        ASSERT_TRUE(waitUntil([] { return QGuiApplication::focusWindow() == nullptr; }));
    }

private:
    inline static std::unique_ptr<ManagedDesktop> desktop_;

    OtherProgram other_;
};

TEST_F(ManagedUpdateTest, AScheduledOneLeavesAnotherProgramInFront) {
    bringOtherToFront();
    session.stage = Stage::found;
    model->setSession(session);
    QCoreApplication::processEvents();
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(desktop().activeWindow(), other());
    // What comes of it meanwhile does not either.
    session.stage = Stage::failed;
    model->setSession(session);
    QCoreApplication::processEvents();
    EXPECT_FALSE(isOpen());

    desktop().bringToFront(id(mainWindow));
    ASSERT_TRUE(waitUntil([this] { return isOpen(); }));
    EXPECT_TRUE(desktop().waitForFront(id(window())));
}

TEST_F(ManagedUpdateTest, GoesOnBehindAnotherProgram) {
    tell(Stage::downloading);
    bringOtherToFront();
    for (const Stage stage : {Stage::preparing, Stage::ready}) {
        session.stage = stage;
        model->setSession(session);
        QCoreApplication::processEvents();
        EXPECT_TRUE(isOpen());
        EXPECT_EQ(desktop().activeWindow(), other());
        EXPECT_EQ(desktop().frontWindow(), other());
    }
}

TEST_F(ManagedUpdateTest, LiesOnTheScreenWithItsFrame) {
    mainWindow.setPosition(-400, 500);
    QCoreApplication::processEvents();
    ask(Stage::found);
    const QRect room = desktop().workArea();
    EXPECT_TRUE(waitUntil([&] { return room.contains(desktop().frame(id(window()))); }));
}

TEST_F(ManagedUpdateTest, TheCrossOfItsFrameIsAnAnswer) {
    ask(Stage::ready);
    desktop().close(id(window()));
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
    EXPECT_EQ(answers, std::vector{Answer::remindLater});
}

} // namespace
} // namespace ostrella::test
