#include "Solver/Surface/WrapFit.h"

#include "Solver/Surface/Parallel.h"

#include <glm/geometric.hpp>
#include <glm/mat3x3.hpp>
#include <glm/matrix.hpp>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace ostrella {

namespace {

/// Rounds of evening out on the offset surface; the steps of the cells are gone after three.
constexpr int smoothingRounds = 4;
constexpr double smoothingStep = 0.6;
/// Vertices end this far above the model, in cells, so that those around a sharp edge do not fall
/// together.
constexpr double hover = 0.02;
/// What is thinner than this counts as a sheet if its shell is open, in cells.
constexpr double sheetCells = 0.5;
/// Concave edges are met from at most this far, in cells.
constexpr double creaseReach = 1.6;
/// How far of the way vertices go to a concave edge: those that come from its two sides must not
/// fall together.
constexpr double creaseShare = 0.8;
/// Cosine of the angle between the sides of a concave edge that is worth meeting.
constexpr double creaseCosine = 0.8;

/// Neighbours of each vertex, one list behind the other.
struct Neighbours {
    std::vector<std::uint32_t> first;
    std::vector<std::uint32_t> numbers;

    std::span<const std::uint32_t> of(std::size_t vertex) const {
        return {numbers.data() + first[vertex], numbers.data() + first[vertex + 1]};
    }
};

/// Each directed edge occurs once in a closed surface, so each neighbour is found once.
Neighbours neighboursOf(const IndexedSurface& surface) {
    Neighbours result;
    result.first.assign(surface.vertices.size() + 1, 0);
    for (const Triangle& t : surface.triangles) {
        for (const std::uint32_t corner : t) {
            ++result.first[corner + 1];
        }
    }
    std::partial_sum(result.first.begin(), result.first.end(), result.first.begin());
    result.numbers.resize(3 * surface.triangles.size());
    std::vector<std::uint32_t> place(result.first.begin(), result.first.end() - 1);
    for (const Triangle& t : surface.triangles) {
        for (std::size_t i = 0; i < 3; ++i) {
            result.numbers[place[t[i]]++] = t[(i + 1) % 3];
        }
    }
    return result;
}

DVec3 meanOf(std::span<const std::uint32_t> numbers, const std::vector<DVec3>& points) {
    DVec3 sum(0);
    for (const std::uint32_t number : numbers) {
        sum += points[number];
    }
    return sum / static_cast<double>(std::max<std::size_t>(numbers.size(), 1));
}

/// The corner or edge in which the planes through `points` with the normals `normals` meet, nearest
/// to `start`: least squares with a light spring to the start.
DVec3 meetingPoint(
    const DVec3& start, std::span<const DVec3> points, std::span<const DVec3> normals) {
    constexpr double spring = 0.02;
    const double weight = spring * static_cast<double>(points.size());
    glm::dmat3 matrix(weight);
    DVec3 right(0);
    for (std::size_t i = 0; i < points.size(); ++i) {
        matrix += glm::outerProduct(normals[i], normals[i]);
        right += normals[i] * glm::dot(normals[i], points[i] - start);
    }
    return start + glm::inverse(matrix) * right;
}

} // namespace

