#include "Brand/ColorMap.h"

#include <algorithm>

namespace ostrella::ColorMap {

Vec3 colorAt(float location) {
    const auto after = std::ranges::find_if(
        turboStops, [&](const Stop& stop) { return location < stop.location; });
    if (after == turboStops.begin())
        return after->color;
    const Stop& from = *std::prev(after);
    if (after == turboStops.end())
        return from.color;
    const float part = (location - from.location) / (after->location - from.location);
    return from.color + part * (after->color - from.color);
}

Vec3 color(float share) {
    return colorAt(1.0F - share);
}

} // namespace ostrella::ColorMap
