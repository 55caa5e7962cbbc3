#pragma once

#include "DualMesh.h"

#include <cstdint>
#include <vector>

namespace ostrella::preview {

/// The places of a block matrix: a row for each point, with its neighbours and itself, ascending.
struct Sparsity {
    explicit Sparsity(const DualMesh& dual);

    std::vector<std::int32_t> start;
    std::vector<std::int32_t> column;
    std::vector<std::int32_t> diagonal;
    /// For each edge the place in the row of its first point, and in that of its second.
    std::vector<std::int32_t> upper;
    std::vector<std::int32_t> lower;

    [[nodiscard]] std::size_t size() const { return diagonal.size(); }
};

/// Square blocks of B rows in the places of a Sparsity, in single precision: the matrix only steers
/// the iteration, the residual is formed in double precision elsewhere.
template <int B>
struct BlockMatrix {
    explicit BlockMatrix(const Sparsity& places)
        : sparsity(places), values(places.column.size() * B * B, 0.0f) {}

    [[nodiscard]] float* block(std::int32_t place) {
        return values.data() + static_cast<std::size_t>(place) * B * B;
    }
    [[nodiscard]] const float* block(std::int32_t place) const {
        return values.data() + static_cast<std::size_t>(place) * B * B;
    }

    const Sparsity& sparsity;
    std::vector<float> values;
};

/// Flexible GMRES without restart, preconditioned by an incomplete factorisation without fill-in;
/// each thread factorises its own rows.
template <int B>
class LinearSolver {
public:
    explicit LinearSolver(const Sparsity& sparsity);

    struct Outcome {
        int iterations = 0;
        /// Last residual over the first one, in the 2-norm.
        double reduction = 1;
    };
    /// Solves matrix · x = right from x = 0. Ends when the residual has fallen by `tolerance`, or
    /// after `iterations`.
    Outcome solve(const BlockMatrix<B>& matrix, const std::vector<double>& right,
        std::vector<double>& x, double tolerance, int iterations);

private:
    void factorise(const BlockMatrix<B>& matrix);
    void precondition(const double* in, double* out);

    const Sparsity& sparsity_;
    /// Row ranges of the threads.
    std::vector<std::int32_t> ranges_;
    std::vector<float> factors_;
    std::vector<std::vector<double>> basis_;
    std::vector<std::vector<double>> directions_;
};

extern template class LinearSolver<1>;
extern template class LinearSolver<3>;
extern template class LinearSolver<4>;
extern template class LinearSolver<5>;

} // namespace ostrella::preview