WrapTargets fitWrap(const IndexedSurface& wrap, const FitModel& model, double offset,
    double spacing, const CancellationToken& token) {
    const std::size_t count = wrap.vertices.size();
    const Neighbours neighbours = neighboursOf(wrap);
    std::vector<DVec3> points = wrap.vertices;
    std::vector<DVec3> moved(count);
    for (int round = 0; round < smoothingRounds; ++round) {
        inParallel(count, token, [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) {
                const DVec3 goal =
                    points[i] + (meanOf(neighbours.of(i), points) - points[i]) * smoothingStep;
                const auto nearest = model.tree.nearest(goal);
                const DVec3 away = goal - nearest->point;
                moved[i] = nearest->distance > 0.1 * offset
                               ? nearest->point + away * (offset / nearest->distance)
                               : points[i];
            }
        });
        std::swap(points, moved);
    }

    WrapTargets targets;
    targets.points.resize(count);
    targets.nearest.resize(count);
    targets.isOnSheet.assign(count, 0);
    std::vector<DVec3> sides(count);
    const TriangleTree around(IndexedSurface{points, wrap.triangles});
    inParallel(count, token, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            const auto nearest = model.tree.nearest(points[i]);
            const DVec3 away = nearest->distance > 0
                                   ? (points[i] - nearest->point) / nearest->distance
                                   : DVec3(0, 0, 1);
            const DVec3& normal = model.normals[nearest->triangle];
            sides[i] = glm::dot(normal, away) < 0 ? -normal : normal;
            targets.nearest[i] = nearest->triangle;
            // A sheet has the wrap on its other side too, as near as on this one.
            if (model.isOpen[nearest->triangle] &&
                around.nearest(nearest->point - away * offset, sheetCells * spacing)) {
                targets.isOnSheet[i] = 1;
            }
            const double lift =
                targets.isOnSheet[i] != 0 ? model.sheetThickness / 2 : hover * spacing;
            targets.points[i] = nearest->point + away * lift;
        }
    });

    // Concave edges: where the sides that the neighbours lie on differ and rise above one another,
    // the vertex goes to where they meet, if the model is there.
    std::vector<DVec3> met = targets.points;
    inParallel(count, token, [&](std::size_t begin, std::size_t end) {
        std::vector<DVec3> planePoints;
        std::vector<DVec3> planeNormals;
        for (std::size_t i = begin; i < end; ++i) {
            bool concave = false;
            planePoints.assign(1, targets.points[i]);
            planeNormals.assign(1, sides[i]);
            for (const std::uint32_t other : neighbours.of(i)) {
                planePoints.push_back(targets.points[other]);
                planeNormals.push_back(sides[other]);
                concave = concave || (glm::dot(sides[i], sides[other]) < creaseCosine &&
                                         glm::dot(sides[i], targets.points[other] -
                                                                targets.points[i]) > 0.1 * spacing);
            }
            if (!concave) {
                continue;
            }
            const DVec3 goal = meetingPoint(targets.points[i], planePoints, planeNormals);
            if (glm::distance(goal, targets.points[i]) > creaseReach * spacing) {
                continue;
            }
            const double lift = targets.isOnSheet[i] != 0 ? model.sheetThickness / 2 : 0.0;
            const auto nearest = model.tree.nearest(goal);
            if (std::abs(nearest->distance - lift) < 0.3 * spacing) {
                met[i] = glm::mix(targets.points[i], goal, creaseShare);
            }
        }
    });
    targets.points = std::move(met);
    targets.smoothed = std::move(points);
    return targets;
}

void pullIn(EmbeddedMesh& mesh, const WrapTargets& targets, const CancellationToken& token) {
    const std::size_t count = mesh.vertexCount();
    std::vector<DVec3> start(count);
    std::vector<std::uint32_t> moving(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        start[i] = mesh.position(i);
        moving[i] = i;
    }
    mesh.moveAnyway(moving, targets.points);

    // How far each vertex has been let go.
    std::vector<std::uint8_t> slack(count, 0);
    const auto place = [&](std::uint32_t vertex) {
        switch (slack[vertex]) {
        case 1:
            return glm::mix(targets.smoothed[vertex], targets.points[vertex], 0.75);
        case 2:
            return glm::mix(targets.smoothed[vertex], targets.points[vertex], 0.4);
        case 3:
            return targets.smoothed[vertex];
        default:
            return start[vertex];
        }
    };
    constexpr std::uint8_t mostSlack = 4;
    std::vector<std::uint32_t> touched(mesh.triangleCount());
    std::iota(touched.begin(), touched.end(), 0U);
    while (!touched.empty()) {
        token.throwIfCancelled();
        moving.clear();
        for (const std::uint32_t number : mesh.contacts(touched)) {
            for (const std::uint32_t vertex : mesh.triangle(number)) {
                moving.push_back(vertex);
            }
        }
        std::ranges::sort(moving);
        moving.erase(std::unique(moving.begin(), moving.end()), moving.end());
        std::erase_if(moving, [&](std::uint32_t vertex) { return slack[vertex] == mostSlack; });
        std::vector<DVec3> places;
        touched.clear();
        for (const std::uint32_t vertex : moving) {
            ++slack[vertex];
            places.push_back(place(vertex));
            mesh.visitRing(vertex, [&](std::uint32_t edge) { touched.push_back(edge / 3); });
        }
        mesh.moveAnyway(moving, places);
        std::ranges::sort(touched);
        touched.erase(std::unique(touched.begin(), touched.end()), touched.end());
    }
}

} // namespace ostrella
