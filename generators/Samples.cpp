#include "Samples.h"

#include "Shapes.h"

namespace ostrella::generators {

namespace {

Body sphere() {
    return subdividedSphere(1.0, 4);
}

Body roundedBoxSample() {
    return roundedBox({2.0, 1.0, 1.0}, 0.12, 0.05, 4);
}

Body simpleWing() {
    return ellipticWing(1.0, 0.12, 2.0, 80, 60);
}

constexpr Sample all[] = {
    {"sphere", sphere}, {"rounded_box", roundedBoxSample}, {"simple_wing", simpleWing}};

} // namespace

std::span<const Sample> samples() {
    return all;
}

} // namespace ostrella::generators
