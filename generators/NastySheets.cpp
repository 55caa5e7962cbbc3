#include "NastySheets.h"

#include <cmath>
#include <numbers>

#include <glm/geometric.hpp>

#include "Damage.h"
#include "Lofts.h"
#include "Shapes.h"

namespace ostrella::generators {

namespace {

using std::numbers::pi;

Body flat(double length, double width, int along, int across) {
    return sheet(along, across,
        [=](double u, double v) { return glm::dvec3(length * (u - 0.5), 0, width * (0.5 - v)); });
}

Body plane() {
    return flat(1.0, 1.0, 1, 1);
}

Body inclinedPlate() {
    return turnedAbout(flat(1.0, 2.0, 12, 24), {0, 0, 1}, -15.0);
}

/// Part of a cylinder's side, hollow below.
Body sail() {
    return sheet(16, 20, [](double u, double v) {
        const double angle = pi * (0.15 + 0.7 * u);
        return glm::dvec3(-std::cos(angle), std::sin(angle), 2.0 * (0.5 - v));
    });
}

Body perforatedSheet() {
    const Body whole = turnedAbout(flat(2.0, 2.0, 24, 24), {0, 0, 1}, -30.0);
    return without(whole, [](const glm::dvec3& p) {
        const double along = p.x / std::cos(pi / 6.0);
        const auto offGrid = [](double x) { return std::abs(x - 0.5 * std::round(x / 0.5)); };
        return std::hypot(offGrid(along), offGrid(p.z)) < 0.13 && std::abs(along) < 0.7 &&
               std::abs(p.z) < 0.7;
    });
}

/// A closed plate of a thousandth of its length.
Body paperPlate() {
    return turnedAbout(box({2.0, 0.002, 1.0}, {20, 1, 10}), {0, 0, 1}, -10.0);
}

/// The same in a dozen facets.
Body paperPlate12() {
    return box({1.0, 0.001, 1.0}, {1, 1, 1});
}

Body mobiusStrip() {
    return sheet(60, 5, [](double u, double v) {
        const double angle = 2.0 * pi * u;
        const double w = 0.7 * (v - 0.5);
        const double r = 1.0 + w * std::cos(angle / 2.0);
        return glm::dvec3(r * std::cos(angle), w * std::sin(angle / 2.0), r * std::sin(angle));
    });
}

/// Three leaves with one edge in common.
Body threeLeaves() {
    Body body;
    for (int i = 0; i < 3; ++i) {
        const Body leaf =
            sheet(6, 12, [](double u, double v) { return glm::dvec3(2.0 * v - 1.0, 0.8 * u, 0); });
        body.append(turnedAbout(leaf, {1, 0, 0}, 120.0 * i + 20.0));
    }
    return body.welded(1e-9);
}

/// Sheets that cut one another without an edge in common.
Body crossedSheets() {
    Body body = turnedAbout(flat(2.0, 1.6, 8, 8), {1, 0, 0}, 10.0);
    body.append(turnedAbout(flat(2.0, 1.2, 8, 8), {1, 0, 0}, 80.0));
    body.append(turnedAbout(flat(1.2, 1.2, 5, 5), {0, 0, 1}, 75.0));
    return body;
}

/// Facets all of whose corners lie on one line.
Body line() {
    Body body;
    for (int i = 0; i < 10; ++i) {
        const auto a = body.add({0.1 * i, 0.05 * i, 0});
        body.add({0.1 * i + 0.05, 0.05 * i + 0.025, 0});
        body.add({0.1 * i + 0.1, 0.05 * i + 0.05, 0});
        body.triangles.push_back({a, a + 1, a + 2});
    }
    return body;
}

/// Facets whose corners are all the same.
Body point() {
    Body body;
    for (int i = 0; i < 4; ++i) {
        const auto a = body.add({0.25, 0.5, 0.75});
        body.triangles.push_back({a, a, a});
    }
    return body;
}

constexpr auto sentence = NastyBody::End::sentence;

constexpr NastyBody all[] = {
    {"plane", "a square of two facets", plane},
    {"inclinedPlate", "a plate without thickness at 15 degrees", inclinedPlate},
    {"sail", "part of a cylinder's side, without thickness", sail},
    {"perforatedSheet", "a sheet with round holes in rows", perforatedSheet},
    {"paperPlate", "closed plate of 1 : 1000", paperPlate},
    {"paperPlate12", "closed plate of 1 : 1000 in 12 facets", paperPlate12},
    {"mobiusStrip", "a strip with one side", mobiusStrip},
    {"threeLeaves", "three sheets with one edge in common", threeLeaves},
    {"crossedSheets", "three sheets that cut one another", crossedSheets},
    {"line", "ten facets on one line", line, sentence},
    {"point", "four facets at one point", point, sentence},
};

} // namespace

std::span<const NastyBody> nastySheets() {
    return all;
}

} // namespace ostrella::generators
