#pragma once

#include "Models/SurfaceFitness.h"
#include "Models/Vector.h"

#include <string>

namespace ostrella {

/// The log's line about a surface: "Surface judged · 5 120 facets · 1 shell · closed · fit for
/// meshing", or with each kind of defect, how often and its first place, and "not fit for meshing
/// as it is" at the end. Places in metres.
std::string fitnessLine(const SurfaceFitness& fitness);

/// The defect that a mesher suffers most from, as a sentence: "The surface has 18 open edges, the
/// first at (0.15, 0.47, −0.07) m." Empty for a fit one.
std::string worstDefectSentence(const SurfaceFitness& fitness);

/// A point of a body of this extent, both in metres: "(0.15, 0.47, −0.07)", with as many digits as
/// tell a hundredth of the extent.
std::string placeText(const Vec3& place, float extent);

} // namespace ostrella
