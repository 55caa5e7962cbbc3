#include "Models/ChartSeries.h"

#include <gmock/gmock.h>

#include <limits>

namespace ostrella {
namespace {

using ChartSeries::coefficientLabels;
using ChartSeries::displayName;
using ChartSeries::latestSummary;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ChartedCoefficients, areThePreferredOnesInTheirOwnOrder) {
    EXPECT_THAT(coefficientLabels({"CD", "CL", "Cm", "CEff"}), ElementsAre("CL", "CD", "Cm"));
    EXPECT_THAT(coefficientLabels({"Cm", "CEff"}), ElementsAre("Cm"));
}

TEST(ChartedCoefficients, areAllWhereNoneIsPreferred) {
    EXPECT_THAT(coefficientLabels({"CEff"}), ElementsAre("CEff"));
    EXPECT_THAT(coefficientLabels({"CMy", "CFx"}), ElementsAre("CMy", "CFx"));
    EXPECT_THAT(coefficientLabels({}), IsEmpty());
}

TEST(DisplayName, isOneForAllNamesOfTheTurbulentViscosity) {
    EXPECT_EQ(displayName("rms[nu]"), "rms[ν]");
    EXPECT_EQ(displayName("rms[nu_tilde]"), "rms[ν]");
    EXPECT_EQ(displayName("rms[nutilde]"), "rms[ν]");
    EXPECT_EQ(displayName("rms[NU_TILDE]"), "rms[ν]");
    EXPECT_EQ(displayName("rms[NuTilde]"), "rms[ν]");
}

TEST(DisplayName, isTheLabelOtherwise) {
    EXPECT_EQ(displayName("rms[P]"), "rms[P]");
    EXPECT_EQ(displayName("nu"), "nu");
    EXPECT_EQ(displayName("rms[nu"), "rms[nu");
    EXPECT_EQ(displayName("RMS[nu]"), "RMS[nu]");
    EXPECT_EQ(displayName("rms[nuu]"), "rms[nuu]");
    EXPECT_EQ(displayName("rms[]"), "rms[]");
    EXPECT_EQ(displayName("rms["), "rms[");
    EXPECT_EQ(displayName(""), "");
}

TEST(LatestSummary, joinsTheValuesInTheOrderAskedFor) {
    EXPECT_EQ(
        latestSummary({{"CD", 0.00001}, {"CL", 0.25}}, {"CL", "CD"}), "CL=0.2500  CD=1.000e-05");
}

TEST(LatestSummary, leavesOutLabelsWithoutAValue) {
    EXPECT_EQ(latestSummary({{"CL", 0.25}}, {"CL", "CD", "Cm"}), "CL=0.2500");
    EXPECT_EQ(latestSummary({{"CL", 0.25}}, {"CD"}), "");
    EXPECT_EQ(latestSummary({}, {"CL"}), "");
    EXPECT_EQ(latestSummary({{"CL", 0.25}}, {}), "");
}

TEST(LatestSummary, hasFourDecimalsForOrdinaryValues) {
    const auto text = [](double value) { return latestSummary({{"a", value}}, {"a"}); };
    EXPECT_EQ(text(0), "a=0.0000");
    EXPECT_EQ(text(-0.0), "a=0.0000");
    EXPECT_EQ(text(0.0001), "a=0.0001");
    EXPECT_EQ(text(-1.23456), "a=-1.2346");
    EXPECT_EQ(text(99.99999), "a=100.0000");
}

TEST(LatestSummary, hasAnExponentForLargeAndForSmallValues) {
    const auto text = [](double value) { return latestSummary({{"a", value}}, {"a"}); };
    EXPECT_EQ(text(100), "a=1.000e+02");
    EXPECT_EQ(text(-100), "a=-1.000e+02");
    EXPECT_EQ(text(123456), "a=1.235e+05");
    EXPECT_EQ(text(0.00009999), "a=9.999e-05");
    EXPECT_EQ(text(-0.00002), "a=-2.000e-05");
}

} // namespace
} // namespace ostrella
