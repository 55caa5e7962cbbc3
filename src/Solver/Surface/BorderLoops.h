#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/FreeBorder.h"
#include "Solver/Surface/IndexedSurface.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

/// Closed lines along a border, none of which meets itself. One of two vertices is a single edge
/// whose neighbours further sheets are attached to.
class BorderLoops {
public:
    std::size_t count() const { return ends_.size(); }
    /// The vertices of a loop in order; the last one is followed by the first one.
    std::span<const std::uint32_t> vertices(std::size_t loop) const {
        return part(vertices_, loop);
    }
    /// Of each vertex of a loop: the triangle of the piece that leads on from it.
    std::span<const std::uint32_t> triangles(std::size_t loop) const {
        return part(triangles_, loop);
    }

    void add(std::uint32_t vertex, std::uint32_t triangle) {
        vertices_.push_back(vertex);
        triangles_.push_back(triangle);
    }
    void endLoop() { ends_.push_back(vertices_.size()); }

private:
    std::span<const std::uint32_t> part(
        const std::vector<std::uint32_t>& all, std::size_t loop) const {
        const std::size_t first = loop == 0 ? 0 : ends_[loop - 1];
        return std::span(all).subspan(first, ends_[loop] - first);
    }

    std::vector<std::uint32_t> vertices_;
    std::vector<std::uint32_t> triangles_;
    std::vector<std::size_t> ends_;
};

/// Follows the pieces of a border. Where more than two meet at a vertex, a loop goes on across the
/// narrowest gap between two fans of triangles. A line that ends, since a further sheet is attached
/// there, is closed by the straight line between its ends. Throws CancellationError.
BorderLoops borderLoops(const IndexedSurface& surface, std::span<const BorderPiece> pieces,
    const CancellationToken& token);

} // namespace ostrella
