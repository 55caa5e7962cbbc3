#include "Solver/Run/CaseConfiguration.h"

#include "Solver/Tools/SU2ConfigReader.h"
#include "Solver/Tools/TextFile.h"

#include <string>

namespace ostrella {

void writeConfiguration(const std::filesystem::path& directory, std::string_view configuration,
    const SimulationInputs& inputs) {
    std::string text(configuration);
    if (!text.empty() && !text.ends_with('\n')) {
        text += '\n';
    }
    text += SU2ConfigReader::inputsComment(inputs);
    writeTextAtomically(directory / "run.cfg", text);
}

} // namespace ostrella
