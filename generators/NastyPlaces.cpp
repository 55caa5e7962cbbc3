#include "NastyPlaces.h"

#include <glm/geometric.hpp>

#include "Damage.h"
#include "Lofts.h"
#include "Shapes.h"

namespace ostrella::generators {

namespace {

/// A bracket of boxes and bars through one another; largest extent 1.
Body bracket() {
    Body body = boxBetween({0, 0, -0.3}, {1.0, 0.08, 0.3});
    body.append(boxBetween({0.4, 0.08, -0.3}, {0.5, 0.6, 0.3}));
    body.append(bar({0.1, 0.35, 0}, {0.9, 0.35, 0}, 0.1, 24, Ends::closed));
    body.append(bar({0.15, -0.05, 0.2}, {0.15, 0.15, 0.2}, 0.04, 12, Ends::closed));
    return body;
}

Body bracketOf300() {
    return bracket().scaled(300.0);
}

Body bracketOf2000() {
    return bracket().scaled(2000.0);
}

Body bracketOfCentimetres() {
    return bracket().scaled(0.03);
}

Body wingTimesAway(double factor) {
    const Body wing = ellipticWing(1.0, 0.15, 1.5, 32, 20);
    return wing.translated(glm::normalize(glm::dvec3(2, -1, 1.5)) * (1.5 * factor));
}

Body thousandSizesAway() {
    return wingTimesAway(1e3);
}

Body tenThousandSizesAway() {
    return wingTimesAway(1e4);
}

Body hundredThousandSizesAway() {
    return wingTimesAway(1e5);
}

/// Facets of a metre, spread over a kilometre.
Body kilometre() {
    Random random(10);
    Body body;
    for (int i = 0; i < 10; ++i) {
        const glm::dvec3 middle{100.0 * i, random.within(0, 200), random.within(-300, 300)};
        const auto first = body.add(middle);
        body.add(middle + random.direction());
        body.add(middle + random.direction());
        body.triangles.push_back({first, first + 1, first + 2});
    }
    return body;
}

/// A small body and one facet that was left lying far away.
Body strayFacet() {
    Body body = subdividedSphere(0.5, 3);
    const auto first = body.add({60.0, 20.0, 10.0});
    body.add({60.01, 20.0, 10.0});
    body.add({60.0, 20.01, 10.0});
    body.triangles.push_back({first, first + 1, first + 2});
    return body;
}

using End = NastyBody::End;

constexpr NastyBody all[] = {
    {"bracketOf300", "boxes and bars through one another, in millimetres: 300 m", bracketOf300},
    {"bracketOf2000", "the same at 2 000 m", bracketOf2000},
    {"bracketOfCentimetres", "the same at 0.03 m", bracketOfCentimetres},
    {"thousandSizesAway", "a wing 1 000 times its size from the origin", thousandSizesAway},
    {"tenThousandSizesAway", "a wing 10 000 times its size from the origin, corners rounded",
        tenThousandSizesAway},
    {"hundredThousandSizesAway", "beyond what can be told apart in 32 bits",
        hundredThousandSizesAway, End::sentence},
    {"kilometre", "ten facets of a metre spread over a kilometre", kilometre, End::either},
    {"strayFacet", "a ball, and a facet left lying 60 diameters away", strayFacet, End::either},
};

} // namespace

std::span<const NastyBody> nastyPlaces() {
    return all;
}

} // namespace ostrella::generators
