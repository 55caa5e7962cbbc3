#pragma once

#include "Models/TriangleMesh.h"
#include "Solver/Surface/IndexedSurface.h"

#include <array>
#include <cstddef>
#include <vector>

namespace ostrella::test {

/// A list of facets that bodies are put together in; each call adds to it and gives it back.
class Facets {
public:
    Facets& triangle(const Vec3& a, const Vec3& b, const Vec3& c);
    /// Two triangles: a, b, c and a, c, d.
    Facets& quad(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d);
    /// The 12 facets of an upright box, outward, or inward.
    Facets& box(const Vec3& low, const Vec3& high, bool inward = false);
    Facets& add(const TriangleMesh& mesh);
    /// Takes the facet of this number out.
    Facets& without(std::size_t facet);

    TriangleMesh mesh() const;

private:
    std::vector<Vec3> corners_;
};

/// The box from (0, 0, 0) to (1, 1, 1), outward.
TriangleMesh unitBox();

/// The unit sphere of 20 × 4^`divisions` facets about `middle`.
TriangleMesh ball(int divisions, const Vec3& middle = Vec3(0.0F), float radius = 1.0F);

/// `mesh` scaled and then moved.
TriangleMesh placed(const TriangleMesh& mesh, float scale, const Vec3& by);

/// `mesh` with each facet's corners in the other direction.
TriangleMesh flipped(const TriangleMesh& mesh);

/// The facets of `mesh` with a vertex for each corner.
IndexedSurface unshared(const TriangleMesh& mesh);

} // namespace ostrella::test
