#include "Solver/Flow/BoxFilter.h"

#include "Models/Precondition.h"
#include "Solver/Flow/CancelPoint.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace ostrella {

namespace {

/// The scalars with zeros for those that are not finite, and which are. Adding such a zero changes
/// no sum: a sum that starts at +0 never becomes −0.
struct FiniteScalars {
    std::vector<float> values;
    std::vector<std::uint8_t> known;

    explicit FiniteScalars(std::span<const float> scalars)
        : values(scalars.size()), known(scalars.size()) {
        for (std::size_t i = 0; i < scalars.size(); ++i) {
            const bool finite = std::fabs(scalars[i]) <= std::numeric_limits<float>::max();
            values[i] = finite ? scalars[i] : 0.0F;
            known[i] = static_cast<std::uint8_t>(finite);
        }
    }
};

/// Sums over the neighbourhoods of one row of points along x, all of them at once: vector code that
/// adds for each point in the order of the lattice.
struct RowSums {
    std::vector<float> sums;
    std::vector<std::uint8_t> columns; ///< known points among the nine at one x

    explicit RowSums(std::size_t dim) : sums(dim), columns(dim) {}

    void clear() {
        std::fill(sums.begin(), sums.end(), 0.0F);
        std::fill(columns.begin(), columns.end(), std::uint8_t{0});
    }

    void add(const FiniteScalars& scalars, std::size_t first) {
        const float* from = scalars.values.data() + first;
        const std::uint8_t* known = scalars.known.data() + first;
        float* to = sums.data();
        const std::size_t dim = sums.size();
        for (std::size_t i = 1; i + 1 < dim; ++i)
            to[i] = to[i] + from[i - 1] + from[i] + from[i + 1];
        std::uint8_t* counts = columns.data();
        for (std::size_t i = 0; i < dim; ++i)
            counts[i] = static_cast<std::uint8_t>(counts[i] + known[i]);
    }

    void storeMeans(float* to) const {
        for (std::size_t i = 1; i + 1 < sums.size(); ++i) {
            const int count = columns[i - 1] + columns[i] + columns[i + 1];
            to[i] = count > 0 ? sums[i] / static_cast<float>(count) : to[i];
        }
    }
};

} // namespace

std::vector<float> boxFilter(
    std::span<const float> scalars, std::size_t dim, const std::function<bool()>& isCancelled) {
    precondition(dim >= 2, "a lattice needs two points along each axis to be smoothed");
    precondition(scalars.size() == dim * dim * dim, "a lattice needs one scalar for each point");
    std::vector<float> means(scalars.begin(), scalars.end());
    const FiniteScalars finite(scalars);
    RowSums row(dim);
    for (std::size_t k = 1; k + 1 < dim; ++k) {
        cancelPoint(isCancelled);
        for (std::size_t j = 1; j + 1 < dim; ++j) {
            row.clear();
            for (std::size_t z = k - 1; z <= k + 1; ++z) {
                for (std::size_t y = j - 1; y <= j + 1; ++y)
                    row.add(finite, (z * dim + y) * dim);
            }
            row.storeMeans(means.data() + (k * dim + j) * dim);
        }
    }
    return means;
}

} // namespace ostrella
