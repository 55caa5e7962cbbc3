#include "Solver/Surface/Deviation.h"

#include "Models/Precondition.h"
#include "Solver/Surface/Halves.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace ostrella {

namespace {

/// Triangles between two looks at the token.
constexpr std::size_t trianglesPerLook = 256;
/// From so many triangles on a second thread is worth its start.
constexpr std::size_t leastForTwoThreads = 512;

std::array<DVec3, 3> cornersOf(const IndexedSurface& surface, std::size_t triangle) {
    const Triangle& t = surface.triangles[triangle];
    return {surface.vertices[t[0]], surface.vertices[t[1]], surface.vertices[t[2]]};
}

double longestEdge(const std::array<DVec3, 3>& corners) {
    return std::max({glm::distance(corners[0], corners[1]), glm::distance(corners[1], corners[2]),
        glm::distance(corners[2], corners[0])});
}

/// Parts that an edge of this length is cut into; bounded so that no number leaves its range.
double partsOf(double length, double step) {
    return std::clamp(std::ceil(length / step), 1.0, 30'000.0);
}

double sampleCount(const IndexedSurface& surface, double step) {
    double count = 0;
    for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
        const double parts = partsOf(longestEdge(cornersOf(surface, i)), step);
        count += 0.5 * (parts + 1) * (parts + 2);
    }
    return count;
}

/// `step`, or a wider one that keeps the bound.
double boundedStep(const IndexedSurface& surface, double step) {
    double longest = 0;
    for (std::size_t i = 0; i < surface.triangles.size(); ++i)
        longest = std::max(longest, longestEdge(cornersOf(surface, i)));
    while (step < longest) {
        const double excess = sampleCount(surface, step) / static_cast<double>(mostDistanceSamples);
        if (excess <= 1)
            break;
        // The samples grow with the square of the parts, less where a few parts make a triangle.
        step *= std::max(1.05, std::sqrt(excess));
    }
    return step;
}

/// Keeps the greatest distance found so far. A point that lies so near to the place nearest to its
/// neighbour that it cannot set a new mark is passed over: its distance need not be known.
class DistanceMark {
public:
    explicit DistanceMark(const TriangleTree& tree) : tree_(tree) {}

    void measure(const DVec3& point) {
        const double atMost = glm::distance(point, nearest_);
        if (atMost <= greatest_)
            return;
        if (const auto found = tree_.nearest(point, atMost)) {
            nearest_ = found->point;
            greatest_ = std::max(greatest_, found->distance);
        } else {
            greatest_ = atMost;
        }
    }

    double greatest() const { return greatest_; }

private:
    const TriangleTree& tree_;
    DVec3 nearest_{std::numeric_limits<double>::infinity()};
    double greatest_ = 0;
};

void measureTriangle(const std::array<DVec3, 3>& corners, double step, DistanceMark& mark) {
    const int parts = static_cast<int>(partsOf(longestEdge(corners), step));
    for (int i = 0; i <= parts; ++i) {
        for (int j = 0; i + j <= parts; ++j) {
            const double u = static_cast<double>(i) / parts;
            const double v = static_cast<double>(j) / parts;
            mark.measure(
                corners[0] + u * (corners[1] - corners[0]) + v * (corners[2] - corners[0]));
        }
    }
}

} // namespace

double greatestDistance(const IndexedSurface& from, const TriangleTree& to, double step,
    const CancellationToken& token) {
    precondition(step > 0, "distances are measured a step apart");
    if (from.triangles.empty() || to.triangleCount() == 0)
        return 0;
    const double width = boundedStep(from, step);
    std::array<double, 2> greatest{};
    inHalves(from.triangles.size(), leastForTwoThreads,
        [&](std::size_t first, std::size_t end, int half) {
            DistanceMark mark(to);
            for (std::size_t i = first; i < end; ++i) {
                if ((i - first) % trianglesPerLook == 0)
                    token.throwIfCancelled();
                measureTriangle(cornersOf(from, i), width, mark);
            }
            greatest[static_cast<std::size_t>(half)] = mark.greatest();
        });
    return std::max(greatest[0], greatest[1]);
}

double signedVolume(const IndexedSurface& surface) {
    if (surface.triangles.empty())
        return 0;
    // About a point of the surface: far from the origin the products would cancel badly.
    const DVec3 middle = surface.vertices[surface.triangles.front()[0]];
    double sixfold = 0;
    for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
        const std::array<DVec3, 3> corners = cornersOf(surface, i);
        sixfold +=
            glm::dot(corners[0] - middle, glm::cross(corners[1] - middle, corners[2] - middle));
    }
    return sixfold / 6;
}

} // namespace ostrella
