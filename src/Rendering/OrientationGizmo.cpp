#include "Rendering/OrientationGizmo.h"

#include "Brand/ViewportStyle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <span>
#include <utility>

namespace ostrella::OrientationGizmo {

namespace {

/// A stroke of a letter, in units of the letter's size.
using Stroke = std::pair<Vec2, Vec2>;

constexpr std::array glyphX{
    Stroke{{-0.4F, -0.5F}, {0.4F, 0.5F}}, Stroke{{-0.4F, 0.5F}, {0.4F, -0.5F}}};
constexpr std::array glyphY{Stroke{{-0.4F, 0.5F}, {0.0F, 0.0F}}, Stroke{{0.4F, 0.5F}, {0.0F, 0.0F}},
    Stroke{{0.0F, 0.0F}, {0.0F, -0.5F}}};
constexpr std::array glyphZ{Stroke{{-0.4F, 0.5F}, {0.4F, 0.5F}},
    Stroke{{0.4F, 0.5F}, {-0.4F, -0.5F}}, Stroke{{-0.4F, -0.5F}, {0.4F, -0.5F}}};

// Lengths in points.
constexpr Vec2 axesCentre{32.0F, 32.0F};
constexpr Vec2 arrowCentre{90.0F, 32.0F};
constexpr float axisLength = 20.0F;
constexpr float letterDistance = 27.0F;
constexpr float letterSize = 6.5F;
constexpr float axisHalfWidth = 0.625F;
constexpr float letterHalfWidth = 0.75F;
constexpr float feather = 0.75F;
constexpr float arrowHalfLength = 15.0F;
constexpr float headLength = 6.0F;
constexpr float dotHalfWidth = 1.8F;

struct Axis {
    Vec3 seen; ///< in view space
    Vec4 color;
    std::span<const Stroke> letter;
};

Vec3 turned(const Mat4& view, const Vec3& direction) {
    return Vec3(view * Vec4(direction, 0.0F));
}

Segment segment(Vec2 from, Vec2 to, const Vec4& color, float halfWidth, float scale) {
    return {Vec4(from, to), color, {halfWidth * scale, feather * scale, 0.0F, 0.0F}};
}

/// The flow runs nearly along the line of sight: a circle, with the tip of the arrow in it if it
/// comes towards the viewer, with its tail feathers otherwise.
void appendEndOn(
    std::vector<Segment>& out, bool towards, Vec2 centre, const Vec4& color, float scale) {
    constexpr int parts = 16;
    const float radius = headLength * scale;
    const auto onCircle = [&](int part) {
        const double angle = 2.0 * std::numbers::pi * part / parts;
        return centre + radius * Vec2(std::cos(angle), std::sin(angle));
    };
    for (int part = 0; part < parts; ++part)
        out.push_back(segment(onCircle(part), onCircle(part + 1), color, 1.0F, scale));
    if (towards) {
        out.push_back(segment(centre, centre, color, dotHalfWidth, scale));
        return;
    }
    const float arm = 0.55F * radius;
    for (const Vec2 diagonal : {Vec2(arm, arm), Vec2(arm, -arm)})
        out.push_back(segment(centre - diagonal, centre + diagonal, color, 1.0F, scale));
}

/// The arrow of a unit direction in view space, 30 points long where it lies in the screen's plane.
void appendArrow(std::vector<Segment>& out, const Vec3& direction, Vec2 centre, float scale) {
    constexpr float endOn = 0.2F;
    constexpr float cosine = 0.8829476F; // of the 28° between a stroke of the head and the shaft
    constexpr float sine = 0.46947154F;
    const Vec4 color(ViewportStyle::accent, 0.95F);
    const Vec2 flat(direction);
    const float share = std::sqrt(flat.x * flat.x + flat.y * flat.y);
    if (share < endOn) {
        appendEndOn(out, direction.z > 0.0F, centre, color, scale);
        return;
    }
    const Vec2 half = arrowHalfLength * scale * flat;
    const Vec2 tip = centre + half;
    out.push_back(segment(centre - half, tip, color, 1.0F, scale));
    const Vec2 back = -flat / share;
    for (const float side : {sine, -sine}) {
        const Vec2 stroke(cosine * back.x - side * back.y, side * back.x + cosine * back.y);
        out.push_back(segment(tip, tip + headLength * scale * stroke, color, 1.0F, scale));
    }
}

} // namespace

std::vector<Segment> build(const Mat4& view, const std::optional<Vec3>& freeStream, float scale) {
    std::array axes{Axis{turned(view, {1, 0, 0}), ViewportStyle::gizmoAxisX, glyphX},
        Axis{turned(view, {0, 1, 0}), ViewportStyle::gizmoAxisY, glyphY},
        Axis{turned(view, {0, 0, 1}), ViewportStyle::gizmoAxisZ, glyphZ}};
    // What points away from the viewer comes first, so that nearer axes are drawn over it.
    std::ranges::stable_sort(axes, {}, [](const Axis& axis) { return axis.seen.z; });

    std::vector<Segment> result;
    const Vec2 centre = axesCentre * scale;
    for (const Axis& axis : axes) {
        const Vec2 flat(axis.seen);
        result.push_back(
            segment(centre, centre + axisLength * scale * flat, axis.color, axisHalfWidth, scale));
        const Vec2 letter = centre + letterDistance * scale * flat;
        for (const auto& [from, to] : axis.letter)
            result.push_back(segment(letter + letterSize * scale * from,
                letter + letterSize * scale * to, axis.color, letterHalfWidth, scale));
    }
    if (freeStream) {
        const float speed = std::sqrt(squaredLength(*freeStream));
        if (speed > 0.0F)
            appendArrow(result, turned(view, *freeStream / speed), arrowCentre * scale, scale);
    }
    return result;
}

Vec3 freeStreamDirection(float alpha, float beta) {
    const double a = alpha;
    const double b = beta;
    return {std::cos(a) * std::cos(b), std::sin(a) * std::cos(b), -std::sin(b)};
}

} // namespace ostrella::OrientationGizmo
