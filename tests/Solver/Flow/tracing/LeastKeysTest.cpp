#include "Solver/Flow/LeastKeys.h"

#include "Solver/Flow/tracing/TestClouds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

using namespace ostrella;

namespace {

std::vector<double> eightLeast(std::vector<double> keys) {
    std::sort(keys.begin(), keys.end());
    keys.resize(8);
    return keys;
}

std::vector<double> picked(const std::vector<double>& keys) {
    std::vector<double> least(8);
    if (keys.size() == 16)
        LeastKeys::of16(keys.data(), least.data());
    else
        LeastKeys::of32(keys.data(), least.data());
    return least;
}

// A network that sorts every list of zeros and ones sorts every list.
TEST(LeastKeys, everyListOfSixteenZerosAndOnesIsSorted) {
    std::vector<double> keys(16);
    for (unsigned bits = 0; bits < 1U << 16U; ++bits) {
        for (unsigned i = 0; i < 16; ++i)
            keys[i] = bits >> i & 1U;
        ASSERT_EQ(picked(keys), eightLeast(keys)) << bits;
    }
}

// The four columns of eight arrive at the merges sorted: their numbers of ones say all.
TEST(LeastKeys, everyChoiceOfThirtyTwoZerosAndOnesByColumnsIsSorted) {
    std::vector<double> keys(32);
    for (unsigned counts = 0; counts < 9 * 9 * 9 * 9; ++counts) {
        const std::array<unsigned, 4> ones{
            counts % 9, counts / 9 % 9, counts / 81 % 9, counts / 729};
        for (unsigned i = 0; i < 32; ++i)
            keys[i] = i % 16 / 2 < ones[i / 16 * 2 + i % 2] ? 1.0 : 0.0;
        ASSERT_EQ(picked(keys), eightLeast(keys)) << counts;
    }
}

TEST(LeastKeys, randomListsAreSorted) {
    ostrella::testing::Dice dice(3);
    for (const std::size_t size : {16, 32}) {
        for (int i = 0; i < 2000; ++i) {
            std::vector<double> keys(size);
            for (double& key : keys)
                key = static_cast<double>(dice.unit());
            ASSERT_EQ(picked(keys), eightLeast(keys));
        }
    }
}

} // namespace
