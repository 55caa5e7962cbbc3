#pragma once

#include <span>
#include <string_view>

#include "Body.h"

namespace ostrella::generators {

/// One of the bodies that come with the application.
struct Sample {
    std::string_view id;
    Body (*make)();
};

/// The samples: sphere, rounded_box, simple_wing.
[[nodiscard]] std::span<const Sample> samples();

} // namespace ostrella::generators
