#include "Solver/Surface/ExactSign.h"

#include <array>
#include <cmath>

namespace ostrella {

namespace {

/// A number as a sum of others, none of which overlaps another one in its bits, least first. Sums
/// and products of such are exact, so the last term that is not 0 gives the sign.
template <std::size_t Capacity>
struct Expansion {
    std::array<double, Capacity> terms;
    std::size_t count = 0;

    void append(double term) {
        if (term != 0)
            terms[count++] = term;
    }
    int sign() const { return count == 0 ? 0 : terms[count - 1] > 0 ? 1 : -1; }
};

/// a + b as a rounded sum and its error.
void twoSum(double a, double b, double& sum, double& error) {
    sum = a + b;
    const double ofB = sum - a;
    const double ofA = sum - ofB;
    error = (a - ofA) + (b - ofB);
}

Expansion<2> difference(double a, double b) {
    double sum = 0;
    double error = 0;
    twoSum(a, -b, sum, error);
    Expansion<2> result;
    result.append(error);
    result.append(sum);
    return result;
}

template <std::size_t Capacity>
void addTo(Expansion<Capacity>& expansion, double value) {
    std::size_t kept = 0;
    double sum = value;
    for (std::size_t i = 0; i < expansion.count; ++i) {
        double error = 0;
        double next = 0;
        twoSum(sum, expansion.terms[i], next, error);
        sum = next;
        if (error != 0)
            expansion.terms[kept++] = error;
    }
    if (sum != 0)
        expansion.terms[kept++] = sum;
    expansion.count = kept;
}

template <std::size_t Sum, std::size_t A, std::size_t B>
void addProduct(Expansion<Sum>& sum, const Expansion<A>& a, const Expansion<B>& b, double sign) {
    for (std::size_t i = 0; i < a.count; ++i) {
        for (std::size_t j = 0; j < b.count; ++j) {
            const double factor = sign * b.terms[j];
            const double product = a.terms[i] * factor;
            addTo(sum, std::fma(a.terms[i], factor, -product));
            addTo(sum, product);
        }
    }
}

/// a · d − b · c.
Expansion<16> determinant(
    const Expansion<2>& a, const Expansion<2>& b, const Expansion<2>& c, const Expansion<2>& d) {
    Expansion<16> result;
    addProduct(result, a, d, 1);
    addProduct(result, b, c, -1);
    return result;
}

int exactVolume(const DVec3& a, const DVec3& b, const DVec3& c, const DVec3& d) {
    std::array<std::array<Expansion<2>, 3>, 3> rows;
    const std::array<const DVec3*, 3> points{&b, &c, &d};
    for (std::size_t row = 0; row < 3; ++row) {
        for (int axis = 0; axis < 3; ++axis)
            rows[row][static_cast<std::size_t>(axis)] = difference((*points[row])[axis], a[axis]);
    }
    Expansion<192> sum;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t j = (i + 1) % 3;
        const std::size_t k = (i + 2) % 3;
        addProduct(sum, determinant(rows[0][j], rows[0][k], rows[1][j], rows[1][k]), rows[2][i], 1);
    }
    return sum.sign();
}

int signWithin(double value, double bound) {
    return value > bound ? 1 : value < -bound ? -1 : 0;
}

} // namespace

int ExactSign::volume(const DVec3& a, const DVec3& b, const DVec3& c, const DVec3& d) {
    const DVec3 u = b - a;
    const DVec3 v = c - a;
    const DVec3 w = d - a;
    const double xy = u.x * v.y, yx = u.y * v.x;
    const double yz = u.y * v.z, zy = u.z * v.y;
    const double zx = u.z * v.x, xz = u.x * v.z;
    const double value = (yz - zy) * w.x + (zx - xz) * w.y + (xy - yx) * w.z;
    const double size = (std::abs(yz) + std::abs(zy)) * std::abs(w.x) +
                        (std::abs(zx) + std::abs(xz)) * std::abs(w.y) +
                        (std::abs(xy) + std::abs(yx)) * std::abs(w.z);
    // Shewchuk's bound for this formula is (7 + 56 ε) ε with ε = 2⁻⁵³.
    const int sign = signWithin(value, 8e-16 * size);
    return sign != 0 || size == 0 ? sign : exactVolume(a, b, c, d);
}

int ExactSign::area(const DVec3& a, const DVec3& b, const DVec3& c, int axis) {
    const int x = (axis + 1) % 3;
    const int y = (axis + 2) % 3;
    const double left = (b[x] - a[x]) * (c[y] - a[y]);
    const double right = (b[y] - a[y]) * (c[x] - a[x]);
    const double size = std::abs(left) + std::abs(right);
    const int sign = signWithin(left - right, 4e-16 * size);
    if (sign != 0 || size == 0)
        return sign;
    return determinant(difference(b[x], a[x]), difference(b[y], a[y]), difference(c[x], a[x]),
        difference(c[y], a[y]))
        .sign();
}

} // namespace ostrella
