#include "WallDistance.h"

#include <algorithm>
#include <cmath>

namespace ostrella::preview {

namespace {

/// A triangle; a line of two dimensions has its second and third corner in one place.
using Triangle = std::array<Vec3, 3>;

double toSegment(const Vec3& p, const Vec3& a, const Vec3& b) {
    const Vec3 d = b - a;
    const double square = glm::dot(d, d);
    const double t = square > 0 ? std::clamp(glm::dot(p - a, d) / square, 0.0, 1.0) : 0.0;
    return glm::distance(p, a + t * d);
}

double toTriangle(const Vec3& p, const Triangle& t) {
    const Vec3 normal = glm::cross(t[1] - t[0], t[2] - t[0]);
    const double square = glm::dot(normal, normal);
    if (square > 0) {
        bool inside = true;
        for (int i = 0; i < 3 && inside; ++i) {
            const Vec3& a = t[i];
            const Vec3& b = t[(i + 1) % 3];
            inside = glm::dot(glm::cross(b - a, p - a), normal) >= 0;
        }
        if (inside)
            return std::abs(glm::dot(p - t[0], normal)) / std::sqrt(square);
    }
    return std::min({toSegment(p, t[0], t[1]), toSegment(p, t[1], t[2]), toSegment(p, t[2], t[0])});
}

/// A tree of boxes about triangles, halved at the median of the longest side.
class Tree {
public:
    explicit Tree(std::vector<Triangle> triangles) : triangles_(std::move(triangles)) {
        if (!triangles_.empty())
            build(0, triangles_.size());
    }

    double nearest(const Vec3& p) const {
        double best = 1e30;
        if (!nodes_.empty())
            search(0, p, best);
        return best;
    }

private:
    struct Node {
        Vec3 low;
        Vec3 high;
        std::size_t first;
        std::size_t count; ///< 0 for an inner node: its children are the next one and `second`.
        std::size_t second;
    };

    std::size_t build(std::size_t first, std::size_t last) {
        Vec3 low{1e300};
        Vec3 high{-1e300};
        for (std::size_t i = first; i < last; ++i) {
            for (const auto& corner : triangles_[i]) {
                low = glm::min(low, corner);
                high = glm::max(high, corner);
            }
        }
        const std::size_t number = nodes_.size();
        nodes_.push_back({low, high, first, last - first, 0});
        if (last - first <= 4)
            return number;
        const Vec3 size = high - low;
        const int axis = size.x >= size.y && size.x >= size.z ? 0 : size.y >= size.z ? 1 : 2;
        const auto begin = triangles_.begin();
        const std::size_t middle = (first + last) / 2;
        std::nth_element(begin + static_cast<std::ptrdiff_t>(first),
            begin + static_cast<std::ptrdiff_t>(middle), begin + static_cast<std::ptrdiff_t>(last),
            [axis](const Triangle& a, const Triangle& b) {
                return a[0][axis] + a[1][axis] + a[2][axis] < b[0][axis] + b[1][axis] + b[2][axis];
            });
        nodes_[number].count = 0;
        build(first, middle);
        const std::size_t second = build(middle, last);
        nodes_[number].second = second;
        return number;
    }

    static double boxDistance(const Node& node, const Vec3& p) {
        return glm::length(glm::max(glm::max(node.low - p, p - node.high), Vec3{0.0}));
    }

    void search(std::size_t number, const Vec3& p, double& best) const {
        const Node& node = nodes_[number];
        if (node.count > 0) {
            for (std::size_t i = node.first; i < node.first + node.count; ++i)
                best = std::min(best, toTriangle(p, triangles_[i]));
            return;
        }
        std::size_t near = number + 1;
        std::size_t far = node.second;
        double nearDistance = boxDistance(nodes_[near], p);
        double farDistance = boxDistance(nodes_[far], p);
        if (farDistance < nearDistance) {
            std::swap(near, far);
            std::swap(nearDistance, farDistance);
        }
        if (nearDistance < best)
            search(near, p, best);
        if (farDistance < best)
            search(far, p, best);
    }

    std::vector<Triangle> triangles_;
    std::vector<Node> nodes_;
};

} // namespace

std::vector<double> wallDistances(
    const Mesh& mesh, const DualMesh& dual, const std::set<std::string>& walls) {
    std::vector<Triangle> triangles;
    for (const auto& marker : mesh.markers) {
        if (!walls.contains(marker.name))
            continue;
        for (const auto& facet : marker.facets) {
            const auto at = [&](int i) { return mesh.points[facet.points[i]]; };
            if (facet.type == CellType::line)
                triangles.push_back({at(0), at(1), at(1)});
            else
                triangles.push_back({at(0), at(1), at(2)});
            if (facet.type == CellType::quadrilateral)
                triangles.push_back({at(0), at(2), at(3)});
        }
    }
    const Tree tree(std::move(triangles));
    std::vector<double> distances(dual.size());
#pragma omp parallel for schedule(static)
    for (std::size_t i = 0; i < dual.size(); ++i)
        distances[i] = tree.nearest(dual.points[i]);
    return distances;
}

} // namespace ostrella::preview
