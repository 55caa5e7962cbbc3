#include "Solver/Flow/MarchingCubes.h"

#include "Models/Precondition.h"
#include "Solver/Flow/CancelPoint.h"
#include "Solver/Flow/Lattice.h"
#include "Solver/Flow/MCTables.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

namespace ostrella {

namespace {

struct Corner {
    std::size_t i;
    std::size_t j;
    std::size_t k;
};

/// The corners of a cell from its lowest one, in the tables' order.
constexpr std::array<Corner, 8> corners = {
    {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}};

class Surface {
public:
    Surface(std::span<const float> scalars, const Lattice& lattice, float iso)
        : scalars_(scalars), lattice_(lattice), iso_(iso), rowReaches_(lattice.points * 2) {}

    /// Adds the triangles of one layer of cells.
    void addLayer(std::size_t k);

    std::vector<float> takeTriangles() && { return std::move(triangles_); }

private:
    bool reachesLevel(std::size_t j, std::size_t k) const;
    void addRow(std::size_t j, std::size_t k);
    void addCell(std::size_t i, std::size_t j, std::size_t k);
    Vec3 edgePoint(std::size_t edge, const std::array<float, 8>& values,
        const std::array<Vec3, 8>& positions) const;

    std::span<const float> scalars_;
    const Lattice& lattice_;
    float iso_;
    std::vector<std::uint8_t> rowReaches_;
    std::vector<float> triangles_;
};

/// Whether a value of the row along x is not below the level. Where none of a cell's four rows has
/// one, the surface does not pass; the level is high, so that is so nearly everywhere.
bool Surface::reachesLevel(std::size_t j, std::size_t k) const {
    const float* row = scalars_.data() + lattice_.index(0, j, k);
    int reaches = 0;
    for (std::size_t i = 0; i < lattice_.points; ++i)
        reaches |= static_cast<int>(row[i] >= iso_);
    return reaches != 0;
}

void Surface::addLayer(std::size_t k) {
    const std::size_t points = lattice_.points;
    std::uint8_t* lower = rowReaches_.data();
    std::uint8_t* upper = lower + points;
    for (std::size_t j = 0; j < points; ++j) {
        lower[j] = k == 0 ? static_cast<std::uint8_t>(reachesLevel(j, 0)) : upper[j];
        upper[j] = static_cast<std::uint8_t>(reachesLevel(j, k + 1));
    }
    for (std::size_t j = 0; j + 1 < points; ++j) {
        if ((lower[j] | lower[j + 1] | upper[j] | upper[j + 1]) != 0)
            addRow(j, k);
    }
}

void Surface::addRow(std::size_t j, std::size_t k) {
    const float* rows[4] = {scalars_.data() + lattice_.index(0, j, k),
        scalars_.data() + lattice_.index(0, j + 1, k),
        scalars_.data() + lattice_.index(0, j, k + 1),
        scalars_.data() + lattice_.index(0, j + 1, k + 1)};
    const auto columnReaches = [&](std::size_t i) {
        return (rows[0][i] >= iso_) | (rows[1][i] >= iso_) | (rows[2][i] >= iso_) |
               (rows[3][i] >= iso_);
    };
    bool left = columnReaches(0);
    for (std::size_t i = 0; i + 1 < lattice_.points; ++i) {
        const bool right = columnReaches(i + 1);
        if (left || right)
            addCell(i, j, k);
        left = right;
    }
}

void Surface::addCell(std::size_t i, std::size_t j, std::size_t k) {
    std::array<float, 8> values{};
    unsigned row = 0;
    for (std::size_t n = 0; n < corners.size(); ++n) {
        const Corner& corner = corners[n];
        values[n] = scalars_[lattice_.index(i + corner.i, j + corner.j, k + corner.k)];
        if (!std::isfinite(values[n]))
            return;
        row |= static_cast<unsigned>(values[n] < iso_) << n;
    }
    const unsigned cut = MCTables::edgeTable[row];
    if (cut == 0)
        return;
    std::array<Vec3, 8> positions;
    for (std::size_t n = 0; n < corners.size(); ++n)
        positions[n] = lattice_.position(i + corners[n].i, j + corners[n].j, k + corners[n].k);
    std::array<Vec3, 12> points;
    for (std::size_t edge = 0; edge < points.size(); ++edge) {
        if ((cut >> edge & 1U) != 0)
            points[edge] = edgePoint(edge, values, positions);
    }
    for (const std::int8_t edge : MCTables::triTable[row]) {
        if (edge < 0)
            break;
        const Vec3& point = points[static_cast<std::uint8_t>(edge)];
        triangles_.insert(triangles_.end(), {point.x, point.y, point.z});
    }
}

/// Where an edge crosses the level, by linear interpolation; its middle where its ends differ too
/// little to tell.
Vec3 Surface::edgePoint(std::size_t edge, const std::array<float, 8>& values,
    const std::array<Vec3, 8>& positions) const {
    const auto [a, b] = MCTables::edgeToCorners[edge];
    const float difference = values[b] - values[a];
    const float t = std::fabs(difference) > 1e-12F ? (iso_ - values[a]) / difference : 0.5F;
    const Vec3& from = positions[a];
    const Vec3 along = positions[b] - from;
    return {
        std::fma(t, along.x, from.x), std::fma(t, along.y, from.y), std::fma(t, along.z, from.z)};
}

} // namespace

std::vector<float> marchingCubes(std::span<const float> scalars, std::size_t dim,
    const Vec3& origin, const Vec3& cellSize, float iso, const std::function<bool()>& isCancelled) {
    const Lattice lattice{dim, origin, cellSize};
    precondition(scalars.size() == lattice.count(), "a lattice needs one scalar for each point");
    Surface surface(scalars, lattice, iso);
    for (std::size_t k = 0; k + 1 < dim; ++k) {
        cancelPoint(isCancelled);
        surface.addLayer(k);
    }
    return std::move(surface).takeTriangles();
}

} // namespace ostrella
