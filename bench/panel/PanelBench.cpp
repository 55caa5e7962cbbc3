#include "Models/HistoryStore.h"
#include "Models/LogStore.h"
#include "Views/Panel/ChartModel.h"
#include "Views/Panel/LogLines.h"
#include "Views/Panel/LogScroll.h"
#include "Views/Panel/StrokeMesh.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

/// What the panel under the viewport costs the main thread. A second of a busy run is one pass of
/// the log's row and four of the chart's; a core has 1000 ms of it.
namespace ostrella {
namespace {

constexpr int lineCount = 1'000'000;
constexpr int linesASecond = 2'000;
constexpr int rowCount = 50'000;
constexpr int seriesCount = 8;
constexpr std::size_t chartColumns = 500;

const std::string lineText = " 118|  -3.731204|  -1.552310|  -1.640081|   0.168714|   0.038801|";

LogStore& millionLines() {
    static LogStore log;
    for (auto i = log.count(); i < lineCount; ++i) {
        log.append(lineText, i % 100 == 0 ? LogStore::Level::warn : LogStore::Level::su2);
    }
    return log;
}

/// 2000 lines appended one by one and shown in 60 steps, the list at its end.
void appendASecondOfLines(benchmark::State& state, LogFilter filter) {
    LogStore& log = millionLines();
    LogLines lines(log);
    lines.setFilter(filter);
    LogScroll scroll([](std::size_t) { return 19.0; }, 8);
    scroll.setViewHeight(188);
    for (auto _ : state) {
        for (int i = 0; i < linesASecond; ++i) {
            log.append(lineText, LogStore::Level::su2);
            if (i % (linesASecond / 60) == 0) {
                lines.takeIn();
                scroll.setCount(lines.size());
                scroll.toEnd();
            }
        }
        benchmark::DoNotOptimize(scroll.visible().data());
    }
}

void filterAMillionLines(benchmark::State& state) {
    LogLines lines(millionLines());
    for (auto _ : state) {
        lines.setFilter(LogFilter::su2);
        lines.setFilter(LogFilter::all);
        benchmark::DoNotOptimize(lines.size());
    }
}

/// The histories of a run at its end and 25 rows before, so that an update has something new.
HistoryStore::Points history(int rows) {
    std::vector<SeriesName> names;
    for (int series = 0; series < seriesCount; ++series) {
        names.emplace_back("r" + std::to_string(series));
    }
    HistoryStore::Points points;
    for (int row = 0; row < rows; ++row) {
        for (int series = 0; series < seriesCount; ++series) {
            points.push_back({names[static_cast<std::size_t>(series)], row,
                -4 * row / static_cast<double>(rowCount) - series * 0.3 +
                    0.2 * std::sin(row * 12.9898 + series * 78.233)});
        }
    }
    return points;
}

class Chart {
public:
    Chart() : model_(store_, ChartModel::Kind::residuals) {
        HistoryStore::Labels labels;
        for (int series = 0; series < seriesCount; ++series) {
            labels.push_back("r" + std::to_string(series));
        }
        store_.setResidualLabels(labels);
        model_.setColumns(chartColumns);
    }

    /// A flush, and what the chart makes of it.
    const ChartModel& take(HistoryStore::Points points) {
        store_.setResiduals(std::move(points));
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents();
        return model_;
    }

private:
    HistoryStore store_;
    ChartModel model_;
};

void updateChart(benchmark::State& state) {
    Chart chart;
    const HistoryStore::Points late = history(rowCount);
    const HistoryStore::Points early(late.begin(), late.end() - 25 * seriesCount);
    for (auto _ : state) {
        state.PauseTiming();
        chart.take(early);
        HistoryStore::Points next = late;
        state.ResumeTiming();
        benchmark::DoNotOptimize(chart.take(std::move(next)).lines().data());
    }
}

void drawChart(benchmark::State& state) {
    Chart chart;
    const ChartModel& model = chart.take(history(rowCount));
    std::vector<StrokeMesh::Point> path;
    std::size_t vertices = 0;
    for (auto _ : state) {
        StrokeMesh mesh(1);
        for (const ChartModel::Line& line : model.lines()) {
            path.clear();
            for (const ChartPoint& point : line.points) {
                path.push_back({static_cast<float>(point.iteration * chartColumns / rowCount),
                    static_cast<float>(-point.value * 15)});
            }
            mesh.line(path, 1.5F, {255, 165, 36, 255});
        }
        vertices = mesh.vertices().size();
        benchmark::DoNotOptimize(mesh.indices().data());
    }
    state.counters["vertices"] = static_cast<double>(vertices);
}

BENCHMARK_CAPTURE(appendASecondOfLines, all, LogFilter::all)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(appendASecondOfLines, su2, LogFilter::su2)->Unit(benchmark::kMillisecond);
BENCHMARK(filterAMillionLines)->Unit(benchmark::kMillisecond);
BENCHMARK(updateChart)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(drawChart)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace ostrella

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
