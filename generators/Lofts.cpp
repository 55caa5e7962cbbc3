#include "Lofts.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include "Shapes.h"

namespace ostrella::generators {

namespace {

/// Far below every detail of our shapes, and far above rounding.
constexpr double mergeFraction = 1e-10;

Body merged(const Body& body) {
    double largest = 0.0;
    for (const glm::dvec3& v : body.vertices) {
        largest = std::max({largest, std::abs(v.x), std::abs(v.y), std::abs(v.z)});
    }
    return body.welded(mergeFraction * largest);
}

void addFan(Body& body, std::span<const glm::dvec3> points, std::uint32_t first, bool isFront) {
    glm::dvec3 middle(0.0);
    for (const glm::dvec3& p : points) {
        middle += p / double(points.size());
    }
    const std::uint32_t hub = body.add(middle);
    const auto n = static_cast<std::uint32_t>(points.size());
    for (std::uint32_t i = 0; i < n; ++i) {
        const std::uint32_t a = first + i;
        const std::uint32_t b = first + (i + 1) % n;
        body.triangles.push_back(isFront ? Body::Triangle{hub, a, b} : Body::Triangle{hub, b, a});
    }
}

/// Two directions across `along`, right-handed with it.
std::array<glm::dvec3, 2> across(const glm::dvec3& along) {
    const glm::dvec3 t = glm::normalize(along);
    const glm::dvec3 helper = std::abs(t.y) < 0.9 ? glm::dvec3(0, 1, 0) : glm::dvec3(0, 0, 1);
    const glm::dvec3 first = glm::normalize(glm::cross(helper, t));
    return {first, glm::cross(t, first)};
}

Section circle(
    const glm::dvec3& middle, const std::array<glm::dvec3, 2>& axes, double radius, int around) {
    Section section;
    for (int i = 0; i < around; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / around;
        section.push_back(
            middle + radius * (std::cos(angle) * axes[0] + std::sin(angle) * axes[1]));
    }
    return section;
}

/// Circles along the path whose axes turn no more than the path does: each pair is the one before
/// it, brought square to the path again.
std::vector<Section> circlesAlong(
    std::span<const glm::dvec3> path, double radius, int around, bool isClosed) {
    const std::size_t n = path.size();
    const auto tangentAt = [&](std::size_t i) {
        const std::size_t after = isClosed ? (i + 1) % n : std::min(i + 1, n - 1);
        const std::size_t before = isClosed ? (i + n - 1) % n : i - std::min<std::size_t>(i, 1);
        return glm::normalize(path[after] - path[before]);
    };
    std::vector<Section> sections;
    std::array<glm::dvec3, 2> axes = across(tangentAt(0));
    for (std::size_t i = 0; i < n; ++i) {
        const glm::dvec3 tangent = tangentAt(i);
        axes[0] = glm::normalize(axes[0] - tangent * glm::dot(axes[0], tangent));
        axes[1] = glm::cross(tangent, axes[0]);
        sections.push_back(circle(path[i], axes, radius, around));
    }
    return sections;
}

} // namespace

Body loft(std::span<const Section> sections, Ends ends) {
    Body body;
    const auto n = static_cast<std::uint32_t>(sections.front().size());
    for (const Section& section : sections) {
        for (const glm::dvec3& p : section) {
            body.add(p);
        }
    }
    for (std::uint32_t k = 0; k + 1 < sections.size(); ++k) {
        for (std::uint32_t i = 0; i < n; ++i) {
            const std::uint32_t a = k * n + i;
            const std::uint32_t b = k * n + (i + 1) % n;
            body.addQuad(a, b, b + n, a + n);
        }
    }
    if (ends == Ends::closed) {
        const auto last = static_cast<std::uint32_t>(sections.size() - 1) * n;
        addFan(body, sections.front(), 0, false);
        addFan(body, sections.back(), last, true);
    }
    return merged(body);
}

Body sheet(int uSteps, int vSteps, const std::function<glm::dvec3(double, double)>& map) {
    Body body;
    const auto row = static_cast<std::uint32_t>(vSteps + 1);
    for (int i = 0; i <= uSteps; ++i) {
        for (int j = 0; j <= vSteps; ++j) {
            body.add(map(double(i) / uSteps, double(j) / vSteps));
        }
    }
    for (std::uint32_t i = 0; i < static_cast<std::uint32_t>(uSteps); ++i) {
        for (std::uint32_t j = 0; j + 1 < row; ++j) {
            const std::uint32_t a = i * row + j;
            body.addQuad(a, a + row, a + row + 1, a + 1);
        }
    }
    return merged(body);
}

Body revolution(std::span<const glm::dvec2> profile, int around, Ends ends) {
    std::vector<Section> sections;
    for (const glm::dvec2& p : profile) {
        sections.push_back(
            circle({p.x, 0, 0}, {glm::dvec3(0, 1, 0), glm::dvec3(0, 0, 1)}, p.y, around));
    }
    return loft(sections, ends);
}

Body bar(const glm::dvec3& a, const glm::dvec3& b, double radius, int around, Ends ends) {
    const auto axes = across(b - a);
    const std::array sections{circle(a, axes, radius, around), circle(b, axes, radius, around)};
    return loft(sections, ends);
}

Body tube(std::span<const glm::dvec3> path, double radius, int around, Ends ends) {
    return loft(circlesAlong(path, radius, around, false), ends);
}

Body closedTube(std::span<const glm::dvec3> path, double radius, int around) {
    std::vector<Section> sections = circlesAlong(path, radius, around, true);
    // Plane paths bring the first circle back as it was.
    sections.push_back(sections.front());
    return loft(sections, Ends::open);
}

Body prism(std::span<const glm::dvec2> outline, double depth) {
    std::array<Section, 2> sections;
    for (const glm::dvec2& p : outline) {
        sections[0].emplace_back(p.x, p.y, -depth / 2.0);
        sections[1].emplace_back(p.x, p.y, depth / 2.0);
    }
    return loft(sections, Ends::closed);
}

Body boxBetween(const glm::dvec3& low, const glm::dvec3& high) {
    return box(high - low, {1, 1, 1}).translated((low + high) / 2.0);
}

} // namespace ostrella::generators
