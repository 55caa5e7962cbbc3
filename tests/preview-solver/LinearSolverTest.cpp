#include "LinearSolver.h"
#include "MeshReader.h"
#include "SmallMeshes.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace ostrella::preview;

TEST(LinearSolver, solvesADiagonallyDominantSystem) {
    const DualMesh dual =
        DualMesh::build(MeshReader::parse(SmallMeshes::cube(5, SmallMeshes::Filling::tetrahedra)));
    const Sparsity sparsity(dual);
    BlockMatrix<4> matrix(sparsity);
    for (std::size_t k = 0; k < matrix.values.size(); ++k)
        matrix.values[k] = static_cast<float>(std::sin(0.7 * static_cast<double>(k)));
    for (std::size_t i = 0; i < sparsity.size(); ++i)
        for (int r = 0; r < 4; ++r)
            matrix.block(sparsity.diagonal[i])[r * 5] += 30;
    std::vector<double> wanted(sparsity.size() * 4);
    for (std::size_t k = 0; k < wanted.size(); ++k)
        wanted[k] = std::cos(static_cast<double>(k));
    std::vector<double> right(wanted.size(), 0.0);
    for (std::size_t i = 0; i < sparsity.size(); ++i)
        for (auto k = sparsity.start[i]; k < sparsity.start[i + 1]; ++k)
            for (std::size_t r = 0; r < 4; ++r)
                for (std::size_t c = 0; c < 4; ++c)
                    right[i * 4 + r] +=
                        static_cast<double>(matrix.block(k)[r * 4 + c]) *
                        wanted[static_cast<std::size_t>(sparsity.column[k]) * 4 + c];
    std::vector<double> x(wanted.size());
    LinearSolver<4> solver(sparsity);
    const auto outcome = solver.solve(matrix, right, x, 1e-10, 60);
    EXPECT_LT(outcome.reduction, 1e-10);
    EXPECT_GT(outcome.iterations, 1);
    for (std::size_t k = 0; k < x.size(); ++k)
        EXPECT_NEAR(x[k], wanted[k], 1e-8);
}

TEST(LinearSolver, leavesAZeroRightSideAtZero) {
    const DualMesh dual = DualMesh::build(MeshReader::parse(SmallMeshes::square(3)));
    const Sparsity sparsity(dual);
    BlockMatrix<3> matrix(sparsity);
    std::vector<double> x(sparsity.size() * 3, 5.0);
    LinearSolver<3> solver(sparsity);
    solver.solve(matrix, std::vector<double>(x.size(), 0.0), x, 1e-3, 5);
    for (const double each : x)
        EXPECT_EQ(each, 0);
}
