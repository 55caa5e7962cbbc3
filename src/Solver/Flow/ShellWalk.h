#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace ostrella {

/// A cell by its numbers along the axes.
struct GridCell {
    int x;
    int y;
    int z;

    bool operator==(const GridCell&) const = default;
};

/// A run of points in a grid's order by cell, from place `begin` up to `end`, exclusive.
struct PointRun {
    std::int32_t begin;
    std::int32_t end;
};

/// Walks the shells of cells around `centre` in a grid of cellsPerAxis³ cells whose points begin at
/// the places `start`: by growing Chebyshev distance, in each shell along x, then y, then z. Ends
/// after the shell with which k points have been seen, or with the grid. Hands `look` the runs of
/// points, none empty, in this order; cells that are neighbours along x have theirs in one run.
/// Gives the number of points.
template <class Look>
std::size_t walkShells(
    const std::int32_t* start, int cellsPerAxis, const GridCell& centre, int k, Look&& look) {
    const int n = cellsPerAxis;
    std::int32_t visited = 0;
    // The runs are collected without a branch on their emptiness, which nothing foretells.
    constexpr std::size_t most = 64;
    std::array<PointRun, most> runs;
    std::size_t count = 0;
    const auto add = [&](int first, int last) {
        const PointRun run{start[first], start[last + 1]};
        runs[count] = run;
        count += run.begin < run.end ? 1 : 0;
        visited += run.end - run.begin;
    };
    const auto lookAtRuns = [&] {
        for (std::size_t i = 0; i < count; ++i)
            look(runs[i]);
        count = 0;
    };
    const int own = (centre.z * n + centre.y) * n + centre.x;
    add(own, own);
    for (int r = 1; visited < k && r <= n; ++r) {
        const int x0 = std::max(centre.x - r, 0);
        const int x1 = std::min(centre.x + r, n - 1);
        const int y1 = std::min(centre.y + r, n - 1);
        const int z1 = std::min(centre.z + r, n - 1);
        for (int z = std::max(centre.z - r, 0); z <= z1; ++z) {
            const bool isFace = z == centre.z - r || z == centre.z + r;
            for (int y = std::max(centre.y - r, 0); y <= y1; ++y) {
                const int row = (z * n + y) * n;
                if (isFace || y == centre.y - r || y == centre.y + r) {
                    add(row + x0, row + x1);
                } else {
                    if (centre.x - r >= 0)
                        add(row + x0, row + x0);
                    if (centre.x + r < n)
                        add(row + x1, row + x1);
                }
                if (count > most - 2)
                    lookAtRuns();
            }
        }
    }
    lookAtRuns();
    return static_cast<std::size_t>(visited);
}

} // namespace ostrella
