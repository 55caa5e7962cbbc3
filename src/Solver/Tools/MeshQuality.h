#pragma once

#include "Models/Cancellation.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace ostrella {

/// What the cells of a volume mesh are like. The gamma of a cell is three times the radius of its
/// inscribed sphere over that of the circumscribed one: 1 for the regular tetrahedron, 0 for one
/// without volume.
struct MeshQuality {
    /// Below this, solvers tend to diverge by the cell alone.
    static constexpr double leastSound = 0.02;

    std::int64_t cells = 0;
    /// Cells of no volume or a negative one.
    std::int64_t inverted = 0;
    double leastGamma = 0;
    /// A hundredth of the cells has a lesser gamma.
    double firstPercentileGamma = 0;

    /// Whether a solver can be expected to live with each of the cells.
    bool isSound() const { return inverted == 0 && leastGamma >= leastSound; }
    /// Fewer cells are inverted, or as many, and the flattest one is less flat.
    bool isBetterThan(const MeshQuality& other) const;

    bool operator==(const MeshQuality&) const = default;
};

/// Measures the mesh in a file in the solver's native format, in one pass and with some 25 bytes of
/// memory a cell. Nothing for what is no whole mesh of tetrahedra, or one of more than 16 million
/// of them. Throws CancellationError.
std::optional<MeshQuality> readMeshQuality(
    const std::filesystem::path& file, const CancellationToken& token = {});

} // namespace ostrella
