#include "NastyShells.h"

#include <array>
#include <cmath>
#include <numbers>

#include <glm/geometric.hpp>

#include "Damage.h"
#include "Lofts.h"
#include "Shapes.h"

namespace ostrella::generators {

namespace {

using std::numbers::pi;

Body hollowSphere() {
    Body body = subdividedSphere(1.0, 3);
    body.append(insideOut(subdividedSphere(0.9, 3)));
    return body;
}

/// The inner shell faces outward too: a body within a body.
Body ballWithinBall() {
    Body body = subdividedSphere(1.0, 3);
    body.append(subdividedSphere(0.4, 2).translated({0.2, 0.1, 0}));
    return body;
}

/// A hollow box with screws inside, two of them through its wall.
Body housing() {
    Body body = box({2.0, 1.0, 1.2}, {8, 4, 5});
    body.append(insideOut(box({1.9, 0.9, 1.1}, {4, 2, 3})));
    const auto screw = [&body](const glm::dvec3& foot, const glm::dvec3& along) {
        body.append(bar(foot, foot + 0.2 * along, 0.02, 8, Ends::closed));
        body.append(bar(foot + 0.2 * along, foot + 0.23 * along, 0.045, 6, Ends::closed));
    };
    Random random(11);
    for (int i = 0; i < 40; ++i) {
        screw({random.within(-0.7, 0.7), random.within(-0.3, 0.1), random.within(-0.35, 0.35)},
            random.direction());
    }
    screw({-0.5, 0.4, 0.0}, {0, 1, 0});
    screw({0.5, 0.4, 0.0}, {0, 1, 0});
    return body;
}

Body unlikePair() {
    Body body = subdividedSphere(0.6, 3);
    body.append(box({0.25, 0.25, 0.25}, {3, 3, 3}).translated({1.6, 0.5, -0.4}));
    return body;
}

/// Corner to corner.
Body touchingAtPoint() {
    Body body = box({1, 1, 1}, {4, 4, 4});
    body.append(box({1, 1, 1}, {4, 4, 4}).translated({1, 1, 1}));
    return body.welded(1e-9);
}

/// Edge along edge, cut into unlike parts.
Body touchingAlongEdge() {
    Body body = box({1, 1, 1}, {4, 4, 4});
    body.append(box({1, 1, 1.3}, {3, 3, 5}).translated({1, 1, 0.1}));
    return body;
}

Body commonFace() {
    Body body = box({1, 1, 1}, {4, 4, 4});
    body.append(box({1, 1, 1}, {4, 4, 4}).translated({1, 0, 0}));
    return body;
}

/// A small face upon a large one, nothing shared.
Body boxUponBox() {
    Body body = box({2, 0.5, 1.5}, {4, 1, 3});
    body.append(
        turnedAbout(box({0.6, 0.6, 0.6}, {2, 2, 2}), {0, 1, 0}, 30.0).translated({0.1, 0.55, 0}));
    return body;
}

/// A figure of eight carried round while it turns by half a turn: it cuts itself along its middle
/// and has one side.
Body kleinTube() {
    return sheet(64, 32, [](double u, double v) {
        const double a = 2.0 * pi * u;
        // Half a step off, so that no corner lies where it cuts itself.
        const double b = 2.0 * pi * (v + 0.5 / 32.0);
        const double r =
            1.2 + 0.5 * (std::cos(a / 2) * std::sin(b) - std::sin(a / 2) * std::sin(2 * b));
        const double y = 0.5 * (std::sin(a / 2) * std::sin(b) + std::cos(a / 2) * std::sin(2 * b));
        return glm::dvec3(r * std::cos(a), y, r * std::sin(a));
    });
}

/// A tube along a figure of eight, through itself where that crosses.
Body crossingTube() {
    std::vector<glm::dvec3> path;
    constexpr int parts = 96;
    for (int i = 0; i < parts; ++i) {
        const double t = 2.0 * pi * i / parts;
        path.emplace_back(1.2 * std::sin(t), 0.5 * std::sin(2.0 * t), 0);
    }
    return closedTube(path, 0.12, 12);
}

Body insideOutBoxes() {
    Body body = insideOut(box({1.5, 0.7, 0.7}, {6, 3, 3}));
    body.append(box({0.7, 1.2, 0.5}, {3, 5, 2}).translated({0.1, 0.05, 0.02}));
    return body;
}

/// Three shells upon each other in the same place, the middle one inside out.
Body coincidentShells() {
    const Body one = roundedBox({1.6, 0.8, 0.8}, 0.15, 0.12, 4);
    Body body = one;
    body.append(insideOut(one));
    body.append(one);
    return body;
}

/// Thirty balls of all sizes through one another.
Body foam() {
    Random random(12);
    Body body;
    for (int i = 0; i < 30; ++i) {
        const glm::dvec3 middle = random.direction() * random.within(0.1, 0.7);
        body.append(subdividedSphere(random.within(0.12, 0.45), 2).translated(middle));
    }
    return body;
}

constexpr NastyBody all[] = {
    {"hollowSphere", "a cavity that faces inward", hollowSphere},
    {"ballWithinBall", "an inner shell that faces outward", ballWithinBall},
    {"housing", "a hollow box with 40 screws inside, two more through its wall", housing},
    {"unlikePair", "a ball and a small box, apart", unlikePair},
    {"touchingAtPoint", "two boxes with one corner in common", touchingAtPoint},
    {"touchingAlongEdge", "two boxes edge along edge, not merged", touchingAlongEdge},
    {"commonFace", "two boxes side by side, a face of each in one place", commonFace},
    {"boxUponBox", "a box that stands on a larger one", boxUponBox},
    {"kleinTube", "one side only, and through itself", kleinTube},
    {"crossingTube", "a tube that goes through itself", crossingTube},
    {"insideOutBoxes", "an inward box and an outward one through each other", insideOutBoxes},
    {"coincidentShells", "three equal shells, one of them inside out", coincidentShells},
    {"foam", "thirty balls through one another", foam},
};

} // namespace

std::span<const NastyBody> nastyShells() {
    return all;
}

} // namespace ostrella::generators
