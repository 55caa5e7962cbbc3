// What makes a coarsened surface even without changing the number of its facets.

#include "Solver/Surface/Coarsening.h"
#include "Solver/Surface/TriangleShape.h"

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ostrella {

namespace {

/// How lightly the planes of a vertex are held to the middle of its neighbours.
constexpr double slideStiffness = 0.002;
/// Triangles better than this may become worse in a move that makes others better.
constexpr double goodQuality = 0.7;
/// Cosine of the angle up to which facets around a vertex count as one smooth surface.
constexpr double smoothCosine = 0.6;
/// Steps between two looks at the token.
constexpr std::uint32_t stepsBetweenLooks = 256;

} // namespace

double Coarsening::gatherSides(std::uint32_t vertex) {
    double quality = 1;
    sides_.clear();
    mesh_.visitRing(vertex, [&](std::uint32_t spoke) {
        const DVec3& a = mesh_.position(mesh_.to(spoke));
        const DVec3& b = mesh_.position(mesh_.to(EmbeddedMesh::next(spoke)));
        sides_.push_back({a, b});
        quality = std::min(quality, TriangleShape::quality(mesh_.position(vertex), a, b));
    });
    return quality;
}

bool Coarsening::moveEvenly(std::uint32_t vertex, const DVec3& place, double qualityBefore) {
    const bool even = std::ranges::all_of(sides_, [&](const Side& side) {
        return TriangleShape::quality(place, side.a, side.b) >=
                   std::min(qualityBefore, goodQuality) &&
               glm::distance(place, side.a) <= goal_.mostEdge;
    });
    return even && mesh_.tryMove(vertex, place);
}

void Coarsening::settle(const CancellationToken& token) {
    for (std::uint32_t vertex = 0; vertex < mesh_.vertexCount(); ++vertex) {
        if (vertex % stepsBetweenLooks == 0) {
            token.throwIfCancelled();
        }
        if (!mesh_.isVertex(vertex) || sheetLifts_[vertex] > 0) {
            continue;
        }
        const DVec3 old = mesh_.position(vertex);
        const auto nearest = model_.nearest(old);
        if (nearest->distance <= goal_.tolerance) {
            lifts_[vertex] = 0;
            continue;
        }
        const double quality = gatherSides(vertex);
        for (const double step : {1.0, 0.7, 0.4}) {
            if (moveEvenly(vertex, glm::mix(old, nearest->point, step), quality)) {
                lifts_[vertex] = nearest->distance * (1 - step);
                break;
            }
        }
    }
}

double Coarsening::meanHeight(std::uint32_t vertex) const {
    const DVec3& apex = mesh_.position(vertex);
    double sum = 0;
    double count = 0;
    for (std::uint32_t sample = firstSample_[vertex]; sample != EmbeddedMesh::none;
         sample = nextSample_[sample]) {
        double least = std::numeric_limits<double>::infinity();
        double height = 0; // 0 beside a side, where it would say nothing
        for (const Side& side : sides_) {
            const double squared =
                TriangleShape::squaredDistance(samples_[sample], apex, side.a, side.b);
            const DVec3 normal = glm::cross(side.a - apex, side.b - apex);
            const double length = glm::length(normal);
            if (squared < least && length > 0) {
                least = squared;
                const double above = glm::dot(normal, samples_[sample] - apex) / length;
                height = above * above > 0.99 * squared ? above : 0;
            }
        }
        sum += height;
        count += 1;
    }
    return count > 0 ? sum / count : 0;
}

void Coarsening::balance(const CancellationToken& token) {
    for (std::uint32_t vertex = 0; vertex < mesh_.vertexCount(); ++vertex) {
        if (vertex % stepsBetweenLooks == 0) {
            token.throwIfCancelled();
        }
        if (!mesh_.isVertex(vertex)) {
            continue;
        }
        const double quality = gatherSides(vertex);
        const DVec3 old = mesh_.position(vertex);
        DVec3 normal(0);
        for (const Side& side : sides_) {
            normal += glm::cross(side.a - old, side.b - old);
        }
        const double length = glm::length(normal);
        // At and beside a sharp edge, heights tell of the edge and not of a bulge.
        bool isSmooth = length > 0;
        const auto look = [&](const Corners& corners) {
            const DVec3 own = glm::cross(corners[1] - corners[0], corners[2] - corners[0]);
            isSmooth = isSmooth && glm::dot(own, normal) > smoothCosine * glm::length(own) * length;
        };
        mesh_.visitRing(vertex, [&](std::uint32_t spoke) {
            look(mesh_.cornersOf(spoke / 3));
            look(mesh_.cornersOf(mesh_.twin(EmbeddedMesh::next(spoke)) / 3));
        });
        const double height = std::clamp(meanHeight(vertex), -goal_.tolerance, goal_.tolerance);
        if (isSmooth) {
            moveEvenly(vertex, old + normal * (height / length), quality);
        }
    }
}

std::uint32_t Coarsening::waistAt(std::uint32_t edge) const {
    const std::uint32_t left = mesh_.to(EmbeddedMesh::next(edge));
    const std::uint32_t right = mesh_.to(EmbeddedMesh::next(mesh_.twin(edge)));
    std::uint32_t found = EmbeddedMesh::none;
    mesh_.visitRing(mesh_.from(edge), [&](std::uint32_t spoke) {
        const std::uint32_t neighbour = mesh_.to(spoke);
        if (neighbour != left && neighbour != right && neighbour != mesh_.to(edge)) {
            mesh_.visitRing(mesh_.to(edge), [&](std::uint32_t other) {
                found = mesh_.to(other) == neighbour ? neighbour : found;
            });
        }
    });
    return found;
}

void Coarsening::roundWires(double leastEdge, const CancellationToken& token) {
    for (std::uint32_t edge = 0; edge < 3 * mesh_.triangleCount(); ++edge) {
        if (edge % stepsBetweenLooks == 0) {
            token.throwIfCancelled();
        }
        if (!mesh_.isTriangle(edge / 3) || mesh_.from(edge) > mesh_.to(edge)) {
            continue;
        }
        const std::uint32_t first = mesh_.from(edge);
        const std::uint32_t second = mesh_.to(edge);
        if (glm::distance(mesh_.position(first), mesh_.position(second)) >= leastEdge) {
            continue;
        }
        const std::uint32_t third = waistAt(edge);
        if (third == EmbeddedMesh::none) {
            continue;
        }
        const DVec3 a = mesh_.position(first);
        const DVec3 b = mesh_.position(second);
        const DVec3 c = mesh_.position(third);
        const DVec3 normal = glm::cross(b - a, c - a);
        const DVec3 middle = (a + b + c) / 3.0;
        const double reach = glm::distance(c, middle);
        if (!(glm::length(normal) > 0) || !(reach > 0) || reach > 2 * leastEdge) {
            continue;
        }
        // An even triangle of this edge has its corners edge / √3 from its middle.
        const double radius = std::max(reach, leastEdge / std::sqrt(3.0));
        const DVec3 along = (c - middle) / reach;
        const DVec3 across = glm::cross(glm::normalize(normal), along);
        const double side = glm::dot(b - a, across) > 0 ? 1 : -1;
        const DVec3 back = middle - along * (radius / 2);
        const DVec3 shift = across * (side * radius * std::sqrt(3.0) / 2);
        mesh_.tryMove(third, middle + along * radius);
        mesh_.tryMove(second, back + shift);
        mesh_.tryMove(first, back - shift);
    }
}

bool Coarsening::isFlipWorthwhile(std::uint32_t edge) const {
    const std::uint32_t back = mesh_.twin(edge);
    const DVec3& start = mesh_.position(mesh_.from(edge));
    const DVec3& end = mesh_.position(mesh_.to(edge));
    const DVec3& left = mesh_.position(mesh_.to(EmbeddedMesh::next(edge)));
    const DVec3& right = mesh_.position(mesh_.to(EmbeddedMesh::next(back)));
    const double before = std::min(
        TriangleShape::quality(start, end, left), TriangleShape::quality(end, start, right));
    const double after = std::min(
        TriangleShape::quality(start, right, left), TriangleShape::quality(end, left, right));
    if (after <= before + 0.02 || glm::distance(left, right) > goal_.mostEdge) {
        return false;
    }
    const DVec3 first = glm::cross(right - start, left - start);
    const DVec3 second = glm::cross(left - end, right - end);
    // The new edge may not bend more than the tolerance lets the old one: the two middles'
    // distance.
    const DVec3 shift = (left + right - start - end) * 0.5;
    const double rise = std::abs(glm::dot(shift, glm::normalize(first + second)));
    return glm::dot(first, second) > 0 && rise < goal_.tolerance &&
           model_.nearest((left + right) * 0.5, goal_.tolerance + greatestLift(mesh_.from(edge)))
               .has_value();
}

void Coarsening::flip(const CancellationToken& token) {
    for (std::uint32_t edge = 0; edge < 3 * mesh_.triangleCount(); ++edge) {
        if (edge % stepsBetweenLooks == 0) {
            token.throwIfCancelled();
        }
        if (mesh_.isTriangle(edge / 3) && mesh_.from(edge) < mesh_.to(edge) &&
            isFlipWorthwhile(edge)) {
            mesh_.tryFlip(edge);
        }
    }
}

void Coarsening::relax(const CancellationToken& token) {
    for (std::uint32_t vertex = 0; vertex < mesh_.vertexCount(); ++vertex) {
        if (vertex % stepsBetweenLooks == 0) {
            token.throwIfCancelled();
        }
        if (!mesh_.isVertex(vertex)) {
            continue;
        }
        const DVec3 old = mesh_.position(vertex);
        const double quality = gatherSides(vertex);
        DVec3 sum(0);
        double weight = 0;
        for (const Side& side : sides_) {
            const double area = glm::length(glm::cross(side.a - old, side.b - old));
            sum += (old + side.a + side.b) * (area / 3);
            weight += area;
        }
        if (!(weight > 0)) {
            continue;
        }
        // The planes that the vertex stands for hold it; where they are all one it slides.
        const DVec3 goal = quadrics_[vertex].leastNear(sum / weight, slideStiffness);
        for (const double step : {1.0, 0.5, 0.25}) {
            const DVec3 place = glm::mix(old, goal, step);
            if (passesSamples(firstSample_[vertex], place) &&
                followsModel(place, goal_.tolerance + greatestLift(vertex)) &&
                moveEvenly(vertex, place, quality)) {
                break;
            }
        }
    }
}

} // namespace ostrella
