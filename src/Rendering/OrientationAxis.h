#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace ostrella {

/// The world axes, each with an orientation ring.
enum class OrientationAxis { x, y, z };

inline constexpr std::array allOrientationAxes{
    OrientationAxis::x, OrientationAxis::y, OrientationAxis::z};

/// The side of the model that meets the flow.
enum class FacingAxis { plusX, minusX, plusY, minusY, plusZ, minusZ };

inline constexpr std::array allFacingAxes{FacingAxis::plusX, FacingAxis::minusX, FacingAxis::plusY,
    FacingAxis::minusY, FacingAxis::plusZ, FacingAxis::minusZ};

std::string_view rawValue(FacingAxis axis);
std::optional<FacingAxis> facingAxisFromRawValue(std::string_view raw);

} // namespace ostrella
