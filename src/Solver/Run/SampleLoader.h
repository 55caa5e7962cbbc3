#pragma once

#include "Platform/AppBundle.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

class SimulationParameters;
class STLImporter;

/// The example bodies that come with the application.
class SampleLoader {
public:
    struct Sample {
        /// Base name of the resource, and identity.
        std::string_view id;
        std::string_view displayName;
        std::string_view summary;
    };

    static constexpr std::array<Sample, 3> samples{{
        {"sphere", "Sphere", "1 m radius sphere · simplest bluff-body benchmark."},
        {"rounded_box", "Rounded Box",
            "2×1×1 m box with 0.12 m fillets · vehicle/fuselage analog."},
        {"simple_wing", "Simple Wing", "Chord 1 m × span 2 m, elliptic 12 %-thickness profile."},
    }};

    /// Shows a warning: a message and an informative text.
    using Alert = std::function<void(const std::string& message, const std::string& text)>;

    SampleLoader(AppBundle bundle, STLImporter& importer, Alert alert);

    /// Loads a sample as the open panel loads a chosen file. Main thread only.
    void load(const Sample& sample, SimulationParameters& into);
    void load(std::string_view name, SimulationParameters& into);

    /// File of a sample, if it is in the package.
    std::optional<std::filesystem::path> file(const Sample& sample) const;

    /// Number of facets of a sample, without building a mesh; found once and kept. Any thread.
    std::optional<std::int64_t> facetCount(const Sample& sample) const;

    static constexpr const char* errorTitle = "Couldn't load sample";

private:
    AppBundle bundle_;
    STLImporter& importer_;
    Alert alert_;
    mutable std::mutex lock_;
    mutable std::map<std::filesystem::path, std::int64_t> counts_;
};

} // namespace ostrella
