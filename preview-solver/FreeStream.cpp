#include "FreeStream.h"

#include "Failure.h"

#include <cmath>
#include <numbers>

namespace ostrella::preview {

double sutherlandViscosity(const Config& config, double temperature) {
    const double ratio = temperature / config.muTRef;
    return config.muRef * ratio * std::sqrt(ratio) * (config.muTRef + config.sutherlandConstant) /
           (temperature + config.sutherlandConstant);
}

namespace {

void setIncompressible(FreeStream& stream, const Config& config) {
    Vec3 velocity = config.incVelocity;
    if (stream.dimensions == 2)
        velocity.z = 0;
    stream.speed = glm::length(velocity);
    if (!(stream.speed > 0))
        throw Failure("INC_VELOCITY_INIT has no component in the plane of the mesh.");
    stream.direction = velocity / stream.speed;
    stream.density = config.incDensity;
    stream.viscosity = config.muConstant;
    if (stream.dimensions == 2) {
        stream.alpha = std::atan(velocity.y / velocity.x);
    } else {
        stream.alpha = std::atan(velocity.z / velocity.x);
        stream.beta = std::atan(velocity.y / velocity.x);
    }
    if (std::isnan(stream.alpha))
        stream.alpha = 0;
    if (std::isnan(stream.beta))
        stream.beta = 0;
}

void setCompressible(FreeStream& stream, const Config& config) {
    stream.alpha = config.aoa * std::numbers::pi / 180;
    stream.beta = stream.dimensions == 2 ? 0 : config.sideslip * std::numbers::pi / 180;
    const double ca = std::cos(stream.alpha);
    const double sa = std::sin(stream.alpha);
    const double cb = std::cos(stream.beta);
    stream.direction =
        stream.dimensions == 2 ? Vec3(ca, sa, 0.0) : Vec3(ca * cb, std::sin(stream.beta), sa * cb);
    stream.mach = config.machNumber;
    stream.temperature = config.freestreamTemperature;
    stream.pressure = config.freestreamPressure;
    if (config.freestreamFromDensity) {
        stream.density = config.freestreamDensity;
        stream.temperature = stream.pressure / (config.gasConstant * stream.density);
    }
    const double sound = std::sqrt(config.gamma * config.gasConstant * stream.temperature);
    stream.speed = config.machNumber * sound;
    stream.viscosity =
        config.sutherland ? sutherlandViscosity(config, stream.temperature) : config.muConstant;
    if (config.viscous() && config.initFromReynolds) {
        stream.density =
            config.reynoldsNumber * stream.viscosity / (stream.speed * config.reynoldsLength);
        stream.pressure = stream.density * config.gasConstant * stream.temperature;
    } else {
        stream.density = stream.pressure / (config.gasConstant * stream.temperature);
    }
}

} // namespace

FreeStream FreeStream::of(const Config& config, int dimensions) {
    FreeStream stream;
    stream.dimensions = dimensions;
    stream.compressible = config.regime == Regime::compressible;
    if (stream.compressible)
        setCompressible(stream, config);
    else
        setIncompressible(stream, config);
    if (!config.viscous())
        stream.viscosity = 0;
    return stream;
}

} // namespace ostrella::preview
