#include "Solver/Tools/SurfaceRoad.h"

#include "Models/Precondition.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace ostrella {

namespace {

constexpr float mergeFraction = 1e-6F;
constexpr double needleQuality = 0.1;

using Cell = std::array<std::int64_t, 3>;

struct CellHash {
    std::size_t operator()(const Cell& cell) const {
        std::uint64_t hash = 0;
        for (const std::int64_t part : cell) {
            hash = (hash ^ static_cast<std::uint64_t>(part)) * 0x9E3779B97F4A7C15ULL;
            hash ^= hash >> 29;
        }
        return hash;
    }
};

/// One number a corner; corners of the same rounded position share it.
std::vector<std::uint32_t> cornerNumbers(std::span<const Vec3> positions, double cellSize) {
    std::unordered_map<Cell, std::uint32_t, CellHash> numbers;
    numbers.reserve(positions.size() / 4);
    std::vector<std::uint32_t> result;
    result.reserve(positions.size());
    for (const Vec3& p : positions) {
        const Cell cell{std::llround(p.x / cellSize), std::llround(p.y / cellSize),
            std::llround(p.z / cellSize)};
        const auto next = static_cast<std::uint32_t>(numbers.size());
        result.push_back(numbers.try_emplace(cell, next).first->second);
    }
    return result;
}

/// Whether each directed edge occurs once and its opposite once.
bool closedOriented(const std::vector<std::uint32_t>& corners) {
    std::vector<std::uint64_t> along;
    std::vector<std::uint64_t> against;
    along.reserve(corners.size());
    against.reserve(corners.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const std::uint64_t from = corners[i];
        const std::uint64_t to = corners[i % 3 == 2 ? i - 2 : i + 1];
        along.push_back(from << 32U | to);
        against.push_back(to << 32U | from);
    }
    std::ranges::sort(along);
    std::ranges::sort(against);
    return std::ranges::adjacent_find(along) == along.end() && along == against;
}

} // namespace

std::string SurfaceRoad::scriptValue() const {
    switch (kind) {
    case Kind::keep:
        // Without facets the mesher has its own words for that.
        return fmt::format("{:.6g}", std::max(typicalEdge, 1e-6F));
    case Kind::remesh:
        return "0";
    case Kind::refuse:
        return "-1";
    }
    return "-1";
}

SurfaceCensus surfaceCensus(std::span<const Vec3> positions) {
    precondition(positions.size() % 3 == 0, "a facet has three corners");
    SurfaceCensus census;
    census.facets = positions.size() / 3;
    if (positions.empty()) {
        return census;
    }
    Vec3 low = positions[0];
    Vec3 high = positions[0];
    for (const Vec3& p : positions) {
        low = glm::min(low, p);
        high = glm::max(high, p);
    }
    const Vec3 size = high - low;
    const float extent = std::max({size.x, size.y, size.z});
    const double cellSize = std::max(extent * mergeFraction, 1e-30F);
    const std::vector<std::uint32_t> corners = cornerNumbers(positions, cellSize);

    std::vector<float> edges;
    edges.reserve(positions.size());
    for (std::size_t i = 0; i < positions.size(); i += 3) {
        const Vec3 a = positions[i + 1] - positions[i];
        const Vec3 b = positions[i + 2] - positions[i + 1];
        const Vec3 c = positions[i] - positions[i + 2];
        for (const Vec3& edge : {a, b, c}) {
            edges.push_back(std::sqrt(squaredLength(edge)));
        }
        const double squares =
            double{squaredLength(a)} + double{squaredLength(b)} + double{squaredLength(c)};
        const double twiceArea = std::sqrt(double{squaredLength(cross(a, b))});
        const bool collapsed = corners[i] == corners[i + 1] || corners[i + 1] == corners[i + 2] ||
                               corners[i + 2] == corners[i];
        if (collapsed || twiceArea <= 0.0) {
            ++census.degenerate;
        } else if (2.0 * std::sqrt(3.0) * twiceArea < needleQuality * squares) {
            ++census.needles;
        }
    }
    census.longestEdge = std::ranges::max(edges);
    const auto middle = edges.begin() + static_cast<std::ptrdiff_t>(edges.size() / 2);
    std::ranges::nth_element(edges, middle);
    census.medianEdge = *middle;
    census.closed = closedOriented(corners);
    return census;
}

SurfaceRoad surfaceRoad(std::span<const Vec3> positions, float lcMin, float lcMax) {
    using Kind = SurfaceRoad::Kind;
    const SurfaceCensus census = surfaceCensus(positions);
    const float wanted = std::min(lcMin, lcMax);
    const bool even = census.needles == 0 && census.degenerate == 0;
    const bool sized = census.medianEdge >= wanted / 4.0F && census.longestEdge <= 4.0F * wanted;
    if (even && sized) {
        return {Kind::keep, census.medianEdge};
    }
    if (census.closed && census.degenerate == 0) {
        return {Kind::remesh, census.medianEdge};
    }
    return {census.needles > 0 ? Kind::refuse : Kind::keep, census.medianEdge};
}

} // namespace ostrella
