#include "LinearSolver.h"

#include <omp.h>

#include <algorithm>
#include <cmath>

namespace ostrella::preview {

Sparsity::Sparsity(const DualMesh& dual) {
    const std::size_t count = dual.size();
    start.reserve(count + 1);
    column.reserve(count + dual.neighbours.size());
    diagonal.resize(count);
    upper.resize(dual.edges.size());
    lower.resize(dual.edges.size());
    start.push_back(0);
    for (std::size_t i = 0; i < count; ++i) {
        bool placed = false;
        const auto own = [&] {
            diagonal[i] = static_cast<std::int32_t>(column.size());
            column.push_back(static_cast<std::int32_t>(i));
            placed = true;
        };
        for (const auto& neighbour : dual.around(i)) {
            if (!placed && neighbour.point > static_cast<std::int32_t>(i))
                own();
            (neighbour.sign > 0 ? upper : lower)[neighbour.edge] =
                static_cast<std::int32_t>(column.size());
            column.push_back(neighbour.point);
        }
        if (!placed)
            own();
        start.push_back(static_cast<std::int32_t>(column.size()));
    }
}

namespace {

template <int B>
void multiplyAdd(const float* a, const float* x, float* y) {
    for (int r = 0; r < B; ++r)
        for (int k = 0; k < B; ++k)
            y[r] += a[r * B + k] * x[k];
}

template <int B>
void multiplySubtract(const float* a, const float* b, float* c) {
    for (int r = 0; r < B; ++r)
        for (int k = 0; k < B; ++k)
            for (int col = 0; col < B; ++col)
                c[r * B + col] -= a[r * B + k] * b[k * B + col];
}

/// Inverts a block in place, with row exchanges; a vanishing pivot is replaced by a small one.
template <int B>
void invert(float* block) {
    double a[B][2 * B] = {};
    double largest = 0;
    for (int r = 0; r < B; ++r) {
        for (int k = 0; k < B; ++k) {
            a[r][k] = block[r * B + k];
            largest = std::max(largest, std::abs(a[r][k]));
        }
        a[r][B + r] = 1;
    }
    for (int c = 0; c < B; ++c) {
        int pivot = c;
        for (int r = c + 1; r < B; ++r)
            if (std::abs(a[r][c]) > std::abs(a[pivot][c]))
                pivot = r;
        if (pivot != c)
            std::swap_ranges(a[c], a[c] + 2 * B, a[pivot]);
        if (std::abs(a[c][c]) <= 1e-12 * largest)
            a[c][c] = largest > 0 ? 1e-12 * largest : 1;
        const double factor = 1 / a[c][c];
        for (int k = 0; k < 2 * B; ++k)
            a[c][k] *= factor;
        for (int r = 0; r < B; ++r) {
            if (r == c)
                continue;
            const double times = a[r][c];
            for (int k = c; k < 2 * B; ++k)
                a[r][k] -= times * a[c][k];
        }
    }
    for (int r = 0; r < B; ++r)
        for (int k = 0; k < B; ++k)
            block[r * B + k] = static_cast<float>(a[r][B + k]);
}

double dot(const std::vector<double>& a, const std::vector<double>& b) {
    double sum = 0;
#pragma omp parallel for schedule(static) reduction(+ : sum)
    for (std::size_t i = 0; i < a.size(); ++i)
        sum += a[i] * b[i];
    return sum;
}

void addScaled(std::vector<double>& to, double factor, const std::vector<double>& from) {
#pragma omp parallel for schedule(static)
    for (std::size_t i = 0; i < to.size(); ++i)
        to[i] += factor * from[i];
}

template <int B>
void multiply(const BlockMatrix<B>& matrix, const std::vector<double>& x, std::vector<double>& y) {
    const Sparsity& s = matrix.sparsity;
#pragma omp parallel for schedule(static)
    for (std::size_t i = 0; i < s.size(); ++i) {
        double sums[B] = {};
        for (auto k = s.start[i]; k < s.start[i + 1]; ++k) {
            const float* block = matrix.block(k);
            const double* other = x.data() + static_cast<std::size_t>(s.column[k]) * B;
            for (int r = 0; r < B; ++r)
                for (int c = 0; c < B; ++c)
                    sums[r] += static_cast<double>(block[r * B + c]) * other[c];
        }
        for (int r = 0; r < B; ++r)
            y[i * B + r] = sums[r];
    }
}

} // namespace

template <int B>
LinearSolver<B>::LinearSolver(const Sparsity& sparsity) : sparsity_(sparsity) {
    // Ranges of equal work; a range of very few rows would be a poor preconditioner.
    const auto rows = static_cast<std::int32_t>(sparsity.size());
    const int parts = std::clamp(rows / 200, 1, omp_get_max_threads());
    const auto work = static_cast<std::int64_t>(sparsity.column.size());
    ranges_.push_back(0);
    for (int p = 1; p < parts; ++p) {
        const auto place = std::lower_bound(sparsity.start.begin(), sparsity.start.end(),
            static_cast<std::int32_t>(work * p / parts));
        ranges_.push_back(static_cast<std::int32_t>(place - sparsity.start.begin()));
    }
    ranges_.push_back(rows);
}

template <int B>
void LinearSolver<B>::factorise(const BlockMatrix<B>& matrix) {
    constexpr std::size_t size = B * B;
    const Sparsity& s = sparsity_;
    factors_.resize(matrix.values.size());
    const int parts = static_cast<int>(ranges_.size()) - 1;
#pragma omp parallel for schedule(static, 1)
    for (int part = 0; part < parts; ++part) {
        const std::int32_t first = ranges_[part];
        const std::int32_t last = ranges_[part + 1];
        std::vector<std::int32_t> place(static_cast<std::size_t>(last - first), -1);
        for (std::int32_t i = first; i < last; ++i) {
            const auto begin = s.start[i];
            const auto end = s.start[i + 1];
            std::copy(matrix.values.begin() + static_cast<std::ptrdiff_t>(begin * size),
                matrix.values.begin() + static_cast<std::ptrdiff_t>(end * size),
                factors_.begin() + static_cast<std::ptrdiff_t>(begin * size));
            for (auto k = begin; k < end; ++k)
                if (s.column[k] >= first && s.column[k] < last)
                    place[s.column[k] - first] = k;
            for (auto k = begin; k < s.diagonal[i]; ++k) {
                const std::int32_t row = s.column[k];
                if (row < first)
                    continue;
                float* left = factors_.data() + k * size;
                float scaled[size] = {};
                const float* inverse = factors_.data() + s.diagonal[row] * size;
                multiplySubtract<B>(left, inverse, scaled);
                for (std::size_t e = 0; e < size; ++e)
                    left[e] = -scaled[e];
                for (auto j = s.diagonal[row] + 1; j < s.start[row + 1]; ++j) {
                    const std::int32_t col = s.column[j];
                    if (col < last && place[col - first] >= 0)
                        multiplySubtract<B>(left, factors_.data() + j * size,
                            factors_.data() + static_cast<std::size_t>(place[col - first]) * size);
                }
            }
            invert<B>(factors_.data() + s.diagonal[i] * size);
            for (auto k = begin; k < end; ++k)
                if (s.column[k] >= first && s.column[k] < last)
                    place[s.column[k] - first] = -1;
        }
    }
}

template <int B>
void LinearSolver<B>::precondition(const double* in, double* out) {
    constexpr std::size_t size = B * B;
    const Sparsity& s = sparsity_;
    const int parts = static_cast<int>(ranges_.size()) - 1;
#pragma omp parallel for schedule(static, 1)
    for (int part = 0; part < parts; ++part) {
        const std::int32_t first = ranges_[part];
        const std::int32_t last = ranges_[part + 1];
        std::vector<float> x(static_cast<std::size_t>(last - first) * B);
        for (std::int32_t i = first; i < last; ++i) {
            float sums[B] = {};
            for (auto k = s.start[i]; k < s.diagonal[i]; ++k)
                if (s.column[k] >= first)
                    multiplyAdd<B>(factors_.data() + k * size,
                        x.data() + static_cast<std::size_t>(s.column[k] - first) * B, sums);
            for (int r = 0; r < B; ++r)
                x[static_cast<std::size_t>(i - first) * B + r] =
                    static_cast<float>(in[static_cast<std::size_t>(i) * B + r]) - sums[r];
        }
        for (std::int32_t i = last; i-- > first;) {
            float sums[B] = {};
            for (auto k = s.diagonal[i] + 1; k < s.start[i + 1]; ++k)
                if (s.column[k] < last)
                    multiplyAdd<B>(factors_.data() + k * size,
                        x.data() + static_cast<std::size_t>(s.column[k] - first) * B, sums);
            float* own = x.data() + static_cast<std::size_t>(i - first) * B;
            for (int r = 0; r < B; ++r)
                sums[r] = own[r] - sums[r];
            float result[B] = {};
            multiplyAdd<B>(factors_.data() + s.diagonal[i] * size, sums, result);
            for (int r = 0; r < B; ++r) {
                own[r] = result[r];
                out[static_cast<std::size_t>(i) * B + r] = result[r];
            }
        }
    }
}

template <int B>
auto LinearSolver<B>::solve(const BlockMatrix<B>& matrix, const std::vector<double>& right,
    std::vector<double>& x, double tolerance, int iterations) -> Outcome {
    std::fill(x.begin(), x.end(), 0.0);
    const double first = std::sqrt(dot(right, right));
    Outcome outcome;
    if (!(first > 0) || !std::isfinite(first))
        return outcome;
    factorise(matrix);
    const auto most = static_cast<std::size_t>(iterations);
    if (basis_.size() < most + 1) {
        basis_.resize(most + 1);
        directions_.resize(most);
    }
    const auto fresh = [&](std::vector<double>& vector) { vector.resize(right.size()); };
    fresh(basis_[0]);
#pragma omp parallel for schedule(static)
    for (std::size_t i = 0; i < right.size(); ++i)
        basis_[0][i] = right[i] / first;
    // The Hessenberg matrix is kept triangular by rotations as its columns come.
    std::vector<std::vector<double>> h;
    std::vector<double> cosine;
    std::vector<double> sine;
    std::vector<double> g{first};
    for (std::size_t k = 0; k < most; ++k) {
        fresh(directions_[k]);
        fresh(basis_[k + 1]);
        precondition(basis_[k].data(), directions_[k].data());
        multiply(matrix, directions_[k], basis_[k + 1]);
        std::vector<double> columnOf(k + 2);
        for (std::size_t j = 0; j <= k; ++j) {
            columnOf[j] = dot(basis_[k + 1], basis_[j]);
            addScaled(basis_[k + 1], -columnOf[j], basis_[j]);
        }
        const double length = std::sqrt(dot(basis_[k + 1], basis_[k + 1]));
        if (!std::isfinite(length))
            break;
        columnOf[k + 1] = length;
        for (std::size_t j = 0; j < k; ++j) {
            const double above = columnOf[j];
            columnOf[j] = cosine[j] * above + sine[j] * columnOf[j + 1];
            columnOf[j + 1] = -sine[j] * above + cosine[j] * columnOf[j + 1];
        }
        const double radius = std::hypot(columnOf[k], columnOf[k + 1]);
        if (!(radius > 0))
            break;
        cosine.push_back(columnOf[k] / radius);
        sine.push_back(columnOf[k + 1] / radius);
        columnOf[k] = radius;
        g.push_back(-sine[k] * g[k]);
        g[k] *= cosine[k];
        h.push_back(std::move(columnOf));
        outcome.iterations = static_cast<int>(k) + 1;
        outcome.reduction = std::abs(g[k + 1]) / first;
        if (outcome.reduction < tolerance || !(length > 0))
            break;
#pragma omp parallel for schedule(static)
        for (std::size_t i = 0; i < right.size(); ++i)
            basis_[k + 1][i] /= length;
    }
    std::vector<double> y(h.size());
    for (std::size_t k = h.size(); k-- > 0;) {
        y[k] = g[k];
        for (std::size_t j = k + 1; j < h.size(); ++j)
            y[k] -= h[j][k] * y[j];
        y[k] /= h[k][k];
    }
    for (std::size_t k = 0; k < y.size(); ++k)
        addScaled(x, y[k], directions_[k]);
    return outcome;
}

template class LinearSolver<1>;
template class LinearSolver<3>;
template class LinearSolver<4>;
template class LinearSolver<5>;

} // namespace ostrella::preview
