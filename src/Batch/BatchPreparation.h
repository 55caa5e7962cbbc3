#pragma once

#include "Solver/Run/SolverRunner.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

namespace ostrella {

/// How the writing of a case without a solve ended.
struct PreparationOutcome {
    int status = 0;
    /// "prepared", "failed" or "cancelled".
    std::string phase;
    std::optional<std::pair<std::string, std::string>> failure;
    std::optional<std::int64_t> cells;
};

/// Writes a complete case into `folder`, which is new or empty, and logs how it ended. Without a
/// model it is the built-in aerofoil's. For a worker thread.
PreparationOutcome prepareCase(const SolverRunner& runner,
    const std::optional<SolverRunner::STLContext>& stl, const SimulationInputs& inputs,
    const std::filesystem::path& folder, LogStore& log);

} // namespace ostrella
