#include "Models/NumberFormatting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ostrella {
namespace {

using NumberFormatting::bytes;
using NumberFormatting::duration;
using NumberFormatting::fixed;
using NumberFormatting::grouped;

TEST(Grouped, joinsGroupsOfThreeWithANoBreakSpace) {
    EXPECT_EQ(grouped(0), "0");
    EXPECT_EQ(grouped(999), "999");
    EXPECT_EQ(grouped(1000), "1\xC2\xA0"
                             "000");
    EXPECT_EQ(grouped(100000), "100\xC2\xA0"
                               "000");
    EXPECT_EQ(grouped(1234567), "1\xC2\xA0"
                                "234\xC2\xA0"
                                "567");
}

TEST(Grouped, putsTheSignOfANegativeNumberInFront) {
    EXPECT_EQ(grouped(-1), "-1");
    EXPECT_EQ(grouped(-1234), "-1\xC2\xA0"
                              "234");
    EXPECT_EQ(grouped(-999999), "-999\xC2\xA0"
                                "999");
}

TEST(Grouped, knowsTheLowestInteger) {
    EXPECT_EQ(grouped(std::numeric_limits<std::int64_t>::min(), " "), "-9 223 372 036 854 775 808");
}

TEST(Fixed, formatsAsPrintf) {
    EXPECT_EQ(fixed(1.25, 1), "1.2");
    EXPECT_EQ(fixed(0.5687, 4), "0.5687");
    EXPECT_EQ(fixed(1234.5, 2), "1234.50");
    EXPECT_EQ(fixed(2.5, 0), "2");
    EXPECT_EQ(fixed(-3.75, 1), "-3.8");
}

TEST(Fixed, dropsTheSignOfWhatPrintsAsZero) {
    EXPECT_EQ(fixed(-0.00001, 2), "0.00");
    EXPECT_EQ(fixed(-0.5, 0), "0");
    EXPECT_EQ(fixed(-0.0, 3), "0.000");
}

TEST(Fixed, keepsTheSignOfASmallNumberThatShows) {
    EXPECT_EQ(fixed(-0.006, 2), "-0.01");
    EXPECT_EQ(fixed(-0.5, 2), "-0.50");
    EXPECT_EQ(fixed(-10.0, 0), "-10");
}

TEST(Fixed, takesANegativeCountOfDigitsAsNone) {
    EXPECT_EQ(fixed(3.7, -2), "4");
}

TEST(Fixed, leavesWhatIsNoFiniteNumberAsPrinted) {
    EXPECT_EQ(fixed(-std::numeric_limits<double>::infinity(), 2), "-inf");
    EXPECT_EQ(fixed(std::numeric_limits<double>::infinity(), 2), "inf");
    EXPECT_EQ(fixed(std::numeric_limits<double>::quiet_NaN(), 2), "nan");
}

TEST(Bytes, areCountedPlainlyBelowAThousand) {
    EXPECT_EQ(bytes(0), "0 bytes");
    EXPECT_EQ(bytes(1), "1 bytes");
    EXPECT_EQ(bytes(999), "999 bytes");
}

TEST(Bytes, ofANegativeSizeAreNone) {
    EXPECT_EQ(bytes(-5), "0 bytes");
}

TEST(Bytes, areTakenInStepsOfAThousand) {
    EXPECT_EQ(bytes(1000), "1.0 KB");
    EXPECT_EQ(bytes(1550), "1.6 KB");
    EXPECT_EQ(bytes(12'300'000), "12.3 MB");
    EXPECT_EQ(bytes(4'000'000'000), "4.0 GB");
    EXPECT_EQ(bytes(5'600'000'000'000), "5.6 TB");
    EXPECT_EQ(bytes(7'800'000'000'000'000), "7.8 PB");
}

TEST(Bytes, goOnToTheNextUnitBeforeTheyRoundUpToAThousand) {
    EXPECT_EQ(bytes(999'949), "999.9 KB");
    EXPECT_EQ(bytes(999'950), "1.0 MB");
    EXPECT_EQ(bytes(999'950'000), "1.0 GB");
}

TEST(Bytes, stayWithTheLastUnit) {
    EXPECT_EQ(bytes(std::numeric_limits<std::int64_t>::max()), "9223.4 PB");
}

TEST(Duration, isInSecondsUpToAMinute) {
    EXPECT_EQ(duration(0), "0 s");
    EXPECT_EQ(duration(0.5), "1 s");
    EXPECT_EQ(duration(59.4), "59 s");
}

TEST(Duration, isInMinutesUpToAnHour) {
    EXPECT_EQ(duration(59.5), "1 min 00 s");
    EXPECT_EQ(duration(65), "1 min 05 s");
    EXPECT_EQ(duration(75), "1 min 15 s");
    EXPECT_EQ(duration(3599), "59 min 59 s");
}

TEST(Duration, dropsTheSecondsFromAnHourOn) {
    EXPECT_EQ(duration(3599.6), "1 h 00 min");
    EXPECT_EQ(duration(3700), "1 h 01 min");
    EXPECT_EQ(duration(2 * 3600 + 59 * 60 + 59), "2 h 59 min");
    EXPECT_EQ(duration(360000), "100 h 00 min");
}

TEST(Duration, ofANegativeCountIsNone) {
    EXPECT_EQ(duration(-3), "0 s");
}

TEST(DurationDeathTest, needsANumberThatAnIntegerCanHold) {
    EXPECT_DEATH(duration(std::numeric_limits<double>::quiet_NaN()), "finite");
    EXPECT_DEATH(duration(std::numeric_limits<double>::infinity()), "finite");
    EXPECT_DEATH(duration(-std::numeric_limits<double>::infinity()), "finite");
    EXPECT_DEATH(duration(1e300), "finite");
}

} // namespace
} // namespace ostrella
