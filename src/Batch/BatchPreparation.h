#pragma once

#include "Models/RunState.h"
#include "Solver/Run/SolverRunner.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace ostrella {

/// How the writing of a case without a solve ended.
struct PreparationOutcome {
    int status = 0;
    /// Finished, failed or cancelled.
    RunPhase phase;
    std::optional<std::int64_t> cells;
};

/// Writes complete cases into a folder which was new or empty before. For a worker thread.
class CasePreparation {
public:
    /// `keepsRest`: what is there of a case that could not be completed stays.
    CasePreparation(std::filesystem::path folder, bool keepsRest);

    /// Writes the case of a model, or without one the built-in aerofoil's, and logs how it ended.
    /// `openEdges` of the model, if counted, tell why a mesh failed.
    PreparationOutcome run(const SolverRunner& runner,
        const std::optional<SolverRunner::STLContext>& stl, const SimulationInputs& inputs,
        std::optional<std::int64_t> openEdges, const RunLog& log,
        const SolverRunner::Events& events) const;

private:
    void clearRest() const;

    std::filesystem::path folder_;
    bool keepsRest_;
    bool isNew_;
};

} // namespace ostrella
