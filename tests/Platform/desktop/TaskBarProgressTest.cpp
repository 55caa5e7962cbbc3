#include "Platform/TaskBarProgress.h"

#include "Platform/desktop/DesktopBench.h"
#include "Platform/desktop/Dock.h"

#include <gmock/gmock.h>

#include <limits>

namespace ostrella {
namespace {

using test::waitUntil;
using testing::ElementsAre;

class TaskBarProgressTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(dock_.isListening()); }

    bool hears(std::size_t count) {
        return waitUntil([&] { return dock_.heard.size() >= count; });
    }

    test::PrivateBus bus_;
    test::Dock dock_{bus_.address()};
    std::optional<TaskBarProgress> progress_{std::in_place};
};

TEST_F(TaskBarProgressTest, ShowsHowFarItIsAndTakesItAway) {
    progress_->set(0.25);
    EXPECT_TRUE(hears(1));
    EXPECT_EQ(dock_.application, QStringLiteral("application://org.ostrella.Ostrella.desktop"));
    progress_->set(0.5);
    progress_->set(std::nullopt);
    EXPECT_TRUE(hears(3));
    EXPECT_THAT(dock_.heard, ElementsAre(0.25, 0.5, -1));
}

TEST_F(TaskBarProgressTest, WhatNobodyWouldSeeIsNotPassedOn) {
    progress_->set(0.5);
    EXPECT_TRUE(hears(1));
    progress_->set(0.5);
    progress_->set(0.5001);
    progress_->set(1);
    EXPECT_TRUE(hears(2));
    EXPECT_THAT(dock_.heard, ElementsAre(0.5, 1));
}

TEST_F(TaskBarProgressTest, StaysBetweenItsEnds) {
    progress_->set(-3);
    EXPECT_TRUE(hears(1));
    progress_->set(std::numeric_limits<double>::infinity());
    progress_->set(std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(hears(3));
    EXPECT_THAT(dock_.heard, ElementsAre(0, 1, -1));
}

TEST_F(TaskBarProgressTest, GoesWithTheObject) {
    progress_->set(0.75);
    EXPECT_TRUE(hears(1));
    progress_.reset();
    EXPECT_TRUE(hears(2));
    EXPECT_THAT(dock_.heard, ElementsAre(0.75, -1));
}

TEST_F(TaskBarProgressTest, WithoutProgressNothingIsSaid) {
    progress_->set(std::nullopt);
    progress_.reset();
    // Said by another one, after all that the first could have said.
    TaskBarProgress another;
    another.set(1);
    EXPECT_TRUE(hears(1));
    EXPECT_THAT(dock_.heard, ElementsAre(1));
}

TEST_F(TaskBarProgressTest, AFrozenBusHoldsNobodyUp) {
    progress_->set(0.25);
    EXPECT_TRUE(hears(1));
    bus_.freeze();
    for (int i = 0; i <= 500; ++i) {
        progress_->set(i / 500.0);
    }
    bus_.thaw();
    EXPECT_TRUE(hears(502));
    EXPECT_EQ(dock_.heard.back(), 1);
}

} // namespace
} // namespace ostrella
