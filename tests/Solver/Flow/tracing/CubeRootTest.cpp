#include "Solver/Flow/CubeRoot.h"

#include <gtest/gtest.h>

using namespace ostrella;

namespace {

TEST(CubeRoot, ofSmallCountsIsCutOff) {
    EXPECT_EQ(truncatedCubeRoot(0), 0);
    EXPECT_EQ(truncatedCubeRoot(1), 1);
    EXPECT_EQ(truncatedCubeRoot(7), 1);
    EXPECT_EQ(truncatedCubeRoot(8), 2);
    EXPECT_EQ(truncatedCubeRoot(26), 2);
}

// The C library's root of these falls just short.
TEST(CubeRoot, ofCubesIsWhole) {
    EXPECT_EQ(truncatedCubeRoot(27), 3);
    EXPECT_EQ(truncatedCubeRoot(3375), 15);
    EXPECT_EQ(truncatedCubeRoot(19683), 27);
}

TEST(CubeRoot, changesAtEveryCubeAndNowhereElse) {
    for (std::int64_t root = 1; root <= 1290; ++root) {
        ASSERT_EQ(truncatedCubeRoot(root * root * root - 1), root - 1);
        ASSERT_EQ(truncatedCubeRoot(root * root * root), root);
    }
    EXPECT_EQ(truncatedCubeRoot(2147483647), 1290);
}

} // namespace
