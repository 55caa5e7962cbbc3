#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/EmbeddedMesh.h"
#include "Solver/Surface/IndexedSurface.h"
#include "Solver/Surface/TriangleTree.h"

#include <cstdint>
#include <vector>

namespace ostrella {

/// The surface that a wrap is fitted to.
struct FitModel {
    const TriangleTree& tree;
    /// Of each triangle of the tree: the unit normal, pointing anywhere.
    const std::vector<DVec3>& normals;
    /// Of each triangle of the tree: its shell is open, so that it may be a sheet.
    const std::vector<bool>& isOpen;
    /// m.
    double sheetThickness = 0;
};

/// Where the vertices of a wrap belong.
struct WrapTargets {
    /// Evened out on the surface that keeps the wrap's distance from the model.
    std::vector<DVec3> smoothed;
    /// On the model, or half a thickness off a sheet.
    std::vector<DVec3> points;
    /// Of each vertex: the triangle of the model that it is nearest to.
    std::vector<std::uint32_t> nearest;
    /// Of each vertex: 1 if it lies off a sheet, which has the outside on both sides.
    std::vector<std::uint8_t> isOnSheet;
};

/// Finds the place on the model for each vertex of a wrap; concave edges between two sides of the
/// model, which no point of a wrap is nearest to, are met as well.
WrapTargets fitWrap(const IndexedSurface& wrap, const FitModel& model, double offset,
    double spacing, const CancellationToken& token);

/// Pulls the wrap in, which lies as it was made (without contacts), to the targets, and lets go
/// where that would bring it into contact with itself: step by step to the smoothed places, and
/// from there to where it was.
void pullIn(EmbeddedMesh& mesh, const WrapTargets& targets, const CancellationToken& token);

} // namespace ostrella
