// A parent that is killed takes its programs along.

#include "support/Wait.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

namespace ostrella::test {
namespace {

class OrphansTest : public testing::Test {
protected:
    ~OrphansTest() override {
        parent_.kill();
        parent_.waitForFinished();
        if (child_ > 0 && isRunning(child_)) {
            ::kill(child_, SIGKILL);
        }
    }

    /// The parent, whose child performs `command`, once the child was told apart from the thread
    /// that started it. The command's first line is a process number.
    void start(const char* command) {
        parent_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        parent_.start(
            QStringLiteral(OSTRELLA_PARENT_PROGRAM), QStringList{QString::fromLatin1(command)});
        ASSERT_TRUE(parent_.waitForStarted());
        ASSERT_EQ(line(), "alone");
        child_ = std::stoi(line());
        ASSERT_TRUE(isRunning(child_));
    }

    std::string line() {
        EXPECT_TRUE(waitUntil([this] { return parent_.canReadLine(); }));
        return parent_.readLine().trimmed().toStdString();
    }

    void say(const char* text) { parent_.write(text); }

    void killParent() { ::kill(static_cast<pid_t>(parent_.processId()), SIGKILL); }

    /// Whoever is to reap it may take its time.
    static bool isRunning(pid_t number) {
        const auto status = std::filesystem::path("/proc") / std::to_string(number) / "stat";
        std::error_code error;
        if (!std::filesystem::exists(status, error)) {
            return false;
        }
        const std::string text = readFile(status);
        return text.find(") Z ") == std::string::npos && text.find(") X ") == std::string::npos;
    }

    bool goes() {
        return waitUntil([this] { return !isRunning(child_); });
    }

    QProcess parent_;
    pid_t child_ = 0;
};

/// Reads a line and answers it, again and again; hears no polite signal.
constexpr const char* answering =
    "trap '' TERM INT HUP PIPE; echo $$; while true; do read line && echo \"heard $line\"; done";

TEST_F(OrphansTest, AChildOutlivesTheThreadThatStartedIt) {
    ASSERT_NO_FATAL_FAILURE(start(answering));
    say("one\n");
    EXPECT_EQ(line(), "heard one");
    say("two\n");
    EXPECT_EQ(line(), "heard two");
}

TEST_F(OrphansTest, AChildGoesWithAParentThatIsKilled) {
    ASSERT_NO_FATAL_FAILURE(start(answering));
    killParent();
    EXPECT_TRUE(goes());
}

TEST_F(OrphansTest, AChildsChildGoesAsSoonAsItSpeaks) {
    ASSERT_NO_FATAL_FAILURE(start("(while true; do echo words; sleep 0.05; done) & echo $!; wait"));
    killParent();
    EXPECT_TRUE(goes());
}

} // namespace
} // namespace ostrella::test
