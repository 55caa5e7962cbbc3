#include "NastyScans.h"

#include <cmath>

#include <glm/geometric.hpp>

#include "Damage.h"
#include "Shapes.h"

namespace ostrella::generators {

namespace {

/// A lump with bulges, as scanned from something made by hand.
Body lump(int frequency) {
    Body body = geodesicSphere(1.0, frequency);
    for (glm::dvec3& v : body.vertices) {
        const double bulge = 1.0 + 0.15 * std::sin(3.0 * v.x + 1.0) * std::cos(4.0 * v.y) +
                             0.1 * std::sin(5.0 * v.z + 2.0 * v.x);
        v *= bulge;
    }
    return stretched(body, {1.3, 0.8, 0.9});
}

/// Noise of two thirds of the facets' edges folds some of them over.
Body scan() {
    Random random(1);
    return withNoise(lump(12), 0.065, random);
}

/// Single vertices flung far off.
Body scanWithSpikes() {
    Random random(2);
    Body body = withNoise(lump(20), 0.01, random);
    for (int i = 0; i < 25; ++i) {
        glm::dvec3& v = body.vertices[random.under(body.vertices.size())];
        v += glm::normalize(v + random.direction()) * random.within(0.1, 0.6);
    }
    return body;
}

/// Crumbs of a facet or a few in the air around.
Body scanWithSpecks() {
    Random random(3);
    Body body = withNoise(lump(14), 0.008, random);
    for (int i = 0; i < 5; ++i) {
        const glm::dvec3 middle = random.direction() * random.within(1.5, 1.7);
        const Body crumb = subdividedSphere(random.within(0.001, 0.012), 0);
        body.append(crumb.translated(middle));
    }
    for (int i = 0; i < 4; ++i) {
        const glm::dvec3 middle = random.direction() * random.within(1.5, 1.7);
        const auto first = body.add(middle);
        body.add(middle + random.direction() * 0.01);
        body.add(middle + random.direction() * 0.01);
        body.triangles.push_back({first, first + 1, first + 2});
    }
    return body;
}

/// Ragged openings where the scanner did not reach, and none of the underside.
Body scanWithGaps() {
    Random random(4);
    Body body = withNoise(lump(14), 0.006, random);
    for (int i = 0; i < 9; ++i) {
        const glm::dvec3 middle = body.vertices[random.under(body.vertices.size())];
        const double reach = random.within(0.06, 0.25);
        body = without(body, [&](const glm::dvec3& p) { return glm::length(p - middle) < reach; });
    }
    return without(body, [](const glm::dvec3& p) { return p.y < -0.7; });
}

/// Two scans of one thing laid over one another, not quite in the same place.
Body twoScans() {
    Random random(5);
    const Body whole = lump(14);
    Body body =
        without(withNoise(whole, 0.006, random), [](const glm::dvec3& p) { return p.x > 0.25; });
    body.append(without(withNoise(whole.translated({0.004, 0.006, 0}), 0.006, random),
        [](const glm::dvec3& p) { return p.x < -0.25; }));
    return body;
}

Body largeScan() {
    Random random(6);
    return withNoise(lump(123), 0.003, random);
}

/// Facets anywhere in a ball, none of them beside another.
Body facetSoup() {
    Random random(8);
    Body body;
    for (int i = 0; i < 200; ++i) {
        const glm::dvec3 middle = random.direction() * std::cbrt(random.within(0.0, 1.0));
        const auto first = body.add(middle);
        body.add(middle + random.direction() * 0.25);
        body.add(middle + random.direction() * 0.25);
        body.triangles.push_back({first, first + 1, first + 2});
    }
    return body;
}

constexpr NastyBody all[] = {
    {"scan", "2 880 facets with noise of two thirds of their edges", scan},
    {"scanWithSpikes", "single vertices flung far off", scanWithSpikes},
    {"scanWithSpecks", "crumbs in the air around", scanWithSpecks},
    {"scanWithGaps", "ragged openings, no underside", scanWithGaps},
    {"twoScans", "two overlapping scans that do not quite agree", twoScans},
    {"largeScan", "302 580 facets with noise", largeScan},
    {"facetSoup", "200 facets anywhere in a ball", facetSoup},
};

} // namespace

std::span<const NastyBody> nastyScans() {
    return all;
}

} // namespace ostrella::generators
