#include "Mesh.h"

#include "CellShape.h"
#include "Failure.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <utility>

namespace ostrella::preview {

namespace {

using Key = std::array<std::int32_t, 4>;

Key keyOf(const std::int32_t* points, int count) {
    Key key{-1, -1, -1, -1};
    std::copy_n(points, count, key.begin());
    std::sort(key.begin(), key.end());
    return key;
}

void turn(Cell& cell) {
    const CellShape& shape = CellShape::of(cell.type);
    const auto before = cell.points;
    for (int i = 0; i < shape.points; ++i)
        cell.points[i] = before[shape.mirrored[i]];
}

/// Whether two facets of the same points go round in the same direction.
bool sameSense(const Cell& facet, const std::array<std::int32_t, 4>& face, int count) {
    const auto first =
        std::find(face.begin(), face.begin() + count, facet.points[0]) - face.begin();
    return face[(first + 1) % count] == facet.points[1];
}

} // namespace

void Mesh::orient() {
    for (auto& cell : cells)
        if (signedVolume(cell, points) < 0)
            turn(cell);

    std::map<Key, std::pair<Cell*, bool>> facets;
    std::vector<char> onBoundary(points.size(), 0);
    for (auto& marker : markers) {
        for (auto& facet : marker.facets) {
            const int count = cellPoints(static_cast<int>(facet.type));
            if (!facets.insert({keyOf(facet.points.data(), count), {&facet, false}}).second)
                throw Failure(fmt::format("Marker {} names a facet twice.", marker.name));
            for (int i = 0; i < count; ++i)
                onBoundary[facet.points[i]] = 1;
        }
    }
    for (const auto& cell : cells) {
        const CellShape& shape = CellShape::of(cell.type);
        const std::size_t sides = dimensions == 2 ? shape.edges.size() : shape.faces.size();
        for (std::size_t s = 0; s < sides; ++s) {
            std::array<std::int32_t, 4> side{};
            const int count = dimensions == 2 ? 2 : shape.faces[s].count;
            bool boundary = true;
            for (int i = 0; i < count; ++i) {
                side[i] =
                    cell.points[dimensions == 2 ? shape.edges[s][i] : shape.faces[s].points[i]];
                boundary = boundary && onBoundary[side[i]];
            }
            if (!boundary)
                continue;
            const auto found = facets.find(keyOf(side.data(), count));
            if (found == facets.end())
                continue;
            if (found->second.second)
                throw Failure("A facet of a marker lies between two cells.");
            found->second.second = true;
            Cell& facet = *found->second.first;
            const bool same =
                dimensions == 2 ? facet.points[0] == side[0] : sameSense(facet, side, count);
            if (!same)
                turn(facet);
        }
    }
    for (const auto& marker : markers)
        for (const auto& facet : marker.facets)
            if (!facets.at(keyOf(facet.points.data(), cellPoints(static_cast<int>(facet.type))))
                     .second)
                throw Failure(fmt::format("A facet of marker {} belongs to no cell.", marker.name));
}

} // namespace ostrella::preview
