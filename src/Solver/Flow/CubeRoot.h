#pragma once

#include <cmath>
#include <cstdint>

namespace ostrella {

/// The cube root of a count, cut off: 3 for 27. The C library's root may fall just short of a whole
/// number, so it is only the first guess. For counts below 2⁵⁰.
inline std::int64_t truncatedCubeRoot(std::int64_t count) {
    auto root = static_cast<std::int64_t>(std::cbrt(static_cast<double>(count)));
    while (root * root * root > count)
        --root;
    while ((root + 1) * (root + 1) * (root + 1) <= count)
        ++root;
    return root;
}

} // namespace ostrella
