#include "Views/Format/OrientControls.h"

#include "Models/NumberFormatting.h"
#include "Models/SimulationParameters.h"
#include "Rendering/OrientationMath.h"

#include <fmt/format.h>

#include <cmath>

namespace ostrella::OrientControls {

namespace {

/// One decimal at most, and none where it is zero.
std::string angle(double degrees) {
    const double rounded = std::round(degrees * 10) / 10;
    return NumberFormatting::fixed(rounded, rounded == std::trunc(rounded) ? 0 : 1);
}

glm::dvec3 direction(FacingAxis axis) {
    switch (axis) {
    case FacingAxis::plusX:
        return {1, 0, 0};
    case FacingAxis::minusX:
        return {-1, 0, 0};
    case FacingAxis::plusY:
        return {0, 1, 0};
    case FacingAxis::minusY:
        return {0, -1, 0};
    case FacingAxis::plusZ:
        return {0, 0, 1};
    case FacingAxis::minusZ:
        return {0, 0, -1};
    }
    return {};
}

double reducedAngle(double degrees) {
    constexpr double decimals = 1e6;
    double angle = std::fmod(degrees, 360.0);
    if (angle > 180) {
        angle -= 360;
    } else if (angle < -180) {
        angle += 360;
    }
    return std::round(angle * decimals) / decimals + 0.0; // a zero comes out as plus zero
}

} // namespace

std::string angleText(const glm::dvec3& rotation) {
    return fmt::format(
        "X {}° · Y {}° · Z {}°", angle(rotation.x), angle(rotation.y), angle(rotation.z));
}

std::string compactAngles(const glm::dvec3& rotation) {
    return fmt::format("{} · {} · {}°", angle(rotation.x), angle(rotation.y), angle(rotation.z));
}

std::optional<FacingAxis> facing(const glm::dvec3& rotation, double tolerance) {
    const glm::dmat3 matrix = OrientationMath::matrix(rotation);
    for (const FacingAxis axis : allFacingAxes) {
        // The flow comes from -x.
        if (-(matrix * direction(axis)).x > 1 - tolerance) {
            return axis;
        }
    }
    return std::nullopt;
}

std::string_view label(FacingAxis axis) {
    switch (axis) {
    case FacingAxis::plusX:
        return "+X";
    case FacingAxis::minusX:
        return "-X";
    case FacingAxis::plusY:
        return "+Y";
    case FacingAxis::minusY:
        return "-Y";
    case FacingAxis::plusZ:
        return "+Z";
    case FacingAxis::minusZ:
        return "-Z";
    }
    return {};
}

std::string turnHelp(OrientationAxis axis, double sign) {
    constexpr std::string_view letters = "XYZ";
    return fmt::format(
        "Turn {}90° about {}", sign < 0 ? '-' : '+', letters[static_cast<std::size_t>(axis)]);
}

std::string facingHelp(FacingAxis axis) {
    return fmt::format("Point the model's {} axis into the flow", label(axis));
}

std::string facingName(FacingAxis axis) {
    return fmt::format("Face the flow with {}", label(axis));
}

std::string_view turnSymbol(double sign) {
    return sign < 0 ? "arrow.clockwise" : "arrow.counterclockwise";
}

glm::dvec3 turned(const glm::dvec3& rotation, OrientationAxis axis, double sign) {
    return OrientationMath::rotated(rotation, axis, sign < 0 ? -90 : 90);
}

glm::dvec3 facingRotation(FacingAxis axis) {
    switch (axis) {
    case FacingAxis::plusX:
        return {0, 180, 0};
    case FacingAxis::minusX:
        return {0, 0, 0};
    case FacingAxis::plusY:
        return {0, 0, 90};
    case FacingAxis::minusY:
        return {0, 0, -90};
    case FacingAxis::plusZ:
        return {0, -90, 0};
    case FacingAxis::minusZ:
        return {0, 90, 0};
    }
    return {};
}

glm::dvec3 reduced(const glm::dvec3& rotation) {
    return {reducedAngle(rotation.x), reducedAngle(rotation.y), reducedAngle(rotation.z)};
}

void apply(const glm::dvec3& rotation, SimulationParameters& to) {
    const glm::dvec3 angles = reduced(rotation);
    to.setRotationX(angles.x);
    to.setRotationY(angles.y);
    to.setRotationZ(angles.z);
}

} // namespace ostrella::OrientControls
