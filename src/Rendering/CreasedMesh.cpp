#include "Rendering/CreasedMesh.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>
#include <utility>

namespace ostrella {

namespace {

using Normal = glm::dvec3;

/// One corner of a triangle at a vertex that has several smooth sides.
struct Corner {
    std::uint32_t vertex = 0;
    std::uint32_t place = 0; ///< in the indices
};

double cosine(double degrees) {
    return std::cos(degrees * std::numbers::pi / 180);
}

/// The unit vector along `sum`; zeros where there is none.
Normal unit(const Normal& sum) {
    const double length = glm::length(sum);
    return length > 0 && std::isfinite(length) ? sum / length : Normal(0);
}

class Creasing {
public:
    Creasing(std::span<const Vec4> welded, std::span<const std::uint32_t> indices)
        : welded_(welded), indices_(indices) {}

    CreasedMesh run() {
        measureFaces();
        smooth();
        std::vector<Corner> corners = creasedCorners();
        std::ranges::stable_sort(corners, {}, &Corner::vertex);
        for (auto first = corners.begin(); first != corners.end();) {
            const auto last = std::ranges::find_if(
                first, corners.end(), [&](const Corner& c) { return c.vertex != first->vertex; });
            divide({first, last});
            first = last;
        }
        return std::move(mesh_);
    }

private:
    /// Normals of the faces, as long as twice their areas.
    void measureFaces() {
        faces_.resize(indices_.size() / 3);
        for (std::size_t f = 0; f < faces_.size(); ++f) {
            const Normal a = position(indices_[3 * f]);
            faces_[f] =
                glm::cross(position(indices_[3 * f + 1]) - a, position(indices_[3 * f + 2]) - a);
            if (!std::isfinite(glm::length(faces_[f])))
                faces_[f] = Normal(0);
        }
    }

    /// One normal for each vertex, as if no face met another at an angle.
    void smooth() {
        sums_.assign(welded_.size() / 2, Normal(0));
        for (std::size_t f = 0; f < faces_.size(); ++f) {
            for (std::size_t i = 0; i < 3; ++i)
                sums_[indices_[3 * f + i]] += faces_[f];
        }
        mesh_.vertices.assign(welded_.begin(), welded_.end());
        mesh_.indices.assign(indices_.begin(), indices_.end());
        for (std::size_t v = 0; v < sums_.size(); ++v) {
            sums_[v] = unit(sums_[v]);
            if (sums_[v] != Normal(0))
                mesh_.vertices[2 * v + 1] = Vec4(Vec3(sums_[v]), 0.0F);
        }
    }

    /// The corners at vertices where faces stray too far from the common normal for all of them to
    /// be one side.
    std::vector<Corner> creasedCorners() const {
        const double least = cosine(CreasedMesh::creaseDegrees / 2);
        std::vector<bool> creased(sums_.size());
        for (std::size_t i = 0; i < 3 * faces_.size(); ++i) {
            const Normal face = unit(faces_[i / 3]);
            if (face != Normal(0) && glm::dot(face, sums_[indices_[i]]) < least)
                creased[indices_[i]] = true;
        }
        std::vector<Corner> corners;
        for (std::size_t i = 0; i < 3 * faces_.size(); ++i) {
            if (creased[indices_[i]])
                corners.push_back({indices_[i], static_cast<std::uint32_t>(i)});
        }
        return corners;
    }

    /// Gives each corner at a vertex the normal of the faces that belong with its own, and corners
    /// with the same one the same vertex.
    void divide(std::span<const Corner> corners) {
        // At the tip of a cone with very many facets, each is narrow enough to stand for itself.
        constexpr std::size_t mostCompared = 256;
        constexpr double same = 0.99999;
        const double least = cosine(CreasedMesh::creaseDegrees);
        std::vector<std::pair<Normal, std::uint32_t>> made;
        for (const Corner& corner : corners) {
            const Normal own = unit(faces_[corner.place / 3]);
            if (own == Normal(0))
                continue; // nothing to be seen of it
            Normal sum = faces_[corner.place / 3];
            if (corners.size() <= mostCompared) {
                for (const Corner& other : corners) {
                    const Normal& face = faces_[other.place / 3];
                    if (other.place != corner.place && glm::dot(unit(face), own) > least)
                        sum += face;
                }
            }
            const Normal normal = unit(sum);
            auto known = std::ranges::find_if(
                made, [&](const auto& m) { return glm::dot(m.first, normal) > same; });
            if (known == made.end()) {
                made.emplace_back(normal, vertexWith(corner.vertex, normal, made.empty()));
                known = std::prev(made.end());
            }
            mesh_.indices[corner.place] = known->second;
        }
    }

    std::uint32_t vertexWith(std::uint32_t vertex, const Normal& normal, bool isFirst) {
        const Vec4 row(Vec3(normal), 0.0F);
        if (isFirst) {
            mesh_.vertices[2 * vertex + 1] = row;
            return vertex;
        }
        mesh_.vertices.push_back(welded_[2 * vertex]);
        mesh_.vertices.push_back(row);
        return static_cast<std::uint32_t>(mesh_.vertices.size() / 2 - 1);
    }

    Normal position(std::uint32_t vertex) const { return Normal(Vec3(welded_[2 * vertex])); }

    std::span<const Vec4> welded_;
    std::span<const std::uint32_t> indices_;
    std::vector<Normal> faces_;
    std::vector<Normal> sums_;
    CreasedMesh mesh_;
};

} // namespace

CreasedMesh CreasedMesh::of(std::span<const Vec4> welded, std::span<const std::uint32_t> indices) {
    return Creasing(welded, indices).run();
}

} // namespace ostrella
