#include "Models/MainThread.h"

#include "support/Wait.h"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace ostrella {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(MainThread, isWhereTheTestsRun) {
    EXPECT_TRUE(MainThread::isCurrent());
    bool onWorker = true;
    std::thread([&] { onWorker = MainThread::isCurrent(); }).join();
    EXPECT_FALSE(onWorker);
}

TEST(MainThreadRun, isAPlainCallOnTheMainThread) {
    int count = 0;
    MainThread::run([&] { ++count; });
    EXPECT_EQ(count, 1);
    EXPECT_EQ(MainThread::run([] { return 42; }), 42);
    EXPECT_THROW(MainThread::run([] { throw std::runtime_error("no"); }), std::runtime_error);
}

TEST(MainThreadRun, hopsThereAndBackWithTheResult) {
    bool performedOnMain = false;
    std::unique_ptr<int> result;
    test::onWorker([&] {
        result = MainThread::run([&] {
            performedOnMain = MainThread::isCurrent();
            return std::make_unique<int>(7);
        });
    });
    EXPECT_TRUE(performedOnMain);
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, 7);
}

TEST(MainThreadRun, isOverBeforeTheWorkerGoesOn) {
    std::vector<int> order;
    test::onWorker([&] {
        MainThread::run([&] { order.push_back(1); });
        order.push_back(2);
        MainThread::run([&] { order.push_back(3); });
        order.push_back(4);
    });
    EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
}

TEST(MainThreadRun, throwsOnTheWorkerWhatTheWorkThrew) {
    EXPECT_THROW(test::onWorker([] { MainThread::run([] { throw std::out_of_range("far"); }); }),
        std::out_of_range);
}

TEST(MainThreadPost, performsInTheOrderOfTheCallsAndLater) {
    std::vector<int> order;
    MainThread::post([&] { order.push_back(1); });
    MainThread::post([&] { order.push_back(2); });
    MainThread::post([&] { order.push_back(3); });
    EXPECT_THAT(order, IsEmpty());
    ASSERT_TRUE(test::waitUntil([&] { return order.size() == 3; }));
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(MainThreadPost, keepsTheOrderWithRunsOfTheSameWorker) {
    std::vector<int> order;
    test::onWorker([&] {
        for (int i = 0; i < 50; i += 2) {
            MainThread::post([&order, i] { order.push_back(i); });
            MainThread::run([&order, i] { order.push_back(i + 1); });
        }
    });
    std::vector<int> expected(50);
    for (int i = 0; i < 50; ++i) {
        expected[static_cast<std::size_t>(i)] = i;
    }
    EXPECT_EQ(order, expected);
}

} // namespace
} // namespace ostrella
