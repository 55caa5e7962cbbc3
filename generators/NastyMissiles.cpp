#include "NastyMissiles.h"

#include <array>
#include <cmath>
#include <numbers>

#include "Damage.h"
#include "Lofts.h"

namespace ostrella::generators {

namespace {

using std::numbers::pi;

constexpr double bodyRadius = 0.15;

/// An ogive and a cylinder, nose at x = 0; vertices in rows along the axis.
Body shell(double length, int around) {
    std::vector<glm::dvec2> profile;
    for (const double t : {0.0, 0.02, 0.08, 0.18, 0.32, 0.5, 0.7, 1.0}) {
        profile.emplace_back(0.6 * t, bodyRadius * std::sqrt(t * (2.0 - t)));
    }
    for (int i = 1; i <= 16; ++i) {
        profile.emplace_back(0.6 + (length - 0.6) * i / 16.0, bodyRadius);
    }
    return revolution(profile, around, Ends::closed);
}

glm::dvec3 spoke(double x, double r, double angle) {
    return {x, r * std::cos(angle), r * std::sin(angle)};
}

/// Closed wedges whose root edge is a row of the body's own vertices once merged: four facets meet
/// at each of its edges.
Body finnedMissile() {
    constexpr double length = 3.0;
    constexpr int around = 16;
    Body body = shell(length, around);
    for (int f = 0; f < 4; ++f) {
        const double angle = 2.0 * pi * f / 4;
        std::vector<Section> sections;
        for (int i = 12; i <= 16; ++i) {
            const double x = 0.6 + (length - 0.6) * i / 16.0;
            const double height = 0.45 * std::min(1.0, (i - 11) / 3.0);
            // Seen from behind: root, outer corner, outer corner, a wedge that is sharp at the
            // root.
            sections.push_back(
                {spoke(x, bodyRadius, angle), spoke(x, bodyRadius + height, angle - 0.03),
                    spoke(x, bodyRadius + height, angle + 0.03)});
        }
        body.append(loft(sections, Ends::closed));
    }
    return body.welded(1e-9);
}

/// Sheets without thickness on rows of the body's vertices: three facets meet at each edge.
Body sheetFinnedMissile() {
    constexpr double length = 3.0;
    Body body = shell(length, 12);
    for (int f = 0; f < 4; ++f) {
        const double angle = 2.0 * pi * f / 4;
        body.append(sheet(3, 4, [angle](double u, double v) {
            const double x = 0.6 + 2.4 * (12.0 + 4.0 * v) / 16.0;
            return spoke(x + 0.1 * u, bodyRadius + 0.4 * u, angle);
        }));
    }
    return body.welded(1e-9);
}

/// Six closed wedges with one edge in common, the axis, behind a body that they are not part of.
Body starOfFins() {
    Body body = shell(1.6, 16);
    for (int f = 0; f < 6; ++f) {
        const double angle = 2.0 * pi * f / 6;
        const std::array sections{
            Section{spoke(1.3, 0, 0), spoke(1.5, 0.5, angle - 0.05), spoke(1.5, 0.5, angle + 0.05)},
            Section{
                spoke(2.2, 0, 0), spoke(2.2, 0.5, angle - 0.05), spoke(2.2, 0.5, angle + 0.05)}};
        body.append(loft(sections, Ends::closed));
    }
    return body.welded(1e-9);
}

/// Facets of a projectile whose edges run from a hundred-thousandth of its length to most of it.
Body sliverMissile() {
    constexpr double length = 3.0;
    std::vector<glm::dvec2> profile{{0, 0}, {0.00003, 0.0006}, {0.0005, 0.004}, {0.04, 0.03},
        {0.6, bodyRadius}, {0.60003, bodyRadius}, {2.9, bodyRadius}, {2.90002, 0.151},
        {length, 0.151}};
    Body body = revolution(profile, 48, Ends::closed);
    for (int f = 0; f < 4; ++f) {
        const Body fin = boxBetween({2.2, 0.14, -0.004}, {2.95, 0.6, 0.004});
        body.append(turnedAbout(fin, {1, 0, 0}, 90.0 * f + 45.0));
    }
    return body;
}

constexpr NastyBody all[] = {
    {"finnedMissile", "four wedges on rows of the body's vertices, edges of four facets",
        finnedMissile},
    {"sheetFinnedMissile", "four sheets on rows of the body's vertices, edges of three facets",
        sheetFinnedMissile},
    {"starOfFins", "six wedges with one common edge, and a body into which they reach", starOfFins},
    {"sliverMissile", "edges of 1 : 100 000 within one body, and thin fins stuck in",
        sliverMissile},
};

} // namespace

std::span<const NastyBody> nastyMissiles() {
    return all;
}

} // namespace ostrella::generators
