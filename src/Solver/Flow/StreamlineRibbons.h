#pragma once

#include "Models/Streamlines.h"
#include "Models/Vector.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ostrella {

/// Streamlines as the renderer draws them: the points of each line with what the flow animation
/// needs, and triangles for a band along each line, whose width arises on the screen.
struct StreamlineRibbons {
    /// One point of a line, in the layout of the vertex buffer.
    struct Point {
        Vec4 positionSpeed; ///< x, y, z (m), speed (m/s)
        /// Arc length up to here and of the whole line (m), the line's phase in 0 ≤ z < 1, and
        /// flags: 1 on the first point, 2 on the last.
        Vec4 params;

        bool operator==(const Point&) const = default;
    };
    static_assert(sizeof(Point) == 32);

    std::vector<Point> points;          ///< all lines, one behind the other
    std::vector<std::uint32_t> indices; ///< triangles; index i is point i / 2 on side i mod 2
    std::size_t lineCount = 0;          ///< lines of at least two points

    static StreamlineRibbons empty() { return {}; }

    /// The bands of `streamlines`. Segments that name a vertex which is not there are left out.
    static StreamlineRibbons build(const Streamlines& streamlines);

    bool operator==(const StreamlineRibbons&) const = default;
};

} // namespace ostrella
