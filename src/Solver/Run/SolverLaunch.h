#pragma once

#include "Solver/Run/SolverRunner.h"

namespace ostrella {

/// Runs SU2_CFD with "run.cfg" in `in` while "history.csv" there is read into `history` every 250
/// ms, and a last time after the solver's end. Throws SolverError::nonZeroExit, CancellationError,
/// or what the start of the child throws.
SolverRunner::SolveOutcome launchSU2(const std::filesystem::path& binaryURL,
    const std::filesystem::path& in, int dimensions, const RunLog& log,
    const QPointer<HistoryStore>& history, const RunEnvironment& environment,
    const CancellationToken& token);

/// Reads and parses the whole history file and replaces the store's contents. A file that cannot be
/// read changes nothing, nor does a result that comes after `token` was cancelled or the store has
/// gone.
void flushHistory(const std::filesystem::path& url, int dimensions,
    const QPointer<HistoryStore>& into, const CancellationToken& token);

/// Parses the text of a history file and replaces the store's contents, as flushHistory() does.
void storeHistory(std::string_view text, int dimensions, const QPointer<HistoryStore>& into,
    const CancellationToken& token);

/// Hands an event to the callback on the main thread and waits for it; nothing without a callback.
void sendEvent(const SolverRunner::Events& events, const SolverRunner::Event& event);

} // namespace ostrella
