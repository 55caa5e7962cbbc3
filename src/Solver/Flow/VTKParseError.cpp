#include "Solver/Flow/VTKParseError.h"

#include <fmt/format.h>

#include <utility>

namespace ostrella {

VTKParseError::VTKParseError(Kind kind, std::string_view payload, std::string text)
    : kind_(kind), payload_(payload), text_(std::move(text)) {}

VTKParseError VTKParseError::malformed(std::string_view payload) {
    return {Kind::malformed, payload, fmt::format("Malformed VTK: {}", payload)};
}

VTKParseError VTKParseError::missingScalar(std::string_view name) {
    return {Kind::missingScalar, name, fmt::format("VTK missing scalar field '{}'.", name)};
}

VTKParseError VTKParseError::missingVector(std::string_view name) {
    return {Kind::missingVector, name, fmt::format("VTK missing vector field '{}'.", name)};
}

VTKParseError VTKParseError::notVTKLegacy() {
    return {Kind::notVTKLegacy, "", "Not a legacy ASCII VTK file."};
}

} // namespace ostrella
