#include "Platform/ChildProcess.h"

#include "Platform/FileDescriptor.h"
#include "ProcessRun.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>
#include <system_error>

#include <unistd.h>

namespace ostrella {
namespace {

using test::program;

/// The first bytes that a child writes.
std::string firstOutput(const FileDescriptor& readEnd) {
    char buffer[256];
    const ssize_t count = ::read(readEnd.get(), buffer, sizeof buffer);
    return count > 0 ? std::string(buffer, static_cast<std::size_t>(count)) : "";
}

TEST(ChildProcess, runsFromItsStartUntilItIsWaitedFor) {
    Pipe pipe = Pipe::make();
    ChildProcess child;
    EXPECT_FALSE(child.isRunning());
    child.start({.executable = program("slow"), .arguments = {}, .directory = std::nullopt},
        pipe.writeEnd.get());
    EXPECT_TRUE(child.isRunning());
    EXPECT_TRUE(firstOutput(pipe.readEnd).starts_with("ready "));
    child.terminate();
    EXPECT_EQ(child.wait(), SIGTERM);
    EXPECT_FALSE(child.isRunning());
}

TEST(ChildProcess, ignoresSignalsBeforeItsStartAndAfterItsEnd) {
    Pipe pipe = Pipe::make();
    ChildProcess child;
    child.kill();
    child.terminate();
    child.start({.executable = program("say"), .arguments = {"--exit", "5"}, .directory = {}},
        pipe.writeEnd.get());
    EXPECT_EQ(child.wait(), 5);
    child.kill();
    child.terminate();
}

TEST(ChildProcess, isKilledAndReapedIfNobodyWaitsForIt) {
    Pipe pipe = Pipe::make();
    pid_t pid = 0;
    {
        ChildProcess child;
        child.start(
            {.executable = program("deaf"), .arguments = {}, .directory = {}}, pipe.writeEnd.get());
        pid = std::stoi(firstOutput(pipe.readEnd).substr(std::string("ready ").size()));
        EXPECT_TRUE(test::exists(pid));
    }
    EXPECT_FALSE(test::exists(pid));
}

TEST(ChildProcess, canHaveAnEmptyInput) {
    struct stat null {};
    ASSERT_EQ(::stat("/dev/null", &null), 0);
    Pipe pipe = Pipe::make();
    ChildProcess child;
    child.start({.executable = program("surroundings"),
                    .arguments = {},
                    .directory = {},
                    .nullInput = true},
        pipe.writeEnd.get());
    pipe.writeEnd.close();
    child.wait();
    std::string output;
    for (std::string piece = firstOutput(pipe.readEnd); !piece.empty();
         piece = firstOutput(pipe.readEnd)) {
        output += piece;
    }
    EXPECT_NE(output.find("input " + std::to_string(null.st_dev) + ":" +
                          std::to_string(null.st_ino) + "\n"),
        std::string::npos)
        << output;
}

TEST(ChildProcessDeathTest, isStartedAndWaitedForOnce) {
    const auto waitBeforeStart = [] {
        ChildProcess child;
        child.wait();
    };
    EXPECT_DEATH(waitBeforeStart(), "waited for once, after its start");
}

/// In a process of its own, since there is no way back.
TEST(ChildProcessDeathTest, afterTheLastKillNoneRunsAndNoneStarts) {
    const auto attempt = [] {
        Pipe pipe = Pipe::make();
        const ChildProcess::Program slow{
            .executable = program("slow"), .arguments = {}, .directory = std::nullopt};
        ChildProcess first;
        ChildProcess second;
        ChildProcess ended;
        ended.start(slow, pipe.writeEnd.get());
        ended.kill();
        ended.wait();
        first.start(slow, pipe.writeEnd.get());
        second.start(slow, pipe.writeEnd.get());
        ChildProcess::killAllForGood();
        const bool areKilled = first.wait() == SIGKILL && second.wait() == SIGKILL;
        bool isRefused = false;
        try {
            ChildProcess().start(slow, pipe.writeEnd.get());
        } catch (const std::system_error& error) {
            isRefused = error.code().value() == ECANCELED;
        }
        std::_Exit(areKilled && isRefused ? 0 : 1);
    };
    EXPECT_EXIT(attempt(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace ostrella
