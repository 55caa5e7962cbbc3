#pragma once

#include "Batch/BatchOptions.h"
#include "Batch/ResultFigures.h"
#include "Models/MeshedSurface.h"
#include "Models/RunState.h"
#include "Models/SurfaceFitness.h"
#include "Solver/Tools/MeshQuality.h"
#include "Solver/Tools/SU2ConfigReader.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ostrella {

/// What the two child programs are.
struct ToolFacts {
    std::string mesher;
    std::string solver;
    bool solverIsStandIn = false;
};

/// What a run found out about its model's surface, and what became of it.
struct SurfaceFacts {
    /// Absent where it was not judged.
    std::optional<SurfaceFitness> fitness;
    /// Absent where the mesher was given none.
    std::optional<MeshedSurface> meshed;
    /// The file with the latter, if it was written.
    std::optional<std::filesystem::path> file;
    /// Of the mesh around it; absent where there is none, or it could not be measured.
    std::optional<MeshQuality> quality = std::nullopt;
};

/// The picture of a run.
struct PictureFacts {
    std::filesystem::path file;
    /// Back end and name of what drew it.
    std::string device;
};

/// Everything that the JSON file of a batch run tells.
struct BatchReport {
    BatchOptions options;
    /// Of an earlier run: what is known of its inputs, in the place of the options'.
    std::optional<ConfiguredInputs> earlierInputs;
    /// "finished", "failed", "cancelled", "prepared" or "loaded".
    std::string phase;
    /// Of a failure: stage ("model" where the model could not be loaded) and text.
    std::optional<std::pair<std::string, std::string>> failure;
    std::optional<StopReason> stopReason;
    /// Absent where nobody saw the solver end.
    std::optional<bool> converged;
    /// Iterations done.
    std::optional<std::int64_t> iterations;
    std::optional<std::int64_t> cells;
    /// Last values by the solver's names, in its order.
    std::vector<std::pair<std::string, double>> coefficients;
    /// m².
    std::optional<double> referenceArea;
    std::optional<std::int64_t> openEdges;
    /// Absent where no model was to be meshed.
    std::optional<SurfaceFacts> surface;
    /// Seconds by stage name, in the order of the run; "surface" is a part of "mesh".
    std::vector<std::pair<std::string, double>> times;
    /// Absent where none took part.
    std::optional<ToolFacts> tools;
    /// Absent without a result.
    std::optional<ResultFigures> results;
    /// Present if it was kept, or holds the prepared case.
    std::optional<std::filesystem::path> runDirectory;
    std::vector<std::filesystem::path> exported;
    /// The files with streamlines and vortex surface, if they were written.
    std::optional<std::filesystem::path> streamlinesFile;
    std::optional<std::filesystem::path> vortexFile;
    /// Absent where none was drawn.
    std::optional<PictureFacts> image;
};

/// What every report begins with, by which an earlier one is known.
inline constexpr std::string_view reportBeginning = "{\n  \"application\": \"Ostrella ";

/// The report as JSON text, indented, keys in a fixed order; what is not known is null.
std::string toJSON(const BatchReport& report);

} // namespace ostrella
