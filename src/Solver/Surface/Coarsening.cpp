#include "Solver/Surface/Coarsening.h"

#include "Models/Precondition.h"
#include "Solver/Surface/TriangleShape.h"

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace ostrella {

namespace {

/// How lightly the planes of a vertex are held to where its edge was; directions with less weight
/// than this count as free.
constexpr double stiffness = 0.001;
/// Triangles of at least this quality may come from better ones.
constexpr double decentQuality = 0.35;
/// The same where small details go.
constexpr double poorQuality = 0.2;
/// Cosine of the most that a triangle turns in one step.
constexpr double leastTurnCosine = 0.3;
/// Below this quality a triangle has no direction worth keeping.
constexpr double flatQuality = 0.1;
/// Steps between two looks at the token.
constexpr std::uint32_t stepsBetweenLooks = 256;

} // namespace

Coarsening::Coarsening(EmbeddedMesh& mesh, const TriangleTree& model, std::vector<DVec3> samples,
    const std::vector<double>& lifts, const CoarseningGoal& goal)
    : mesh_(mesh),
      model_(model),
      goal_(goal),
      quadrics_(mesh.vertexCount()),
      samples_(std::move(samples)),
      reaches_(mesh.vertexCount(), goal.tolerance),
      lifts_(lifts),
      sheetLifts_(lifts),
      firstSample_(mesh.vertexCount(), EmbeddedMesh::none),
      lastSample_(mesh.vertexCount(), EmbeddedMesh::none),
      nextSample_(samples_.size(), EmbeddedMesh::none),
      age_(mesh.vertexCount(), 0) {
    precondition(samples_.size() == mesh.vertexCount() && lifts_.size() == samples_.size(),
        "each vertex stands for one sample");
    for (std::uint32_t vertex = 0; vertex < mesh.vertexCount(); ++vertex) {
        if (mesh.isVertex(vertex)) {
            const double missed = glm::distance(mesh.position(vertex), samples_[vertex]);
            reaches_[vertex] += missed;
            lifts_[vertex] += missed;
            firstSample_[vertex] = vertex;
            lastSample_[vertex] = vertex;
        }
    }
    for (std::uint32_t t = 0; t < mesh.triangleCount(); ++t) {
        if (!mesh.isTriangle(t)) {
            continue;
        }
        const Corners corners = mesh.cornersOf(t);
        const DVec3 normal = glm::cross(corners[1] - corners[0], corners[2] - corners[0]);
        const double twiceArea = glm::length(normal);
        if (twiceArea > 0) {
            for (const std::uint32_t vertex : mesh.triangle(t)) {
                quadrics_[vertex].addPlane(corners[0], normal / twiceArea, twiceArea);
            }
        }
    }
}

void Coarsening::offer(std::uint32_t edge) {
    const std::uint32_t from = mesh_.from(edge);
    const std::uint32_t to = mesh_.to(edge);
    const double length = glm::distance(mesh_.position(from), mesh_.position(to));
    if (length < goal_.leastEdge) {
        candidates_.push({length, edge, from, to, age_[from] + age_[to]});
    }
}

void Coarsening::collapse(const CancellationToken& token) {
    for (std::uint32_t edge = 0; edge < 3 * mesh_.triangleCount(); ++edge) {
        if (mesh_.isTriangle(edge / 3) && mesh_.from(edge) < mesh_.to(edge)) {
            offer(edge);
        }
    }
    std::uint32_t steps = 0;
    while (!candidates_.empty()) {
        if (++steps % stepsBetweenLooks == 0) {
            token.throwIfCancelled();
        }
        const Candidate candidate = candidates_.top();
        candidates_.pop();
        if (!mesh_.isTriangle(candidate.edge / 3) || mesh_.from(candidate.edge) != candidate.from ||
            mesh_.to(candidate.edge) != candidate.to ||
            age_[candidate.from] + age_[candidate.to] != candidate.age) {
            continue;
        }
        if (collapseAt(candidate.edge)) {
            ++age_[candidate.to];
            mesh_.visitRing(candidate.to, [this](std::uint32_t edge) { offer(edge); });
        }
    }
}

void Coarsening::collapseLoosely(double leastEdge, double extra, const CancellationToken& token) {
    const CoarseningGoal goal = goal_;
    goal_.leastEdge = std::min(leastEdge, goal.leastEdge);
    goal_.tolerance += extra;
    for (double& reach : reaches_) {
        reach += extra;
    }
    isLoose_ = true;
    collapse(token);
    isLoose_ = false;
    goal_ = goal;
}

bool Coarsening::collapseAt(std::uint32_t edge) {
    if (!mesh_.mayCollapse(edge)) {
        return false;
    }
    const std::uint32_t gone = mesh_.from(edge);
    const std::uint32_t kept = mesh_.to(edge);
    const DVec3 start = mesh_.position(gone);
    const DVec3 end = mesh_.position(kept);
    const std::array<std::uint32_t, 2> vanishing{edge / 3, mesh_.twin(edge) / 3};

    sides_.clear();
    double qualityBefore = 1;
    for (const std::uint32_t vertex : {gone, kept}) {
        mesh_.visitRing(vertex, [&](std::uint32_t spoke) {
            const DVec3& a = mesh_.position(mesh_.to(spoke));
            const DVec3& b = mesh_.position(mesh_.to(EmbeddedMesh::next(spoke)));
            qualityBefore =
                std::min(qualityBefore, TriangleShape::quality(mesh_.position(vertex), a, b));
            if (spoke / 3 != vanishing[0] && spoke / 3 != vanishing[1]) {
                sides_.push_back({a, b});
            }
        });
    }
    Quadric sum = quadrics_[gone];
    sum += quadrics_[kept];
    const DVec3 middle = (start + end) * 0.5;
    DVec3 best = sum.leastNear(middle, stiffness);
    const double length = glm::distance(start, end);
    if (!(glm::distance(best, middle) < length)) {
        best = sum.at(start) < sum.at(end) ? start : end;
    }
    const DVec3 better = sum.at(start) < sum.at(end) ? start : end;
    for (const DVec3& place : {best, better, middle}) {
        if (collapseTo(edge, place, qualityBefore)) {
            quadrics_[kept] = sum;
            nextSample_[lastSample_[kept]] = firstSample_[gone];
            lastSample_[kept] = lastSample_[gone];
            lifts_[kept] = std::max(lifts_[kept], lifts_[gone]);
            sheetLifts_[kept] = std::max(sheetLifts_[kept], sheetLifts_[gone]);
            return true;
        }
    }
    return false;
}

bool Coarsening::collapseTo(std::uint32_t edge, const DVec3& position, double qualityBefore) {
    const std::uint32_t gone = mesh_.from(edge);
    const std::uint32_t kept = mesh_.to(edge);
    const double leastQuality = std::min(qualityBefore, isLoose_ ? poorQuality : decentQuality);
    std::size_t number = 0;
    for (const std::uint32_t vertex : {gone, kept}) {
        const DVec3& old = mesh_.position(vertex);
        bool sound = true;
        mesh_.visitRing(vertex, [&](std::uint32_t spoke) {
            if (spoke / 3 == edge / 3 || spoke / 3 == mesh_.twin(edge) / 3 || !sound) {
                return;
            }
            const Side& side = sides_[number++];
            if (glm::distance(position, side.a) > goal_.mostEdge ||
                TriangleShape::quality(position, side.a, side.b) < leastQuality) {
                sound = false;
                return;
            }
            if (isLoose_ || TriangleShape::quality(old, side.a, side.b) < flatQuality) {
                return;
            }
            const DVec3 before = glm::cross(side.a - old, side.b - old);
            const DVec3 after = glm::cross(side.a - position, side.b - position);
            sound = glm::dot(before, after) >
                    leastTurnCosine * glm::length(before) * glm::length(after);
        });
        if (!sound) {
            return false;
        }
    }
    return passesSamples(firstSample_[gone], position) &&
           passesSamples(firstSample_[kept], position) &&
           (followsModel(
                position, goal_.tolerance + std::max(greatestLift(gone), greatestLift(kept))) ||
               followsModel(position, strayingAround(edge))) &&
           mesh_.tryCollapse(edge, position);
}

bool Coarsening::passesSamples(std::uint32_t first, const DVec3& apex) const {
    for (std::uint32_t sample = first; sample != EmbeddedMesh::none; sample = nextSample_[sample]) {
        const double most = reaches_[sample] * reaches_[sample];
        const bool near = std::ranges::any_of(sides_, [&](const Side& side) {
            return TriangleShape::squaredDistance(samples_[sample], apex, side.a, side.b) <= most;
        });
        if (!near) {
            return false;
        }
    }
    return true;
}

double Coarsening::greatestLift(std::uint32_t vertex) const {
    double lift = lifts_[vertex];
    mesh_.visitRing(
        vertex, [&](std::uint32_t spoke) { lift = std::max(lift, lifts_[mesh_.to(spoke)]); });
    return lift;
}

double Coarsening::strayingAround(std::uint32_t edge) const {
    // Across a narrow wedge the surface is off the model, and may stay so.
    double most = 0;
    for (const std::uint32_t vertex : {mesh_.from(edge), mesh_.to(edge)}) {
        mesh_.visitRing(vertex, [&](std::uint32_t spoke) {
            const Corners corners = mesh_.cornersOf(spoke / 3);
            const DVec3 middle = (corners[0] + corners[1] + corners[2]) / 3.0;
            const DVec3 side = (mesh_.position(vertex) + mesh_.position(mesh_.to(spoke))) * 0.5;
            most =
                std::max({most, model_.nearest(middle)->distance, model_.nearest(side)->distance});
        });
    }
    return most;
}

bool Coarsening::followsModel(const DVec3& apex, double most) const {
    const auto strays = [&](const DVec3& point) { return !model_.nearest(point, most); };
    // Short sides cannot stray: their ends are on the model.
    const double shortSide = 4 * goal_.tolerance;
    return std::ranges::none_of(sides_, [&](const Side& side) {
        return glm::distance(side.a, side.b) > shortSide &&
               (strays((apex + side.a) * 0.5) || strays((apex + side.a + side.b) / 3.0));
    });
}

} // namespace ostrella
