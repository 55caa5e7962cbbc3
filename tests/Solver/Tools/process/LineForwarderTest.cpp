#include "Solver/Tools/LineForwarder.h"
#include "Models/MainThread.h"
#include "ProcessRun.h"
#include "support/ManualTimers.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace ostrella {
namespace {

using test::texts;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double timeout = 2.0;

std::span<const std::byte> bytes(std::string_view text) {
    return std::as_bytes(std::span(text));
}

bool keepAll(const std::string&) {
    return true;
}

class LineForwarderTest : public testing::Test {
protected:
    std::vector<std::string> drain() {
        std::vector<std::string> kept;
        test::onWorker([&] { kept = forwarder.drain(timeout, timers); });
        return kept;
    }

    LogStore log;
    test::ManualTimers timers;
    LineForwarder forwarder{log, LogStore::Level::su2, keepAll};
};

TEST_F(LineForwarderTest, cutsBytesIntoLinesWhateverTheChunks) {
    forwarder.ingest(bytes("first\nsec"));
    forwarder.ingest(bytes(""));
    forwarder.ingest(bytes("ond\n"));
    forwarder.ingest(bytes("\n \t\n  third\r\nfourth"));
    forwarder.close();

    EXPECT_THAT(drain(), ElementsAre("first", "second", "  third", "fourth"));
    EXPECT_THAT(texts(log), ElementsAre("first", "second", "  third", "fourth"));
}

TEST_F(LineForwarderTest, decodesACharacterThatArrivesInPieces) {
    for (const char& piece : std::string_view("5 · 10⁻³\n")) {
        forwarder.ingest(bytes({&piece, 1}));
    }
    forwarder.close();
    EXPECT_THAT(drain(), ElementsAre("5 · 10⁻³"));
}

TEST_F(LineForwarderTest, showsEachLineWithItsLevelAndAnIdentityOfItsOwn) {
    forwarder.ingest(bytes("one\ntwo\n"));
    forwarder.close();
    drain();
    ASSERT_EQ(log.count(), 2);
    EXPECT_EQ(log.lines()[0].level, LogStore::Level::su2);
    EXPECT_EQ(log.lines()[1].level, LogStore::Level::su2);
    EXPECT_NE(log.lines()[0].id, log.lines()[1].id);
}

TEST_F(LineForwarderTest, showsLinesBeforeTheInputEnds) {
    forwarder.ingest(bytes("progress\nunfinished"));
    EXPECT_TRUE(test::waitUntil([&] { return log.count() == 1; }));
    EXPECT_THAT(texts(log), ElementsAre("progress"));
}

TEST_F(LineForwarderTest, closesOnceAndDropsWhatComesLater) {
    forwarder.ingest(bytes("half"));
    forwarder.close();
    forwarder.close();
    forwarder.ingest(bytes(" and half\nlate\n"));
    EXPECT_THAT(drain(), ElementsAre("half"));
    EXPECT_THAT(texts(log), ElementsAre("half"));
}

TEST_F(LineForwarderTest, readsAPipeToItsEndAndClosesIt) {
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    forwarder.attach(ends[0]);
    ASSERT_EQ(::write(ends[1], "through the pipe\nto the end", 27), 27);
    ::close(ends[1]);
    EXPECT_THAT(drain(), ElementsAre("through the pipe", "to the end"));
    EXPECT_EQ(::fcntl(ends[0], F_GETFD), -1);
}

TEST_F(LineForwarderTest, closesByItselfWhenTheEndDoesNotCome) {
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    forwarder.attach(ends[0]);
    ASSERT_EQ(::write(ends[1], "whole\nhalf", 10), 10);
    ASSERT_TRUE(test::waitUntil([&] { return log.count() == 1; }));

    std::atomic<bool> done = false;
    std::vector<std::string> kept;
    std::thread worker([&] {
        kept = forwarder.drain(timeout, timers);
        done = true;
    });
    ASSERT_TRUE(test::waitUntil([&] { return !timers.pending().empty(); }));
    EXPECT_THAT(timers.pending(), ElementsAre(timeout));
    timers.advance(1.999);
    EXPECT_FALSE(done);
    timers.advance(0.001);
    EXPECT_TRUE(test::waitUntil([&] { return done.load(); }));
    worker.join();
    EXPECT_THAT(kept, ElementsAre("whole", "half"));
    EXPECT_THAT(timers.pending(), IsEmpty());
    ::close(ends[1]);
}

TEST_F(LineForwarderTest, leavesNoTimerBehind) {
    forwarder.close();
    drain();
    EXPECT_THAT(timers.pending(), IsEmpty());
}

TEST_F(LineForwarderTest, neverWaitsForTheMainThreadNorHoldsItUp) {
    constexpr int count = 200'000;
    // On the main thread itself and without a look at its events: nothing may wait for it here.
    for (int i = 0; i < count; ++i) {
        forwarder.ingest(bytes("line " + std::to_string(i) + "\n"));
    }
    forwarder.close();
    EXPECT_EQ(log.count(), 0);

    qsizetype shownBefore = count;
    MainThread::post([&] { shownBefore = log.count(); });
    drain();
    EXPECT_LT(shownBefore, count) << "the queued event had to wait for all the lines";
    ASSERT_EQ(log.count(), count);
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(log.lines()[static_cast<std::size_t>(i)].text, "line " + std::to_string(i));
    }
}

