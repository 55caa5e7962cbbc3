// What the desktop shows of a run whose user is elsewhere.

#include "ManagedDesktop.h"

#include "Platform/desktop/Dock.h"
#include "run/support/ToolScripts.h"
#include "ui/application/StartedApplication.h"

#include <QRasterWindow>

#include <gmock/gmock.h>

#include <chrono>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;

/// A run that took no longer is not told of.
constexpr std::chrono::seconds shortRun{10};

class NoteTest : public testing::Test {
protected:
    NoteTest() {
        application_.process().setVariable(
            "DBUS_SESSION_BUS_ADDRESS", bus_.address().toStdString());
        // It has come so far before it waits for a word.
        application_.package().script(
            "SU2_CFD", ToolScripts::writingHistory(50) + ToolScripts::notingIn(note_) +
                           ToolScripts::waitingFor(word_) + ToolScripts::goodSolver);
    }

    void runLong() {
        ASSERT_TRUE(dock_.isListening());
        ASSERT_NO_FATAL_FAILURE(application_.openSphere());
        ASSERT_NO_FATAL_FAILURE(application_.run(note_));
        const auto began = steady_clock::now();
        // 50 of 200 iterations.
        ASSERT_TRUE(waitUntil([this] { return !dock_.heard.empty() && dock_.heard.back() > 0.2; }));
        EXPECT_EQ(dock_.application, QStringLiteral("application://org.ostrella.Ostrella.desktop"));
        another_.setGeometry(100, 100, 600, 400);
        another_.show();
        const auto front = static_cast<std::uint32_t>(another_.winId());
        desktop_.bringToFront(front);
        ASSERT_TRUE(desktop_.waitForFront(front));
        ASSERT_TRUE(waitUntil([&] { return steady_clock::now() - began > shortRun; }));
        EXPECT_EQ(desk_->lines().size(), 1) << "no note before the end";
        writeFile(word_, "");
        const auto shown = desk_->waitForLine(QStringLiteral("Notify|"));
        ASSERT_TRUE(shown);
        EXPECT_TRUE(shown->startsWith(
            QStringLiteral("Notify|Ostrella|0|org.ostrella.Ostrella|Ostrella|Converged at iter")))
            << shown->toStdString();
        EXPECT_TRUE(waitUntil([this] { return dock_.heard.back() == -1; }))
            << "the progress goes with the run";
    }
    bool isWithdrawn() {
        return desk_->waitForLine(QStringLiteral("CloseNotification|41")).has_value();
    }

    ManagedDesktop desktop_;
    PrivateBus bus_;
    std::unique_ptr<TalkingProgram> desk_ =
        startService(QStringLiteral("notifications"), {QStringLiteral("rich")});
    Dock dock_{bus_.address()};
    StartedApplication application_;

private:
    TemporaryDirectory directory_;
    fs::path note_ = directory_.path() / "child";
    fs::path word_ = directory_.path() / "word";
    QRasterWindow another_;
};

TEST_F(NoteTest, AClickOnItBringsTheWindowToTheFrontAndTheNoteGoes) {
    ASSERT_NO_FATAL_FAILURE(runLong());
    desk_->say(QStringLiteral("click 41"));
    EXPECT_TRUE(desktop_.waitForFront(application_.window().id()));
    EXPECT_TRUE(isWithdrawn());
}

TEST_F(NoteTest, ItGoesWhenTheUserComesBack) {
    ASSERT_NO_FATAL_FAILURE(runLong());
    desktop_.bringToFront(application_.window().id());
    EXPECT_TRUE(isWithdrawn());
}

} // namespace
} // namespace ostrella::test
