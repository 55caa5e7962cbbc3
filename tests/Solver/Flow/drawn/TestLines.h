#pragma once

#include "Models/Streamlines.h"

#include <cstdint>
#include <vector>

namespace ostrella::test {

/// Vertices joined by these pairs of indices.
Streamlines joined(const std::vector<Vec4>& vertices, std::vector<std::uint32_t> indices);

/// Lines of these numbers of vertices, as they are traced: vertex i of all lies at (i, 0, 0) with
/// the speed i / 2.
Streamlines traced(const std::vector<std::uint32_t>& lengths);

} // namespace ostrella::test
