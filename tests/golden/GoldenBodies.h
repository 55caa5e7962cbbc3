#pragma once

#include "Models/IsoSurface.h"
#include "Models/Streamlines.h"
#include "Models/SurfaceField.h"
#include "Models/TriangleMesh.h"

/// Bodies and flows by formula, so that pictures of them depend on no file and no solver. Metres,
/// y up, the stream along +x.
namespace ostrella::golden {

/// A blunt box with a rounded front and a slanted rear: flat panels, creases and soft edges.
TriangleMesh vehicle();

/// A ball of radius 0.4 around the origin.
inline constexpr float ballRadius = 0.4F;
TriangleMesh ball();

/// The pressure coefficient of the ideal flow around that ball, 1 − 9/4 sin²θ.
SurfaceField ballPressure();

/// Streamlines of that flow, speeds in m/s for a stream of 50.
Streamlines ballFlow();

/// Two slim spindles behind the ball.
IsoSurface trailingVortices();

/// An aerofoil's outline as segments, in the plane z = 0.
SurfaceField aerofoilPressure();

} // namespace ostrella::golden
