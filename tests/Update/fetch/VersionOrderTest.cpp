#include "Update/VersionOrder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace ostrella {
namespace {

/// Each after the one before it.
TEST(VersionOrderTest, OldestToNewest) {
    const std::vector<std::string> versions{
        "",
        "0.9",
        "0.10",
        "1.0a1",
        "1.0a2",
        "1.0b1",
        "1.0b2",
        "1.0b10",
        "1.0rc1",
        "1.0",
        "1.0 (1200)",
        "1.0 (1234)",
        "1.0 (01235)",
        "1.0.1",
        "1.0.2b1",
        "1.0.2",
        "1.1",
        "1.9",
        "1.10",
        "2",
        "20261121",
        "99999999999999999999999998",
        "99999999999999999999999999",
        "100000000000000000000000000",
    };
    for (std::size_t i = 0; i < versions.size(); ++i) {
        for (std::size_t j = 0; j < versions.size(); ++j) {
            EXPECT_EQ(VersionOrder::compare(versions[i], versions[j]), i <=> j)
                << '"' << versions[i] << "\" and \"" << versions[j] << '"';
            EXPECT_EQ(VersionOrder::isNewer(versions[i], versions[j]), i > j);
        }
    }
}

TEST(VersionOrderTest, TheSame) {
    const std::vector<std::pair<std::string, std::string>> pairs{
        {"1.0", "1.0"},
        {"1", "1.0.0"},
        {"1.0", "1.0.0.0"},
        {"1.0b1", "1.0.0b1"},
        {"1.02", "1.2"},
        {"1.0-beta", "1.0"},
        {"1.0-2", "1.0-1"},
        {"1.0 (7)", "1.0_[7]"},
        {"", "0"},
        {"-1", ""},
        {"1..2", "1.0.2"},
    };
    for (const auto& [a, b] : pairs) {
        EXPECT_EQ(VersionOrder::compare(a, b), std::weak_ordering::equivalent) << a << ", " << b;
        EXPECT_EQ(VersionOrder::compare(b, a), std::weak_ordering::equivalent) << b << ", " << a;
        EXPECT_FALSE(VersionOrder::isNewer(a, b));
    }
}

TEST(VersionOrderTest, WordsGoByTheirBytes) {
    EXPECT_TRUE(VersionOrder::isNewer("1.0b", "1.0a"));
    EXPECT_TRUE(VersionOrder::isNewer("1.0a", "1.0Z"));
    EXPECT_TRUE(VersionOrder::isNewer("1.0é", "1.0z"));
    // What is no number is a word, and older than any number.
    EXPECT_TRUE(VersionOrder::isNewer("0", "nightly"));
}

/// Long enough that anything but one pass would be felt.
TEST(VersionOrderTest, AbsurdLengthsAreCompared) {
    const std::string digits(1'000'000, '9');
    const std::string periods(1'000'000, '.');
    EXPECT_TRUE(VersionOrder::isNewer(digits + "1", digits));
    EXPECT_EQ(VersionOrder::compare(periods, "0"), std::weak_ordering::equivalent);
    EXPECT_TRUE(VersionOrder::isNewer(periods + "1", periods));
}

} // namespace
} // namespace ostrella
