#pragma once

#include "Models/TriangleMesh.h"
#include "Solver/Surface/EmbeddedMesh.h"
#include "Solver/Surface/IndexedSurface.h"

#include <string>
#include <utility>
#include <vector>

namespace ostrella::test {

/// The facets of `mesh` on shared vertices: corners at exactly one place are one.
IndexedSurface shared(const TriangleMesh& mesh);

/// What keeps the surface from being closed, of one orientation and nowhere in touch with itself at
/// a vertex or an edge, in words; empty if nothing does.
std::string manifoldDefect(const IndexedSurface& surface);

/// The pieces that hang together by vertices.
std::vector<IndexedSurface> pieces(const IndexedSurface& surface);

/// Vertices − edges + triangles: 2 for a ball, 0 for a ring.
int eulerCharacteristic(const IndexedSurface& surface);

/// How often a closed surface goes around a point off it: 1 inside, 0 outside (sum of the solid
/// angles of its triangles by Van Oosterom and Strackee's formula, over 4π).
double windingNumber(const IndexedSurface& surface, const DVec3& point);

double area(const IndexedSurface& surface);

/// Whether any two triangles are in contact, as the mesh sees it.
bool hasContacts(EmbeddedMesh& mesh);

/// Least and greatest coordinates.
std::pair<DVec3, DVec3> box(const IndexedSurface& surface);

} // namespace ostrella::test
