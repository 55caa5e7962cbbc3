#pragma once

#include "Models/SurfacePreparation.h"
#include "Models/TriangleMesh.h"

#include <optional>

namespace ostrella {

/// The surface that the mesher of a run was given last.
struct MeshedSurface {
    /// In the application's frame of axes, turned as the model was.
    TriangleMesh mesh;
    /// What was done to it; absent for the model as it is.
    std::optional<SurfacePreparation> preparation;
    /// Seconds since the model was turned that judging and preparing took.
    double seconds = 0;

    bool operator==(const MeshedSurface&) const = default;
};

} // namespace ostrella
