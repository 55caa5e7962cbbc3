#pragma once

#include "Models/Vector.h"

#include <array>

namespace ostrella {

/// The colours of a scalar: of the surface, of the ribbons, and of the legend beside them.
namespace ColorMap {

struct Stop {
    float location = 0; ///< 0 is the top of the legend, the greatest value; 1 its foot
    Vec3 color{0.0F};   ///< sRGB, 0 to 1

    bool operator==(const Stop&) const = default;
};

/// Between two stops the components run in straight lines.
inline constexpr std::array turboStops{Stop{0.00F, {0.480F, 0.016F, 0.012F}},
    Stop{0.20F, {0.870F, 0.247F, 0.027F}}, Stop{0.35F, {0.978F, 0.621F, 0.082F}},
    Stop{0.50F, {0.871F, 0.875F, 0.094F}}, Stop{0.65F, {0.345F, 0.882F, 0.388F}},
    Stop{0.80F, {0.149F, 0.541F, 0.929F}}, Stop{1.00F, {0.190F, 0.071F, 0.235F}}};

/// The colour at a place of the legend. Beyond the ends the ends' colours go on.
Vec3 colorAt(float location);

/// The colour of a scalar's share of its range: 0 the least value, 1 the greatest. What is no
/// number has the least value's colour.
Vec3 color(float share);

} // namespace ColorMap

} // namespace ostrella
