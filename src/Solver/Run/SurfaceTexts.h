#pragma once

#include "Models/LogStore.h"
#include "Models/SurfaceFitness.h"
#include "Models/SurfacePreparation.h"

#include "Solver/Tools/MeshQuality.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace ostrella {

/// What the log says of a model's surface on its way to the mesher.
namespace SurfaceTexts {

using Line = std::pair<std::string, LogStore::Level>;

/// A length, in metres, in the unit from nm to km that it reads best in: "1.3 mm", "120 m".
std::string length(double metres);

/// What a preparation did; a warning if it closed openings or gave sheets a thickness.
Line prepared(const SurfacePreparation& facts);

/// The sentence for a surface that could not be prepared in so many seconds.
std::string notPreparedWithin(double seconds);
/// Why there is no prepared surface: the sentence of that failure.
std::string notPrepared(std::string_view sentence);

/// Why nothing is known of a surface's fitness.
std::string notJudged(std::string_view reason);
/// The same for a surface that was not judged within `seconds`.
std::string notJudgedWithin(double seconds);

/// An attempt that gave no mesh, with the mesher's failure, where it is not the end of the run.
std::string noMeshAsItIs(std::string_view failure);
std::string noMeshPrepared(std::string_view failure);

/// A mesh of the surface as it is that a solver may not bear, for which the surface is prepared.
std::string poorCells(const MeshQuality& quality);
/// That this mesh is the one after all; with the quality of the other one, if there is one.
std::string keptAsItIs(const std::optional<MeshQuality>& other);

/// How much of a body faces up and down along the solver's z, m².
struct Planform {
    double up = 0;
    double down = 0;
    /// Of the prepared surface, up and down alike; absent where there is none.
    std::optional<double> prepared;
};

/// How far the planform of a model can be trusted; nothing for one that is closed and outward and
/// hides no facets.
std::optional<Line> planformTrust(const SurfaceFitness& fitness, const Planform& planform);

} // namespace SurfaceTexts

} // namespace ostrella
