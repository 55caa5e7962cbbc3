#pragma once

#include <glm/vec2.hpp>

#include <vector>

namespace ostrella {

/// The least distance of two parallel lines that have all points between them; zero for none.
double planarWidth(std::vector<glm::dvec2> points);

} // namespace ostrella
