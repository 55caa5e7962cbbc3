#pragma once

#include "Models/Streamlines.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

/// The lines that the segments of `Streamlines` join up to, each of at least two vertices.
struct LineChains {
    std::vector<std::uint32_t> vertices;   ///< of all lines, one behind the other
    std::vector<std::size_t> starts = {0}; ///< where each line starts in `vertices`, then the end

    /// A segment that starts where the last one ended continues its line, any other starts a line.
    /// Segments that name a vertex which is not there are passed over, and so is half a segment.
    static LineChains of(const Streamlines& streamlines);

    std::size_t lineCount() const { return starts.size() - 1; }
    std::size_t segmentCount() const { return vertices.size() - lineCount(); }

    /// The vertices of one line.
    std::span<const std::uint32_t> line(std::size_t number) const {
        return std::span(vertices).subspan(starts[number], starts[number + 1] - starts[number]);
    }
};

} // namespace ostrella
