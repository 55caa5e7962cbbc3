#include "golden/GoldenBodies.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace ostrella::golden {

namespace {

constexpr double pi = std::numbers::pi;

/// The points of a ball of radius 1: rings from the +x pole to the −x pole.
struct Ball {
    static constexpr std::uint32_t rings = 32;
    static constexpr std::uint32_t meridians = 48;
    std::vector<Vec3> points;
    std::vector<std::uint32_t> indices;

    Ball() {
        for (std::uint32_t i = 0; i <= rings; ++i) {
            for (std::uint32_t j = 0; j < meridians; ++j) {
                const double t = pi * i / rings;
                const double f = 2 * pi * j / meridians;
                points.emplace_back(
                    std::cos(t), std::sin(t) * std::cos(f), std::sin(t) * std::sin(f));
            }
        }
        for (std::uint32_t i = 0; i < rings; ++i) {
            for (std::uint32_t j = 0; j < meridians; ++j) {
                const std::uint32_t a = i * meridians + j;
                const std::uint32_t b = i * meridians + (j + 1) % meridians;
                if (i > 0)
                    indices.insert(indices.end(), {a, b, a + meridians});
                if (i + 1 < rings)
                    indices.insert(indices.end(), {b, b + meridians, a + meridians});
            }
        }
    }
};

TriangleMesh soup(const std::vector<Vec3>& points, const std::vector<std::uint32_t>& indices) {
    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        const Vec3& a = points[indices[i]];
        const Vec3& b = points[indices[i + 1]];
        const Vec3& c = points[indices[i + 2]];
        positions.insert(positions.end(), {a, b, c});
        normals.insert(normals.end(), 3, glm::normalize(glm::cross(b - a, c - a)));
    }
    return {positions, normals};
}

/// Velocity (m/s) of the ideal flow around the ball.
glm::dvec3 velocityAt(const glm::dvec3& p) {
    const double r = std::max(glm::length(p), double(ballRadius));
    const double r3 = r * r * r;
    const double share = double(ballRadius) * ballRadius * ballRadius / (2 * r3);
    return 50.0 * (glm::dvec3(1 + share, 0, 0) - 3 * share * p.x / (r * r) * p);
}

} // namespace

TriangleMesh vehicle() {
    std::vector<Vec2> outline{{0.5F, 0.0F}, {0.5F, 0.18F}, {0.3F, 0.3F}};
    constexpr int pieces = 8;
    const auto addArc = [&](Vec2 centre, double from) {
        for (int i = 0; i <= pieces; ++i) {
            const double angle = from + pi / 2 * i / pieces;
            outline.emplace_back(
                centre.x + 0.08 * std::cos(angle), centre.y + 0.08 * std::sin(angle));
        }
    };
    addArc({-0.42F, 0.22F}, pi / 2);
    addArc({-0.42F, 0.08F}, pi);
    const auto count = static_cast<std::uint32_t>(outline.size());
    std::vector<Vec3> points;
    for (const float z : {-0.19F, 0.19F}) {
        for (const Vec2& p : outline)
            points.emplace_back(p.x, p.y, z);
    }
    std::vector<std::uint32_t> indices;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t next = (i + 1) % count;
        indices.insert(indices.end(), {i, next, i + count, next, next + count, i + count});
        if (i > 0 && next > 0) {
            indices.insert(indices.end(), {0, next, i});
            indices.insert(indices.end(), {count, count + i, count + next});
        }
    }
    return soup(points, indices);
}

TriangleMesh ball() {
    const Ball unit;
    std::vector<Vec3> points;
    for (const Vec3& p : unit.points)
        points.push_back(p * ballRadius);
    return soup(points, unit.indices);
}

SurfaceField ballPressure() {
    const Ball unit;
    std::vector<Vec3> points;
    std::vector<float> pressure;
    for (const Vec3& p : unit.points) {
        points.push_back(p * ballRadius);
        pressure.push_back(1 - 2.25F * (1 - p.x * p.x));
    }
    return {
        points, pressure, "Pressure_Coefficient", unit.indices, SurfaceField::Primitive::triangle};
}

Streamlines ballFlow() {
    constexpr int rows = 7;
    constexpr int columns = 9;
    constexpr int steps = 130;
    constexpr double time = 0.02 / 50;
    std::vector<float> vertices;
    std::vector<std::uint32_t> indices;
    Streamlines lines;
    lines.magnitudeMin = 1e9F;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            glm::dvec3 p(
                -1.1, 0.16 * (row - rows / 2) + 0.02, 0.16 * (column - columns / 2) + 0.01);
            for (int step = 0; step < steps; ++step) {
                const glm::dvec3 v = velocityAt(p);
                const auto speed = static_cast<float>(glm::length(v));
                const auto number = static_cast<std::uint32_t>(vertices.size() / 4);
                vertices.insert(vertices.end(), {static_cast<float>(p.x), static_cast<float>(p.y),
                                                    static_cast<float>(p.z), speed});
                lines.magnitudeMin = std::min(lines.magnitudeMin, speed);
                lines.magnitudeMax = std::max(lines.magnitudeMax, speed);
                if (step > 0)
                    indices.insert(indices.end(), {number - 1, number});
                p += time * velocityAt(p + 0.5 * time * v);
            }
        }
    }
    lines.vertexCount = vertices.size() / 4;
    lines.indexCount = indices.size();
    lines.interleavedVertices = vertices;
    lines.indices = indices;
    lines.seedCount = rows * columns;
    lines.boundingMin = {-1.1F, -0.7F, -0.8F};
    lines.boundingMax = {1.7F, 0.7F, 0.8F};
    return lines;
}

IsoSurface trailingVortices() {
    const Ball unit;
    const Vec3 stretch(0.55F, 0.09F, 0.11F);
    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    std::vector<std::uint32_t> indices;
    for (const float z : {-0.3F, 0.3F}) {
        const auto first = static_cast<std::uint32_t>(positions.size());
        for (const Vec3& p : unit.points) {
            positions.push_back(p * stretch + Vec3(0.85F, 0.1F, z));
            normals.push_back(glm::normalize(p / stretch));
        }
        for (const std::uint32_t i : unit.indices)
            indices.push_back(first + i);
    }
    IsoSurface surface;
    surface.positions = positions;
    surface.normals = normals;
    surface.indices = indices;
    surface.boundingMin = {0.3F, 0.01F, -0.41F};
    surface.boundingMax = {1.4F, 0.19F, 0.41F};
    return surface;
}

SurfaceField aerofoilPressure() {
    constexpr std::uint32_t count = 120;
    std::vector<Vec3> points;
    std::vector<float> pressure;
    std::vector<std::uint32_t> indices;
    for (std::uint32_t i = 0; i < count; ++i) {
        const double angle = 2 * pi * i / count;
        const double x = 0.5 * (1 + std::cos(angle));
        const double half = 0.6 * (0.2969 * std::sqrt(x) - 0.126 * x - 0.3516 * x * x +
                                      0.2843 * x * x * x - 0.1036 * x * x * x * x);
        const bool isUpper = std::sin(angle) > 0;
        points.emplace_back(x, isUpper ? half : -half, 0);
        pressure.push_back(
            static_cast<float>(1 - 6 * std::sqrt(x) * std::exp(-4 * x) * (isUpper ? 1.0 : 0.4)));
        indices.insert(indices.end(), {i, (i + 1) % count});
    }
    return {points, pressure, "Pressure_Coefficient", indices, SurfaceField::Primitive::line};
}

} // namespace ostrella::golden