TEST(LineForwarder, keepsTheLinesThatAreAskedForInOrder) {
    LogStore log;
    test::ManualTimers timers;
    bool onMainThread = true;
    LineForwarder forwarder(log, LogStore::Level::info, [&](const std::string& line) {
        onMainThread = onMainThread && MainThread::isCurrent();
        return line.starts_with("Error");
    });
    forwarder.ingest(bytes("Error : one\nfine\n Error not at the start\nError : two"));
    forwarder.close();
    std::vector<std::string> kept;
    test::onWorker([&] { kept = forwarder.drain(timeout, timers); });
    EXPECT_THAT(kept, ElementsAre("Error : one", "Error : two"));
    EXPECT_EQ(log.count(), 4);
    EXPECT_TRUE(onMainThread);
}

TEST(LineForwarder, survivesItsLog) {
    auto log = std::make_unique<LogStore>();
    test::ManualTimers timers;
    LineForwarder forwarder(*log, LogStore::Level::info, keepAll);
    forwarder.ingest(bytes("nobody shows this\n"));
    log.reset();
    forwarder.close();
    std::vector<std::string> kept;
    test::onWorker([&] { kept = forwarder.drain(timeout, timers); });
    EXPECT_THAT(kept, ElementsAre("nobody shows this"));
}

TEST(LineForwarder, endsItsReaderAndItsTimerWithItself) {
    LogStore log;
    test::ManualTimers timers;
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    {
        LineForwarder forwarder(log, LogStore::Level::info, keepAll);
        forwarder.attach(ends[0]);
        forwarder.ingest(bytes("still shown\n"));
    }
    EXPECT_EQ(::fcntl(ends[0], F_GETFD), -1);
    EXPECT_TRUE(test::waitUntil([&] { return log.count() == 1; }));
    ::close(ends[1]);
}

TEST(LineForwarder, keepsTheOrderOfTwoThreadsThatCloseAndFeed) {
    for (int round = 0; round < 200; ++round) {
        LogStore log;
        test::ManualTimers timers;
        LineForwarder forwarder(log, LogStore::Level::info, keepAll);
        std::thread feeder([&] {
            for (int i = 0; i < 20; ++i) {
                forwarder.ingest(bytes(std::to_string(i) + "\n"));
            }
        });
        std::thread closer([&] { forwarder.close(); });
        feeder.join();
        closer.join();
        std::vector<std::string> kept;
        test::onWorker([&] { kept = forwarder.drain(timeout, timers); });
        for (std::size_t i = 0; i < kept.size(); ++i) {
            ASSERT_EQ(kept[i], std::to_string(i));
        }
        ASSERT_EQ(texts(log), kept);
    }
}

} // namespace
} // namespace ostrella
