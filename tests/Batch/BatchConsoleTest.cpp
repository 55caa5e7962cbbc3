#include "Batch/BatchConsole.h"

#include "support/Wait.h"

#include <gmock/gmock.h>

#include <cstdlib>

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace ostrella {
namespace {

using testing::HasSubstr;
using testing::Not;

LogStore::Line line(std::string text, LogStore::Level level) {
    return {QUuid::createUuid(), std::move(text), level, Date{}};
}

/// A terminal of a given width, and what was written to it.
class PseudoTerminal {
public:
    explicit PseudoTerminal(unsigned short columns) {
        winsize size{};
        size.ws_col = columns;
        size.ws_row = 24;
        int terminal = -1;
        EXPECT_EQ(openpty(&reader_, &terminal, nullptr, nullptr, &size), 0);
        stream = fdopen(terminal, "w");
    }
    ~PseudoTerminal() {
        std::fclose(stream);
        close(reader_);
    }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    /// True if exactly `text` has come since the last look. A terminal hands over in pieces, so the
    /// reading goes on until there is as much; what is too much is found as well.
    testing::AssertionResult hasWritten(const std::string& text) {
        std::fflush(stream);
        constexpr int patience = 5000; // ms
        pollfd source{reader_, POLLIN, 0};
        std::string written;
        while (poll(&source, 1, written.size() < text.size() ? patience : 0) == 1) {
            char buffer[4096];
            const ssize_t count = read(reader_, buffer, sizeof buffer);
            if (count <= 0) {
                break;
            }
            written.append(buffer, static_cast<std::size_t>(count));
        }
        return written == text ? testing::AssertionSuccess()
                               : testing::AssertionFailure()
                                     << testing::PrintToString(written) << " was written";
    }

    std::FILE* stream = nullptr;

private:
    int reader_ = -1;
};

class BatchConsoleTest : public testing::Test {
protected:
    BatchConsoleTest() { setenv("TERM", "xterm", 1); }

    /// What a console that is no terminal is given by `use`.
    std::string inAFile(bool quiet, const std::function<void(BatchConsole&)>& use) {
        const test::TemporaryDirectory directory;
        const auto path = directory.path() / "log";
        std::FILE* const file = std::fopen(path.c_str(), "w");
        BatchConsole console(file, quiet);
        EXPECT_FALSE(console.showsProgress());
        use(console);
        std::fclose(file);
        return test::readFile(path);
    }
};

TEST_F(BatchConsoleTest, ALineHasItsTimeAndTag) {
    const std::string written = inAFile(false, [](BatchConsole& console) {
        console.print(line("Mesh built · 5 cells", LogStore::Level::ok));
        console.print(line("| 1 | 2 |", LogStore::Level::su2));
    });
    EXPECT_THAT(written, testing::MatchesRegex("[0-9]{2}:[0-9]{2}:[0-9]{2} \\[OK\\] Mesh built · 5 "
                                               "cells\n[0-9]{2}:[0-9]{2}:[0-9]{2} \\[SU2\\] \\| 1 "
                                               "\\| 2 \\|\n"));
}

TEST_F(BatchConsoleTest, AQuietOneLeavesOutTheChildrenOnly) {
    const std::string written = inAFile(true, [](BatchConsole& console) {
        console.print(line("of a child", LogStore::Level::su2));
        console.print(line("of ours", LogStore::Level::info));
        console.print(line("a failure", LogStore::Level::error));
    });
    EXPECT_THAT(written, Not(HasSubstr("of a child")));
    EXPECT_THAT(written, HasSubstr("[INFO] of ours\n"));
    EXPECT_THAT(written, HasSubstr("[ERR] a failure\n"));
}

TEST_F(BatchConsoleTest, AFileGetsNoProgressAndEveryByteOfALine) {
    const std::string written = inAFile(false, [](BatchConsole& console) {
        console.setProgress("Meshing…");
        console.print("a\x1b[31mb");
        console.setProgress("");
    });
    EXPECT_EQ(written, "a\x1b[31mb\n");
}

TEST_F(BatchConsoleTest, ATerminalHasTheProgressBeneathTheLines) {
    PseudoTerminal terminal(80);
    BatchConsole console(terminal.stream, false);
    ASSERT_TRUE(console.showsProgress());
    console.setProgress("Iter 1");
    EXPECT_TRUE(terminal.hasWritten("Iter 1"));
    console.print("a line");
    EXPECT_TRUE(terminal.hasWritten("\r\x1b[Ka line\r\nIter 1"));
    console.setProgress("Iter 2");
    EXPECT_TRUE(terminal.hasWritten("\r\x1b[KIter 2"));
    console.setProgress("");
    EXPECT_TRUE(terminal.hasWritten("\r\x1b[K"));
    console.print("the end");
    EXPECT_TRUE(terminal.hasWritten("the end\r\n"));
}

TEST_F(BatchConsoleTest, TheProgressIsCutToTheWidthOfTheTerminal) {
    PseudoTerminal terminal(11);
    BatchConsole console(terminal.stream, false);
    console.setProgress("Meshing… · 12 s elapsed");
    // Ten characters, so that the cursor stays on the line.
    EXPECT_TRUE(terminal.hasWritten("Meshing… ·"));
}

TEST_F(BatchConsoleTest, ATerminalObeysNoControlCharactersOfAChild) {
    PseudoTerminal terminal(80);
    BatchConsole console(terminal.stream, false);
    console.print("a\x1b[2Jb\x07"
                  "c\td\x7f");
    EXPECT_TRUE(terminal.hasWritten("a?[2Jb?c\td?\r\n"));
}

TEST_F(BatchConsoleTest, ATerminalThatCannotBeWrittenOverHasNoProgress) {
    setenv("TERM", "dumb", 1);
    PseudoTerminal terminal(80);
    EXPECT_FALSE(BatchConsole(terminal.stream, false).showsProgress());
}

} // namespace
} // namespace ostrella
