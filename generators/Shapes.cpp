#include "Shapes.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <utility>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace ostrella::generators {

namespace {

/// A regular icosahedron of unit circumradius, faces counter-clockwise from outside.
Body icosahedron() {
    const double phi = std::numbers::phi;
    Body body;
    for (const glm::dvec3& v :
        {glm::dvec3{-1, phi, 0}, glm::dvec3{1, phi, 0}, glm::dvec3{-1, -phi, 0},
            glm::dvec3{1, -phi, 0}, glm::dvec3{0, -1, phi}, glm::dvec3{0, 1, phi},
            glm::dvec3{0, -1, -phi}, glm::dvec3{0, 1, -phi}, glm::dvec3{phi, 0, -1},
            glm::dvec3{phi, 0, 1}, glm::dvec3{-phi, 0, -1}, glm::dvec3{-phi, 0, 1}}) {
        body.add(glm::normalize(v));
    }
    body.triangles = {{0, 11, 5}, {0, 5, 1}, {0, 1, 7}, {0, 7, 10}, {0, 10, 11}, {1, 5, 9},
        {5, 11, 4}, {11, 10, 2}, {10, 7, 6}, {7, 1, 8}, {3, 9, 4}, {3, 4, 2}, {3, 2, 6}, {3, 6, 8},
        {3, 8, 9}, {4, 9, 5}, {2, 4, 11}, {6, 2, 10}, {8, 6, 7}, {9, 8, 1}};
    return body;
}

/// The breaks of one side of a rounded box, as positions along the axis on a cube that is blown up
/// to the box: even on the flat, and at even angles over the half fillet (45°) at either end.
std::vector<double> roundedBreaks(double half, double radius, double flatEdge, int arcSegments) {
    const double flat = half - radius;
    const int flatParts = std::max(2, 2 * static_cast<int>(std::lround(flat / flatEdge)));
    const int arcParts = arcSegments / 2;
    std::vector<double> breaks;
    for (int i = 0; i < arcParts; ++i) {
        const double angle = std::numbers::pi / 4.0 * (arcParts - i) / arcParts;
        breaks.push_back(-flat - radius * std::tan(angle));
    }
    for (int i = 0; i <= flatParts; ++i) {
        breaks.push_back(flat * (2.0 * i - flatParts) / flatParts);
    }
    for (int i = 1; i <= arcParts; ++i) {
        breaks.push_back(flat + radius * std::tan(std::numbers::pi / 4.0 * i / arcParts));
    }
    return breaks;
}

/// How a box's quads are cut in two: all the same way, or from the middle of a side towards its
/// corners, so that the three sides at a corner are cut alike.
enum class Cut { parallel, towardsCorners };

/// The surface of an axis-parallel box as six grids, vertices of neighbouring grids not merged.
/// `breaks` are the grid lines of the three axes.
Body boxGrids(const std::array<std::vector<double>, 3>& breaks, Cut cut) {
    Body body;
    for (int axis = 0; axis < 3; ++axis) {
        const int u = (axis + 1) % 3;
        const int v = (axis + 2) % 3;
        for (const bool positive : {false, true}) {
            const auto first = static_cast<std::uint32_t>(body.vertices.size());
            const auto rows = static_cast<std::uint32_t>(breaks[v].size());
            for (const double a : breaks[u]) {
                for (const double b : breaks[v]) {
                    glm::dvec3 p;
                    p[axis] = positive ? breaks[axis].back() : breaks[axis].front();
                    p[u] = a;
                    p[v] = b;
                    body.add(p);
                }
            }
            for (std::uint32_t i = 0; i + 1 < breaks[u].size(); ++i) {
                for (std::uint32_t j = 0; j + 1 < rows; ++j) {
                    const std::uint32_t a = first + i * rows + j;
                    const std::uint32_t b = a + rows;
                    std::array<std::uint32_t, 4> quad{a, b, b + 1, a + 1};
                    if (!positive) {
                        std::swap(quad[1], quad[3]);
                    }
                    // Of equal diagonals the one from the first vertex cuts.
                    const bool isLower = 2 * i + 1 < breaks[u].size() - 1;
                    const bool isLeft = 2 * j + 1 < rows - 1;
                    if (cut == Cut::towardsCorners && isLower != isLeft) {
                        std::rotate(quad.begin(), quad.begin() + 1, quad.end());
                    }
                    body.addQuad(quad[0], quad[1], quad[2], quad[3]);
                }
            }
        }
    }
    return body;
}

/// The section's points counter-clockwise from the trailing edge (x = +chord/2). Points sit at
/// equal steps of the integral of (arc length rate)^0.6 over the ellipse's angle: between even arc
/// length, which would cut the sharp nose off, and even angle, which would make slivers there.
std::vector<glm::dvec3> ellipseSection(double chord, double thickness, int around) {
    const double a = chord / 2.0;
    const double b = thickness / 2.0;
    constexpr int samples = 20000;
    const double step = std::numbers::pi / 2.0 / samples;
    std::vector<double> integral(samples + 1, 0.0);
    for (int i = 0; i < samples; ++i) {
        const double t = (i + 0.5) * step;
        integral[i + 1] =
            integral[i] + std::pow(std::hypot(a * std::sin(t), b * std::cos(t)), 0.6) * step;
    }
    const int quarter = around / 4;
    std::vector<glm::dvec3> first;
    for (int i = 0; i < quarter; ++i) {
        const double wanted = integral.back() * i / quarter;
        const auto above = std::upper_bound(integral.begin(), integral.end(), wanted);
        const auto k = static_cast<double>(above - integral.begin() - 1);
        const double fraction = (wanted - *(above - 1)) / (*above - *(above - 1));
        const double t = (k + fraction) * step;
        first.emplace_back(a * std::cos(t), b * std::sin(t), 0.0);
    }
    std::vector<glm::dvec3> points = first;
    points.emplace_back(0.0, b, 0.0);
    for (int i = quarter - 1; i >= 1; --i) {
        points.emplace_back(-first[i].x, first[i].y, 0.0);
    }
    points.emplace_back(-a, 0.0, 0.0);
    for (int i = around / 2 - 1; i >= 1; --i) {
        points.emplace_back(points[i].x, -points[i].y, 0.0);
    }
    return points;
}

/// Triangles between two columns of vertices that run the same way; each step goes to whichever
/// side is behind. `outward` turns them to face +z.
void zip(Body& body, const std::vector<std::uint32_t>& left,
    const std::vector<std::uint32_t>& right, bool outward) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i + 1 < left.size() || j + 1 < right.size()) {
        const bool stepLeft =
            j + 1 == right.size() || (i + 1 < left.size() && (2 * i + 1) * (right.size() - 1) <
                                                                 (2 * j + 1) * (left.size() - 1));
        Body::Triangle t = stepLeft ? Body::Triangle{left[i], right[j], left[i + 1]}
                                    : Body::Triangle{left[i], right[j], right[j + 1]};
        if (!outward) {
            std::swap(t[1], t[2]);
        }
        body.triangles.push_back(t);
        (stepLeft ? i : j) += 1;
    }
}

} // namespace

