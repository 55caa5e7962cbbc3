#pragma once

#include <array>
#include <cstdint>

namespace ostrella {

/// The tables of marching cubes as Paul Bourke published them ("Polygonising a scalar field",
/// 1994), with his numbers of the cube's corners and edges: corners 0 to 3 go around the bottom,
/// 4 to 7 around the top. Bit n of a case tells that the value at corner n lies below the level.
namespace MCTables {

/// The two corners of each edge.
inline constexpr std::array<std::array<std::uint8_t, 2>, 12> edgeToCorners = {{{0, 1}, {1, 2},
    {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}}};

/// The edges that the surface cuts in each case: bit e for edge e.
extern const std::array<std::uint16_t, 256> edgeTable;

/// The triangles of each case: up to five triples of edges, filled up with −1.
extern const std::array<std::array<std::int8_t, 16>, 256> triTable;

} // namespace MCTables

} // namespace ostrella
