#pragma once

#include "Models/TriangleMesh.h"
#include "Solver/Geometry/VertexTable.h"
#include "Solver/Geometry/WeldGrid.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace ostrella {

/// Calls visit(corner, index, isNew) for each corner of `mesh` in order, with the index of its
/// vertex on `grid`, counted by first appearance. Gives the number of vertices. Keys, hashes and
/// prefetches go a block ahead, so that the lookups of one block are under way together.
template <class Visit>
std::size_t forEachCornerIndex(const TriangleMesh& mesh, const WeldGrid& grid, Visit&& visit) {
    constexpr std::size_t block = 192;
    struct Block {
        std::array<WeldKey, block> keys;
        std::array<std::uint64_t, block> hashes;
    };
    const auto corners = mesh.positions().span();
    // A closed surface has half as many vertices as facets; an open or torn one grows the table.
    VertexTable table(corners.size() / 6);
    const auto prepare = [&](Block& into, std::size_t first) {
        const std::size_t count = std::min(block, corners.size() - first);
        grid.keys(corners.subspan(first, count), into.keys.data());
        for (std::size_t i = 0; i < count; ++i) {
            into.hashes[i] = VertexTable::hash(into.keys[i]);
            table.prefetch(into.hashes[i]);
        }
        return count;
    };
    std::array<Block, 2> blocks;
    std::size_t count = corners.empty() ? 0 : prepare(blocks[0], 0);
    for (std::size_t first = 0, turn = 0; count != 0; turn ^= 1) {
        const Block& current = blocks[turn];
        const std::size_t next = first + count;
        const std::size_t nextCount = next < corners.size() ? prepare(blocks[turn ^ 1], next) : 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t known = table.size();
            const std::uint32_t index = table.indexOf(current.keys[i], current.hashes[i]);
            visit(first + i, index, index == known);
        }
        first = next;
        count = nextCount;
    }
    return table.size();
}

} // namespace ostrella
