#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace ostrella {

/// Four numbers or two at once, as every 64-bit processor computes them: each lane one IEEE
/// operation, so the results are those of the same operations one by one.
using Float4 = float __attribute__((vector_size(16)));
using Int4 = std::int32_t __attribute__((vector_size(16)));
using Double2 = double __attribute__((vector_size(16)));

/// Loads from any address.
template <class Vector, class T>
inline Vector loadVector(const T* from) {
    Vector vector;
    std::memcpy(&vector, from, sizeof vector);
    return vector;
}

/// Stores to any address.
template <class Vector, class T>
inline void storeVector(T* to, const Vector& vector) {
    std::memcpy(to, &vector, sizeof vector);
}

/// The same number in each lane.
inline Float4 allLanes(float value) {
    return Float4{value, value, value, value};
}

/// The lesser in each lane; none may be NaN.
template <class Vector>
inline Vector lesser(const Vector& a, const Vector& b) {
    return a < b ? a : b;
}

/// The greater in each lane; none may be NaN.
template <class Vector>
inline Vector greater(const Vector& a, const Vector& b) {
    return a > b ? a : b;
}

/// A comparison's result as four bits, the first lane lowest.
inline std::uint32_t laneBits(const Int4& holds) {
#ifdef __SSE2__
    return static_cast<std::uint32_t>(_mm_movemask_ps(std::bit_cast<__m128>(holds)));
#else
    return static_cast<std::uint32_t>(
        (holds[0] & 1) | (holds[1] & 2) | (holds[2] & 4) | (holds[3] & 8));
#endif
}

} // namespace ostrella
