#include "Views/Panel/StrokeMesh.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ostrella {

namespace {

using Point = StrokeMesh::Point;

constexpr float pi = std::numbers::pi_v<float>;
/// Turns sharper than this get a round join, others a pointed one, which looks the same.
constexpr float sharpTurn = pi / 8;
/// How far a fan's rim may run inside the circle, in device pixels.
constexpr float flatness = 0.1F;

Point operator+(Point a, Point b) {
    return {a.x + b.x, a.y + b.y};
}

Point operator-(Point a, Point b) {
    return {a.x - b.x, a.y - b.y};
}

Point operator*(Point a, float s) {
    return {a.x * s, a.y * s};
}

float product(Point a, Point b) {
    return a.x * b.x + a.y * b.y;
}

float cross(Point a, Point b) {
    return a.x * b.y - a.y * b.x;
}

/// At right angles to the way from `a` to `b`, one long.
Point normal(Point a, Point b) {
    const Point way = b - a;
    const float length = std::hypot(way.x, way.y);
    return {-way.y / length, way.x / length};
}

} // namespace

std::uint32_t StrokeMesh::vertex(Point at, bool isOpaque) {
    vertices_.push_back({at, isOpaque ? color_ : Color{0, 0, 0, 0}});
    return static_cast<std::uint32_t>(vertices_.size() - 1);
}

void StrokeMesh::triangle(std::uint32_t a, std::uint32_t b, std::uint32_t c) {
    indices_.insert(indices_.end(), {a, b, c});
}

std::uint32_t StrokeMesh::section(Point at, Point offset) {
    const std::uint32_t first = vertex(at + offset * outer_, false);
    vertex(at + offset * inner_, true);
    vertex(at - offset * inner_, true);
    vertex(at - offset * outer_, false);
    return first;
}

void StrokeMesh::bridge(std::uint32_t from, std::uint32_t to) {
    for (std::uint32_t i = 0; i < 3; ++i) {
        triangle(from + i, from + i + 1, to + i);
        triangle(from + i + 1, to + i + 1, to + i);
    }
}

void StrokeMesh::fan(Point center, Point from, float angle) {
    const float spoke = 2 * std::acos(std::max(0.5F, 1 - flatness * pixel_ / outer_));
    const float spokes = std::ceil(std::abs(angle) / spoke);
    const float c = std::cos(angle / spokes);
    const float s = std::sin(angle / spokes);
    const std::uint32_t middle = vertex(center, true);
    Point way = from;
    for (int i = 0; i <= static_cast<int>(spokes); ++i) {
        const std::uint32_t edge = vertex(center + way * inner_, true);
        const std::uint32_t rim = vertex(center + way * outer_, false);
        if (i > 0) {
            triangle(middle, edge - 2, edge);
            triangle(edge - 2, rim - 2, edge);
            triangle(rim - 2, rim, edge);
        }
        way = {way.x * c - way.y * s, way.x * s + way.y * c};
    }
}

void StrokeMesh::join(Point at, Point before, Point after) {
    const float turn = std::atan2(cross(before, after), product(before, after));
    if (std::abs(turn) < sharpTurn) {
        const Point middle = before + after;
        const std::uint32_t next = section(at, middle * (1 / (product(middle, after))));
        bridge(section_, next);
        section_ = next;
        return;
    }
    bridge(section_, section(at, before));
    // The outer side of the turn is the one that the line turns away from.
    fan(at, turn > 0 ? before * -1 : before, turn);
    section_ = section(at, after);
}

void StrokeMesh::line(std::span<const Point> points, float width, Color color) {
    color_ = color;
    inner_ = std::max(0.0F, (width - pixel_) / 2);
    outer_ = (width + pixel_) / 2;
    path_.clear();
    for (const Point point : points) {
        const float least = pixel_ / 16;
        if (path_.empty() || std::abs(point.x - path_.back().x) > least ||
            std::abs(point.y - path_.back().y) > least) {
            path_.push_back(point);
        }
    }
    if (path_.size() < 2) {
        if (!path_.empty()) {
            dot(path_.front(), width, color);
        }
        return;
    }
    Point before = normal(path_[0], path_[1]);
    fan(path_.front(), before, pi);
    section_ = section(path_.front(), before);
    for (std::size_t i = 1; i + 1 < path_.size(); ++i) {
        const Point after = normal(path_[i], path_[i + 1]);
        join(path_[i], before, after);
        before = after;
    }
    bridge(section_, section(path_.back(), before));
    fan(path_.back(), before, -pi);
}

void StrokeMesh::dot(Point center, float diameter, Color color) {
    color_ = color;
    inner_ = std::max(0.0F, (diameter - pixel_) / 2);
    outer_ = (diameter + pixel_) / 2;
    fan(center, {1, 0}, 2 * pi);
}

void StrokeMesh::box(Point topLeft, Point bottomRight, Color color) {
    color_ = color;
    const std::uint32_t first = vertex(topLeft, true);
    vertex({bottomRight.x, topLeft.y}, true);
    vertex(bottomRight, true);
    vertex({topLeft.x, bottomRight.y}, true);
    triangle(first, first + 1, first + 2);
    triangle(first, first + 2, first + 3);
}

} // namespace ostrella
