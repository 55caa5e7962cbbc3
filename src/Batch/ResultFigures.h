#pragma once

#include "Models/RunState.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace ostrella {

/// What a result holds, in figures: counts, ranges, and a fingerprint of each computed array, so
/// that two results can be compared without their files.
struct ResultFigures {
    struct Surface {
        std::size_t points = 0;
        std::size_t primitives = 0;
        SurfaceField::Primitive primitive = SurfaceField::Primitive::line;
        float pressureMin = 0; ///< pressure coefficient
        float pressureMax = 0;
    };
    struct Lines {
        std::size_t seeds = 0;
        std::size_t vertices = 0;
        std::size_t segments = 0;
        std::size_t lines = 0; ///< of at least two vertices
        float speedMin = 0;    ///< m/s
        float speedMax = 0;    ///< m/s
        std::string sha256;    ///< of the vertices' bytes, then the indices'
    };
    struct Ribbons {
        std::size_t points = 0;
        std::size_t triangles = 0;
        std::string sha256; ///< of the points' bytes, then the indices'
    };
    struct Vortex {
        std::size_t vertices = 0;
        std::size_t triangles = 0;
        float isoValue = 0; ///< 1/s²
        std::string sha256; ///< of the positions' bytes, then the normals', then the indices'
    };

    std::optional<Surface> surface;
    std::optional<std::size_t> volumePoints;
    std::optional<Lines> streamlines;
    std::optional<Ribbons> ribbons;
    std::optional<Vortex> vortex;
    /// y⁺, and the seconds of each part.
    HarvestFigures harvest;

    /// For a worker thread.
    static ResultFigures of(const SimulationResult& result);
};

} // namespace ostrella
