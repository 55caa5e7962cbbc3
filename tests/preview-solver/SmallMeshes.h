#pragma once

#include "Mesh.h"

#include <string>

/// Mesh texts made on the spot, in the solver's mesh format.
namespace SmallMeshes {

/// A unit cube of n × n × n little cubes, its inner points moved off the grid; each little cube is
/// six tetrahedra, or one hexahedron, two prisms or six pyramids about an extra point at its
/// centre. One marker, "box", all round.
enum class Filling { tetrahedra, hexahedra, prisms, pyramids };
std::string cube(int n, Filling filling);

/// A unit square of n × n quadrilaterals, every second one as two triangles, its inner points moved
/// off the grid. One marker, "box", all round.
std::string square(int n);

/// A ring of quadrilaterals between the unit circle ("wall") and one of radius 100 ("far"), the
/// first cell of the given height.
std::string ring(int around, int outward, double first);

} // namespace SmallMeshes
