#include "Rendering/OrientationAxis.h"

namespace ostrella {

std::string_view rawValue(FacingAxis axis) {
    switch (axis) {
    case FacingAxis::plusX:
        return "plusX";
    case FacingAxis::minusX:
        return "minusX";
    case FacingAxis::plusY:
        return "plusY";
    case FacingAxis::minusY:
        return "minusY";
    case FacingAxis::plusZ:
        return "plusZ";
    case FacingAxis::minusZ:
        return "minusZ";
    }
    return {};
}

std::optional<FacingAxis> facingAxisFromRawValue(std::string_view raw) {
    for (const FacingAxis axis : allFacingAxes) {
        if (rawValue(axis) == raw)
            return axis;
    }
    return std::nullopt;
}

} // namespace ostrella
