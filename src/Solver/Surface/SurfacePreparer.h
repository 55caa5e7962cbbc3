#pragma once

#include "Models/Cancellation.h"
#include "Models/SurfacePreparation.h"
#include "Models/TriangleMesh.h"

#include <exception>
#include <string>

namespace ostrella {

/// No surface can be made of a model; what() tells why and where.
class PreparationError final : public std::exception {
public:
    explicit PreparationError(std::string text);
    const char* what() const noexcept override { return text_.c_str(); }

private:
    std::string text_;
};

struct PreparedSurface {
    /// Closed, manifold and outward, in the model's frame of axes.
    TriangleMesh mesh;
    SurfacePreparation facts;
};

/// Makes a surface that a mesher can take as it is from any model: its overlapping shells united,
/// inner ones removed, narrow gaps and openings closed, sheets given thickness, facets even.
/// `facetEdge` is the size of the facets, m: their edges lie between it and twice of it where the
/// shape leaves room for that. Throws PreparationError and CancellationError.
PreparedSurface prepareSurface(
    const TriangleMesh& model, float facetEdge, const CancellationToken& token = {});

} // namespace ostrella
