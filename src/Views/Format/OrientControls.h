#pragma once

#include "Rendering/OrientationAxis.h"

#include <glm/vec3.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

class SimulationParameters;

/// What the orientation card says and does. Rotations are degrees about x, then y, then z.
namespace OrientControls {

/// Of the cosine, for `facing`.
inline constexpr double facingTolerance = 1e-4;

/// "X 0° · Y 12.5° · Z -90°"
std::string angleText(const glm::dvec3& rotation);

/// "0 · 12.5 · -90°"
std::string compactAngles(const glm::dvec3& rotation);

/// The axis of the model that a rotation points into the flow, if any is.
std::optional<FacingAxis> facing(const glm::dvec3& rotation, double tolerance = facingTolerance);

/// "+X" … "-Z"
std::string_view label(FacingAxis axis);

/// "Turn +90° about Y"
std::string turnHelp(OrientationAxis axis, double sign);
/// "Point the model's +X axis into the flow"
std::string facingHelp(FacingAxis axis);
/// "Face the flow with +X", as it is read out.
std::string facingName(FacingAxis axis);

/// Symbol of the button that turns the model that way.
std::string_view turnSymbol(double sign);

/// `rotation` followed by a quarter turn about one of the world's axes.
glm::dvec3 turned(const glm::dvec3& rotation, OrientationAxis axis, double sign);

/// The rotation that points an axis into the flow.
glm::dvec3 facingRotation(FacingAxis axis);

/// Each angle within ±180, to 6 decimals.
glm::dvec3 reduced(const glm::dvec3& rotation);

/// Gives the model the reduced rotation.
void apply(const glm::dvec3& rotation, SimulationParameters& to);

} // namespace OrientControls

} // namespace ostrella
