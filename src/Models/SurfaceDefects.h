#pragma once

#include "Models/SurfaceFitness.h"

#include <array>
#include <string_view>

namespace ostrella {

/// One kind of defect of a surface, with its name in reports.
struct SurfaceDefectKind {
    std::string_view name;
    SurfaceDefect SurfaceFitness::*defect;
};

/// All kinds, in the order of SurfaceFitness.
inline constexpr std::array surfaceDefectKinds{
    SurfaceDefectKind{"openEdges", &SurfaceFitness::openEdges},
    SurfaceDefectKind{"nonManifoldEdges", &SurfaceFitness::nonManifoldEdges},
    SurfaceDefectKind{"duplicatedFacets", &SurfaceFitness::duplicatedFacets},
    SurfaceDefectKind{"inconsistentEdges", &SurfaceFitness::inconsistentEdges},
    SurfaceDefectKind{"degenerateFacets", &SurfaceFitness::degenerateFacets},
    SurfaceDefectKind{"slivers", &SurfaceFitness::slivers},
    SurfaceDefectKind{"selfIntersections", &SurfaceFitness::selfIntersections},
    SurfaceDefectKind{"overlaps", &SurfaceFitness::overlaps},
    SurfaceDefectKind{"insideOutShells", &SurfaceFitness::insideOutShells},
    SurfaceDefectKind{"innerShells", &SurfaceFitness::innerShells},
    SurfaceDefectKind{"cuttingShells", &SurfaceFitness::cuttingShells},
};

} // namespace ostrella
