#include "NastyOpenings.h"

#include <array>
#include <cmath>
#include <numbers>
#include <set>

#include <glm/geometric.hpp>

#include "Damage.h"
#include "Lofts.h"
#include "Shapes.h"

namespace ostrella::generators {

namespace {

/// Fifty facets missing here and there.
Body tinyHoles() {
    Body body = stretched(geodesicSphere(1.0, 18), {1.5, 0.6, 0.8});
    Random random(50);
    std::set<std::size_t> gone;
    while (gone.size() < 50) {
        gone.insert(random.under(body.triangles.size()));
    }
    for (auto facet = gone.rbegin(); facet != gone.rend(); ++facet) {
        body.triangles.erase(body.triangles.begin() + static_cast<std::ptrdiff_t>(*facet));
    }
    return body;
}

Body panelledBox() {
    return box({2.0, 1.0, 1.0}, {20, 10, 10});
}

Body smallPanelMissing() {
    return without(panelledBox(), [](const glm::dvec3& p) {
        return p.y > 0.499 && std::abs(p.x) < 0.1 && std::abs(p.z) < 0.1;
    });
}

Body largePanelMissing() {
    return without(panelledBox(), [](const glm::dvec3& p) {
        return p.y < -0.499 && std::abs(p.x) < 0.8 && std::abs(p.z) < 0.4;
    });
}

/// The side against the stream is not there at all.
Body frontMissing() {
    return without(panelledBox(), [](const glm::dvec3& p) { return p.x < -0.999; });
}

/// Two halves, open towards each other, a hundred-thousandth apart.
Body seamGap() {
    const Body whole = subdividedSphere(1.0, 3);
    Body body =
        without(whole, [](const glm::dvec3& p) { return p.x > 0.0; }).translated({-1e-5, 0, 0});
    body.append(without(whole, [](const glm::dvec3& p) { return p.x <= 0.0; }));
    return body;
}

/// Two closed boxes with a slit of a hundred-thousandth between them.
Body slit() {
    Body body = box({1.0, 0.8, 0.8}, {5, 4, 4}).translated({-0.500005, 0, 0});
    body.append(box({1.0, 0.8, 0.8}, {5, 4, 4}).translated({0.500005, 0, 0}));
    return body;
}

/// A tube without thickness, open at both ends.
Body openDuct() {
    std::vector<glm::dvec2> profile;
    for (int i = 0; i <= 20; ++i) {
        const double t = i / 20.0;
        profile.emplace_back(2.0 * t, 0.5 - 0.15 * std::sin(std::numbers::pi * t));
    }
    return revolution(profile, 28, Ends::open);
}

/// A tube with a wall of a hundredth of its length: sound, and yet open to the stream.
Body walledDuct() {
    const std::array<glm::dvec2, 5> profile{
        glm::dvec2(0, 0.5), {2.0, 0.5}, {2.0, 0.48}, {0, 0.48}, {0, 0.5}};
    return revolution(profile, 32, Ends::open);
}

/// A bowl without thickness, its opening downstream.
Body openCup() {
    return without(subdividedSphere(0.6, 3), [](const glm::dvec3& p) { return p.x > 0.08; });
}

/// A box whose sides do not quite reach each other's edges: slits all along them, which wedge open.
Body leakyBox() {
    Body body;
    for (int side = 0; side < 6; ++side) {
        Body plate = sheet(6, 6, [](double u, double v) {
            return glm::dvec3(0.5, 0.99 * (u - 0.5), (0.99 - 0.008 * u) * (v - 0.5));
        });
        plate = side < 4 ? turnedAbout(plate, {0, 0, 1}, 90.0 * side)
                         : turnedAbout(plate, {0, 1, 0}, side == 4 ? 90.0 : -90.0);
        body.append(plate);
    }
    return body;
}

/// Slits of all lengths cut along rows of edges: neighbours part by a little, facets stay.
Body tornSphere() {
    Body body = unshared(subdividedSphere(0.8, 3));
    Random random(7);
    for (std::size_t facet = 0; facet < body.triangles.size(); ++facet) {
        if (random.under(4) == 0) {
            const glm::dvec3 off = random.direction() * 0.004;
            for (const auto corner : body.triangles[facet]) {
                body.vertices[corner] += off;
            }
        }
    }
    return body;
}

constexpr NastyBody all[] = {
    {"tinyHoles", "50 facets missing here and there", tinyHoles},
    {"smallPanelMissing", "a tenth of the box's length missing on top", smallPanelMissing},
    {"largePanelMissing", "most of the underside missing", largePanelMissing},
    {"frontMissing", "a box without the side against the stream", frontMissing},
    {"seamGap", "two open halves 1e-5 apart", seamGap},
    {"slit", "two closed boxes 1e-5 apart", slit},
    {"openDuct", "a tube without thickness, open at both ends", openDuct},
    {"walledDuct", "a tube with a thin wall, open at both ends", walledDuct},
    {"openCup", "a bowl without thickness", openCup},
    {"leakyBox", "six sheets that do not quite meet", leakyBox},
    {"tornSphere", "no facet shares a corner, every fourth is off by 0.3 %", tornSphere},
};

} // namespace

std::span<const NastyBody> nastyOpenings() {
    return all;
}

} // namespace ostrella::generators
