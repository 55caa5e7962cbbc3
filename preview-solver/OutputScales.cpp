#include "OutputScales.h"

#include <cmath>

namespace ostrella::preview {

OutputScales OutputScales::of(const Config& config, const FreeStream& stream) {
    OutputScales scales;
    switch (config.units) {
    case OutputUnits::dimensional:
        scales.density = stream.density;
        scales.velocity = stream.speed;
        scales.temperature = stream.temperature;
        break;
    case OutputUnits::pressureOne:
        scales.velocity = stream.mach * std::sqrt(config.gamma);
        break;
    case OutputUnits::velocityMach:
        scales.velocity = stream.mach;
        break;
    case OutputUnits::velocityOne:
    case OutputUnits::incompressibleInitial:
        break;
    }
    scales.pressure = scales.density * scales.velocity * scales.velocity;
    return scales;
}

std::vector<double> OutputScales::residuals(const FreeStream& stream) const {
    std::vector<double> factors{density * velocity};
    factors.insert(factors.end(), static_cast<std::size_t>(stream.dimensions), pressure);
    if (stream.compressible)
        factors.push_back(pressure * velocity);
    return factors;
}

} // namespace ostrella::preview
