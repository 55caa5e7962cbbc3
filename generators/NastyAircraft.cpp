#include "NastyAircraft.h"

#include <cmath>
#include <numbers>

#include <glm/geometric.hpp>

#include "Damage.h"
#include "Lofts.h"

namespace ostrella::generators {

namespace {

using std::numbers::pi;

/// A station of a wing: where its leading edge is, its chord, its thickness over the chord.
struct Station {
    glm::dvec3 nose;
    double chord;
    double thickness;
};

/// A wing over stations along a line across the stream, of a section with a sharp trailing edge
/// (thickness as sin² of the half angle times a taper) that lies in the planes of x and `up`.
Body wing(std::span<const Station> stations, const glm::dvec3& up, int around) {
    std::vector<Section> sections;
    for (const Station& s : stations) {
        Section section;
        for (int i = 0; i < around; ++i) {
            const double angle = 2.0 * pi * i / around;
            const double x = 0.5 * (1.0 + std::cos(angle));
            const double half = 1.3 * s.thickness * std::sqrt(x) * (1.0 - x);
            section.push_back(s.nose + glm::dvec3(x * s.chord, 0, 0) +
                              up * (s.chord * half * (std::sin(angle) > 0 ? 1.0 : -1.0)));
        }
        sections.push_back(std::move(section));
    }
    return loft(sections, Ends::closed);
}

/// A wing from tip to tip through z = 0, swept and with dihedral.
Body mainWing(const glm::dvec3& root, double span, double rootChord, double tipChord, double sweep,
    double dihedral) {
    const auto tip = [&](double side) {
        return Station{root + glm::dvec3(sweep, dihedral, side * span / 2.0), tipChord, 0.1};
    };
    const std::array stations{tip(-1), Station{root, rootChord, 0.12}, tip(1)};
    return wing(stations, {0, 1, 0}, 24);
}

Body fin(const glm::dvec3& root, double height, double rootChord, double tipChord, double sweep) {
    const std::array stations{
        Station{root + glm::dvec3(sweep, height, 0), tipChord, 0.1}, Station{root, rootChord, 0.1}};
    return wing(stations, {0, 0, 1}, 16);
}

Body fuselage(double length, double radius, int around) {
    std::vector<glm::dvec2> profile;
    constexpr int parts = 24;
    for (int i = 0; i <= parts; ++i) {
        const double t = double(i) / parts;
        // Blunt at the nose, slender at the tail.
        profile.emplace_back(length * t,
            radius * std::min(1.0, std::sqrt(t / 0.15)) * std::min(1.0, (1.0 - t) / 0.35));
    }
    return revolution(profile, around, Ends::closed);
}

Body airliner() {
    Body body = fuselage(6.0, 0.4, 20);
    body.append(mainWing({2.0, -0.15, 0}, 6.0, 1.2, 0.4, 1.2, 0.3));
    body.append(mainWing({5.1, 0.05, 0}, 2.0, 0.6, 0.3, 0.4, 0.1));
    body.append(fin({5.0, 0.05, 0}, 1.0, 0.8, 0.4, 0.5));
    return body;
}

/// A tube open at both ends, without thickness.
Body nacelle(const glm::dvec3& front) {
    const std::array<glm::dvec2, 4> profile{
        glm::dvec2(0, 0.2), {0.15, 0.24}, {0.6, 0.22}, {0.9, 0.16}};
    return revolution(profile, 16, Ends::open).translated(front);
}

Body airlinerWithNacelles() {
    Body body = airliner();
    for (const double side : {-1.0, 1.0}) {
        body.append(nacelle({2.0, -0.32, side * 1.1}));
        body.append(boxBetween({2.3, -0.2, side * 1.1 - 0.02}, {2.8, 0.05, side * 1.1 + 0.02}));
    }
    return body;
}

Body glider() {
    Body body = fuselage(3.5, 0.18, 16);
    body.append(mainWing({1.0, 0.1, 0}, 8.0, 0.4, 0.15, 0.15, 0.2));
    body.append(fin({3.1, 0.0, 0}, 0.6, 0.35, 0.25, 0.1));
    // The tailplane lies across the fin's very top.
    body.append(mainWing({3.15, 0.6, 0}, 1.2, 0.3, 0.2, 0.05, 0.0));
    return body;
}

Body biplane() {
    Body body = fuselage(4.0, 0.4, 16);
    body.append(mainWing({0.9, 0.75, 0}, 5.0, 0.8, 0.8, 0.0, 0.0));
    body.append(mainWing({1.1, -0.25, 0}, 4.6, 0.8, 0.8, 0.0, 0.1));
    body.append(mainWing({3.4, 0.05, 0}, 1.6, 0.5, 0.4, 0.1, 0.0));
    body.append(fin({3.3, 0.0, 0}, 0.8, 0.6, 0.4, 0.2));
    for (const double z : {-1.7, -0.3, 0.3, 1.7}) {
        for (const double x : {1.2, 1.6}) {
            body.append(bar({x, -0.3, z}, {x - 0.1, 0.85, z}, 0.025, 8, Ends::closed));
        }
    }
    return body;
}

/// A wing of two facets a side with no thickness, stuck through a closed fuselage.
Body flatWings() {
    Body body = fuselage(5.0, 0.35, 20);
    const auto plane = [&body](const glm::dvec3& a, const glm::dvec3& b, const glm::dvec3& c,
                           const glm::dvec3& d) {
        const auto first = body.add(a);
        body.add(b);
        body.add(c);
        body.addQuad(first, first + 1, first + 2, body.add(d));
    };
    plane({1.0, 0, 0}, {3.6, 0, -2.0}, {4.4, 0, -2.0}, {4.2, 0, 0});
    plane({1.0, 0, 0}, {4.2, 0, 0}, {4.4, 0, 2.0}, {3.6, 0, 2.0});
    plane({3.4, 0, 0}, {4.6, 0, 0}, {4.8, 1.1, 0}, {4.3, 1.1, 0});
    return body;
}

/// A wing and a body that end upon one another: the tailplane's root lies in the fin's flat side.
Body flyingBoat() {
    Body body = boxBetween({0, -0.4, -0.4}, {5.0, 0.4, 0.4});
    body.append(boxBetween({1.5, 0.4, -3.0}, {2.5, 0.5, 3.0}));
    body.append(boxBetween({4.2, 0.4, -0.1}, {5.0, 1.6, 0.1}));
    for (const double side : {-1.0, 1.0}) {
        body.append(
            boxBetween({4.3, 1.0, side > 0 ? 0.1 : -1.2}, {4.9, 1.1, side > 0 ? 1.2 : -0.1}));
        body.append(fuselage(1.2, 0.18, 12).translated({1.4, -0.2, side * 2.4}));
        body.append(bar({2.0, -0.1, side * 2.4}, {2.0, 0.45, side * 2.4}, 0.04, 8, Ends::closed));
    }
    return body;
}

constexpr NastyBody all[] = {
    {"airliner", "fuselage with wings and fin stuck through it, four shells", airliner},
    {"airlinerWithNacelles", "the same with open nacelles on pylons", airlinerWithNacelles},
    {"glider", "wing of aspect ratio 29 through a slender fuselage, T-tail", glider},
    {"biplane", "two wings with thin struts through them", biplane},
    {"flatWings", "wings and fin without thickness through a closed fuselage", flatWings},
    {"flyingBoat", "boxes that end upon each other's sides, floats on struts", flyingBoat},
};

} // namespace

std::span<const NastyBody> nastyAircraft() {
    return all;
}

} // namespace ostrella::generators
