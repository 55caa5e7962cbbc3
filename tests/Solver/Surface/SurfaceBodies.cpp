#include "Solver/Surface/SurfaceBodies.h"

#include <cmath>
#include <utility>

namespace ostrella::test {

namespace {

Vec3 unit(const Vec3& v) {
    return v / std::sqrt(squaredLength(v));
}

void divide(const Vec3& a, const Vec3& b, const Vec3& c, int times, std::vector<Vec3>& out) {
    if (times == 0) {
        out.insert(out.end(), {a, b, c});
        return;
    }
    const Vec3 ab = unit(a + b);
    const Vec3 bc = unit(b + c);
    const Vec3 ca = unit(c + a);
    divide(a, ab, ca, times - 1, out);
    divide(b, bc, ab, times - 1, out);
    divide(c, ca, bc, times - 1, out);
    divide(ab, bc, ca, times - 1, out);
}

TriangleMesh meshOf(std::vector<Vec3> corners) {
    std::vector<Vec3> normals(corners.size(), Vec3(0, 0, 1));
    return {std::move(corners), std::move(normals)};
}

} // namespace

Facets& Facets::triangle(const Vec3& a, const Vec3& b, const Vec3& c) {
    corners_.insert(corners_.end(), {a, b, c});
    return *this;
}

Facets& Facets::quad(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d) {
    return triangle(a, b, c).triangle(a, c, d);
}

Facets& Facets::box(const Vec3& low, const Vec3& high, bool inward) {
    const auto corner = [&](int i) {
        return Vec3((i & 1) != 0 ? high.x : low.x, (i & 2) != 0 ? high.y : low.y,
            (i & 4) != 0 ? high.z : low.z);
    };
    const std::array<std::array<int, 4>, 6> sides{
        {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}}};
    for (const auto& side : sides) {
        if (inward)
            quad(corner(side[0]), corner(side[3]), corner(side[2]), corner(side[1]));
        else
            quad(corner(side[0]), corner(side[1]), corner(side[2]), corner(side[3]));
    }
    return *this;
}

Facets& Facets::add(const TriangleMesh& mesh) {
    corners_.insert(corners_.end(), mesh.positions().begin(), mesh.positions().end());
    return *this;
}

Facets& Facets::without(std::size_t facet) {
    const auto first = corners_.begin() + static_cast<std::ptrdiff_t>(3 * facet);
    corners_.erase(first, first + 3);
    return *this;
}

TriangleMesh Facets::mesh() const {
    return meshOf(corners_);
}

TriangleMesh unitBox() {
    return Facets().box(Vec3(0.0F), Vec3(1.0F)).mesh();
}

TriangleMesh ball(int divisions, const Vec3& middle, float radius) {
    const float t = (1.0F + std::sqrt(5.0F)) / 2.0F;
    const std::array<Vec3, 12> p{{{-1, t, 0}, {1, t, 0}, {-1, -t, 0}, {1, -t, 0}, {0, -1, t},
        {0, 1, t}, {0, -1, -t}, {0, 1, -t}, {t, 0, -1}, {t, 0, 1}, {-t, 0, -1}, {-t, 0, 1}}};
    constexpr std::array<std::array<std::size_t, 3>, 20> faces{
        {{0, 11, 5}, {0, 5, 1}, {0, 1, 7}, {0, 7, 10}, {0, 10, 11}, {1, 5, 9}, {5, 11, 4},
            {11, 10, 2}, {10, 7, 6}, {7, 1, 8}, {3, 9, 4}, {3, 4, 2}, {3, 2, 6}, {3, 6, 8},
            {3, 8, 9}, {4, 9, 5}, {2, 4, 11}, {6, 2, 10}, {8, 6, 7}, {9, 8, 1}}};
    std::vector<Vec3> corners;
    for (const auto& face : faces)
        divide(unit(p[face[0]]), unit(p[face[1]]), unit(p[face[2]]), divisions, corners);
    return placed(meshOf(std::move(corners)), radius, middle);
}

TriangleMesh placed(const TriangleMesh& mesh, float scale, const Vec3& by) {
    std::vector<Vec3> corners;
    for (const Vec3& corner : mesh.positions())
        corners.push_back(corner * scale + by);
    return meshOf(std::move(corners));
}

TriangleMesh flipped(const TriangleMesh& mesh) {
    std::vector<Vec3> corners(mesh.positions().begin(), mesh.positions().end());
    for (std::size_t i = 0; i < corners.size(); i += 3)
        std::swap(corners[i + 1], corners[i + 2]);
    return meshOf(std::move(corners));
}

IndexedSurface unshared(const TriangleMesh& mesh) {
    IndexedSurface surface;
    for (const Vec3& corner : mesh.positions())
        surface.vertices.emplace_back(corner);
    for (std::uint32_t i = 0; i < surface.vertices.size(); i += 3)
        surface.triangles.push_back({i, i + 1, i + 2});
    return surface;
}

} // namespace ostrella::test
