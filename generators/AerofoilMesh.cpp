#include "AerofoilMesh.h"

#include <cmath>
#include <complex>
#include <iterator>

#include <fmt/format.h>

namespace ostrella::generators {

namespace {

// The mesh lives in the plane w of z = focus + w², where the parabolas Im w = const wrap aerofoil
// and wake like a C and the lines Re w = const cross them at right angles. The map is conformal, so
// the physical mesh is orthogonal but for what makes room for the aerofoil's thickness.
// The focus is half the nose radius behind the nose, where the nose's image is flattest.
constexpr double noseRadius = 1.1019 * 0.12 * 0.12;
constexpr double focus = noseRadius / 2.0;
// Outermost coordinate in w, in both directions: the far field is at least 24 chords away.
constexpr double outermost = 5.0;
// How fast the aerofoil's shape fades from the mesh lines, and how far the lines keep the wall's
// normal, in units of w.
constexpr double fadeOfShape = 0.3;
constexpr double fadeOfNormal = 0.06;
constexpr double fadeOfSpacing = 0.03;

using Complex = std::complex<double>;

/// The image of the upper surface's point at chord position x.
Complex imageOfSurface(double x) {
    return std::sqrt(Complex(x - focus, naca0012(x)));
}

/// Chord position whose image has the given real part, by bisection: it grows with x.
double chordAt(double xi) {
    double low = 0.0;
    double high = 1.0;
    for (int i = 0; i < 60; ++i) {
        const double middle = (low + high) / 2.0;
        (imageOfSurface(middle).real() < xi ? low : high) = middle;
    }
    return (low + high) / 2.0;
}

/// The ratio q of a geometric series of n terms that begins with `first` and sums to `total`.
double growthRatio(double first, double total, int n) {
    double low = 1.0 + 1e-9;
    double high = 2.0;
    for (int i = 0; i < 100; ++i) {
        const double q = (low + high) / 2.0;
        (first * (std::pow(q, n) - 1.0) / (q - 1.0) < total ? low : high) = q;
    }
    return (low + high) / 2.0;
}

/// n + 1 positions from 0 to `length` with spacings near `first` and `last` at the ends, smooth
/// between them (Vinokur, J. Comput. Phys. 50 (1983) 215, the case of fine ends).
std::vector<double> twoSided(double length, double first, double last, int n) {
    const double ratio = std::sqrt(last / first);
    const double b = length / (n * std::sqrt(first * last));
    double low = 1e-9;
    double high = 50.0;
    for (int i = 0; i < 200; ++i) {
        const double d = (low + high) / 2.0;
        (std::sinh(d) / d < b ? low : high) = d;
    }
    const double delta = (low + high) / 2.0;
    std::vector<double> positions;
    for (int i = 0; i <= n; ++i) {
        const double u =
            0.5 * (1.0 + std::tanh(delta * (double(i) / n - 0.5)) / std::tanh(delta / 2.0));
        positions.push_back(length * u / (ratio + (1.0 - ratio) * u));
    }
    return positions;
}

/// One mesh line of the upper half, from the wall or wake outward.
struct Line {
    double xi;      // where it starts, Re w
    double eta;     // and Im w: the aerofoil's image, 0 in the wake
    double lean;    // slope of the aerofoil's image that the line stands square on
    double spacing; // height of the first cell, metres

    [[nodiscard]] Complex at(double distance) const {
        const double normal = 1.0 - std::exp(-distance / fadeOfNormal);
        return {
            xi - lean * fadeOfNormal * normal, distance + eta * std::exp(-distance / fadeOfShape)};
    }

