#include "Solver/Flow/IsoLevel.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace ostrella {

namespace {

const float nan = std::numeric_limits<float>::quiet_NaN();
const float infinity = std::numeric_limits<float>::infinity();

/// 1, 2, … n in no particular order.
std::vector<float> firstNumbers(std::size_t n) {
    std::vector<float> numbers;
    for (std::size_t i = 0; i < n; ++i)
        numbers.push_back(static_cast<float>(i * 17 % n + 1));
    return numbers;
}

TEST(IsoLevel, isThePositiveValueAtThePercentile) {
    EXPECT_EQ(isoLevel(firstNumbers(201), 99.5F), 200.0F);
    EXPECT_EQ(isoLevel(firstNumbers(201), 0.0F), 1.0F);
    EXPECT_EQ(isoLevel(firstNumbers(201), 50.0F), 101.0F);
    EXPECT_EQ(isoLevel(firstNumbers(201), 100.0F), 201.0F);
    EXPECT_EQ(isoLevel(firstNumbers(201), 250.0F), 201.0F);
}

TEST(IsoLevel, cutsTheIndexOff) {
    // 99.5 × 99 / 100 = 98.505.
    EXPECT_EQ(isoLevel(firstNumbers(100), 99.5F), 99.0F);
    EXPECT_EQ(isoLevel(firstNumbers(100), 98.9F), 98.0F);
}

TEST(IsoLevel, reckonsTheIndexIn32Bits) {
    // 65.6 × 125 is 8200 in 32 bits and gives 82; both 65.6 / 100 × 125 and any reckoning in
    // 64 bits, where the float 65.6 is a little less, give 81.
    EXPECT_EQ(isoLevel(firstNumbers(126), 65.6F), 83.0F);
    EXPECT_EQ(isoLevel(firstNumbers(1001), 33.3F), 334.0F);
}

TEST(IsoLevel, looksAtFinitePositiveValuesOnly) {
    const std::vector<float> scalars = {nan, -3.0F, 0.0F, -0.0F, infinity, 5.0F, -infinity, 2.0F};
    EXPECT_EQ(isoLevel(scalars, 0.0F), 2.0F);
    EXPECT_EQ(isoLevel(scalars, 100.0F), 5.0F);
    EXPECT_EQ(isoLevel(std::vector<float>{1e-45F}, 99.5F), 1e-45F);
}

TEST(IsoLevel, isAbsentWithoutAPositiveValue) {
    EXPECT_FALSE(isoLevel({}, 99.5F));
    EXPECT_FALSE(isoLevel(std::vector<float>{0.0F, -1.0F, nan, infinity}, 99.5F));
}

TEST(IsoLevel, endsTheProcessAtAPercentileWithoutAnIndex) {
    const auto numbers = firstNumbers(1000);
    EXPECT_DEATH(isoLevel(numbers, nan), "percentile");
    EXPECT_DEATH(isoLevel(numbers, infinity), "percentile");
    EXPECT_DEATH(isoLevel(numbers, -1.0F), "percentile");
}

} // namespace

} // namespace ostrella
