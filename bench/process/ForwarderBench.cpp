#include "Models/MainThread.h"
#include "Solver/Tools/ManagedProcess.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace ostrella {
namespace {

using SteadyClock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::int64_t lineCount = 1'000'000;

/// How long the main thread lets others wait while it serves its loop: the worst answer to a
/// question from another thread, and the longest pause between two ticks of a timer of 5 ms.
class Responsiveness {
public:
    Responsiveness() {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
        timer_.start(std::chrono::milliseconds(5));
    }

    /// Ends the questions; on a worker, since the last of them may still wait for its answer.
    void stop() {
        stop_ = true;
        asker_.join();
    }

    void report(benchmark::State& state) const {
        state.counters["worst_answer_ms"] = worstAnswer_;
        state.counters["worst_tick_ms"] = worstTick_;
    }

private:
    void tick() {
        const auto now = SteadyClock::now();
        worstTick_ = std::max(worstTick_, Milliseconds(now - lastTick_).count());
        lastTick_ = now;
    }

    void ask() {
        try {
            while (!stop_) {
                const auto asked = SteadyClock::now();
                MainThread::run([&] {
                    const Milliseconds answer = SteadyClock::now() - asked;
                    worstAnswer_ = std::max(worstAnswer_, answer.count());
                });
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        } catch (const CancellationError&) {
            return;
        }
    }

    QTimer timer_;
    SteadyClock::time_point lastTick_ = SteadyClock::now();
    double worstTick_ = 0;
    double worstAnswer_ = 0;
    std::atomic<bool> stop_ = false;
    std::thread asker_{[this] { ask(); }};
};

/// Serves the main loop while `work` runs on a worker.
void serveDuring(const std::function<void()>& work) {
    QEventLoop loop;
    std::thread worker([&] {
        work();
        MainThread::post([&loop] { loop.quit(); });
    });
    loop.exec();
    worker.join();
}

void finish(Responsiveness& responsiveness, benchmark::State& state) {
    serveDuring([&] { responsiveness.stop(); });
    responsiveness.report(state);
}

void forwarder(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto log = std::make_unique<LogStore>();
        Responsiveness responsiveness;
        state.ResumeTiming();
        serveDuring([&log] {
            LineForwarder lines(*log, LogStore::Level::su2,
                [](const std::string& line) { return line.starts_with("Error"); });
            ManagedProcess::run(OSTRELLA_BENCH_FLOOD, {std::to_string(lineCount)},
                std::filesystem::temp_directory_path(), lines, {});
        });
        state.PauseTiming();
        finish(responsiveness, state);
        if (log->count() != lineCount) {
            state.SkipWithError("lines were lost");
        }
        log.reset();
        state.ResumeTiming();
    }
}

/// The platform's own way: QProcess on the main thread, each line into the same log.
void qProcess(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto log = std::make_unique<LogStore>();
        Responsiveness responsiveness;
        state.ResumeTiming();
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        QEventLoop loop;
        QObject::connect(&process, &QProcess::readyReadStandardOutput, &process, [&] {
            while (process.canReadLine()) {
                QByteArray line = process.readLine();
                line.chop(1);
                log->append(QString::fromUtf8(line).toStdString(), LogStore::Level::su2);
            }
        });
        QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
        process.start(QStringLiteral(OSTRELLA_BENCH_FLOOD), {QString::number(lineCount)});
        loop.exec();
        state.PauseTiming();
        finish(responsiveness, state);
        if (log->count() != lineCount) {
            state.SkipWithError("lines were lost");
        }
        log.reset();
        state.ResumeTiming();
    }
}

BENCHMARK(forwarder)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1)->Repetitions(5);
BENCHMARK(qProcess)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1)->Repetitions(5);

} // namespace
} // namespace ostrella

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const ostrella::MainThread mainThread;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
