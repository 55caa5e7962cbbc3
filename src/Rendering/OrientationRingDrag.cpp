#include "Rendering/OrientationRings.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ostrella::OrientationRings {

namespace {

// Pi as a 32-bit number rounded towards zero.
constexpr float pi = 3.1415925F;
constexpr float fullTurn = 6.283185F;

/// Within this many points of a ring's centre the angle of a pointer is too unsteady to follow.
constexpr float innerCircle = 4.0F;
/// A ring whose axis is at least this cosine from the line of sight's normal can be circled.
constexpr float facingCosine = 0.2F;
constexpr double snapDegrees = 15.0;

float length(Vec2 v) {
    return std::sqrt(v.x * v.x + v.y * v.y);
}

float length(const Vec3& v) {
    return std::sqrt(squaredLength(v));
}

/// The same direction within (−π, π].
float shortestTurn(float radians) {
    float turn = std::fmod(radians, fullTurn);
    if (turn > pi)
        turn -= fullTurn;
    if (turn <= -pi)
        turn += fullTurn;
    return turn;
}

/// The angle from `last` to `to`, radians; nothing where it cannot be told.
std::optional<float> turnAround(const Drag::Around& ring, Vec2 last, Vec2 to) {
    const Vec2 now = to - ring.centre;
    if (!(length(now) > innerCircle))
        return std::nullopt;
    const Vec2 before = last - ring.centre;
    if (!(length(before) > innerCircle))
        return 0.0F;
    return ring.sign * shortestTurn(std::atan2(now.y, now.x) - std::atan2(before.y, before.x));
}

float turnAlong(const Drag::Along& line, Vec2 last, Vec2 to) {
    const Vec2 moved = to - last;
    return (moved.x * line.direction.x + moved.y * line.direction.y) / line.pointsPerRadian;
}

} // namespace

std::optional<Drag::Mode> Drag::modeFor(OrientationAxis axis, const Vec3& centre, float radius,
    const Vec3& eye, const ScreenProjector& projector) {
    constexpr float smallest = 1e-9F;
    constexpr float step = 0.001F;
    constexpr float slowestPoints = 0.001F;

    const Vec3 view = eye - centre;
    const float distance = length(view);
    if (!(distance > smallest))
        return std::nullopt;
    const int along = static_cast<int>(axis);
    const float facing = view[along] / distance;
    if (std::abs(facing) >= facingCosine) {
        if (const std::optional<Vec2> seen = projector.project(centre))
            return Around{*seen, facing > 0.0F ? 1.0F : -1.0F};
    }

    // Seen on edge: the ring is pulled along its tangent at the point nearest to the viewer.
    Vec3 towards = view;
    towards[along] = 0.0F;
    const float size = length(towards);
    if (size < smallest * std::max(distance, 1.0F)) {
        towards = Vec3(0.0F);
        towards[(along + 1) % 3] = 1.0F;
    } else {
        towards /= size;
    }
    const Vec3 outwards = radius * towards;
    Vec3 unitAxis(0.0F);
    unitAxis[along] = 1.0F;
    const Vec3 nearest = centre + outwards;
    const std::optional<Vec2> from = projector.project(nearest);
    const std::optional<Vec2> to = projector.project(nearest + step * cross(unitAxis, outwards));
    if (!from || !to)
        return std::nullopt;
    const Vec2 perRadian = (*to - *from) / step;
    const float points = length(perRadian);
    if (!(points > slowestPoints))
        return std::nullopt;
    return Along{perRadian / points, points};
}

double Drag::move(Vec2 to, bool snap) {
    std::optional<float> turn;
    if (const auto* around = std::get_if<Around>(&mode))
        turn = turnAround(*around, last, to);
    else
        turn = turnAlong(std::get<Along>(mode), last, to);
    if (turn) {
        rawDegrees += static_cast<double>(*turn) * 180.0 / std::numbers::pi;
        last = to;
    }
    return resnap(snap);
}

double Drag::resnap(bool snap) {
    const double value = snap ? std::round(rawDegrees / snapDegrees) * snapDegrees : rawDegrees;
    const double delta = value - appliedDegrees;
    appliedDegrees = value;
    return delta;
}

} // namespace ostrella::OrientationRings
