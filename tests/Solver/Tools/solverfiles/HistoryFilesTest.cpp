#include "Solver/Tools/HistoryCSVReader.h"

#include "support/Wait.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using HistoryCSVReader::parse;
using HistoryCSVReader::ParseResult;
using testing::ElementsAre;

const fs::path folder = fs::path(OSTRELLA_TEST_DATA) / "history";

/// All points of one series, by a reader as plain as can be.
std::vector<HistoryPoint> column(
    const std::string& text, const std::string& name, const std::string& label) {
    std::istringstream lines(text);
    std::vector<std::string> names;
    std::vector<HistoryPoint> result;
    for (std::string line; std::getline(lines, line);) {
        std::vector<std::string> fields;
        std::istringstream rest(line);
        for (std::string field; std::getline(rest, field, ',');) {
            std::erase_if(field, [](char c) { return c == ' ' || c == '"'; });
            fields.push_back(field);
        }
        if (names.empty()) {
            names = fields;
            continue;
        }
        const auto place = [&names](const std::string& wanted) {
            return static_cast<std::size_t>(
                std::find(names.begin(), names.end(), wanted) - names.begin());
        };
        result.push_back(
            {label, std::stoll(fields.at(place("Inner_Iter"))), std::stod(fields.at(place(name)))});
    }
    return result;
}

std::vector<HistoryPoint> series(const std::vector<HistoryPoint>& points, const char* label) {
    std::vector<HistoryPoint> result;
    std::copy_if(points.begin(), points.end(), std::back_inserter(result),
        [label](const HistoryPoint& point) { return point.label == label; });
    return result;
}

TEST(RecordedHistory, inThreeDimensions) {
    const std::string text = test::readFile(folder / "sphere_laminar_re100.csv");
    const ParseResult result = parse(text, 3);
    EXPECT_THAT(result.residualLabels, ElementsAre("P", "U", "V", "W"));
    EXPECT_THAT(result.coefficientLabels,
        ElementsAre("CD", "CL", "CSF", "CMx", "CMy", "CMz", "CFx", "CFy", "CFz", "CEff", "Cm"));
    EXPECT_EQ(result.residuals.size(), 192U * 4);
    EXPECT_EQ(result.coefficients.size(), 192U * 11);
    for (const char* label : {"P", "U", "V", "W"}) {
        EXPECT_EQ(series(result.residuals, label),
            column(text, std::string("rms[") + label + "]", label));
    }
    for (const std::string& label : result.coefficientLabels) {
        EXPECT_EQ(series(result.coefficients, label.c_str()),
            column(text, label == "Cm" ? "CMy" : label, label));
    }
    EXPECT_EQ(series(result.coefficients, "CD").back(), (HistoryPoint{"CD", 191, 1.189550958}));
    EXPECT_EQ(series(result.residuals, "P").back(), (HistoryPoint{"P", 191, -8.029591076}));
}

TEST(RecordedHistory, inTwoDimensions) {
    const std::string text = test::readFile(folder / "naca_first_80_iterations.csv");
    const ParseResult result = parse(text, 2);
    EXPECT_THAT(result.residualLabels, ElementsAre("P", "U", "V", "nu"));
    EXPECT_EQ(result.residuals.size(), 80U * 4);
    EXPECT_EQ(result.coefficients.size(), 80U * 11);
    EXPECT_EQ(series(result.coefficients, "CL"), column(text, "CL", "CL"));
    // The moment about z is nose down.
    EXPECT_EQ(series(result.coefficients, "CMz").back(), (HistoryPoint{"CMz", 79, 0.007768415896}));
    EXPECT_EQ(series(result.coefficients, "Cm").back(), (HistoryPoint{"Cm", 79, -0.007768415896}));
}

/// The file as a poll catches it: cut at each of its bytes.
TEST(RecordedHistory, growsPointByPointWhileItIsBeingWritten) {
    const std::string all = test::readFile(folder / "naca_first_80_iterations.csv");
    std::size_t end = 0;
    for (int line = 0; line < 4; ++line) {
        end = all.find('\n', end) + 1;
    }
    const std::string text = all.substr(0, end);
    const ParseResult whole = parse(all, 2);
    std::size_t before = 0;
    for (std::size_t size = 0; size <= text.size(); ++size) {
        const ParseResult part = parse(std::string_view(text).substr(0, size), 2);
        for (const auto& [points, complete] : {std::pair(&part.residuals, &whole.residuals),
                 std::pair(&part.coefficients, &whole.coefficients)}) {
            ASSERT_LE(points->size(), complete->size());
            // Rows that are complete are the same; only the last may hold a number cut short.
            for (std::size_t i = 0; i < points->size(); ++i) {
                const bool inLastRow = (*points)[i].iter == points->back().iter;
                if (!inLastRow) {
                    ASSERT_EQ((*points)[i], (*complete)[i]) << "cut at " << size;
                }
            }
        }
        const std::size_t count = part.residuals.size() + part.coefficients.size();
        ASSERT_GE(count + 1, before) << "cut at " << size; // "1.2e" drops one value for a moment
        before = count;
    }
    EXPECT_EQ(before, 15U * 3) << "the text holds a header and three rows";
}

std::vector<fs::path> corpus() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder / "corpus")) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

class HistoryCorpus : public testing::TestWithParam<fs::path> {};

TEST_P(HistoryCorpus, isReadToSoundSeries) {
    const std::string text = test::readFile(GetParam());
    for (const std::optional<int> dimensions :
        {std::optional<int>(), std::optional(2), std::optional(3)}) {
        const ParseResult result = parse(text, dimensions);
        for (const auto& [points, labels] : {std::pair(&result.residuals, &result.residualLabels),
                 std::pair(&result.coefficients, &result.coefficientLabels)}) {
            EXPECT_LE(points->size(), text.size());
            for (const HistoryPoint& point : *points) {
                ASSERT_TRUE(std::isfinite(point.value));
                ASSERT_TRUE(std::find(labels->begin(), labels->end(), point.label.string()) !=
                            labels->end());
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Files, HistoryCorpus, testing::ValuesIn(corpus()),
    [](const auto& file) { return file.param.stem().string(); });

std::size_t pointsIn(const char* name) {
    const ParseResult result = parse(test::readFile(folder / "corpus" / name), 3);
    return result.residuals.size() + result.coefficients.size();
}

TEST(HistoryCorpusCounts, areAsTheFilesAre) {
    EXPECT_EQ(pointsIn("row_cut_in_a_number.csv"), 6U + 3);
    EXPECT_EQ(pointsIn("row_cut_in_an_exponent.csv"), 6U + 1);
    EXPECT_EQ(pointsIn("row_cut_in_the_iteration.csv"), 6U);
    EXPECT_EQ(pointsIn("not_finite.csv"), 4U); // 1e-999, 0.1 twice, 0.2
    EXPECT_EQ(pointsIn("carriage_returns.csv"), 12U);
    EXPECT_EQ(pointsIn("huge_iteration.csv"), 2U);
    EXPECT_EQ(pointsIn("restarted.csv"), 18U);
    EXPECT_EQ(pointsIn("zero_bytes.csv"), 1U);
    EXPECT_EQ(pointsIn("byte_order_mark.csv"), 0U);
    EXPECT_EQ(pointsIn("many_columns_short_rows.csv"), 0U);
    EXPECT_EQ(pointsIn("long_numbers.csv"), 2U); // 400 nines are not finite
}

} // namespace
} // namespace ostrella
