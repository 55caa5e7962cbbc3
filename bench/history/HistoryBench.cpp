#include "Solver/Tools/HistoryCSVReader.h"
#include "Solver/Tools/TextFile.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>

/// The reader of "history.csv" on a run of 50 000 iterations, in the solver's own form: 19 columns
/// padded with blanks, ten significant digits. The goal is under 60 ms on one core, and at least
/// ten times as fast as Python's csv module on the same file.
namespace ostrella {
namespace {

constexpr int rowCount = 50'000;
constexpr int seriesCount = 5 + 10 + 1; // residuals, coefficients, and the pitching moment

std::string makeHistory() {
    constexpr std::array names{"rms[P]", "rms[U]", "rms[V]", "rms[W]", "rms[nu]", "RefForce", "CD",
        "CL", "CSF", "CMx", "CMy", "CMz", "CFx", "CFy", "CFz", "CEff"};
    std::string text = "\"Time_Iter\",\"Outer_Iter\",\"Inner_Iter\"";
    for (const char* name : names) {
        text += fmt::format(",{:^20}", fmt::format("\"{}\"", name));
    }
    std::mt19937 random(1);
    std::normal_distribution<double> noise;
    for (int row = 0; row < rowCount; ++row) {
        text += fmt::format("\n{:>11},{:>12},{:>12}", 0, 0, row);
        const double decay = std::exp(-row / 5000.0);
        for (std::size_t column = 0; column < names.size(); ++column) {
            double value = 0;
            if (column < 5) {
                value = -8 + 6 * decay + 0.1 * noise(random);
            } else if (column == 5) {
                value = 4810.559688;
            } else {
                // Coefficients from some tenths down to millionths, as a symmetric body has them.
                value = std::pow(10.0, -static_cast<double>(column % 7)) *
                        (0.5 + decay * noise(random));
            }
            text += fmt::format(",{:>20.10g}", value);
        }
    }
    return text + "\n";
}

const std::string& history() {
    static const std::string text = makeHistory();
    return text;
}

void parseOnce(benchmark::State& state, const std::string& text) {
    const auto result = HistoryCSVReader::parse(text, 3);
    if (result.residuals.size() + result.coefficients.size() !=
        std::size_t{rowCount} * seriesCount) {
        state.SkipWithError("not every value was read");
    }
    benchmark::DoNotOptimize(result);
}

void countBytes(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(history().size()));
}

/// The history on disk, as the peer reads it.
class HistoryFile {
public:
    HistoryFile()
        : path_(std::filesystem::temp_directory_path() /
                fmt::format("ostrella-history-bench-{}.csv", std::random_device()())) {
        std::ofstream(path_) << history();
    }
    HistoryFile(const HistoryFile&) = delete;
    HistoryFile& operator=(const HistoryFile&) = delete;
    ~HistoryFile() { std::filesystem::remove(path_); }

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

void textInMemory(benchmark::State& state) {
    for (auto _ : state) {
        parseOnce(state, history());
    }
    countBytes(state);
}

void fileOnDisk(benchmark::State& state, const HistoryFile& file) {
    for (auto _ : state) {
        parseOnce(state, readText(file.path()));
    }
    countBytes(state);
}

/// The time is the peer's own processor time, without the interpreter's start.
void peer(benchmark::State& state, const char* task, const HistoryFile& file) {
    const std::string command = fmt::format("\"{}\" \"{}\" {} \"{}\"", OSTRELLA_BENCH_PYTHON,
        OSTRELLA_BENCH_PEER, task, file.path().string());
    for (auto _ : state) {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(
            popen(command.c_str(), "r"), pclose);
        int count = 0;
        double seconds = 0;
        if (!pipe || std::fscanf(pipe.get(), "%d %lf", &count, &seconds) != 2 ||
            count != rowCount) {
            state.SkipWithError("the peer failed");
            break;
        }
        state.SetIterationTime(seconds);
    }
    countBytes(state);
}

} // namespace
} // namespace ostrella

int main(int argc, char** argv) {
    const ostrella::HistoryFile file;
    benchmark::RegisterBenchmark("HistoryCSVReader, text in memory", ostrella::textInMemory)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("HistoryCSVReader, file on disk", [&file](
                                                                       benchmark::State& state) {
        ostrella::fileOnDisk(state, file);
    })->Unit(benchmark::kMillisecond);
    for (const char* task : {"rows", "numbers"}) {
        benchmark::RegisterBenchmark(fmt::format("Python csv, file on disk, {}", task).c_str(),
            [task, &file](benchmark::State& state) { ostrella::peer(state, task, file); })
            ->Unit(benchmark::kMillisecond)
            ->UseManualTime()
            ->Iterations(1);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
