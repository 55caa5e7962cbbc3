#include "run/support/TerminalRun.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrella::test {

TerminalRun::TerminalRun(const std::filesystem::path& program,
    const std::vector<std::string>& arguments, const std::filesystem::path& temporaryDirectory,
    unsigned short columns) {
    std::vector<char*> words{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    winsize size{};
    size.ws_col = columns;
    size.ws_row = 24;
    pid_ = forkpty(&terminal_, nullptr, nullptr, &size);
    if (pid_ == 0) {
        setenv("TMPDIR", temporaryDirectory.c_str(), 1);
        setenv("TERM", "xterm", 1);
        execv(program.c_str(), words.data());
        _exit(127);
    }
    EXPECT_GT(pid_, 0);
}

TerminalRun::~TerminalRun() {
    if (pid_ > 0) {
        kill(pid_, SIGTERM);
        waitpid(pid_, nullptr, 0);
    }
    close(terminal_);
}

/// False at the end of what the program writes.
bool TerminalRun::readMore() {
    pollfd source{terminal_, POLLIN, 0};
    if (poll(&source, 1, 100) == 0) {
        return true;
    }
    char buffer[4096];
    const ssize_t count = read(terminal_, buffer, sizeof buffer);
    if (count <= 0) {
        return false;
    }
    output_.append(buffer, static_cast<std::size_t>(count));
    return true;
}

bool TerminalRun::waitForOutput(const std::string& text) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (output_.find(text) == std::string::npos) {
        if (!readMore() || std::chrono::steady_clock::now() > deadline) {
            return output_.find(text) != std::string::npos;
        }
    }
    return true;
}

void TerminalRun::type(const std::string& keys) const {
    EXPECT_EQ(write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
}

int TerminalRun::finish() {
    while (readMore()) {
    }
    int status = 0;
    const pid_t ended = waitpid(pid_, &status, 0);
    pid_ = -1;
    return ended > 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace ostrella::test
