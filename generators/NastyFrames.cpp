#include "NastyFrames.h"

#include <array>
#include <cmath>
#include <numbers>

#include "Damage.h"
#include "Lofts.h"

namespace ostrella::generators {

namespace {

using std::numbers::pi;

/// Two layers of round bars whose axes cross in one plane.
Body crossingBars() {
    Body body;
    for (int i = 0; i < 4; ++i) {
        const double at = -0.75 + 0.5 * i;
        body.append(bar({-1, at, 0}, {1, at, 0}, 0.07, 12, Ends::closed));
        body.append(bar({at, -1, 0}, {at, 1, 0}, 0.07, 12, Ends::closed));
    }
    return turnedAbout(body, {0, 0, 1}, 10.0);
}

/// Square bars in three directions whose sides lie in common planes.
Body squareLattice() {
    Body body;
    constexpr double half = 0.08;
    for (const double p : {-0.8, 0.0, 0.8}) {
        for (const double q : {-0.8, 0.0, 0.8}) {
            body.append(boxBetween({-1, p - half, q - half}, {1, p + half, q + half}));
            body.append(boxBetween({p - half, -1, q - half}, {p + half, 1, q + half}));
            body.append(boxBetween({p - half, q - half, -1}, {p + half, q + half, 1}));
        }
    }
    return body;
}

/// A girder of three chords with diagonals between them: thin bars that are open at their ends,
/// which meet in the nodes without any joint.
Body spaceTruss() {
    Body body;
    constexpr int bays = 5;
    const auto node = [](int bay, int chord) {
        const double angle = 2.0 * pi * chord / 3 + pi / 2;
        return glm::dvec3(0.8 * bay, 0.4 * std::sin(angle), 0.4 * std::cos(angle));
    };
    for (int bay = 0; bay <= bays; ++bay) {
        for (int chord = 0; chord < 3; ++chord) {
            const int next = (chord + 1) % 3;
            body.append(bar(node(bay, chord), node(bay, next), 0.025, 6, Ends::open));
            if (bay < bays) {
                body.append(bar(node(bay, chord), node(bay + 1, chord), 0.035, 8, Ends::open));
                body.append(bar(node(bay, chord), node(bay + 1, next), 0.02, 6, Ends::open));
            }
        }
    }
    return body;
}

std::vector<glm::dvec3> ring(const glm::dvec3& middle, double radius, int parts) {
    std::vector<glm::dvec3> path;
    for (int i = 0; i < parts; ++i) {
        const double angle = 2.0 * pi * i / parts;
        path.push_back(middle + radius * glm::dvec3(std::cos(angle), std::sin(angle), 0));
    }
    return path;
}

/// Tyres, hubs, spokes of three facets round, and tubes that end open within one another.
Body bicycle() {
    Body body;
    const glm::dvec3 front(0, 0.34, 0);
    const glm::dvec3 rear(1.0, 0.34, 0);
    for (const glm::dvec3& axle : {front, rear}) {
        body.append(closedTube(ring(axle, 0.32, 32), 0.022, 8));
        const glm::dvec3 half(0, 0, 0.05);
        body.append(bar(axle - half, axle + half, 0.03, 10, Ends::closed));
        for (int i = 0; i < 12; ++i) {
            const double angle = 2.0 * pi * i / 12;
            const glm::dvec3 out(std::cos(angle), std::sin(angle), 0);
            body.append(bar(axle + half * (i % 2 == 0 ? 0.7 : -0.7) + 0.02 * out, axle + 0.31 * out,
                0.0015, 3, Ends::open));
        }
    }
    const glm::dvec3 crank(0.58, 0.3, 0);
    const glm::dvec3 saddle(0.72, 0.85, 0);
    const glm::dvec3 head(0.2, 0.85, 0);
    for (const auto& [a, b] : {std::pair{crank, saddle}, {head, saddle}, {head, crank},
             {saddle, rear}, {crank, rear}, {front, head}, {head, glm::dvec3(0.16, 0.98, 0)}}) {
        body.append(bar(a, b, 0.018, 10, Ends::open));
    }
    body.append(bar({0.16, 0.98, -0.28}, {0.16, 0.98, 0.28}, 0.015, 8, Ends::open));
    body.append(boxBetween({0.62, 0.9, -0.07}, {0.88, 0.94, 0.07}));
    return body;
}

/// Boxes side by side, each higher than the last: common faces of unlike sizes.
Body staircase() {
    Body body;
    for (int step = 0; step < 8; ++step) {
        body.append(boxBetween({0.3 * step, 0, -0.6}, {0.3 * (step + 1), 0.2 * (step + 1), 0.6}));
    }
    return body;
}

/// A table on rails: boxes that end upon each other, and bolts through them with heads on top.
Body gantry() {
    Body body = boxBetween({0, 0, -1.0}, {3.0, 0.15, 1.0});
    for (const double side : {-1.0, 1.0}) {
        body.append(boxBetween({0.1, 0.15, side * 0.9 - 0.06}, {2.9, 0.3, side * 0.9 + 0.06}));
        body.append(boxBetween({1.2, 0.3, side * 0.9 - 0.06}, {1.7, 1.4, side * 0.9 + 0.06}));
        for (int i = 0; i < 8; ++i) {
            const glm::dvec3 foot(0.3 + 0.34 * i, -0.02, side * 0.9);
            const glm::dvec3 top = foot + glm::dvec3(0, 0.32, 0);
            body.append(bar(foot, top, 0.015, 8, Ends::closed));
            body.append(bar(top, top + glm::dvec3(0, 0.03, 0), 0.035, 6, Ends::closed));
        }
    }
    body.append(boxBetween({1.2, 1.4, -1.1}, {1.7, 1.6, 1.1}));
    body.append(boxBetween({1.0, 0.9, -0.2}, {1.2, 1.7, 0.2}));
    return body;
}

constexpr NastyBody all[] = {
    {"crossingBars", "round bars whose axes cross, unmerged", crossingBars},
    {"squareLattice", "27 square bars with sides in common planes", squareLattice},
    {"spaceTruss", "a girder of thin bars that are open at their ends", spaceTruss},
    {"bicycle", "tyres, hair-thin spokes and open tubes within one another", bicycle},
    {"staircase", "boxes side by side with common faces of unlike sizes", staircase},
    {"gantry", "boxes upon boxes, bolts through them, heads upon them", gantry},
};

} // namespace

std::span<const NastyBody> nastyFrames() {
    return all;
}

} // namespace ostrella::generators
