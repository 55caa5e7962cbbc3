#include "NastyVehicles.h"

#include <array>

#include "Damage.h"
#include "Lofts.h"

namespace ostrella::generators {

namespace {

/// A car's body: its side's outline drawn across, narrower at the roof. Underside at y = 0.2.
Body coachwork() {
    const std::array<glm::dvec2, 9> outline{glm::dvec2(0.0, 0.25), {0.1, 0.2}, {4.0, 0.2},
        {4.1, 0.6}, {4.0, 0.9}, {3.3, 1.0}, {2.6, 1.4}, {1.5, 1.4}, {0.9, 0.95}};
    std::vector<Section> sections;
    for (const double side : {-1.0, 1.0}) {
        Section section;
        for (const glm::dvec2& p : outline) {
            section.emplace_back(p.x, p.y, side * (p.y > 1.0 ? 0.65 : 0.85));
        }
        section.emplace_back(0.0, 0.7, side * 0.85);
        sections.push_back(std::move(section));
    }
    return loft(sections, Ends::closed);
}

/// A wheel whose lowest vertices stand on y = 0.
Body wheel(double x, double z, double radius, int around) {
    return bar({x, radius, z - 0.1}, {x, radius, z + 0.1}, radius, around, Ends::closed);
}

Body withWheels(Body body, double radius, double z, int around) {
    for (const double x : {0.8, 3.2}) {
        for (const double side : {-1.0, 1.0}) {
            body.append(wheel(x, side * z, radius, around));
        }
    }
    return body;
}

/// Wheels reach into the body and stand on a road of no thickness along lines.
Body carOnRoad() {
    Body body = withWheels(coachwork(), 0.32, 0.75, 24);
    body.append(sheet(
        8, 4, [](double u, double v) { return glm::dvec3(-0.5 + 5.2 * u, 0.0, 1.3 - 2.6 * v); }));
    return body;
}

/// The wheels' tops touch the flat underside along lines and reach nowhere into it.
Body cartOnTangentWheels() {
    Body body = boxBetween({0, 0.6, -0.8}, {4.0, 1.2, 0.8});
    return withWheels(body, 0.3, 0.6, 20);
}

/// Mirrors on thin stalks, an aerial of a hair's width, a spoiler without thickness, open arches.
Body carWithTrimmings() {
    Body body = withWheels(coachwork(), 0.32, 0.85, 20);
    for (const double side : {-1.0, 1.0}) {
        body.append(bar({1.3, 0.95, side * 0.7}, {1.25, 1.0, side * 1.0}, 0.015, 6, Ends::closed));
        body.append(boxBetween({1.15, 0.95, side * 1.0 - 0.07}, {1.28, 1.1, side * 1.0 + 0.07}));
        body.append(bar({3.7, 0.9, side * 0.5}, {3.75, 1.25, side * 0.5}, 0.02, 6, Ends::open));
    }
    body.append(bar({2.4, 1.3, 0.2}, {2.8, 2.0, 0.2}, 0.003, 5, Ends::closed));
    body.append(sheet(2, 6, [](double u, double v) {
        return glm::dvec3(3.6 + 0.35 * u, 1.25 + 0.05 * u, 0.75 - 1.5 * v);
    }));
    return body;
}

constexpr NastyBody all[] = {
    {"carOnRoad", "wheels that reach into the body and touch a road without thickness", carOnRoad},
    {"cartOnTangentWheels", "wheels that touch a flat underside along lines", cartOnTangentWheels},
    {"carWithTrimmings", "mirrors on stalks, a hair-thin aerial, a spoiler without thickness",
        carWithTrimmings},
};

} // namespace

std::span<const NastyBody> nastyVehicles() {
    return all;
}

} // namespace ostrella::generators
