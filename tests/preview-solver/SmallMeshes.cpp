#include "SmallMeshes.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <iterator>
#include <numbers>
#include <vector>

namespace {

using Out = std::back_insert_iterator<std::string>;

/// A displacement of the inner points that is the same each time and of no simple pattern.
double shift(int seed, bool inner, double size) {
    return inner ? 0.2 * size * std::sin(12.9898 * seed + 4.1) : 0.0;
}

struct Facet {
    std::vector<int> points;
};

void facets(Out out, const std::string& name, const std::vector<Facet>& list) {
    fmt::format_to(out, "MARKER_TAG= {}\nMARKER_ELEMS= {}\n", name, list.size());
    for (const auto& facet : list) {
        fmt::format_to(out, "{}", facet.points.size() == 2 ? 3 : facet.points.size() == 3 ? 5 : 9);
        for (const int point : facet.points)
            fmt::format_to(out, " {}", point);
        fmt::format_to(out, "\n");
    }
}

} // namespace

std::string SmallMeshes::square(int n) {
    std::string text;
    const Out out(text);
    const auto at = [n](int i, int j) { return j * (n + 1) + i; };
    std::vector<std::string> cells;
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i) {
            const int a = at(i, j), b = at(i + 1, j), c = at(i + 1, j + 1), d = at(i, j + 1);
            if ((i + j) % 2 == 0) {
                cells.push_back(fmt::format("9 {} {} {} {}", a, b, c, d));
            } else {
                cells.push_back(fmt::format("5 {} {} {}", a, b, c));
                // Clockwise on purpose: the reader turns it.
                cells.push_back(fmt::format("5 {} {} {}", a, d, c));
            }
        }
    }
    fmt::format_to(out, "NDIME= 2\nNELEM= {}\n", cells.size());
    for (std::size_t k = 0; k < cells.size(); ++k)
        fmt::format_to(out, "{} {}\n", cells[k], k);
    fmt::format_to(out, "NPOIN= {}\n", (n + 1) * (n + 1));
    for (int j = 0; j <= n; ++j) {
        for (int i = 0; i <= n; ++i) {
            const bool inner = i > 0 && i < n && j > 0 && j < n;
            const double h = 1.0 / n;
            fmt::format_to(out, "{:.16g} {:.16g} {}\n", i * h + shift(at(i, j), inner, h),
                j * h + shift(at(i, j) + 1000, inner, h), at(i, j));
        }
    }
    std::vector<Facet> all;
    for (int i = 0; i < n; ++i) {
        all.push_back({{at(i, 0), at(i + 1, 0)}});
        all.push_back({{at(i, n), at(i + 1, n)}});
        all.push_back({{at(0, i), at(0, i + 1)}});
        all.push_back({{at(n, i), at(n, i + 1)}});
    }
    fmt::format_to(out, "NMARK= 1\n");
    facets(out, "box", all);
    return text;
}