Body subdividedSphere(double radius, int levels) {
    Body body = icosahedron();
    for (int level = 0; level < levels; ++level) {
        std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> midpoints;
        const auto middle = [&](std::uint32_t a, std::uint32_t b) {
            const auto [entry, isNew] = midpoints.try_emplace(std::minmax(a, b), 0);
            if (isNew) {
                entry->second = body.add(glm::normalize(body.vertices[a] + body.vertices[b]));
            }
            return entry->second;
        };
        std::vector<Body::Triangle> finer;
        finer.reserve(body.triangles.size() * 4);
        for (const auto& [a, b, c] : body.triangles) {
            const std::uint32_t ab = middle(a, b);
            const std::uint32_t bc = middle(b, c);
            const std::uint32_t ca = middle(c, a);
            finer.insert(finer.end(), {{a, ab, ca}, {ab, b, bc}, {ca, bc, c}, {ab, bc, ca}});
        }
        body.triangles = std::move(finer);
    }
    return body.scaled(radius);
}

Body geodesicSphere(double radius, int frequency) {
    const Body base = icosahedron();
    Body body;
    for (const Body::Triangle& t : base.triangles) {
        const auto first = static_cast<std::uint32_t>(body.vertices.size());
        for (int i = 0; i <= frequency; ++i) {
            for (int j = 0; j <= i; ++j) {
                body.add(glm::normalize(base.vertices[t[0]] * double(frequency - i) +
                                        base.vertices[t[1]] * double(i - j) +
                                        base.vertices[t[2]] * double(j)));
            }
        }
        const auto at = [first](int i, int j) {
            return first + static_cast<std::uint32_t>(i * (i + 1) / 2 + j);
        };
        for (int i = 0; i < frequency; ++i) {
            for (int j = 0; j <= i; ++j) {
                body.triangles.push_back({at(i, j), at(i + 1, j), at(i + 1, j + 1)});
                if (j < i) {
                    body.triangles.push_back({at(i, j), at(i + 1, j + 1), at(i, j + 1)});
                }
            }
        }
    }
    return body.welded(1e-9).scaled(radius);
}

