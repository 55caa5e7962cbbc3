#pragma once

#include "Models/SimulationInputs.h"

#include <glm/vec3.hpp>

#include <string>
#include <string_view>

namespace ostrella {

/// Fills the solver's configuration templates: the one translation from what the user set to what
/// the solver reads. "{{REF_AREA}}" is left to the caller.
namespace SU2ConfigTemplate {

/// Specific gas constant of air, J/(kg·K).
inline constexpr double gasConstant = 287.058;
/// Free-stream temperature, K: standard sea level, no input of the user's.
inline constexpr double freeStreamTemperature = 288.15;
/// Speed of sound, m/s: the square root of 1.4 · gasConstant · freeStreamTemperature.
inline constexpr double speedOfSound = 340.2970287557621;

/// A configuration for constant density. `dimensions` is 2 or 3.
std::string renderIncompressible(std::string_view text, const SimulationInputs& inputs,
    std::string_view meshFilename, int dimensions);

/// A configuration for three dimensions and compressible air, told by Mach number, angles, pressure
/// (ideal gas law) and temperature.
std::string renderCompressible(
    std::string_view text, const SimulationInputs& inputs, std::string_view meshFilename);

/// Free-stream velocity, m/s, in the solver's frame: x along the flow at zero incidence; z up in
/// three dimensions; in two, y is up and the sideslip has no effect.
glm::dvec3 freeStreamVelocity(const SimulationInputs& inputs, int dimensions);

} // namespace SU2ConfigTemplate

} // namespace ostrella
