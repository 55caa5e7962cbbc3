#pragma once

#include "Models/SimulationInputs.h"

#include <filesystem>
#include <string_view>

namespace ostrella {

/// Writes the solver's configuration, "run.cfg", into a run directory, with the inputs behind it as
/// a comment at its end, so that the directory alone is enough to harvest it again. Throws
/// FileError.
void writeConfiguration(const std::filesystem::path& directory, std::string_view configuration,
    const SimulationInputs& inputs);

} // namespace ostrella
