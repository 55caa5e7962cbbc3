#include "Solver/Surface/OpeningBodies.h"

#include <cmath>
#include <numbers>

namespace ostrella::test {

namespace {

void addQuad(
    IndexedSurface& surface, std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    surface.triangles.push_back({a, b, c});
    surface.triangles.push_back({a, c, d});
}

} // namespace

IndexedSurface plateWithHoles(
    int columns, int rows, const std::function<bool(int column, int row)>& isHole) {
    IndexedSurface surface;
    for (int z = 0; z < 2; ++z) {
        for (int y = 0; y <= rows; ++y) {
            for (int x = 0; x <= columns; ++x)
                surface.vertices.emplace_back(x, y, z);
        }
    }
    const auto at = [&](int x, int y, int z) {
        return static_cast<std::uint32_t>((z * (rows + 1) + y) * (columns + 1) + x);
    };
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < columns; ++x) {
            addQuad(surface, at(x, y, 0), at(x, y + 1, 0), at(x + 1, y + 1, 0), at(x + 1, y, 0));
            if (!isHole(x, y))
                addQuad(
                    surface, at(x, y, 1), at(x + 1, y, 1), at(x + 1, y + 1, 1), at(x, y + 1, 1));
        }
    }
    for (int x = 0; x < columns; ++x) {
        addQuad(surface, at(x, 0, 0), at(x + 1, 0, 0), at(x + 1, 0, 1), at(x, 0, 1));
        addQuad(surface, at(x + 1, rows, 0), at(x, rows, 0), at(x, rows, 1), at(x + 1, rows, 1));
    }
    for (int y = 0; y < rows; ++y) {
        addQuad(surface, at(0, y + 1, 0), at(0, y, 0), at(0, y, 1), at(0, y + 1, 1));
        addQuad(surface, at(columns, y, 0), at(columns, y + 1, 0), at(columns, y + 1, 1),
            at(columns, y, 1));
    }
    return surface;
}

IndexedSurface pot(int sides, double height) {
    IndexedSurface surface;
    const auto count = static_cast<std::uint32_t>(sides);
    for (const double z : {0.0, height}) {
        for (int i = 0; i < sides; ++i) {
            const double angle = 2 * std::numbers::pi * i / sides;
            surface.vertices.emplace_back(std::cos(angle), std::sin(angle), z);
        }
    }
    surface.vertices.emplace_back(0, 0, 0);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t next = (i + 1) % count;
        addQuad(surface, i, next, next + count, i + count);
        surface.triangles.push_back({2 * count, next, i});
    }
    return surface;
}

IndexedSurface flatSheet(int columns, int rows) {
    IndexedSurface surface;
    for (int y = 0; y <= rows; ++y) {
        for (int x = 0; x <= columns; ++x)
            surface.vertices.emplace_back(x, y, 0);
    }
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < columns; ++x) {
            const auto corner = static_cast<std::uint32_t>(y * (columns + 1) + x);
            const auto above = corner + static_cast<std::uint32_t>(columns + 1);
            addQuad(surface, corner, corner + 1, above + 1, above);
        }
    }
    return surface;
}

IndexedSurface together(const IndexedSurface& a, const IndexedSurface& b) {
    IndexedSurface both = a;
    const auto offset = static_cast<std::uint32_t>(a.vertices.size());
    both.vertices.insert(both.vertices.end(), b.vertices.begin(), b.vertices.end());
    for (const Triangle& t : b.triangles)
        both.triangles.push_back({t[0] + offset, t[1] + offset, t[2] + offset});
    return both;
}

} // namespace ostrella::test
