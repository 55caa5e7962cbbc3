#include "Solver/Flow/reader/VTKLiterals.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <string>
#include <vector>

namespace ostrella {

namespace {

using test::header;
using test::statsFailure;
using test::statsOf;

/// The figures of a file with these values.
ScalarFieldStats ofValues(const std::vector<std::string>& values) {
    std::string file = header + "POINTS " + std::to_string(values.size()) +
                       " double\nSCALARS Y_Plus double 1\nLOOKUP_TABLE default\n";
    for (const auto& value : values)
        file += value + "\t";
    return statsOf(file);
}

/// The numbers 1 to n in an order of their own.
std::vector<std::string> shuffled(int n) {
    std::vector<std::string> values;
    for (int i = 0; i < n; ++i)
        values.push_back(std::to_string((i * 7919 + 13) % n + 1));
    return values;
}

TEST(VTKStats, FourValues) {
    EXPECT_EQ(
        statsOf(test::square + test::squareFields), (ScalarFieldStats{4, 1.0F, 4.0F, 2.5F, 3.0F}));
}

TEST(VTKStats, OneValueIsAllFigures) {
    EXPECT_EQ(ofValues({"-3.25"}), (ScalarFieldStats{1, -3.25F, -3.25F, -3.25F, -3.25F}));
}

TEST(VTKStats, The95thPercentileIsTheValueAtACutOffRank) {
    EXPECT_EQ(ofValues(shuffled(2)).p95, 1.0F);   // 0.95
    EXPECT_EQ(ofValues(shuffled(20)).p95, 19.0F); // 18.05
    EXPECT_EQ(ofValues(shuffled(21)).p95, 20.0F); // 19, exactly, in 32 bits
    EXPECT_EQ(ofValues(shuffled(101)).p95, 96.0F);
    EXPECT_EQ(ofValues(shuffled(1000)).p95, 950.0F); // 949.05
}

TEST(VTKStats, TheMeanIsSummedInSixtyFourBits) {
    // In 32 bits 2^24 + 1 is 2^24 again.
    std::vector<std::string> values(9, "1");
    values[0] = "16777216";
    EXPECT_EQ(ofValues(values).mean, static_cast<float>(16777224.0 / 9.0));
}

TEST(VTKStats, ManyEqualValues) {
    EXPECT_EQ(ofValues(std::vector<std::string>(1000, "0.5")),
        (ScalarFieldStats{1000, 0.5F, 0.5F, 0.5F, 0.5F}));
}

TEST(VTKStats, NaNStandsBehindAllNumbersInTheOrder) {
    auto values = shuffled(19);
    values.insert(values.begin() + 3, {"nan", "-nan"}); // 21 values, rank 19 of 0 … 20
    const auto stats = ofValues(values);
    EXPECT_TRUE(std::isnan(stats.p95));
    EXPECT_EQ(stats.min, 1.0F);
    EXPECT_EQ(stats.max, 19.0F);
    EXPECT_TRUE(std::isnan(stats.mean));
    auto one = shuffled(20);
    one.insert(one.begin(), "nan"); // the NaN takes rank 20 alone
    EXPECT_EQ(ofValues(one).p95, 20.0F);
}

TEST(VTKStats, NothingButNaN) {
    const auto stats = ofValues({"nan", "nan"});
    EXPECT_EQ(stats.count, 2);
    EXPECT_EQ(stats.min, FLT_MAX);
    EXPECT_EQ(stats.max, -FLT_MAX);
    EXPECT_TRUE(std::isnan(stats.mean));
    EXPECT_TRUE(std::isnan(stats.p95));
}

TEST(VTKStats, InfinitiesCount) {
    EXPECT_EQ(ofValues({"inf", "1", "-inf"}).min, -INFINITY);
    EXPECT_EQ(ofValues({"inf", "1", "-inf"}).max, INFINITY);
    EXPECT_EQ(ofValues({"inf"}).min, FLT_MAX) << "the look begins at the largest finite number";
}

TEST(VTKStats, TheScalarMayStandAheadOfThePoints) {
    EXPECT_EQ(statsOf(header + "SCALARS Y_Plus float LOOKUP_TABLE t 1 3\nPOINTS 2 float"),
        (ScalarFieldStats{2, 1.0F, 3.0F, 2.0F, 1.0F}));
}

TEST(VTKStats, PointsAndCellsAreNotLookedAt) {
    EXPECT_EQ(statsOf(header + "POINTS 2 float a b CELLS c\nSCALARS Y_Plus float 1\n"
                               "LOOKUP_TABLE default\n5 6"),
        (ScalarFieldStats{2, 5.0F, 6.0F, 5.5F, 5.0F}));
}

TEST(VTKStats, OfSeveralComponentsTheFirstCounts) {
    EXPECT_EQ(statsOf(header + "POINTS 2 f SCALARS Y_Plus f 2 LOOKUP_TABLE t 1 100 2 200"),
        (ScalarFieldStats{2, 1.0F, 2.0F, 1.5F, 1.0F}));
}

TEST(VTKStats, WithoutComponentsAllIsZeroAndTakesNoMemory) {
    EXPECT_EQ(statsOf(header + "POINTS 1000000000000000 f SCALARS Y_Plus f 0 LOOKUP_TABLE t"),
        (ScalarFieldStats{1000000000000000, 0.0F, 0.0F, 0.0F, 0.0F}));
}

TEST(VTKStats, NoPointsIsNoField) {
    EXPECT_EQ(statsFailure(header + "POINTS 0 f SCALARS Y_Plus f LOOKUP_TABLE t"),
        "VTK missing scalar field 'Y_Plus'.");
    EXPECT_EQ(statsFailure(header + "POINTS 0 f SCALARS Y_Plus f 0 LOOKUP_TABLE t"),
        "VTK missing scalar field 'Y_Plus'.");
}

TEST(VTKStats, Failures) {
    EXPECT_EQ(statsFailure(header), "Malformed VTK: POINTS not found");
    EXPECT_EQ(statsFailure(header + "POINTS"), "Malformed VTK: expected int at token 11");
    EXPECT_EQ(statsFailure(header + "POINTS 2.0 f"), "Malformed VTK: expected int at token 11");
    EXPECT_EQ(statsFailure(header + "POINTS 2 f"), "VTK missing scalar field 'Y_Plus'.");
    EXPECT_EQ(statsFailure(header + "POINTS 2 f SCALARS Y_Plus f"),
        "Malformed VTK: LOOKUP_TABLE after Y_Plus missing");
    EXPECT_EQ(statsFailure(header + "POINTS 2 f SCALARS Y_Plus f LOOKUP_TABLE"),
        "Malformed VTK: expected float at token 18");
    EXPECT_EQ(statsFailure(header + "POINTS 2 f SCALARS Y_Plus f 1 LOOKUP_TABLE t 1"),
        "Malformed VTK: expected float at token 20");
    EXPECT_EQ(statsFailure(test::square + test::squareFields, "y_plus"),
        "VTK missing scalar field 'y_plus'.");
}

} // namespace

} // namespace ostrella
