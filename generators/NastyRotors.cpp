#include "NastyRotors.h"

#include <array>
#include <cmath>
#include <numbers>

#include "Damage.h"
#include "Lofts.h"

namespace ostrella::generators {

namespace {

using std::numbers::pi;

/// A blade from the axis to `length` along y: a lens with sharp edges, of the given thickness over
/// its chord, twisted from 60 to 15 degrees out of the plane of rotation.
Body blade(double length, double chord, double thickness) {
    std::vector<Section> sections;
    constexpr int stations = 10;
    for (int k = 0; k <= stations; ++k) {
        const double t = double(k) / stations;
        const double twist = (75.0 - 55.0 * t) * pi / 180.0;
        const double c = chord * (0.6 + 0.8 * t - 1.2 * t * t * t);
        Section section;
        constexpr int half = 6;
        for (int i = 0; i < 2 * half; ++i) {
            const double s = i <= half ? 1.0 - 2.0 * i / half : -1.0 + 2.0 * (i - half) / half;
            const double lift = thickness * c * (1.0 - s * s) * (i <= half ? 0.8 : -0.2);
            // Along the chord and square to it, both square to the blade.
            const double along = s * c / 2.0;
            section.emplace_back(along * std::sin(twist) + lift * std::cos(twist), length * t,
                along * std::cos(twist) - lift * std::sin(twist));
        }
        sections.push_back(std::move(section));
    }
    return loft(sections, Ends::closed);
}

Body hub(double radius, double length) {
    std::vector<glm::dvec2> profile;
    for (const double t : {0.0, 0.1, 0.3, 0.6, 1.0}) {
        profile.emplace_back(0.5 * length * (t - 1.0), radius * std::sqrt(t * (2.0 - t)));
    }
    profile.emplace_back(0.5 * length, radius);
    return revolution(profile, 20, Ends::closed);
}

Body bladesAbout(int count, double length, double chord, double thickness) {
    Body body;
    for (int i = 0; i < count; ++i) {
        body.append(turnedAbout(blade(length, chord, thickness), {1, 0, 0}, 360.0 * i / count));
    }
    return body;
}

Body propeller3() {
    Body body = hub(0.18, 0.6);
    body.append(bladesAbout(3, 1.2, 0.3, 0.06));
    return body;
}

Body propeller5() {
    Body body = hub(0.22, 0.6);
    body.append(bladesAbout(5, 1.0, 0.28, 0.02));
    return body;
}

/// Blades of no thickness whatever, all of them through the same axis.
Body paperPropeller() {
    Body body = hub(0.12, 0.4);
    for (int i = 0; i < 4; ++i) {
        const Body flat = sheet(8, 2, [](double u, double v) {
            const double twist = (60.0 - 40.0 * u) * pi / 180.0;
            return glm::dvec3(
                (v - 0.5) * 0.25 * std::sin(twist), u, (v - 0.5) * 0.25 * std::cos(twist));
        });
        body.append(turnedAbout(flat, {1, 0, 0}, 90.0 * i));
    }
    return body;
}

/// A fan in a duct without thickness, which its blades cut.
Body ductedFan() {
    Body body = hub(0.2, 0.7);
    body.append(bladesAbout(4, 1.05, 0.35, 0.05));
    const std::array<glm::dvec2, 4> profile{
        glm::dvec2(-0.5, 1.1), {-0.2, 1.0}, {0.3, 1.0}, {0.7, 0.9}};
    body.append(revolution(profile, 32, Ends::open));
    return body;
}

std::vector<glm::dvec2> gearOutline(int teeth, double inner, double outer) {
    std::vector<glm::dvec2> outline;
    for (int i = 0; i < teeth; ++i) {
        for (const auto& [part, radius] :
            {std::pair{0.0, inner}, {0.45, inner}, {0.55, outer}, {0.9, outer}}) {
            const double angle = 2.0 * pi * (i + part) / teeth;
            outline.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
        }
    }
    return outline;
}

/// Two wheels whose teeth reach into one another, on axles through their middles.
Body gear() {
    Body body = prism(gearOutline(24, 0.85, 1.0), 0.3);
    const Body small = prism(gearOutline(12, 0.4, 0.55), 0.3);
    body.append(turnedAbout(small, {0, 0, 1}, 15.0).translated({1.35, 0, 0}));
    body.append(bar({0, 0, -0.5}, {0, 0, 0.5}, 0.12, 16, Ends::closed));
    body.append(bar({1.35, 0, -0.5}, {1.35, 0, 0.5}, 0.1, 16, Ends::closed));
    return body;
}

constexpr NastyBody all[] = {
    {"propeller3", "three sharp twisted blades that meet on the axis of a hub", propeller3},
    {"propeller5", "five blades of 2 % thickness through a hub", propeller5},
    {"paperPropeller", "four blades without thickness through a hub", paperPropeller},
    {"ductedFan", "blades that cut a duct without thickness", ductedFan},
    {"gear", "two toothed wheels that overlap, on axles through them", gear},
};

} // namespace

std::span<const NastyBody> nastyRotors() {
    return all;
}

} // namespace ostrella::generators
