#include "Solver/Geometry/ModelScreen.h"

#include "Solver/Geometry/WeldGrid.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace ostrella {

namespace {

using Reason = ModelLoadError::Reason;

bool isFinite(const Vec3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

} // namespace

void screenModel(const TriangleMesh& mesh) {
    const auto& positions = mesh.positions();
    if (positions.empty())
        throw ModelLoadError(Reason::noFacets,
            "The model has no facets. Export it again as a triangulated surface.");
    const auto* bad = std::find_if_not(positions.begin(), positions.end(), isFinite);
    if (bad != positions.end())
        throw ModelLoadError(Reason::notFinite,
            fmt::format("Facet {} of {} has a corner that is not a finite number. Export the model "
                        "again, or repair it.",
                (bad - positions.begin()) / 3 + 1, mesh.facetCount()));
    if (!isFinite(mesh.size()))
        throw ModelLoadError(Reason::boundless,
            "The model is too large: its extents are beyond all numbers. Scale it to metres, and "
            "export it again.");
    if (!WeldGrid(mesh.boundingBox()).covers(mesh.boundingBox()))
        throw ModelLoadError(Reason::tooFar,
            "The model is too far from the origin for its size: its corners cannot be told apart "
            "there. Move it to the origin, and export it again.");
}

} // namespace ostrella
