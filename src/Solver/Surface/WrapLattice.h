#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/IndexedSurface.h"
#include "Solver/Surface/TriangleTree.h"

#include <cstdint>

namespace ostrella {

/// How a wrap is laid around a surface.
struct WrapSettings {
    /// Edge of the cells, m.
    double spacing = 0;
    /// Distance that the wrap keeps from the surface, m; at least `spacing`, so that no path along
    /// the lattice slips through a closed surface. Gaps narrower than about twice of it are closed.
    double offset = 0;
};

/// Bound of the lattice, and so of its memory: a byte a cell, besides the wrap itself, for which
/// at most 110 bytes a square are at hand while it is made.
inline constexpr std::int64_t mostWrapCells = 60'000'000;

/// Cells of the lattice that wrapped() lays around the box from `low` to `high`: it reaches by
/// `offset` and three cells beyond the box. Infinite where the numbers leave a double's range.
double wrapCellCount(const DVec3& low, const DVec3& high, const WrapSettings& settings);

/// The outside of a surface within the box from `low` to `high` as cells of a lattice: connected to
/// infinity over faces by cells whose middles keep `offset` from the surface. What is returned is
/// the border of all other cells: closed, manifold (cells that would touch along an edge or at a
/// corner only are joined by filling further ones), facing outward, of squares of edge `spacing`
/// cut in two, not merged with itself anywhere. Each of its vertices lies outside of the surface,
/// farther from it than `offset` less √3/2 · `spacing`. Nothing of the surface shows inside of it,
/// so inner shells and facets are gone. Two threads. Throws CancellationError; a lattice of more
/// than `mostWrapCells` cells is a broken precondition.
IndexedSurface wrapped(const TriangleTree& surface, const DVec3& low, const DVec3& high,
    const WrapSettings& settings, const CancellationToken& token);

} // namespace ostrella
