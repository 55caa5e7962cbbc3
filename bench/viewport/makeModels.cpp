// Writes the bodies that whole programs are timed with: spheres as binary STL.

#include "Bodies.h"
#include "Solver/Geometry/MeshOperations.h"

#include <fmt/format.h>

#include <glm/geometric.hpp>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <utility>
#include <vector>

namespace {

using ostrella::TriangleMesh;
using ostrella::Vec3;

/// The unit sphere in `rings` bands of `rings` quads each, two facets a quad and one at the poles.
TriangleMesh bandedSphere(int rings) {
    const auto at = [rings](int band, int step) {
        const double down = std::numbers::pi * band / rings;
        const double around = 2 * std::numbers::pi * (step % rings) / rings;
        const double radius = band == 0 || band == rings ? 0.0 : std::sin(down);
        return Vec3(
            glm::dvec3(radius * std::cos(around), radius * std::sin(around), std::cos(down)));
    };
    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    const auto add = [&](const Vec3& a, const Vec3& b, const Vec3& c) {
        positions.insert(positions.end(), {a, b, c});
        normals.insert(normals.end(), 3, glm::normalize(glm::cross(b - a, c - a)));
    };
    for (int band = 0; band < rings; ++band) {
        for (int step = 0; step < rings; ++step) {
            if (band + 1 < rings)
                add(at(band, step), at(band + 1, step), at(band + 1, step + 1));
            if (band > 0)
                add(at(band, step), at(band + 1, step + 1), at(band, step + 1));
        }
    }
    return {std::move(positions), std::move(normals)};
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: ostrella-make-bench-models DIR\n", stderr);
        return EXIT_FAILURE;
    }
    const std::filesystem::path folder = argv[1];
    const auto write = [&](const TriangleMesh& mesh) {
        ostrella::writeBinarySTL(mesh, folder / fmt::format("{}.stl", mesh.facetCount()));
    };
    constexpr int fewDivisions = 4;
    constexpr int rings = 317;
    write(ostrella::bench::sphere(fewDivisions));
    write(bandedSphere(rings));
    write(ostrella::bench::sphere(ostrella::bench::usualDivisions));
    return EXIT_SUCCESS;
}
