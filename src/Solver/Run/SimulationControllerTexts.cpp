// The closing texts of a run, apart from the state that they close.

#include "Solver/Run/SimulationController.h"

#include <fmt/format.h>

#include <cctype>

namespace ostrella {

std::pair<std::string, LogStore::Level> SimulationController::finishLine(
    const RunSummary& summary) {
    const std::string iterations =
        summary.iterations ? fmt::format("{}", *summary.iterations) : "?";
    std::string text = summary.converged
                           ? fmt::format("Converged at iter {}", iterations)
                           : fmt::format("Iteration cap reached · {} / {} iter · not converged",
                                 iterations, summary.maxIterations);
    if (summary.cl) {
        text += fmt::format(" · CL {:.4f}", *summary.cl);
    }
    if (summary.cd) {
        text += fmt::format(" · CD {:.4f}", *summary.cd);
    }
    text += fmt::format(" · {:.1f} s", summary.elapsedSeconds);
    return {text, summary.converged ? LogStore::Level::ok : LogStore::Level::warn};
}

std::string SimulationController::waterTightMessage(std::int64_t openEdges) {
    return fmt::format("The STL is not water-tight: {} open {}. Close the surface in your CAD tool "
                       "and load it again.",
        LogStore::grouped(openEdges), openEdges == 1 ? "edge" : "edges");
}

RunPhase SimulationController::failurePhase(
    const std::exception_ptr& error, std::optional<std::int64_t> openEdgeCount) {
    std::string stage(rawValue(RunStage::solver));
    try {
        std::rethrow_exception(error);
    } catch (const RunStageError& staged) {
        if (staged.stage() == RunStage::mesh && openEdgeCount.value_or(0) >= 1) {
            return RunPhase::failed(
                std::string(rawValue(RunStage::mesh)), waterTightMessage(*openEdgeCount));
        }
        stage = rawValue(staged.stage());
    } catch (...) {
        // Of no stage of its own: it counts as the solver's.
    }
    return RunPhase::failed(stage, errorDescription(error));
}

std::string SimulationController::failureLine(
    std::string_view stage, const std::exception_ptr& error) {
    std::string description = errorDescription(error);
    if (description.ends_with('.')) {
        description.pop_back();
    }
    std::string name(stage);
    if (!name.empty()) {
        name.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(name.front())));
    }
    return fmt::format("{} failed · {}", name, description);
}

} // namespace ostrella
