#include "Views/Format/LogFollowing.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

namespace ostrella {
namespace {

/// A log with a place, whose lines are numbers.
class Log {
public:
    void show(std::vector<int> lines) {
        lines_ = std::move(lines);
        std::optional<int> last;
        std::optional<int> nextToLast;
        if (!lines_.empty()) {
            last = lines_.back();
        }
        if (lines_.size() > 1) {
            nextToLast = lines_[lines_.size() - 2];
        }
        place.linesChanged(last, nextToLast);
    }

    void append(int line) {
        std::vector<int> lines = lines_;
        lines.push_back(line);
        show(std::move(lines));
    }

    LogFollowing<int> place;

private:
    std::vector<int> lines_;
};

TEST(LogFollowing, BeginsFollowingAndWithoutAPlace) {
    const LogFollowing<int> place;
    EXPECT_TRUE(place.isFollowing());
    EXPECT_EQ(place.position(), std::nullopt);
}

TEST(LogFollowing, FollowsNewLines) {
    Log log;
    log.show({1, 2});
    EXPECT_EQ(log.place.position(), 2);
    log.append(3);
    EXPECT_EQ(log.place.position(), 3);
    EXPECT_TRUE(log.place.isFollowing());
}

TEST(LogFollowing, StaysWhereTheUserHasScrolledTo) {
    Log log;
    log.show({1, 2, 3});
    log.place.scrolledTo(1);
    EXPECT_FALSE(log.place.isFollowing());
    log.append(4);
    EXPECT_EQ(log.place.position(), 1);
    EXPECT_FALSE(log.place.isFollowing());
}

TEST(LogFollowing, CountsTheLastTwoLinesAsTheEnd) {
    Log log;
    log.show({1, 2, 3});
    log.place.scrolledTo(2);
    EXPECT_TRUE(log.place.isFollowing());
    EXPECT_EQ(log.place.position(), 2);
    log.place.scrolledTo(1);
    EXPECT_FALSE(log.place.isFollowing());
    // Taking up following again goes to the end.
    log.place.scrolledTo(2);
    EXPECT_TRUE(log.place.isFollowing());
    EXPECT_EQ(log.place.position(), 3);
}

TEST(LogFollowing, WithOneLineAPlaceOnItFollows) {
    Log log;
    log.place.setFollowing(false);
    log.show({1});
    EXPECT_EQ(log.place.position(), 1); // there was no place before
    EXPECT_TRUE(log.place.isFollowing());
    log.place.scrolledTo(std::nullopt);
    EXPECT_TRUE(log.place.isFollowing());
    log.place.scrolledTo(1);
    EXPECT_TRUE(log.place.isFollowing());
}

TEST(LogFollowing, OnTheVeryLastLineTheUserKeepsUpEvenWhileFollowingIsOff) {
    Log log;
    log.show({1, 2, 3});
    log.place.setFollowing(false);
    EXPECT_EQ(log.place.position(), 3);
    log.append(4);
    EXPECT_EQ(log.place.position(), 4);
    EXPECT_TRUE(log.place.isFollowing());
}

TEST(LogFollowing, SwitchedOnItGoesToTheEnd) {
    Log log;
    log.show({1, 2, 3, 4});
    log.place.scrolledTo(1);
    log.place.setFollowing(true);
    EXPECT_EQ(log.place.position(), 4);
    log.place.setFollowing(true);
    EXPECT_EQ(log.place.position(), 4);
}

TEST(LogFollowing, SwitchedOnWithoutLinesItStays) {
    Log log;
    log.place.setFollowing(false);
    log.place.setFollowing(true);
    EXPECT_EQ(log.place.position(), std::nullopt);
    EXPECT_TRUE(log.place.isFollowing());
}

TEST(LogFollowing, AnEmptyListLeavesThePlace) {
    Log log;
    log.show({1, 2, 3});
    log.show({});
    EXPECT_EQ(log.place.position(), 3);
    EXPECT_TRUE(log.place.isFollowing());
    log.show({7});
    EXPECT_EQ(log.place.position(), 7);
}

TEST(LogFollowing, AFilterThatSwitchesFollowingOnBringsTheNewListToItsEnd) {
    Log log;
    log.show({1, 2, 3, 4, 5});
    log.place.scrolledTo(2);
    ASSERT_FALSE(log.place.isFollowing());
    log.place.setFollowing(true);
    log.show({1, 3});
    EXPECT_EQ(log.place.position(), 3);
    EXPECT_TRUE(log.place.isFollowing());
}

TEST(LogFollowing, ALongerListWithTheSameEndMovesNothing) {
    Log log;
    log.show({5, 6});
    log.place.scrolledTo(5);
    log.show({1, 2, 5, 6});
    EXPECT_EQ(log.place.position(), 5);
}

} // namespace
} // namespace ostrella
