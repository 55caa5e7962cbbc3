// The long matrix: every sample in both regimes with every closure, and the built-in case, with the
// solver of the tools directory, each to a settled end.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <sstream>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;

/// The columns of "history.csv" by name.
std::map<std::string, std::vector<double>> readHistory(const fs::path& file) {
    std::istringstream stream(readFile(file));
    const auto cells = [](const std::string& line) {
        std::vector<std::string> result;
        std::istringstream words(line);
        for (std::string word; std::getline(words, word, ',');) {
            std::erase_if(word, [](char c) { return c == ' ' || c == '"' || c == '\r'; });
            result.push_back(word);
        }
        return result;
    };
    std::string line;
    std::getline(stream, line);
    const auto names = cells(line);
    std::map<std::string, std::vector<double>> columns;
    while (std::getline(stream, line)) {
        const auto values = cells(line);
        for (std::size_t i = 0; i < std::min(names.size(), values.size()); ++i) {
            columns[names[i]].push_back(std::stod(values[i]));
        }
    }
    return columns;
}

/// Within 0.5 % or 0.001, whichever is more, over the last 50 iterations.
bool isSettled(const std::vector<double>& values) {
    if (values.size() < 50) {
        return false;
    }
    const auto [lowest, highest] = std::minmax_element(values.end() - 50, values.end());
    return *highest - *lowest <= std::max(0.005 * std::abs(values.back()), 0.001);
}

/// By three orders of magnitude since the highest value of the first ten iterations, of which the
/// very first may hold a floor.
bool hasFallen(const std::vector<double>& residual) {
    if (residual.size() < 10) {
        return false;
    }
    return residual.back() <= *std::max_element(residual.begin() + 1, residual.begin() + 10) - 3;
}

class LongRun : public testing::Test {
protected:
    nlohmann::json run(std::vector<std::string> arguments) {
        const fs::path json = directory_.path() / "run.json";
        arguments.insert(arguments.end(),
            {"--quiet", "--json", json.string(), "--export", directory_.path().string()});
        batch_.start(arguments);
        EXPECT_EQ(batch_.finish(std::chrono::hours(2)), 0) << batch_.output();
        return nlohmann::json::parse(readFile(json));
    }
    void expectConverged(const nlohmann::json& report, const std::string& residual) {
        const auto history = readHistory(directory_.path() / "history.csv");
        ASSERT_TRUE(history.contains("CL") && history.contains(residual));
        EXPECT_TRUE(report["converged"] == true || hasFallen(history.at(residual)) ||
                    (isSettled(history.at("CD")) && isSettled(history.at("CL"))))
            << batch_.line("[WARN] Iteration cap");
    }

    TemporaryDirectory directory_;
    BatchProcess batch_{stagedProgram()};
};

class ConvergenceTest
    : public LongRun,
      public testing::WithParamInterface<std::tuple<const char*, const char*, const char*>> {};

TEST_P(ConvergenceTest, WithinFiveHundredIterations) {
    const auto [sample, regime, closure] = GetParam();
    const bool isCompressible = std::string(regime) == "compressible";
    const auto report = run({"--sample", sample, "--regime", regime, "--turbulence", closure,
        "--velocity", isCompressible ? "150" : "50", "--alpha", "5", "--iterations", "500"});
    expectConverged(report, isCompressible ? "rms[Rho]" : "rms[P]");
    EXPECT_GE(report["cells"], 50000);
    EXPECT_LE(report["cells"], 400000);
    EXPECT_GT(report["cd"], 0.0);
}

INSTANTIATE_TEST_SUITE_P(Of, ConvergenceTest,
    testing::Combine(testing::Values("sphere", "rounded_box", "simple_wing"),
        testing::Values("incompressible", "compressible"),
        testing::Values("spalartAllmaras", "sst", "laminar")),
    [](const auto& test) {
        return fmt::format(
            "{}_{}_{}", std::get<0>(test.param), std::get<1>(test.param), std::get<2>(test.param));
    });

using BuiltInCaseTest = LongRun;

TEST_F(BuiltInCaseTest, SettlesAndIsNearItsEndAfterTheDefaultLimit) {
    const auto report = run({"--demo", "--alpha", "5", "--iterations", "2000"});
    expectConverged(report, "rms[P]");
    const auto history = readHistory(directory_.path() / "history.csv");
    const auto& lift = history.at("CL");
    ASSERT_GE(lift.size(), 200U);
    EXPECT_NEAR(lift[199], lift.back(), 0.1 * std::abs(lift.back()));
}

} // namespace
} // namespace ostrella::test
