#include "TestBodies.h"

#include <algorithm>
#include <utility>

#include "Shapes.h"

namespace ostrella::generators {

namespace {

Body cube12() {
    return box({1, 1, 1}, {1, 1, 1});
}

Body cubeFine() {
    return box({1, 1, 1}, {100, 100, 100});
}

Body sphere() {
    return subdividedSphere(1.0, 4);
}

Body fineSphere() {
    return geodesicSphere(1.0, 124);
}

Body smallFineSphere() {
    return geodesicSphere(0.05, 124);
}

Body sphere1310720() {
    return subdividedSphere(1.0, 8);
}

Body twoSpheres() {
    Body body = subdividedSphere(0.5, 4).translated({-1.0, 0, 0});
    body.append(subdividedSphere(0.5, 4).translated({1.0, 0, 0}));
    return body;
}

Body twoCubes() {
    Body body = cube12().translated({-1.5, 0, 0});
    body.append(cube12().translated({1.5, 0, 0.5}));
    return body;
}

Body farSphere() {
    return subdividedSphere(1.0, 4).translated({1000.0, -400.0, 250.0});
}

Body farCube() {
    return cube12().translated({1000.0, -400.0, 250.0});
}

Body tinySphere() {
    return subdividedSphere(0.005, 4);
}

Body tinyCube() {
    return cube12().scaled(0.01);
}

Body underMillimetreCube() {
    return cube12().scaled(0.0008);
}

Body hugeSphere() {
    return subdividedSphere(500.0, 4);
}

Body hugeCube() {
    return cube12().scaled(1000.0);
}

Body slab() {
    return box({4.0, 0.5, 1.0}, {1, 1, 1});
}

Body holes() {
    Body body = subdividedSphere(1.0, 3);
    for (const std::size_t facet : {1000U, 500U, 17U}) {
        body.triangles.erase(body.triangles.begin() + static_cast<std::ptrdiff_t>(facet));
    }
    return body;
}

Body duplicates() {
    Body body = subdividedSphere(1.0, 3);
    for (const std::size_t facet : {3U, 100U, 101U, 640U, 1200U}) {
        body.triangles.push_back(body.triangles[facet]);
    }
    return body;
}

Body flipped() {
    Body body = subdividedSphere(1.0, 3);
    for (std::size_t facet = 0; facet < body.triangles.size(); facet += 9) {
        std::swap(body.triangles[facet][1], body.triangles[facet][2]);
    }
    return body;
}

Body insideOut() {
    Body body = subdividedSphere(1.0, 3);
    for (Body::Triangle& triangle : body.triangles) {
        std::swap(triangle[1], triangle[2]);
    }
    return body;
}

Body selfIntersecting() {
    Body body = cube12();
    body.append(cube12().translated({0.45, 0.35, 0.25}));
    return body;
}

Body nonManifold() {
    Body body = cube12();
    body.append(cube12().translated({1.0, 1.0, 0.0}));
    return body;
}

Body plate() {
    Body body;
    const auto corner = [&body](double x, double z) { return body.add({x, 0.0, z}); };
    constexpr int parts = 10;
    for (int i = 0; i < parts; ++i) {
        for (int j = 0; j < parts; ++j) {
            const double x = double(i) / parts;
            const double z = double(j) / parts;
            constexpr double h = 1.0 / parts;
            body.addQuad(corner(x, z), corner(x, z + h), corner(x + h, z + h), corner(x + h, z));
        }
    }
    return body.welded(1e-9);
}

Body slivers() {
    // A box whose long sides are cut into needles of 1 : 400.
    return box({1.0, 1.0, 1.0}, {1, 400, 1});
}

constexpr TestBody all[] = {
    {"cube12", "unit cube of 12 facets", cube12},
    {"cube12Ascii", "the same, ASCII", cube12, true},
    {"cubeFine", "unit cube of 120 000 facets", cubeFine},
    {"slab", "4 x 0.5 x 1 m box of 12 facets", slab},
    {"sphere", "radius 1 m, 5 120 facets", sphere},
    {"sphereAscii", "the same, ASCII", sphere, true},
    {"fineSphere", "radius 1 m, 307 520 facets", fineSphere},
    {"smallFineSphere", "radius 0.05 m, 307 520 facets", smallFineSphere},
    {"sphere1310720", "radius 1 m, 1 310 720 facets", sphere1310720},
    {"twoSpheres", "two separate spheres, one behind the other", twoSpheres},
    {"twoCubes", "two separate cubes of 12 facets", twoCubes},
    {"farSphere", "sphere about (1000, -400, 250)", farSphere},
    {"farCube", "cube of 12 facets about (1000, -400, 250)", farCube},
    {"tinySphere", "diameter 0.01 m", tinySphere},
    {"tinyCube", "0.01 m cube of 12 facets", tinyCube},
    {"underMillimetreCube", "0.0008 m cube of 12 facets", underMillimetreCube},
    {"hugeSphere", "diameter 1 000 m", hugeSphere},
    {"hugeCube", "1 000 m cube of 12 facets", hugeCube},
    {"holes", "sphere of 1 280 facets less 3", holes},
    {"duplicates", "sphere of 1 280 facets, 5 of them twice", duplicates},
    {"flipped", "sphere of 1 280 facets, every ninth turned over", flipped},
    {"insideOut", "sphere of 1 280 facets facing inward", insideOut},
    {"selfIntersecting", "two cubes that overlap", selfIntersecting},
    {"nonManifold", "two cubes that share an edge", nonManifold},
    {"plate", "flat square without thickness", plate},
    {"slivers", "cube with needles of 1 : 400", slivers},
};

} // namespace

std::span<const TestBody> testBodies() {
    return all;
}

const TestBody* testBody(std::string_view name) {
    const auto found = std::ranges::find(all, name, &TestBody::name);
    return found == std::end(all) ? nullptr : found;
}

} // namespace ostrella::generators
