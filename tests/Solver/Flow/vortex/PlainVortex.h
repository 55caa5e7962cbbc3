#pragma once

#include "Models/IsoSurface.h"
#include "Models/VolumeField.h"
#include "Solver/Flow/Lattice.h"
#include "Solver/Flow/MCTables.h"
#include "Solver/Flow/StreamlineFocus.h"
#include "Solver/Flow/TriangleSurface.h"
#include "Solver/Flow/tracing/PlainGrid.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

namespace ostrella::plain {

/// The vortex surface as one would first write it: every stage a few nested loops, one float
/// operation after the other. What the fast one is compared with, bit by bit, in tests and
/// benchmarks.
namespace Vortex {

inline constexpr float nan = std::numeric_limits<float>::quiet_NaN();

inline std::vector<Vec3> latticeVelocities(
    const VolumeField& volume, const StreamlineFocus& focus, const Lattice& lattice) {
    const float m = std::max({focus.size.x, focus.size.y, focus.size.z});
    const float l = std::max(focus.size.x, 0.25F * m);
    const float path = l + focus.upstreamFactor * l + focus.downstreamFactor * l;
    const float h = std::max(0.7F * path, 2.0F * m);
    std::vector<Vec3> positions;
    std::vector<Vec3> velocities;
    for (std::size_t i = 0; i < volume.positions.size(); ++i) {
        const Vec3& p = volume.positions[i];
        if (std::abs(p.x - focus.center.x) <= h && std::abs(p.y - focus.center.y) <= h &&
            std::abs(p.z - focus.center.z) <= h) {
            positions.push_back(p);
            velocities.push_back(volume.velocity[i]);
        }
    }
    if (positions.empty()) {
        positions.assign(volume.positions.begin(), volume.positions.end());
        velocities.assign(volume.velocity.begin(), volume.velocity.end());
    }
    int root = 1;
    while (static_cast<std::size_t>(root + 1) * static_cast<std::size_t>(root + 1) *
               static_cast<std::size_t>(root + 1) <=
           positions.size())
        ++root;
    const Grid grid(positions, std::max(8, root));
    std::vector<Vec3> result;
    for (std::size_t k = 0; k < lattice.points; ++k) {
        for (std::size_t j = 0; j < lattice.points; ++j) {
            for (std::size_t i = 0; i < lattice.points; ++i) {
                const Vec3 q(lattice.origin.x + lattice.cellSize.x * static_cast<float>(i),
                    lattice.origin.y + lattice.cellSize.y * static_cast<float>(j),
                    lattice.origin.z + lattice.cellSize.z * static_cast<float>(k));
                Vec3 sum(0.0F);
                float weights = 0.0F;
                int walls = 0;
                for (const int index : grid.findKNearest(q, positions, 6)) {
                    const Vec3& v = velocities[static_cast<std::size_t>(index)];
                    if (v.x * v.x + v.y * v.y + v.z * v.z < 1e-6F) {
                        ++walls;
                        continue;
                    }
                    const Vec3 d = positions[static_cast<std::size_t>(index)] - q;
                    const float w = 1.0F / std::max(d.x * d.x + d.y * d.y + d.z * d.z, 1e-9F);
                    sum.x += w * v.x;
                    sum.y += w * v.y;
                    sum.z += w * v.z;
                    weights += w;
                }
                const bool unknown = walls > 3 || weights == 0.0F;
                result.push_back(
                    unknown ? Vec3(nan) : Vec3(sum.x / weights, sum.y / weights, sum.z / weights));
            }
        }
    }
    return result;
}

inline std::vector<float> q(const std::vector<Vec3>& velocity, const Lattice& lattice) {
    std::vector<float> result(lattice.count(), nan);
    for (std::size_t k = 1; k + 1 < lattice.points; ++k) {
        for (std::size_t j = 1; j + 1 < lattice.points; ++j) {
            for (std::size_t i = 1; i + 1 < lattice.points; ++i) {
                const Vec3& x0 = velocity[lattice.index(i - 1, j, k)];
                const Vec3& x1 = velocity[lattice.index(i + 1, j, k)];
                const Vec3& y0 = velocity[lattice.index(i, j - 1, k)];
                const Vec3& y1 = velocity[lattice.index(i, j + 1, k)];
                const Vec3& z0 = velocity[lattice.index(i, j, k - 1)];
                const Vec3& z1 = velocity[lattice.index(i, j, k + 1)];
                bool known = true;
                for (const Vec3& v : {x0, x1, y0, y1, z0, z1})
                    known = known && std::isfinite(v.x);
                if (!known)
                    continue;
                const float rx = 1.0F / (2.0F * lattice.cellSize.x);
                const float ry = 1.0F / (2.0F * lattice.cellSize.y);
                const float rz = 1.0F / (2.0F * lattice.cellSize.z);
                const float ux = rx * (x1.x - x0.x);
                const float vx = rx * (x1.y - x0.y);
                const float wx = rx * (x1.z - x0.z);
                const float uy = ry * (y1.x - y0.x);
                const float vy = ry * (y1.y - y0.y);
                const float wy = ry * (y1.z - y0.z);
                const float uz = rz * (z1.x - z0.x);
                const float vz = rz * (z1.y - z0.y);
                const float wz = rz * (z1.z - z0.z);
                const float s12 = (vx + uy) / 2.0F;
                const float s23 = (wy + vz) / 2.0F;
                const float s13 = (wx + uz) / 2.0F;
                const float w12 = (vx - uy) / 2.0F;
                const float w23 = (wy - vz) / 2.0F;
                const float w13 = (uz - wx) / 2.0F;
                const float s =
                    ux * ux + vy * vy + wz * wz + 2.0F * (s12 * s12 + s23 * s23 + s13 * s13);
                const float o = 2.0F * (w12 * w12 + w23 * w23 + w13 * w13);
                result[lattice.index(i, j, k)] = (o - s) / 2.0F;
            }
        }
    }
    return result;
}

inline std::vector<float> boxFilter(const std::vector<float>& scalars, std::size_t dim) {
    const Lattice lattice{dim, Vec3(0.0F), Vec3(0.0F)};
    std::vector<float> result = scalars;
    for (std::size_t k = 1; k + 1 < dim; ++k) {
        for (std::size_t j = 1; j + 1 < dim; ++j) {
            for (std::size_t i = 1; i + 1 < dim; ++i) {
                float sum = 0.0F;
                int known = 0;
                for (std::size_t z = k - 1; z <= k + 1; ++z) {
                    for (std::size_t y = j - 1; y <= j + 1; ++y) {
                        for (std::size_t x = i - 1; x <= i + 1; ++x) {
                            const float value = scalars[lattice.index(x, y, z)];
                            if (std::isfinite(value)) {
                                sum += value;
                                ++known;
                            }
                        }
                    }
                }
                if (known > 0)
                    result[lattice.index(i, j, k)] = sum / static_cast<float>(known);
            }
        }
    }
    return result;
}

inline std::optional<float> isoLevel(const std::vector<float>& scalars, float percentile) {
    std::vector<float> positive;
    for (const float value : scalars) {
        if (std::isfinite(value) && value > 0.0F)
            positive.push_back(value);
    }
    if (positive.empty())
        return std::nullopt;
    std::sort(positive.begin(), positive.end());
    const float place = percentile * static_cast<float>(positive.size() - 1) / 100.0F;
    return positive[std::min(positive.size() - 1, static_cast<std::size_t>(place))];
}

inline std::vector<Vec3> marchingCubes(
    const std::vector<float>& scalars, const Lattice& lattice, float iso) {
    static constexpr std::size_t offset[8][3] = {
        {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
    std::vector<Vec3> result;
    for (std::size_t k = 0; k + 1 < lattice.points; ++k) {
        for (std::size_t j = 0; j + 1 < lattice.points; ++j) {
            for (std::size_t i = 0; i + 1 < lattice.points; ++i) {
                float value[8];
                Vec3 at[8];
                bool known = true;
                std::size_t row = 0;
                for (std::size_t n = 0; n < 8; ++n) {
                    const auto [x, y, z] =
                        std::tuple(i + offset[n][0], j + offset[n][1], k + offset[n][2]);
                    value[n] = scalars[lattice.index(x, y, z)];
                    at[n] = {lattice.origin.x + lattice.cellSize.x * static_cast<float>(x),
                        lattice.origin.y + lattice.cellSize.y * static_cast<float>(y),
                        lattice.origin.z + lattice.cellSize.z * static_cast<float>(z)};
                    known = known && std::isfinite(value[n]);
                    row += value[n] < iso ? std::size_t{1} << n : 0;
                }
                if (!known)
                    continue;
                for (const int edge : MCTables::triTable[row]) {
                    if (edge == -1)
                        break;
                    const auto [a, b] = MCTables::edgeToCorners[static_cast<std::size_t>(edge)];
                    const float difference = value[b] - value[a];
                    float t = 0.5F;
                    if (std::abs(difference) > 1e-12F)
                        t = (iso - value[a]) / difference;
                    Vec3 point;
                    for (int axis = 0; axis < 3; ++axis)
                        point[axis] = std::fma(t, at[b][axis] - at[a][axis], at[a][axis]);
                    result.push_back(point);
                }
            }
        }
    }
    return result;
}

inline TriangleSurface shared(const std::vector<Vec3>& corners) {
    Vec3 low = corners[0];
    Vec3 high = corners[0];
    for (const Vec3& p : corners) {
        for (int axis = 0; axis < 3; ++axis) {
            low[axis] = std::min(low[axis], p[axis]);
            high[axis] = std::max(high[axis], p[axis]);
        }
    }
    const Vec3 extent = high - low;
    const float eps = std::max(1e-5F * std::max({extent.x, extent.y, extent.z}), 1e-9F);
    const float inverse = 1.0F / eps;
    TriangleSurface surface;
    std::map<std::tuple<long, long, long>, std::uint32_t> known;
    for (std::size_t at = 0; at < corners.size(); at += 3) {
        const Vec3 e = corners[at + 1] - corners[at];
        const Vec3 f = corners[at + 2] - corners[at];
        const Vec3 n(e.y * f.z - e.z * f.y, e.z * f.x - e.x * f.z, e.x * f.y - e.y * f.x);
        if (n.x * n.x + n.y * n.y + n.z * n.z < 1e-20F)
            continue;
        for (std::size_t c = at; c < at + 3; ++c) {
            const Vec3& p = corners[c];
            const auto [entry, isNew] =
                known.try_emplace({std::lround(inverse * p.x), std::lround(inverse * p.y),
                                      std::lround(inverse * p.z)},
                    static_cast<std::uint32_t>(known.size()));
            if (isNew) {
                surface.positions.push_back(p);
                surface.normals.emplace_back(0.0F);
            }
            Vec3& sum = surface.normals[entry->second];
            sum = isNew ? n : Vec3(sum.x + n.x, sum.y + n.y, sum.z + n.z);
            surface.indices.push_back(entry->second);
        }
    }
    for (Vec3& n : surface.normals) {
        const float squared = n.x * n.x + n.y * n.y + n.z * n.z;
        const float length = std::sqrt(squared);
        n = squared > 1e-12F ? Vec3(n.x / length, n.y / length, n.z / length)
                             : Vec3(0.0F, 1.0F, 0.0F);
    }
    return surface;
}

/// Components by painting: the least label among a triangle's corners spreads until nothing moves.
inline TriangleSurface withoutFragments(const TriangleSurface& surface) {
    std::vector<std::uint32_t> label(surface.positions.size());
    for (std::size_t i = 0; i < label.size(); ++i)
        label[i] = static_cast<std::uint32_t>(i);
    for (bool moved = true; moved;) {
        moved = false;
        for (std::size_t at = 0; at < surface.indices.size(); at += 3) {
            const auto* v = surface.indices.data() + at;
            const auto least = std::min({label[v[0]], label[v[1]], label[v[2]]});
            for (int c = 0; c < 3; ++c) {
                moved = moved || label[v[c]] != least;
                label[v[c]] = least;
            }
        }
    }
    std::map<std::uint32_t, std::size_t> count;
    for (std::size_t at = 0; at < surface.indices.size(); at += 3)
        ++count[label[surface.indices[at]]];
    std::size_t largest = 0;
    for (const auto& [name, triangles] : count)
        largest = std::max(largest, triangles);
    const std::size_t threshold = largest < 200 ? 10 : largest / 20;
    if (largest < threshold)
        return surface;
    TriangleSurface result;
    std::map<std::uint32_t, std::uint32_t> number;
    for (std::size_t at = 0; at < surface.indices.size(); ++at) {
        const std::uint32_t vertex = surface.indices[at];
        if (count[label[vertex]] < threshold)
            continue;
        const auto [entry, isNew] =
            number.try_emplace(vertex, static_cast<std::uint32_t>(number.size()));
        if (isNew) {
            result.positions.push_back(surface.positions[vertex]);
            result.normals.push_back(surface.normals[vertex]);
        }
        result.indices.push_back(entry->second);
    }
    return result;
}

inline std::optional<IsoSurface> extract(const VolumeField& volume, const StreamlineFocus& focus,
    const Lattice& lattice, float percentile) {
    const auto velocity = latticeVelocities(volume, focus, lattice);
    const auto smooth = boxFilter(q(velocity, lattice), lattice.points);
    const auto iso = isoLevel(smooth, percentile);
    if (!iso)
        return std::nullopt;
    const auto corners = marchingCubes(smooth, lattice, *iso);
    if (corners.empty())
        return std::nullopt;
    auto surface = shared(corners);
    if (!surface.indices.empty())
        surface = withoutFragments(surface);
    if (surface.indices.empty())
        return std::nullopt;
    Vec3 low = surface.positions[0];
    Vec3 high = surface.positions[0];
    for (const Vec3& p : surface.positions) {
        for (int axis = 0; axis < 3; ++axis) {
            low[axis] = std::min(low[axis], p[axis]);
            high[axis] = std::max(high[axis], p[axis]);
        }
    }
    return IsoSurface{surface.positions, surface.normals, surface.indices, low, high, *iso};
}

} // namespace Vortex

} // namespace ostrella::plain
