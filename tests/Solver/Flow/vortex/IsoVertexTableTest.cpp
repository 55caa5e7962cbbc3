#include "Solver/Flow/IsoVertexTable.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace ostrella {

namespace {

TEST(IsoVertexTable, numbersKeysInTheOrderOfTheirFirstAppearance) {
    IsoVertexTable table(6);
    EXPECT_EQ(table.indexOf({5, 0, 0}), 0U);
    EXPECT_EQ(table.indexOf({0, 5, 0}), 1U);
    EXPECT_EQ(table.indexOf({5, 0, 0}), 0U);
    EXPECT_EQ(table.indexOf({0, 0, 5}), 2U);
    EXPECT_EQ(table.indexOf({0, 5, 0}), 1U);
    EXPECT_EQ(table.size(), 3U);
}

TEST(IsoVertexTable, tellsKeysApartByEachComponent) {
    // As many keys as the table is made for, so that many of them meet on their places.
    constexpr std::int32_t count = 20000;
    IsoVertexTable table(3 * count);
    for (const int turn : {1, 2}) {
        std::uint32_t expected = 0;
        for (std::int32_t i = 1; i <= count; ++i) {
            ASSERT_EQ(table.indexOf({i, 7, 7}), expected++) << turn;
            ASSERT_EQ(table.indexOf({-7, i, 7}), expected++) << turn;
            ASSERT_EQ(table.indexOf({7, -7, i}), expected++) << turn;
        }
    }
    EXPECT_EQ(table.size(), 3U * count);
}

TEST(IsoVertexTable, takesKeysToTheEndsOfTheirRange) {
    constexpr auto least = std::numeric_limits<std::int32_t>::min();
    constexpr auto most = std::numeric_limits<std::int32_t>::max();
    IsoVertexTable table(3);
    EXPECT_EQ(table.indexOf({least, most, least}), 0U);
    EXPECT_EQ(table.indexOf({most, least, most}), 1U);
    EXPECT_EQ(table.indexOf({least, most, least}), 0U);
}

} // namespace

} // namespace ostrella
