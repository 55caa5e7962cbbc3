#include "Solver/Run/SampleLoader.h"

#include "Models/SimulationParameters.h"
#include "Solver/Geometry/FacetCount.h"
#include "Solver/Run/STLImporter.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace ostrella {

SampleLoader::SampleLoader(AppBundle bundle, STLImporter& importer, Alert alert)
    : bundle_(std::move(bundle)), importer_(importer), alert_(std::move(alert)) {}

void SampleLoader::load(const Sample& sample, SimulationParameters& into) {
    const auto found = file(sample);
    if (!found) {
        alert_(errorTitle, fmt::format("Sample '{}' is missing from the app bundle.", sample.id));
        return;
    }
    importer_.open(*found, into);
}

void SampleLoader::load(std::string_view name, SimulationParameters& into) {
    const auto* found = std::find_if(
        samples.begin(), samples.end(), [name](const Sample& sample) { return sample.id == name; });
    if (found == samples.end()) {
        alert_(errorTitle, fmt::format("Unknown sample '{}'.", name));
        return;
    }
    load(*found, into);
}

std::optional<std::filesystem::path> SampleLoader::file(const Sample& sample) const {
    return bundle_.resource(sample.id, "stl", "samples");
}

std::optional<std::int64_t> SampleLoader::facetCount(const Sample& sample) const {
    const auto found = file(sample);
    if (!found) {
        return std::nullopt;
    }
    {
        const std::lock_guard lock(lock_);
        if (const auto known = counts_.find(*found); known != counts_.end()) {
            return known->second;
        }
    }
    // Outside the lock: two threads may read the same file, and enter the same number.
    const auto count = readFacetCount(*found);
    if (count) {
        const std::lock_guard lock(lock_);
        counts_.insert_or_assign(*found, *count);
    }
    return count;
}

} // namespace ostrella
