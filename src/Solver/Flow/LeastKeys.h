#pragma once

#include "Models/FloatVectors.h"

#include <cstddef>

namespace ostrella {

/// Picks and sorts the eight least of up to 32 keys without a branch: columns of eight sorted by a
/// network, then merged pairwise (Knuth, The Art of Computer Programming 3, 5.3.4).
namespace LeastKeys {

namespace detail {

inline void order(Double2& a, Double2& b) {
    const Double2 low = lesser(a, b);
    b = greater(a, b);
    a = low;
}

/// Sorts each lane of eight vectors by the shortest network for eight, of 19 comparators.
inline void sort(Double2 (&v)[8]) {
    order(v[0], v[2]), order(v[1], v[3]), order(v[4], v[6]), order(v[5], v[7]);
    order(v[0], v[4]), order(v[1], v[5]), order(v[2], v[6]), order(v[3], v[7]);
    order(v[0], v[1]), order(v[2], v[3]), order(v[4], v[5]), order(v[6], v[7]);
    order(v[2], v[4]), order(v[3], v[5]);
    order(v[1], v[4]), order(v[3], v[6]);
    order(v[1], v[2]), order(v[3], v[4]), order(v[5], v[6]);
}

/// Sorts each lane of eight vectors that first rise, then fall, or the other way round.
inline void sortBitonic(Double2 (&v)[8]) {
    order(v[0], v[4]), order(v[1], v[5]), order(v[2], v[6]), order(v[3], v[7]);
    order(v[0], v[2]), order(v[1], v[3]), order(v[4], v[6]), order(v[5], v[7]);
    order(v[0], v[1]), order(v[2], v[3]), order(v[4], v[5]), order(v[6], v[7]);
}

/// Loads 16 keys and sorts the eight even and the eight odd ones.
inline void loadSorted(const double* keys, Double2 (&v)[8]) {
    for (std::size_t i = 0; i < 8; ++i)
        v[i] = loadVector<Double2>(keys + 2 * i);
    sort(v);
}

/// Merges the two lanes and writes the eight least.
inline void storeLeast(Double2 (&v)[8], double* least) {
    Double2 merged[8];
    for (std::size_t i = 0; i < 8; ++i) {
        const Double2 other = v[7 - i];
        merged[i] = lesser(v[i], Double2{other[1], other[0]});
    }
    sortBitonic(merged);
    for (std::size_t i = 0; i < 8; ++i)
        least[i] = merged[i][0];
}

} // namespace detail

/// The eight least of 16 keys, in ascending order.
inline void of16(const double* keys, double* least) {
    Double2 v[8];
    detail::loadSorted(keys, v);
    detail::storeLeast(v, least);
}

/// The eight least of 32 keys, in ascending order.
inline void of32(const double* keys, double* least) {
    Double2 a[8];
    Double2 b[8];
    detail::loadSorted(keys, a);
    detail::loadSorted(keys + 16, b);
    for (std::size_t i = 0; i < 8; ++i)
        a[i] = lesser(a[i], b[7 - i]);
    // Exchanging b's order costs nothing: the lesser halves of a rising and a falling list are
    // bitonic.
    detail::sortBitonic(a);
    detail::storeLeast(a, least);
}

} // namespace LeastKeys

} // namespace ostrella
