#include "Models/RunState.h"

#include "Models/PlatformWords.h"

#include <fmt/format.h>

#include <utility>

namespace ostrella {

std::string_view rawValue(RunStage stage) {
    switch (stage) {
    case RunStage::mesh:
        return "mesh";
    case RunStage::solver:
        return "solver";
    case RunStage::results:
        return "results";
    }
    return {};
}

SolverError::SolverError(Kind kind, std::string text) : kind_(kind), text_(std::move(text)) {}

SolverError SolverError::binaryNotFound(const PlatformWords& words) {
    return {Kind::binaryNotFound,
        fmt::format("SU2_CFD is missing from {}. The app is incomplete; download and install "
                    "Ostrella again.",
            words.toolsPlace)};
}

SolverError SolverError::templateNotFound() {
    return {Kind::templateNotFound, "Bundled SU2 config template is missing."};
}

SolverError SolverError::meshNotFound() {
    return {Kind::meshNotFound, "Bundled NACA0012 mesh fixture is missing."};
}

SolverError SolverError::noReadableOutput() {
    return {Kind::noReadableOutput,
        "SU2_CFD finished but neither surface_flow.vtk nor flow.vtk could be read."};
}

SolverError SolverError::nonZeroExit(std::int32_t status) {
    return {Kind::nonZeroExit, fmt::format("SU2_CFD exited with code {}.", status)};
}

RunStageError::RunStageError(RunStage stage, std::exception_ptr underlying)
    : stage_(stage), underlying_(std::move(underlying)), text_(errorDescription(underlying_)) {}

std::string errorDescription(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& known) {
        return known.what();
    } catch (...) {
        return "An unknown error occurred.";
    }
}

} // namespace ostrella
