#include "NastyBodies.h"

#include <algorithm>

#include "NastyAircraft.h"
#include "NastyCad.h"
#include "NastyFrames.h"
#include "NastyMissiles.h"
#include "NastyOpenings.h"
#include "NastyPlaces.h"
#include "NastyRotors.h"
#include "NastyScans.h"
#include "NastySheets.h"
#include "NastyShells.h"
#include "NastyVehicles.h"
#include "TestBodies.h"

namespace ostrella::generators {

namespace {

std::vector<NastyBody> collected() {
    std::vector<NastyBody> bodies;
    for (const auto kind : {nastyAircraft(), nastyMissiles(), nastyRotors(), nastyVehicles(),
             nastyFrames(), nastySheets(), nastyOpenings(), nastyScans(), nastyCad(), nastyShells(),
             nastyPlaces()}) {
        bodies.insert(bodies.end(), kind.begin(), kind.end());
    }
    for (const std::string_view name : {"twoCubes", "farCube", "holes", "duplicates", "flipped",
             "insideOut", "selfIntersecting", "nonManifold", "plate", "slivers"}) {
        const TestBody* body = testBody(name);
        bodies.push_back({body->name, body->about, body->make});
    }
    return bodies;
}

} // namespace

const std::vector<NastyBody>& nastyBodies() {
    static const std::vector<NastyBody> bodies = collected();
    return bodies;
}

const NastyBody* nastyBody(std::string_view name) {
    const auto found = std::ranges::find(nastyBodies(), name, &NastyBody::name);
    return found == nastyBodies().end() ? nullptr : &*found;
}

} // namespace ostrella::generators
