#include "Rendering/OrientationMath.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace ostrella::OrientationMath {

namespace {

constexpr double radiansPerDegree = std::numbers::pi / 180.0;
constexpr double degreesPerRadian = 180.0 / std::numbers::pi;

/// Above this sine of y the turns about x and z can no longer be told apart. One part in 10⁹ below
/// 1, which is 0.0026° from a right angle; as bits, since which branch is taken depends on the
/// last.
constexpr double gimbalSine = std::bit_cast<double>(std::uint64_t{0x3FEFFFFFFF768FA1});

/// In (−180, 180], rounded to 6 decimals so that rounding noise never reaches a text field.
double tidyDegrees(double radians) {
    constexpr double decimals = 1e6;
    double angle = std::fmod(radians * degreesPerRadian, 360.0);
    if (angle <= -180.0)
        angle += 360.0;
    if (angle > 180.0)
        angle -= 360.0;
    angle = std::round(angle * decimals) / decimals;
    if (angle == -180.0)
        return 180.0;
    return angle + 0.0; // a zero comes out as plus zero
}

} // namespace

glm::dmat3 matrix(const glm::dvec3& degrees) {
    const glm::dvec3 radians = degrees * radiansPerDegree;
    const double cx = std::cos(radians.x);
    const double sx = std::sin(radians.x);
    const double cy = std::cos(radians.y);
    const double sy = std::sin(radians.y);
    const double cz = std::cos(radians.z);
    const double sz = std::sin(radians.z);
    // Column by column.
    const glm::dmat3 aboutX(1, 0, 0, 0, cx, sx, 0, -sx, cx);
    const glm::dmat3 aboutY(cy, 0, -sy, 0, 1, 0, sy, 0, cy);
    const glm::dmat3 aboutZ(cz, sz, 0, -sz, cz, 0, 0, 0, 1);
    return aboutZ * aboutY * aboutX;
}

glm::dvec3 degrees(const glm::dmat3& from) {
    double x = 0.0;
    double z = 0.0;
    if (std::abs(from[0][2]) < gimbalSine) {
        x = std::atan2(from[1][2], from[2][2]);
        z = std::atan2(from[0][1], from[0][0]);
    } else {
        z = std::atan2(-from[1][0], from[1][1]);
    }
    const double y = std::asin(std::clamp(-from[0][2], -1.0, 1.0));
    return {tidyDegrees(x), tidyDegrees(y), tidyDegrees(z)};
}

glm::dvec3 rotated(const glm::dvec3& angles, OrientationAxis about, double by) {
    glm::dvec3 delta(0.0);
    delta[static_cast<int>(about)] = by;
    return degrees(matrix(delta) * matrix(angles));
}

} // namespace ostrella::OrientationMath
