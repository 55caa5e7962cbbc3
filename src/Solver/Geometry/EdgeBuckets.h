#pragma once

#include "Models/LargeBuffer.h"
#include "Models/Precondition.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <span>

namespace ostrella {

/// The directed edges of triangles, put together by their smaller vertex index: all uses of one
/// edge, in either direction, lie in one short bucket, in the order of the triangles. A counting
/// sort: two passes, no hashing, and near memory for a mesh whose triangles are in a sensible
/// order. Edges from a vertex to itself are left out.
template <class Use>
class EdgeBuckets {
public:
    /// The edges (i0, i1), (i1, i2), (i2, i0) of the triangles `indices` on `vertexCount` vertices;
    /// make(larger, edge) gives what is kept of a use, `edge` counting from 3 × its triangle. An
    /// index out of range ends the process.
    template <class Make>
    EdgeBuckets(std::span<const std::uint32_t> indices, std::size_t vertexCount, Make&& make)
        : starts_(vertexCount + 2) {
        precondition(indices.size() <= std::numeric_limits<std::uint32_t>::max(),
            "a mesh for edges holds at most 4294967295 corners");
        precondition(allBelow(indices, vertexCount), "a triangle names a vertex that is not there");
        std::memset(starts_.data(), 0, starts_.size() * sizeof(std::uint32_t));
        // Counts lie two places on, so that the second pass turns starts into ends by itself.
        forEachEdge(indices, [this](std::uint32_t smaller, std::uint32_t, std::uint32_t) {
            ++starts_[smaller + 2];
        });
        for (std::size_t i = 2; i < starts_.size(); ++i)
            starts_[i] += starts_[i - 1];
        uses_ = LargeBuffer<Use>(starts_[vertexCount + 1]);
        forEachEdge(indices, [&](std::uint32_t smaller, std::uint32_t larger, std::uint32_t edge) {
            uses_[starts_[smaller + 1]++] = make(larger, edge);
        });
    }

    std::size_t bucketCount() const { return starts_.size() - 2; }

    /// The uses of edges whose smaller vertex is `vertex`.
    std::span<Use> bucket(std::size_t vertex) {
        return {uses_.data() + starts_[vertex], uses_.data() + starts_[vertex + 1]};
    }

private:
    static bool allBelow(std::span<const std::uint32_t> indices, std::size_t limit) {
        std::uint32_t greatest = 0;
        for (const std::uint32_t index : indices)
            greatest = std::max(greatest, index);
        return indices.empty() || greatest < limit;
    }

    template <class Visit>
    static void forEachEdge(std::span<const std::uint32_t> indices, Visit&& visit) {
        for (std::size_t first = 0; first + 3 <= indices.size(); first += 3) {
            for (std::size_t side = 0; side < 3; ++side) {
                const std::uint32_t from = indices[first + side];
                const std::uint32_t to = indices[first + (side == 2 ? 0 : side + 1)];
                if (from != to)
                    visit(std::min(from, to), std::max(from, to),
                        static_cast<std::uint32_t>(first + side));
            }
        }
    }

    LargeBuffer<std::uint32_t> starts_;
    LargeBuffer<Use> uses_;
};

} // namespace ostrella