    [[nodiscard]] Complex physical(double distance) const {
        const Complex w = at(distance);
        return focus + w * w;
    }
};

/// The start points of the upper half's lines: nose to trailing edge, then along the wake.
std::vector<Line> upperLines() {
    constexpr int surfaceParts = (AerofoilMesh::around - 1) / 2 - AerofoilMesh::wake;
    const double trailing = imageOfSurface(1.0).real();
    std::vector<Line> lines;
    for (const double xi : twoSided(trailing, 0.0022, 0.00025, surfaceParts)) {
        const double x = chordAt(xi);
        const double step = 1e-4;
        const double low = chordAt(std::max(0.0, xi - step));
        const double high = chordAt(std::min(trailing, xi + step));
        const Complex rise = imageOfSurface(high) - imageOfSurface(low);
        // At the nose the image is even in xi, at the trailing edge the line is shared with the
        // wake: both stand upright.
        const double slope = lines.empty() ? 0.0 : rise.imag() / rise.real();
        const double eta = imageOfSurface(x).imag();
        const double upright = std::tanh((trailing - xi) / 0.08);
        lines.push_back(
            {xi, eta, slope * (1.0 - eta / fadeOfShape) * upright, AerofoilMesh::firstCell});
    }
    lines.front().xi = 0.0;
    lines.back() = {trailing, 0.0, 0.0, AerofoilMesh::firstCell};
    const double length = focus + outermost * outermost - 1.0;
    const double first = 1.0 - chordAt(lines[surfaceParts - 1].xi);
    const double growth = growthRatio(first, length, AerofoilMesh::wake);
    double x = 1.0;
    double dx = first;
    for (int i = 1; i <= AerofoilMesh::wake; ++i) {
        x += dx;
        dx *= growth;
        // The wake thickens downstream, and needles of 1 : 100 000 would only slow the solver; in
        // w the spacing grows from a flat start by about a factor of 2 for each unit.
        const double xi = std::sqrt(x - focus);
        const double past = xi - trailing;
        const double coarser = std::exp(0.75 * past * past / (past + 0.5));
        lines.push_back({xi, 0.0, 0.0, AerofoilMesh::firstCell * xi / trailing * coarser});
    }
    return lines;
}

/// The points of a line. All lines share one geometric spacing in w, so that neighbours keep step
/// far out; near the wall each stretches or shrinks it to its own first cell.
std::vector<glm::dvec2> pointsOf(const Line& line) {
    constexpr int parts = AerofoilMesh::outward - 1;
    constexpr double first = 1.5 * AerofoilMesh::firstCell;
    static const double growth = growthRatio(first, outermost, parts);
    const double stretch = std::abs(line.physical(1e-7) - line.physical(0.0)) / 1e-7;
    const double ratio = line.spacing / stretch / first;
    std::vector<glm::dvec2> points;
    double distance = 0.0;
    double step = first;
    for (int j = 0; j <= parts; ++j) {
        const double own = 1.0 + (ratio - 1.0) * std::exp(-distance / fadeOfSpacing);
        const Complex z = line.physical(j < parts ? distance * own : outermost);
        points.emplace_back(z.real(), z.imag());
        distance += step;
        step *= growth;
    }
    return points;
}

} // namespace

double naca0012(double x) {
    return 0.6 *
           (0.2969 * std::sqrt(x) + x * (-0.1260 + x * (-0.3516 + x * (0.2843 + x * -0.1036))));
}

AerofoilMesh AerofoilMesh::make() {
    AerofoilMesh mesh;
    mesh.points.resize(static_cast<std::size_t>(around) * outward);
    const std::vector<Line> lines = upperLines();
    constexpr int nose = (around - 1) / 2;
    for (int i = 0; i <= nose; ++i) {
        std::vector<glm::dvec2> column = pointsOf(lines[i]);
        // On the wall and in the wake the formula's own values stand, free of the map's rounding.
        if (i <= nose - wake) {
            const double x = i == nose - wake ? 1.0 : chordAt(lines[i].xi);
            column.front() =
                i == 0 ? glm::dvec2(0.0) : glm::dvec2(x, i == nose - wake ? 0.0 : naca0012(x));
        } else {
            column.front().y = 0.0;
        }
        for (int j = 0; j < outward; ++j) {
            glm::dvec2 p = column[j];
            if (i == 0) {
                p.y = 0.0;
            }
            mesh.points[j * around + nose + i] = p;
            mesh.points[j * around + nose - i] = {p.x, i == 0 ? 0.0 : -p.y};
        }
    }
    for (int i = 0; i <= wake; ++i) {
        mesh.points[i] = mesh.points[around - 1 - i];
    }
    return mesh;
}

std::string AerofoilMesh::su2Text() const {
    // The upper side of the wake (i > around - 1 - wake) takes the lower side's numbers; the
    // trailing edge is shared as well. Numbers count up row by row.
    const auto number = [](int i, int j) {
        constexpr int firstRow = around - 1 - wake;
        if (j == 0) {
            return i < firstRow ? i : around - 1 - i;
        }
        return firstRow + (j - 1) * around + i;
    };
    std::string text = fmt::format("NDIME= 2\nNELEM= {}\n", (around - 1) * (outward - 1));
    auto out = std::back_inserter(text);
    int element = 0;
    for (int j = 0; j + 1 < outward; ++j) {
        for (int i = 0; i + 1 < around; ++i) {
            // The row runs clockwise about the aerofoil, so outward is to its left.
            fmt::format_to(out, "9 {} {} {} {} {}\n", number(i, j), number(i + 1, j),
                number(i + 1, j + 1), number(i, j + 1), element++);
        }
    }
    const int count = number(around - 1, outward - 1) + 1;
    fmt::format_to(out, "NPOIN= {}\n", count);
    for (int j = 0; j < outward; ++j) {
        for (int i = 0; i < (j == 0 ? around - 1 - wake : around); ++i) {
            fmt::format_to(out, "{:.15g} {:.15g} {}\n", at(i, j).x, at(i, j).y, number(i, j));
        }
    }
    fmt::format_to(out, "NMARK= 2\nMARKER_TAG= body\nMARKER_ELEMS= {}\n", around - 1 - 2 * wake);
    for (int i = wake; i < around - 1 - wake; ++i) {
        fmt::format_to(out, "3 {} {}\n", number(i, 0), number(i + 1, 0));
    }
    fmt::format_to(out, "MARKER_TAG= farfield\nMARKER_ELEMS= {}\n", around - 1 + 2 * (outward - 1));
    for (int j = 0; j + 1 < outward; ++j) {
        fmt::format_to(out, "3 {} {}\n", number(0, j), number(0, j + 1));
        fmt::format_to(out, "3 {} {}\n", number(around - 1, j + 1), number(around - 1, j));
    }
    for (int i = 0; i + 1 < around; ++i) {
        fmt::format_to(out, "3 {} {}\n", number(i, outward - 1), number(i + 1, outward - 1));
    }
    return text;
}

} // namespace ostrella::generators
