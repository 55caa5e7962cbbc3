#pragma once

#include "Models/Vector.h"

#include <functional>
#include <string>
#include <vector>

namespace ostrella::test {

/// Texts of files such as the solver writes: legacy ASCII VTK, in the frame of axes in which they
/// are asked for.
namespace FieldFiles {

/// The head, the points and the cells of a file.
std::string grid(
    const std::vector<Vec3>& points, const std::vector<std::vector<int>>& cells, int cellType);
/// A section with one value for each point; the first one of a file is behind pointData().
std::string scalars(const std::string& name, const std::vector<float>& values);
std::string vectors(const std::string& name, const std::vector<Vec3>& values);
std::string pointData(std::size_t count);

/// A surface: a box of 8 points and 12 triangles, with Cp from 0.5 down to -0.5.
std::string box(const Vec3& low, const Vec3& high);

/// A volume: `counts` points along x, y and z over a box, x the fastest, with a velocity for each.
std::string volume(const Vec3& low, const Vec3& high, const std::vector<int>& counts,
    const std::function<Vec3(const Vec3&)>& velocity);

/// 50 m/s along x, turning about x as one goes down the stream: a vortex with Q > 0 in its core.
Vec3 vortexVelocity(const Vec3& point);

/// `text` with the first `old` replaced; a failed expectation if there is none.
std::string replaced(const std::string& text, const std::string& old, const std::string& by);

} // namespace FieldFiles

} // namespace ostrella::test
