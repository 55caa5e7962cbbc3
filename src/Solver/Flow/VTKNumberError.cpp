#include "Solver/Flow/VTKNumberError.h"

#include <fmt/format.h>

#include <utility>

namespace ostrella {

VTKNumberError::VTKNumberError(std::string text) : text_(std::move(text)) {}

VTKNumberError VTKNumberError::negative(
    std::string_view what, std::int64_t number, std::size_t token) {
    return VTKNumberError(
        fmt::format("Malformed VTK: negative {} ({}) at token {}", what, number, token));
}

VTKNumberError VTKNumberError::beyondBits(std::int64_t id, std::size_t token) {
    return VTKNumberError(
        fmt::format("Malformed VTK: point id beyond 32 bits ({}) at token {}", id, token));
}

} // namespace ostrella
