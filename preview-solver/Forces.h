#pragma once

#include "Boundaries.h"
#include "Config.h"
#include "DualMesh.h"
#include "FlowFields.h"
#include "FreeStream.h"

namespace ostrella::preview {

/// The coefficients of the monitored markers. Forces by ½ρV²·REF_AREA, moments also by REF_LENGTH,
/// about REF_ORIGIN_MOMENT. Axes: in three dimensions z up, in two y up; CD, CL, CSF in wind axes.
struct Coefficients {
    double cd = 0, cl = 0, csf = 0;
    double cmx = 0, cmy = 0, cmz = 0;
    double cfx = 0, cfy = 0, cfz = 0;
    double efficiency = 0;
    /// Share of the wall, by area over REF_AREA, where friction points against the free stream.
    double buffet = 0;

    /// The coefficients for a force and a moment that are already divided by their references.
    static Coefficients of(const Vec3& force, const Vec3& moment, const FreeStream& stream);
};

/// Friction and wall distance at one boundary point, solver units.
struct WallFriction {
    /// Stress along the wall.
    Vec3 shear{0.0};
    double yPlus = 0;
};

/// Full viscous stress vector on a surface whose unit normal points out of the flow, and what
/// follows for a wall vertex. `normal` is the vertex's area vector.
Vec3 wallTraction(const FlowFields& fields, std::size_t point, const Vec3& normal);
WallFriction wallFriction(
    const FlowFields& fields, const DualMesh& dual, const DualMesh::Vertex& vertex);

/// Sums over the monitored markers from the present state and gradients.
Coefficients forces(const Config& config, const FreeStream& stream, const DualMesh& dual,
    const Boundaries& boundaries, const FlowFields& fields);

} // namespace ostrella::preview
