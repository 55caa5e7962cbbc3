#include "Solver/Run/SolverLaunch.h"

#include "Models/HistoryStore.h"
#include "Solver/Tools/HistoryCSVReader.h"
#include "Solver/Tools/LineForwarder.h"
#include "Solver/Tools/ManagedProcess.h"
#include "Solver/Tools/SU2Output.h"
#include "Solver/Tools/TextFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <new>
#include <thread>

namespace ostrella {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::milliseconds pollPeriod{250};

/// Follows the history file on a thread of its own until it is ended.
class HistoryPoller {
public:
    HistoryPoller(fs::path url, int dimensions, QPointer<HistoryStore> history,
        TimerService& timers, const CancellationToken& run)
        : registration_(run.onCancel([stop = stop_] { stop.cancel(); })),
          thread_([url = std::move(url), dimensions, history = std::move(history), &timers,
                      token = stop_.token()] { follow(url, dimensions, history, timers, token); }) {
    }
    ~HistoryPoller() {
        stop_.cancel();
        thread_.join();
    }
    HistoryPoller(const HistoryPoller&) = delete;
    HistoryPoller& operator=(const HistoryPoller&) = delete;

private:
    static void follow(const fs::path& url, int dimensions, const QPointer<HistoryStore>& history,
        TimerService& timers, const CancellationToken& token) {
        while (timers.sleep(pollPeriod, token)) {
            try {
                flushHistory(url, dimensions, history, token);
            } catch (const CancellationError&) {
                return; // The main loop has ended: there is nobody left to read for.
            } catch (const std::bad_alloc&) {
                continue; // The next one may find room; the last one is the run's own.
            }
        }
    }

    CancellationSource stop_;
    CancellationRegistration registration_;
    std::thread thread_;
};

std::optional<StopReason> lastStopReason(const std::vector<std::string>& keptLines) {
    for (auto line = keptLines.rbegin(); line != keptLines.rend(); ++line) {
        if (auto reason = SU2Output::stopReason(*line)) {
            return reason;
        }
    }
    return std::nullopt;
}

} // namespace

SolverRunner::SolveOutcome launchSU2(const fs::path& binaryURL, const fs::path& in, int dimensions,
    const RunLog& log, const QPointer<HistoryStore>& history, const RunEnvironment& environment,
    const CancellationToken& token) {
    const fs::path historyFile = in / "history.csv";
    LineForwarder forwarder(log, LogStore::Level::su2,
        [](const std::string& line) { return SU2Output::stopReason(line).has_value(); });
    const Date start = environment.clock->now();
    ManagedProcess::Outcome outcome;
    {
        const HistoryPoller poller(historyFile, dimensions, history, *environment.timers, token);
        outcome =
            ManagedProcess::run(binaryURL, {"run.cfg"}, in, forwarder, token, *environment.timers);
    }
    const double elapsed = secondsBetween(start, environment.clock->now());
    flushHistory(historyFile, dimensions, history, token);
    if (outcome.status != 0) {
        throw SolverError::nonZeroExit(outcome.status);
    }
    log.info(fmt::format("SU2_CFD finished in {:.1f} s", elapsed));
    return {lastStopReason(outcome.keptLines), elapsed};
}

void flushHistory(const fs::path& url, int dimensions, const QPointer<HistoryStore>& into,
    const CancellationToken& token) {
    std::string text;
    try {
        text = readText(url);
    } catch (const FileError&) {
        return; // It does not exist in the first seconds of a run.
    }
    storeHistory(text, dimensions, into, token);
}

void storeHistory(std::string_view text, int dimensions, const QPointer<HistoryStore>& into,
    const CancellationToken& token) {
    auto parsed = HistoryCSVReader::parse(text, dimensions);
    MainThread::run([&] {
        if (token.isCancelled() || !into) {
            return;
        }
        into->setResiduals(std::move(parsed.residuals));
        into->setCoefficients(std::move(parsed.coefficients));
        into->setResidualLabels(std::move(parsed.residualLabels));
        into->setCoefficientLabels(std::move(parsed.coefficientLabels));
        into->setHasData(!into->residuals().empty() || !into->coefficients().empty());
    });
}

void sendEvent(const SolverRunner::Events& events, const SolverRunner::Event& event) {
    if (events) {
        MainThread::run([&] { events(event); });
    }
}

} // namespace ostrella
