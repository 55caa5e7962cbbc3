#pragma once

#include "Solver/Surface/IndexedSurface.h"

#include <functional>

namespace ostrella::test {

/// A closed plate of `columns` × `rows` unit squares, of height 1, on shared vertices; the squares
/// of its top that `isHole` holds for are left out.
IndexedSurface plateWithHoles(
    int columns, int rows, const std::function<bool(int column, int row)>& isHole);

/// A pot: a round wall of radius 1 and this height, of `sides` squares, with a bottom and no top.
IndexedSurface pot(int sides, double height);

/// A flat rectangle of unit squares, on shared vertices.
IndexedSurface flatSheet(int columns, int rows);

/// Both, each with its own vertices.
IndexedSurface together(const IndexedSurface& a, const IndexedSurface& b);

} // namespace ostrella::test
