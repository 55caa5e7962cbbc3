#include "Solver/Tools/HistoryCSVReader.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <random>

namespace ostrella {
namespace {

using HistoryCSVReader::parse;
using HistoryCSVReader::ParseResult;
using testing::ElementsAre;
using testing::IsEmpty;
using Points = std::vector<HistoryPoint>;

const ParseResult nothing;

TEST(HistoryCSV, givesResidualsAndCoefficients) {
    const auto result = parse("\"Inner_Iter\",\"rms[P]\",\"CL\"\n 0, -1.5, 0.25\n", 3);
    EXPECT_EQ(result.residuals, (Points{{"P", 0, -1.5}}));
    EXPECT_EQ(result.coefficients, (Points{{"CL", 0, 0.25}}));
    EXPECT_THAT(result.residualLabels, ElementsAre("P"));
    EXPECT_THAT(result.coefficientLabels, ElementsAre("CL"));
}

TEST(HistoryCSV, isInTheOrderOfRowsAndColumns) {
    const auto result =
        parse("CD,rms[U],Inner_Iter,rms[P],CL\n0.1,-1,0,-2,0.2\n0.3,-3,1,-4,0.4\n", std::nullopt);
    EXPECT_EQ(result.residuals, (Points{{"U", 0, -1}, {"P", 0, -2}, {"U", 1, -3}, {"P", 1, -4}}));
    EXPECT_EQ(result.coefficients,
        (Points{{"CD", 0, 0.1}, {"CL", 0, 0.2}, {"CD", 1, 0.3}, {"CL", 1, 0.4}}));
    EXPECT_THAT(result.residualLabels, ElementsAre("U", "P"));
    EXPECT_THAT(result.coefficientLabels, ElementsAre("CD", "CL"));
}

TEST(HistoryCSV, knowsTheTenCoefficientsAndIgnoresOtherColumns) {
    const auto result =
        parse("Time_Iter,Outer_Iter,Inner_Iter,CL,CD,CSF,CMx,CMy,CMz,CFx,CFy,CFz,CEff,"
              "RefForce,Buffet,cl,Cm,AoA\n"
              "0,0,4,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15\n",
            3);
    EXPECT_THAT(result.coefficientLabels,
        ElementsAre("CL", "CD", "CSF", "CMx", "CMy", "CMz", "CFx", "CFy", "CFz", "CEff", "Cm"));
    ASSERT_EQ(result.coefficients.size(), 11U);
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_EQ(result.coefficients[i].value, static_cast<double>(i + 1));
        EXPECT_EQ(result.coefficients[i].iter, 4);
    }
    EXPECT_EQ(result.coefficients[10], (HistoryPoint{"Cm", 4, 5}));
    EXPECT_THAT(result.residuals, IsEmpty());
}

TEST(HistoryCSV, takesTheLabelBetweenTheBrackets) {
    const auto result = parse("Inner_Iter,rms[nu],rms[],rms[a]b],rms[x,RMS[P]\n0,1,2,3,4,5\n", 3);
    EXPECT_THAT(result.residualLabels, ElementsAre("nu", "", "a]b"));
    EXPECT_EQ(result.residuals, (Points{{"nu", 0, 1}, {"", 0, 2}, {"a]b", 0, 3}}));
}

TEST(HistoryCSV, trimsAndUnquotesTheHeader) {
    const auto result = parse("\t \"Inner_Iter\" ,  \" CL \"  ,CD\"\n0,1,2\n", 3);
    EXPECT_THAT(result.coefficientLabels, ElementsAre("CL", "CD"));
    EXPECT_EQ(result.coefficients, (Points{{"CL", 0, 1}, {"CD", 0, 2}}));
}

TEST(HistoryCSV, splitsAtACommaInQuotes) {
    const auto result = parse("Inner_Iter,\"rms[P],CL\"\n0,-1,0.5\n", 3);
    EXPECT_EQ(result.residuals, (Points{{"P", 0, -1}}));
    EXPECT_EQ(result.coefficients, (Points{{"CL", 0, 0.5}}));
}

TEST(HistoryCSV, takesQuotedAndBlankPaddedValues) {
    const auto result = parse("Inner_Iter,CL,CD\n \"3\" ,\" 0.5 \",\t0.25\t\n", 3);
    EXPECT_EQ(result.coefficients, (Points{{"CL", 3, 0.5}, {"CD", 3, 0.25}}));
}

TEST(HistoryCSV, endsLinesAtLineFeedsAndCarriageReturns) {
    for (const std::string end : {"\n", "\r", "\r\n", "\n\n", "\r\r\n\n"}) {
        const auto result = parse(end + "Inner_Iter,CL" + end + "0,1" + end + "1,2" + end, 3);
        EXPECT_EQ(result.coefficients, (Points{{"CL", 0, 1}, {"CL", 1, 2}}));
    }
}

TEST(HistoryCSV, hasNoDataInAHeaderAlone) {
    EXPECT_EQ(parse("", 3), nothing);
    EXPECT_EQ(parse("\n\n", 3), nothing);
    EXPECT_EQ(parse("Inner_Iter,CL", 3), nothing);
    EXPECT_EQ(parse("Inner_Iter,CL\n", 3), nothing);
}

TEST(HistoryCSV, isEmptyWithoutAnIterationColumn) {
    EXPECT_EQ(parse("Time_Iter,rms[P],CL,CMy\n0,-1,0.5,1\n", 3), nothing);
    EXPECT_EQ(parse("inner_iter,CL\n0,0.5\n", 3), nothing);
}

TEST(HistoryCSV, hasLabelsWithoutAReadableRow) {
    const auto result = parse("Inner_Iter,rms[P],CMy\nx,1,2\n", 3);
    EXPECT_THAT(result.residuals, IsEmpty());
    EXPECT_THAT(result.coefficients, IsEmpty());
    EXPECT_THAT(result.residualLabels, ElementsAre("P"));
    EXPECT_THAT(result.coefficientLabels, ElementsAre("CMy", "Cm"));
}

TEST(HistoryCSV, skipsARowWithoutAReadableIteration) {
    const auto result = parse("CL,Inner_Iter\n1,\n2\n3,x\n4,1e\n5, \n6,7\n", 3);
    EXPECT_EQ(result.coefficients, (Points{{"CL", 7, 6}}));
}

TEST(HistoryCSV, takesWhatARowCutShortStillHas) {
    const auto result = parse("Inner_Iter,rms[P],CL,CD\n0,-1,2,3\n1,-1.5,0.", 3);
    EXPECT_EQ(result.residuals, (Points{{"P", 0, -1}, {"P", 1, -1.5}}));
    EXPECT_EQ(result.coefficients, (Points{{"CL", 0, 2}, {"CD", 0, 3}, {"CL", 1, 0}}));
}

TEST(HistoryCSV, dropsAValueThatDoesNotRead) {
    const auto result =
        parse("Inner_Iter,CL,CD\n0,1.2e,5\n1,,6\n2,1.5x,7\n3,1 2,8\n4,-,9\n5,0x,10\n", 3);
    EXPECT_EQ(result.coefficients, (Points{{"CD", 0, 5}, {"CD", 1, 6}, {"CD", 2, 7}, {"CD", 3, 8},
                                       {"CD", 4, 9}, {"CD", 5, 10}}));
}

TEST(HistoryCSV, dropsWhatIsNotFiniteAlone) {
    const auto result = parse(
        "Inner_Iter,rms[P],CL,CD\n0,nan,1,2\n1,-1,inf,3\n2,-1,-Infinity,4\n3,-1,1e999,5\n", 3);
    EXPECT_EQ(result.residuals, (Points{{"P", 1, -1}, {"P", 2, -1}, {"P", 3, -1}}));
    EXPECT_EQ(result.coefficients,
        (Points{{"CL", 0, 1}, {"CD", 0, 2}, {"CD", 1, 3}, {"CD", 2, 4}, {"CD", 3, 5}}));
}

TEST(HistoryCSV, ignoresFieldsBehindTheHeadersColumns) {
    const auto result = parse("Inner_Iter,CL\n0,1,2,3,4\n", 3);
    EXPECT_EQ(result.coefficients, (Points{{"CL", 0, 1}}));
}

TEST(HistoryCSV, takesTheLastOfSeveralIterationColumns) {
    const auto result = parse("Inner_Iter,CL,Inner_Iter\n1,0.5,2\nx,0.6,3\n", 3);
    EXPECT_EQ(result.coefficients, (Points{{"CL", 2, 0.5}, {"CL", 3, 0.6}}));
}

std::vector<std::int64_t> iterationsRead(const std::string& word) {
    std::vector<std::int64_t> result;
    for (const HistoryPoint& point : parse("Inner_Iter,CL\n" + word + ",1\n", 3).coefficients) {
        result.push_back(point.iter);
    }
    return result;
}

TEST(HistoryIteration, isADecimalInteger) {
    EXPECT_THAT(iterationsRead("12"), ElementsAre(12));
    EXPECT_THAT(iterationsRead("+12"), ElementsAre(12));
    EXPECT_THAT(iterationsRead("-3"), ElementsAre(-3));
    EXPECT_THAT(iterationsRead("007"), ElementsAre(7));
    EXPECT_THAT(iterationsRead("9007199254740993"), ElementsAre(9007199254740993));
    EXPECT_THAT(iterationsRead("+9007199254740993"), ElementsAre(9007199254740993));
}

TEST(HistoryIteration, isTheWholePartOfANumber) {
    EXPECT_THAT(iterationsRead("12.0"), ElementsAre(12));
    EXPECT_THAT(iterationsRead("12.9"), ElementsAre(12));
    EXPECT_THAT(iterationsRead("-1.9"), ElementsAre(-1));
    EXPECT_THAT(iterationsRead("1e3"), ElementsAre(1000));
}

TEST(HistoryIteration, isNothingElse) {
    for (const char* word : {"", " ", "x", "12x", "1 2", "--1", "+-1", "+", "nan", "inf", "1e19",
             "-1e19", "99999999999999999999", "\"\""}) {
        EXPECT_THAT(iterationsRead(word), IsEmpty()) << word;
    }
}

std::vector<double> valuesRead(const std::string& word) {
    std::vector<double> result;
    for (const HistoryPoint& point :
        parse("Inner_Iter,CL,CD\n0," + word + ",1\n", 3).coefficients) {
        if (point.label == "CL") {
            result.push_back(point.value);
        }
    }
    return result;
}

TEST(HistoryValue, isWhatTheCLibraryTakesWhole) {
    EXPECT_THAT(valuesRead("+1.5"), ElementsAre(1.5));
    EXPECT_THAT(valuesRead(".5"), ElementsAre(0.5));
    EXPECT_THAT(valuesRead("5."), ElementsAre(5));
    EXPECT_THAT(valuesRead("1E2"), ElementsAre(100));
    EXPECT_THAT(valuesRead("0x1p-1"), ElementsAre(0.5));
    EXPECT_THAT(valuesRead("1e-999"), ElementsAre(0));
    EXPECT_THAT(valuesRead("-32"), ElementsAre(-32));
    EXPECT_THAT(valuesRead("1,5"), ElementsAre(1)) << "a comma ends the field";
}

TEST(HistoryValue, isExactForNumbersAsTheSolverPrintsThem) {
    std::mt19937_64 random(20240517);
    std::uniform_real_distribution<double> mantissa(-10, 10);
    std::uniform_int_distribution<int> exponent(-30, 30);
    std::string text = "Inner_Iter,CL,CD\n";
    std::vector<double> expected;
    for (int i = 0; i < 5000; ++i) {
        const double value = mantissa(random) * std::pow(10.0, exponent(random));
        const std::string first = fmt::format("{:>18.10g}", value);
        const std::string second = fmt::format("{:.17g}", value);
        text += fmt::format("{:>11},{},{}\n", i, first, second);
        expected.push_back(std::strtod(first.c_str(), nullptr));
        expected.push_back(value);
    }
    const auto result = parse(text, 2);
    ASSERT_EQ(result.coefficients.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        ASSERT_EQ(result.coefficients[i].value, expected[i]) << "value " << i;
        ASSERT_EQ(result.coefficients[i].iter, static_cast<std::int64_t>(i / 2));
    }
}

TEST(PitchingMoment, isAboutYInThreeDimensions) {
    const auto result = parse("Inner_Iter,CMy,CMz,CL\n0,0.1,0.7,5\n", 3);
    EXPECT_THAT(result.coefficientLabels, ElementsAre("CMy", "CMz", "CL", "Cm"));
    EXPECT_EQ(result.coefficients,
        (Points{{"CMy", 0, 0.1}, {"CMz", 0, 0.7}, {"CL", 0, 5}, {"Cm", 0, 0.1}}));
}

TEST(PitchingMoment, isAboutYWhereTheDimensionsAreNotKnown) {
    EXPECT_EQ(parse("Inner_Iter,CMy\n0,0.1\n", std::nullopt).coefficients,
        (Points{{"CMy", 0, 0.1}, {"Cm", 0, 0.1}}));
    EXPECT_EQ(parse("Inner_Iter,CMy\n0,0.1\n", 7).coefficients,
        (Points{{"CMy", 0, 0.1}, {"Cm", 0, 0.1}}));
}

TEST(PitchingMoment, isAgainstZInTwoDimensions) {
    EXPECT_EQ(parse("Inner_Iter,CMy,CMz\n0,0.7,0.1\n", 2).coefficients,
        (Points{{"CMy", 0, 0.7}, {"CMz", 0, 0.1}, {"Cm", 0, -0.1}}));
}

TEST(PitchingMoment, isAbsentWithoutItsSource) {
    EXPECT_THAT(parse("Inner_Iter,CMy\n0,0.1\n", 2).coefficientLabels, ElementsAre("CMy"));
    EXPECT_THAT(parse("Inner_Iter,CMz\n0,0.1\n", 3).coefficientLabels, ElementsAre("CMz"));
}

TEST(PitchingMoment, isLeftOutWhereItsSourceDoesNotRead) {
    const auto result = parse("Inner_Iter,CL,CMy\n0,1,nan\n1,2\n2,3,0.5\n", 3);
    EXPECT_EQ(result.coefficients,
        (Points{{"CL", 0, 1}, {"CL", 1, 2}, {"CL", 2, 3}, {"CMy", 2, 0.5}, {"Cm", 2, 0.5}}));
}

} // namespace
} // namespace ostrella
