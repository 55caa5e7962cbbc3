#pragma once

#include <string_view>

#include "Body.h"

namespace ostrella::generators {

/// A body such as real files hold: closed by halves, overlapping, without thickness, noisy or far
/// away. Others than `TestBody`, these shall all be led to a flow as far as there is one.
struct NastyBody {
    /// How a run of it with a prepared surface has to end.
    enum class End {
        coefficients, ///< a flow is solved
        sentence,     ///< there is no flow around it; the user is told of the defect and its place
        either,       ///< a sensible flow, or that sentence
    };

    std::string_view name;
    std::string_view about;
    Body (*make)();
    End end = End::coefficients;
};

} // namespace ostrella::generators
