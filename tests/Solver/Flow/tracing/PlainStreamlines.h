#pragma once

#include "Models/Streamlines.h"
#include "Models/VolumeField.h"
#include "Solver/Flow/StreamlineFocus.h"
#include "Solver/Flow/tracing/PlainGrid.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace ostrella::plain {

/// A whole number's cube root, cut off, by trial.
inline int cubeRoot(std::size_t count) {
    std::size_t root = 0;
    while ((root + 1) * (root + 1) * (root + 1) <= count)
        ++root;
    return static_cast<int>(root);
}

/// The points near a body and how the flow is sampled there, written plainly.
struct Flow {
    std::vector<Vec3> positions;
    std::vector<Vec3> velocities;
    std::optional<Grid> grid;

    Flow(const VolumeField& volume, const StreamlineFocus& focus) {
        const float m = std::max(std::max(focus.size.x, focus.size.y), focus.size.z);
        const float l = std::max(focus.size.x, 0.25F * m);
        const float path = l + focus.upstreamFactor * l + focus.downstreamFactor * l;
        const float h = std::max(0.7F * path, 2.0F * m);
        for (std::size_t i = 0; i < volume.positions.size(); ++i) {
            const Vec3 p = volume.positions[i];
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
        grid.emplace(positions, std::max(8, cubeRoot(positions.size())));
    }

    struct Sums {
        Vec3 velocity{0.0F};
        float weight = 0.0F;
        int wall = 0;
    };

    Sums sums(const Vec3& q, int k) const {
        Sums sums;
        for (const int neighbor : grid->findKNearest(q, positions, k)) {
            const Vec3 v = velocities[static_cast<std::size_t>(neighbor)];
            if (v.x * v.x + v.y * v.y + v.z * v.z < 1e-6F) {
                ++sums.wall;
                continue;
            }
            const Vec3 d = positions[static_cast<std::size_t>(neighbor)] - q;
            const float d2 = std::max(d.x * d.x + d.y * d.y + d.z * d.z, 1e-9F);
            const float w = 1.0F / d2;
            sums.velocity = {
                sums.velocity.x + w * v.x, sums.velocity.y + w * v.y, sums.velocity.z + w * v.z};
            sums.weight += w;
        }
        return sums;
    }

    Vec3 velocityAt(const Vec3& q) const {
        const Sums s = sums(q, 8);
        if (s.weight == 0.0F)
            return Vec3(0.0F);
        return {s.velocity.x / s.weight, s.velocity.y / s.weight, s.velocity.z / s.weight};
    }

    Vec3 latticeVelocityAt(const Vec3& q) const {
        const Sums s = sums(q, 6);
        if (s.wall > 3 || s.weight == 0.0F)
            return Vec3(std::numeric_limits<float>::quiet_NaN());
        return {s.velocity.x / s.weight, s.velocity.y / s.weight, s.velocity.z / s.weight};
    }
};

inline std::vector<Vec3> makeSeeds(int count, const StreamlineFocus& focus) {
    const float m = std::max(std::max(focus.size.x, focus.size.y), focus.size.z);
    const float l = std::max(focus.size.x, 0.25F * m);
    const float m4 = 0.25F * m;
    const float x0 = focus.center.x - 0.5F * focus.size.x - focus.upstreamFactor * l;
    const float halfY = std::max(0.75F * focus.size.y, m4);
    const float halfZ = std::max(0.75F * focus.size.z, m4);
    std::vector<Vec3> seeds;
    if (!focus.isVolumetric) {
        for (int i = 0; i < count; ++i) {
            const float t =
                static_cast<float>(i) / static_cast<float>(std::max(count, 2) - 1) - 0.5F;
            seeds.emplace_back(x0, focus.center.y + halfY * 2.0F * t, focus.center.z);
        }
        return seeds;
    }
    const int g = std::max(2, static_cast<int>(std::lround(std::sqrt(static_cast<double>(count)))));
    for (int i = 0; i < g; ++i) {
        for (int j = 0; j < g; ++j) {
            const float u = static_cast<float>(i) / static_cast<float>(g - 1) - 0.5F;
            const float v = static_cast<float>(j) / static_cast<float>(g - 1) - 0.5F;
            seeds.emplace_back(
                x0, focus.center.y + halfY * 2.0F * v, focus.center.z + halfZ * 2.0F * u);
        }
    }
    return seeds;
}

/// StreamlineGenerator::generate for a volume with points, written plainly.
inline Streamlines streamlines(const VolumeField& volume, float freeStreamVelocity,
    std::optional<StreamlineFocus> given, std::optional<int> seedCount, int stepCount) {
    StreamlineFocus focus;
    if (given) {
        focus = *given;
    } else {
        focus.center = (volume.boundingMin + volume.boundingMax) * 0.5F;
        focus.size = (volume.boundingMax - volume.boundingMin) * 0.05F;
        focus.isVolumetric =
            0.1F * std::max(std::max(focus.size.x, focus.size.y), focus.size.z) < focus.size.z;
        focus.upstreamFactor = 0.5F;
        focus.downstreamFactor = 2.0F;
    }
    const Flow flow(volume, focus);
    const float m = std::max(std::max(focus.size.x, focus.size.y), focus.size.z);
    const float l = std::max(focus.size.x, 0.25F * m);
    const float path = l + focus.upstreamFactor * l + focus.downstreamFactor * l;
    const auto seeds = makeSeeds(seedCount.value_or(focus.isVolumetric ? 196 : 100), focus);
    const float dt = path / (std::max(freeStreamVelocity, 0.1F) * static_cast<float>(stepCount));
    const float h2 = dt / 2.0F;
    const float xLimit = focus.center.x + 0.5F * focus.size.x + focus.downstreamFactor * l;

    std::vector<float> vertices;
    std::vector<std::uint32_t> indices;
    Streamlines lines;
    lines.seedCount = seeds.size();
    lines.magnitudeMin = std::numeric_limits<float>::max();
    lines.magnitudeMax = -std::numeric_limits<float>::max();
    lines.boundingMin = Vec3(std::numeric_limits<float>::max());
    lines.boundingMax = Vec3(-std::numeric_limits<float>::max());
    for (Vec3 p : seeds) {
        for (int step = 0; step < stepCount; ++step) {
            const Vec3 k1 = flow.velocityAt(p);
            const float speed = std::sqrt(k1.x * k1.x + k1.y * k1.y + k1.z * k1.z);
            if (speed < 1e-4F)
                break;
            const auto index = static_cast<std::uint32_t>(vertices.size() / 4);
            for (const float value : {p.x, p.y, p.z, speed})
                vertices.push_back(value);
            if (step > 0) {
                indices.push_back(index - 1);
                indices.push_back(index);
            }
            lines.magnitudeMin = std::min(lines.magnitudeMin, speed);
            lines.magnitudeMax = std::max(lines.magnitudeMax, speed);
            for (int axis = 0; axis < 3; ++axis) {
                lines.boundingMin[axis] = std::min(lines.boundingMin[axis], p[axis]);
                lines.boundingMax[axis] = std::max(lines.boundingMax[axis], p[axis]);
            }
            const Vec3 k2 = flow.velocityAt({p.x + h2 * k1.x, p.y + h2 * k1.y, p.z + h2 * k1.z});
            const Vec3 k3 = flow.velocityAt({p.x + h2 * k2.x, p.y + h2 * k2.y, p.z + h2 * k2.z});
            const Vec3 k4 = flow.velocityAt({p.x + dt * k3.x, p.y + dt * k3.y, p.z + dt * k3.z});
            bool ends = false;
            for (int axis = 0; axis < 3; ++axis) {
                float sum = k1[axis] + 2.0F * k2[axis];
                sum = sum + 2.0F * k3[axis];
                sum = sum + k4[axis];
                sum = sum * dt;
                sum = sum / 6.0F;
                p[axis] = sum + p[axis];
                ends = ends || p[axis] < volume.boundingMin[axis] ||
                       p[axis] > volume.boundingMax[axis] || std::isnan(p[axis]);
            }
            if (ends || p.x > xLimit)
                break;
        }
    }
    if (vertices.empty() || !std::isfinite(lines.magnitudeMin) ||
        !std::isfinite(lines.magnitudeMax) || lines.magnitudeMax < lines.magnitudeMin) {
        lines.magnitudeMin = 0.0F;
        lines.magnitudeMax = std::max(freeStreamVelocity, 1.0F);
    }
    if (vertices.empty()) {
        lines.boundingMin = volume.boundingMin;
        lines.boundingMax = volume.boundingMax;
    }
    lines.vertexCount = vertices.size() / 4;
    lines.indexCount = indices.size();
    lines.interleavedVertices = std::move(vertices);
    lines.indices = std::move(indices);
    return lines;
}

} // namespace ostrella::plain
