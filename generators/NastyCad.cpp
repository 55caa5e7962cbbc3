#include "NastyCad.h"

#include <array>
#include <cmath>
#include <numbers>
#include <string_view>

#include "Damage.h"
#include "Lofts.h"
#include "Shapes.h"

namespace ostrella::generators {

namespace {

using std::numbers::pi;

/// A cylinder the way an exporter cuts it: full-length needles round it, fans on its ends.
Body needleCylinder() {
    constexpr int around = 360;
    return bar({-1.5, 0, 0}, {1.5, 0, 0}, 0.5, around, Ends::closed);
}

/// A box whose sides are strips of 1 : 300, and each side cut another way.
Body needleBox() {
    return box({3.0, 1.0, 1.0}, {1, 150, 70});
}

/// Six patches that share no edge although they meet: neighbours are cut into unlike parts.
Body patchesThatDoNotMatch() {
    Body body;
    const std::array<std::array<int, 2>, 6> parts{
        {{7, 3}, {5, 11}, {1, 8}, {13, 2}, {4, 4}, {9, 6}}};
    for (std::size_t side = 0; side < 6; ++side) {
        Body patch = sheet(parts[side][0], parts[side][1],
            [](double u, double v) { return glm::dvec3(0.5, u - 0.5, v - 0.5); });
        const double turn = side == 4 ? 90.0 : -90.0;
        body.append(side < 4 ? turnedAbout(patch, {0, 0, 1}, 90.0 * double(side))
                             : turnedAbout(patch, {0, 1, 0}, turn));
    }
    return body;
}

/// The same on a curved body, where unlike cuts also leave slits and overlaps.
Body curvedPatches() {
    Body body;
    for (int patch = 0; patch < 8; ++patch) {
        const int uSteps = 5 + 3 * (patch % 3);
        const int vSteps = 4 + 5 * (patch % 2);
        body.append(sheet(uSteps, vSteps, [patch](double u, double v) {
            const double angle = 2.0 * pi * (patch + v) / 8.0;
            const double t = pi * u;
            return glm::dvec3(-1.2 * std::cos(t), 0.5 * std::sin(t) * std::cos(angle),
                0.7 * std::sin(t) * std::sin(angle));
        }));
    }
    return body;
}

/// Fillets of a thousandth of the size, in facets to match.
Body hairFillets() {
    return roundedBox({2.0, 1.0, 1.2}, 0.002, 0.5, 4);
}

/// The strokes of one letter in a field of 5 × 7, as corners of boxes.
std::span<const std::array<double, 4>> strokesOf(char letter) {
    static constexpr std::array<std::array<double, 4>, 3> f{
        {{0, 0, 1, 7}, {0, 6, 4, 7}, {0, 3, 3, 4}}};
    static constexpr std::array<std::array<double, 4>, 2> l{{{0, 0, 1, 7}, {0, 0, 4, 1}}};
    static constexpr std::array<std::array<double, 4>, 4> o{
        {{0, 0, 1, 7}, {3, 0, 4, 7}, {0, 0, 4, 1}, {0, 6, 4, 7}}};
    static constexpr std::array<std::array<double, 4>, 4> w{
        {{0, 0, 0.8, 7}, {1.6, 0, 2.4, 5}, {3.2, 0, 4, 7}, {0, 0, 4, 1}}};
    switch (letter) {
    case 'F':
        return f;
    case 'L':
        return l;
    case 'O':
        return o;
    default:
        return w;
    }
}

/// Letters as boxes that overlap, their feet in the plane of the plate's top or `sunk` below it.
Body reliefText(double sunk) {
    Body body = boxBetween({0, 0, 0}, {2.4, 0.15, 0.9});
    double x = 0.15;
    for (const char letter : std::string_view("FLOW")) {
        for (const auto& s : strokesOf(letter)) {
            body.append(boxBetween({x + 0.1 * s[0], 0.15 - sunk, 0.8 - 0.1 * s[3]},
                {x + 0.1 * s[2], 0.25, 0.8 - 0.1 * s[1]}));
        }
        x += 0.55;
    }
    return body;
}

Body reliefOnPlate() {
    return reliefText(0.0);
}

Body reliefInPlate() {
    return reliefText(0.05);
}

/// A plate with a hundred rivets whose heads are half balls open below, a hair above the plate.
Body rivetedPlate() {
    Body body = boxBetween({0, 0, 0}, {2.0, 0.1, 1.0});
    const Body head =
        without(subdividedSphere(0.03, 1), [](const glm::dvec3& p) { return p.y < 0.0; });
    for (int i = 0; i < 10; ++i) {
        for (int j = 0; j < 5; ++j) {
            body.append(head.translated({0.1 + 0.2 * i, 0.1002, 0.1 + 0.2 * j}));
        }
    }
    return body;
}

/// A cube among whose facets are some without area: on edges, on a line, at a point.
Body zeroFacets() {
    Body body = box({1.0, 1.0, 1.0}, {6, 6, 6});
    const std::size_t count = body.triangles.size();
    for (std::size_t i = 0; i < count; i += 9) {
        const Body::Triangle t = body.triangles[i];
        const auto middle = body.add((body.vertices[t[0]] + body.vertices[t[1]]) / 2.0);
        body.triangles.push_back({t[0], middle, t[1]});
        body.triangles.push_back({t[1], t[1], t[2]});
        body.triangles.push_back({t[2], t[2], t[2]});
    }
    return body;
}

/// A third of the facets twice, half of those the other way round.
Body doubledFacets() {
    Body body = subdividedSphere(0.7, 3);
    const std::size_t count = body.triangles.size();
    for (std::size_t i = 0; i < count; i += 3) {
        const auto [a, b, c] = body.triangles[i];
        body.triangles.push_back(i % 2 == 0 ? Body::Triangle{b, c, a} : Body::Triangle{b, a, c});
    }
    return body;
}

Body randomlyFlipped() {
    Body body = roundedBox({2.0, 1.0, 1.0}, 0.2, 0.12, 6);
    Random random(9);
    for (Body::Triangle& t : body.triangles) {
        if (random.under(10) < 4) {
            std::swap(t[1], t[2]);
        }
    }
    return body;
}

constexpr NastyBody all[] = {
    {"needleCylinder", "full-length needles of 1 : 340 and fans of 360", needleCylinder},
    {"needleBox", "strips of up to 1 : 450", needleBox},
    {"patchesThatDoNotMatch", "a cube of six patches cut into unlike parts", patchesThatDoNotMatch},
    {"curvedPatches", "patches with slits and overlaps between them", curvedPatches},
    {"hairFillets", "fillets of a thousandth of the size", hairFillets},
    {"reliefOnPlate", "letters of overlapping boxes upon a plate", reliefOnPlate},
    {"reliefInPlate", "letters of overlapping boxes let into a plate", reliefInPlate},
    {"rivetedPlate", "fifty open rivet heads a hair above a plate", rivetedPlate},
    {"zeroFacets", "a cube with facets without area", zeroFacets},
    {"doubledFacets", "every third facet twice, some the other way round", doubledFacets},
    {"randomlyFlipped", "four facets of ten turned over", randomlyFlipped},
};

} // namespace

std::span<const NastyBody> nastyCad() {
    return all;
}

} // namespace ostrella::generators