Body roundedBox(const glm::dvec3& size, double radius, double flatEdge, int arcSegments) {
    std::array<std::vector<double>, 3> breaks;
    for (int axis = 0; axis < 3; ++axis) {
        breaks[axis] = roundedBreaks(size[axis] / 2.0, radius, flatEdge, arcSegments);
    }
    Body body = boxGrids(breaks, Cut::towardsCorners);
    const glm::dvec3 core = size / 2.0 - glm::dvec3(radius);
    for (glm::dvec3& v : body.vertices) {
        const glm::dvec3 inner = glm::clamp(v, -core, core);
        v = inner + radius * glm::normalize(v - inner);
    }
    return body.welded(1e-9);
}

Body box(const glm::dvec3& size, const std::array<int, 3>& parts) {
    std::array<std::vector<double>, 3> breaks;
    for (int axis = 0; axis < 3; ++axis) {
        for (int i = 0; i <= parts[axis]; ++i) {
            breaks[axis].push_back(size[axis] * (double(i) / parts[axis] - 0.5));
        }
    }
    return boxGrids(breaks, Cut::parallel).welded(1e-9 * std::max({size.x, size.y, size.z}));
}

Body ellipticWing(double chord, double thickness, double span, int around, int along) {
    const std::vector<glm::dvec3> section = ellipseSection(chord, thickness, around);
    const auto n = static_cast<std::uint32_t>(section.size());
    Body body;
    for (int k = 0; k <= along; ++k) {
        const double z = span * (double(k) / along - 0.5);
        for (const glm::dvec3& p : section) {
            body.add({p.x, p.y, z});
        }
    }
    for (std::uint32_t k = 0; k < static_cast<std::uint32_t>(along); ++k) {
        for (std::uint32_t i = 0; i < n; ++i) {
            const std::uint32_t a = k * n + i;
            const std::uint32_t b = k * n + (i + 1) % n;
            body.addQuad(a, b, b + n, a + n);
        }
    }
    // The tips: columns across the section at each station of x, upper and lower outline paired,
    // with inner vertices at about the spacing of the outline.
    for (const bool right : {false, true}) {
        const std::uint32_t rim = right ? static_cast<std::uint32_t>(along) * n : 0;
        std::vector<std::uint32_t> previous{rim};
        for (std::uint32_t i = 1; i <= n / 2; ++i) {
            std::vector<std::uint32_t> column{rim + (n - i) % n};
            const glm::dvec3 lower = body.vertices[column.front()];
            const glm::dvec3 upper = body.vertices[rim + i];
            const double spacing = 1.1 * glm::length(section[i] - section[i - 1]);
            const int parts = static_cast<int>(std::lround((upper.y - lower.y) / spacing));
            for (int k = 1; k < parts; ++k) {
                column.push_back(body.add(glm::mix(lower, upper, double(k) / parts)));
            }
            if (i < n / 2) {
                column.push_back(rim + i);
            }
            // Stations run from the trailing edge forward, so the new column is the left one.
            zip(body, column, previous, right);
            previous = std::move(column);
        }
    }
    return body;
}

} // namespace ostrella::generators
