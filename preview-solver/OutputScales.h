#pragma once

#include "Config.h"
#include "FreeStream.h"

#include <vector>

namespace ostrella::preview {

/// By what solver units are multiplied on their way to the files: SI units, or the references that
/// the configuration asks for.
struct OutputScales {
    double density = 1;
    double velocity = 1;
    double pressure = 1;
    double temperature = 1;

    [[nodiscard]] double viscosity() const { return density * velocity; }

    static OutputScales of(const Config& config, const FreeStream& stream);
    /// The factors of the residuals: mass, momenta, energy where there is one.
    [[nodiscard]] std::vector<double> residuals(const FreeStream& stream) const;
};

} // namespace ostrella::preview
