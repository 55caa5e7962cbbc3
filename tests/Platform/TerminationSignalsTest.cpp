#include "Platform/TerminationSignals.h"

#include "support/Wait.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <thread>

#include <unistd.h>

namespace ostrella {
namespace {

class TerminationSignalsTest : public testing::TestWithParam<int> {};

TEST_P(TerminationSignalsTest, BecomeAQtSignalOnTheMainThread) {
    TerminationSignals signals;
    int requests = 0;
    QObject::connect(
        &signals, &TerminationSignals::requested, &signals, [&requests] { ++requests; });
    std::raise(GetParam());
    EXPECT_EQ(requests, 0) << "nothing happens inside the handler";
    ASSERT_TRUE(test::waitUntil([&requests] { return requests > 0; }));
    std::thread([] { std::raise(GetParam()); }).join();
    EXPECT_TRUE(test::waitUntil([&requests] { return requests > 1; }));
}

INSTANTIATE_TEST_SUITE_P(All, TerminationSignalsTest,
    testing::Values(SIGINT, SIGTERM, SIGHUP, SIGPIPE),
    [](const auto& test) { return std::string(sigabbrev_np(test.param)); });

TEST(TerminationSignals, AFloodOfThemIsOneRequestOrMoreAndBlocksNobody) {
    TerminationSignals signals;
    int requests = 0;
    QObject::connect(
        &signals, &TerminationSignals::requested, &signals, [&requests] { ++requests; });
    for (int i = 0; i < 100000; ++i) {
        std::raise(SIGTERM);
    }
    EXPECT_TRUE(test::waitUntil([&requests] { return requests > 0; }));
}

TEST(TerminationSignals, WhatWasInterruptedKeepsItsError) {
    TerminationSignals signals;
    for (int i = 0; i < 100000; ++i) {
        // The pipe to the main thread is full in the end, and the handler's own write fails.
        errno = EDOM;
        std::raise(SIGTERM);
        ASSERT_EQ(errno, EDOM);
    }
}

TEST(TerminationSignals, AnIgnoredHangUpStaysIgnored) {
    std::signal(SIGHUP, SIG_IGN);
    {
        TerminationSignals signals;
        EXPECT_EQ(std::signal(SIGHUP, SIG_IGN), SIG_IGN);
    }
    EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST(TerminationSignals, AreTheSystemsAgainAfterwards) {
    { TerminationSignals signals; }
    EXPECT_EXIT(std::raise(SIGTERM), testing::KilledBySignal(SIGTERM), "");
    TerminationSignals again;
    int requests = 0;
    QObject::connect(&again, &TerminationSignals::requested, &again, [&requests] { ++requests; });
    std::raise(SIGINT);
    EXPECT_TRUE(test::waitUntil([&requests] { return requests == 1; }));
}

} // namespace
} // namespace ostrella
