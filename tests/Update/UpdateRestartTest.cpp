#include "Update/UpdateRestart.h"

#include "support/Wait.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>

#include <unistd.h>

namespace {

using namespace ostrella;
using namespace ostrella::test;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

class UpdateRestartTest : public testing::Test {
protected:
    fs::path program(const std::string& script) const {
        const fs::path file = directory_.path() / "program";
        writeFile(file, "#!/bin/sh\ncd '" + directory_.path().string() + "'\n" + script);
        fs::permissions(file, fs::perms(0755));
        return file;
    }

    TemporaryDirectory directory_;
};

TEST_F(UpdateRestartTest, AProgramThatConfirmsLivesOn) {
    const fs::path fifo = directory_.path() / "go";
    ASSERT_TRUE(UpdateRestart::startAndWatch(
        program("mkfifo go; printf '!' >&3; exec 3>&-; read word <go; echo $word >heard"), 20s));
    ASSERT_TRUE(waitUntil([&] { return fs::exists(fifo); }));
    writeFile(fifo, "on\n");
    const fs::path heard = directory_.path() / "heard";
    EXPECT_TRUE(waitUntil([&] { return fs::exists(heard) && readFile(heard) == "on\n"; }));
}

TEST_F(UpdateRestartTest, AProgramThatEndsAtOnceHasNotConfirmed) {
    EXPECT_FALSE(UpdateRestart::startAndWatch(program("exit 0"), 20s));
    EXPECT_FALSE(UpdateRestart::startAndWatch(program("kill -SEGV $$"), 20s));
}

TEST_F(UpdateRestartTest, WhatIsNoProgramHasNotConfirmed) {
    EXPECT_FALSE(UpdateRestart::startAndWatch(directory_.path() / "nothing", 20s));
    EXPECT_FALSE(UpdateRestart::start(directory_.path() / "nothing"));
}

TEST_F(UpdateRestartTest, AProgramThatNeverConfirmsIsEnded) {
    EXPECT_FALSE(UpdateRestart::startAndWatch(
        program("echo $$ >pid.new; mv pid.new pid\nwhile :; do read x </dev/zero; done"), 500ms));
    const fs::path pid = directory_.path() / "pid";
    if (fs::exists(pid)) {
        EXPECT_EQ(::kill(std::stoi(readFile(pid)), 0), -1);
        EXPECT_EQ(errno, ESRCH);
    }
}

TEST_F(UpdateRestartTest, NobodyElseFindsTheWatchOrOpenFiles) {
    ::setenv(UpdateRestart::variable, "77", 1);
    ASSERT_TRUE(UpdateRestart::start(
        program("echo \"[$OSTRELLA_UPDATE_WATCH]\" >env.new; ls /proc/self/fd >fds.new\n"
                "mv fds.new fds; mv env.new env")));
    ::unsetenv(UpdateRestart::variable);
    const fs::path environment = directory_.path() / "env";
    ASSERT_TRUE(waitUntil([&] { return fs::exists(environment); }));
    EXPECT_EQ(readFile(environment), "[]\n");
    // The standard ones, and that of the folder which is listed.
    EXPECT_EQ(readFile(directory_.path() / "fds"), "0\n1\n2\n3\n");
}

TEST_F(UpdateRestartTest, AnOrdinaryStartIsNotWatched) {
    for (const char* const rubbish : {"", "x", "-1", "0", "1", "2", "3x", "99999", "4294967299"}) {
        ::setenv(UpdateRestart::variable, rubbish, 1);
        UpdateRestart::adoptWatch();
        EXPECT_FALSE(UpdateRestart::isWatched()) << rubbish;
        EXPECT_EQ(::getenv(UpdateRestart::variable), nullptr);
    }
    UpdateRestart::confirm();
}

} // namespace