std::string SmallMeshes::cube(int n, Filling filling) {
    std::string text;
    const Out out(text);
    const int corners = (n + 1) * (n + 1) * (n + 1);
    const auto at = [n](int i, int j, int k) { return (k * (n + 1) + j) * (n + 1) + i; };
    const auto centre = [n, corners](int i, int j, int k) { return corners + (k * n + j) * n + i; };
    std::vector<std::string> cells;
    std::vector<Facet> boundary;
    const bool triangles = filling == Filling::tetrahedra;
    for (int k = 0; k < n; ++k) {
        for (int j = 0; j < n; ++j) {
            for (int i = 0; i < n; ++i) {
                const std::array<int, 8> p{at(i, j, k), at(i + 1, j, k), at(i + 1, j + 1, k),
                    at(i, j + 1, k), at(i, j, k + 1), at(i + 1, j, k + 1), at(i + 1, j + 1, k + 1),
                    at(i, j + 1, k + 1)};
                if (filling == Filling::hexahedra) {
                    cells.push_back(fmt::format("12 {}", fmt::join(p, " ")));
                } else if (filling == Filling::prisms) {
                    cells.push_back(
                        fmt::format("13 {} {} {} {} {} {}", p[0], p[1], p[2], p[4], p[5], p[6]));
                    cells.push_back(
                        fmt::format("13 {} {} {} {} {} {}", p[0], p[2], p[3], p[4], p[6], p[7]));
                } else if (filling == Filling::pyramids) {
                    const int sides[6][4] = {{0, 1, 2, 3}, {4, 7, 6, 5}, {0, 4, 5, 1}, {1, 5, 6, 2},
                        {2, 6, 7, 3}, {3, 7, 4, 0}};
                    for (const auto& s : sides)
                        cells.push_back(fmt::format("14 {} {} {} {} {}", p[s[0]], p[s[1]], p[s[2]],
                            p[s[3]], centre(i, j, k)));
                } else {
                    // Six tetrahedra about the diagonal from corner 0 to corner 6.
                    const int ways[6][2] = {{1, 2}, {2, 3}, {3, 7}, {7, 4}, {4, 5}, {5, 1}};
                    for (const auto& way : ways)
                        cells.push_back(
                            fmt::format("10 {} {} {} {}", p[0], p[way[0]], p[way[1]], p[6]));
                }
            }
        }
    }
    const auto side = [&](int a, int b, int c, int d) {
        if (triangles) {
            // Diagonals run from the lower to the upper corner, as in the cells.
            boundary.push_back({{a, b, c}});
            boundary.push_back({{a, c, d}});
        } else {
            boundary.push_back({{a, b, c, d}});
        }
    };
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i) {
            for (const int f : {0, n}) {
                const auto split = [&](auto place) {
                    side(place(i, j), place(i + 1, j), place(i + 1, j + 1), place(i, j + 1));
                };
                if (filling == Filling::prisms) {
                    // The prisms' ends are triangles.
                    boundary.push_back({{at(i, j, f), at(i + 1, j, f), at(i + 1, j + 1, f)}});
                    boundary.push_back({{at(i, j, f), at(i + 1, j + 1, f), at(i, j + 1, f)}});
                } else {
                    split([&](int a, int b) { return at(a, b, f); });
                }
                split([&](int a, int b) { return at(a, f, b); });
                split([&](int a, int b) { return at(f, a, b); });
            }
        }
    }
    const int points = corners + (filling == Filling::pyramids ? n * n * n : 0);
    fmt::format_to(
        out, "NDIME= 3\nNELEM= {}\n{}\nNPOIN= {}\n", cells.size(), fmt::join(cells, "\n"), points);
    const double h = 1.0 / n;
    for (int k = 0; k <= n; ++k)
        for (int j = 0; j <= n; ++j)
            for (int i = 0; i <= n; ++i) {
                const bool inner = i > 0 && i < n && j > 0 && j < n && k > 0 && k < n;
                const int seed = at(i, j, k);
                fmt::format_to(out, "{:.16g} {:.16g} {:.16g}\n", i * h + shift(seed, inner, h),
                    j * h + shift(seed + 500, inner, h), k * h + shift(seed + 900, inner, h));
            }
    if (filling == Filling::pyramids)
        for (int k = 0; k < n; ++k)
            for (int j = 0; j < n; ++j)
                for (int i = 0; i < n; ++i)
                    fmt::format_to(out, "{:.16g} {:.16g} {:.16g}\n", (i + 0.5) * h, (j + 0.5) * h,
                        (k + 0.5) * h);
    fmt::format_to(out, "NMARK= 1\n");
    facets(out, "box", boundary);
    return text;
}

std::string SmallMeshes::ring(int around, int outward, double first) {
    std::string text;
    const Out out(text);
    // Heights grow by one factor, found by bisection, from `first` to a radius of 100.
    double low = 1.0001, high = 10;
    for (int step = 0; step < 200; ++step) {
        const double q = 0.5 * (low + high);
        (first * (std::pow(q, outward) - 1) / (q - 1) < 99 ? low : high) = q;
    }
    const double q = low;
    fmt::format_to(out, "NDIME= 2\nNELEM= {}\n", around * outward);
    for (int j = 0; j < outward; ++j)
        for (int i = 0; i < around; ++i) {
            const int next = (i + 1) % around;
            fmt::format_to(out, "9 {} {} {} {}\n", j * around + i, (j + 1) * around + i,
                (j + 1) * around + next, j * around + next);
        }
    fmt::format_to(out, "NPOIN= {}\n", around * (outward + 1));
    for (int j = 0; j <= outward; ++j)
        for (int i = 0; i < around; ++i) {
            const double r = 1 + first * (std::pow(q, j) - 1) / (q - 1);
            const double angle = 2 * std::numbers::pi * i / around;
            fmt::format_to(out, "{:.16g} {:.16g}\n", r * std::cos(angle), r * std::sin(angle));
        }
    std::vector<Facet> wall, far;
    for (int i = 0; i < around; ++i) {
        const int next = (i + 1) % around;
        wall.push_back({{i, next}});
        far.push_back({{outward * around + i, outward * around + next}});
    }
    fmt::format_to(out, "NMARK= 2\n");
    facets(out, "wall", wall);
    facets(out, "far", far);
    return text;
}
