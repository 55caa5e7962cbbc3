#pragma once

#include "Models/Vector.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>

namespace ostrella {

/// The layout of binary STL, all numbers little-endian: 80 bytes of header, the facet count as
/// unsigned 32 bits, then for each facet its normal, its three vertices and a 16-bit attribute.
namespace STLRecord {

static_assert(std::endian::native == std::endian::little, "records are copied byte for byte");

inline constexpr std::size_t headerSize = 80;
inline constexpr std::size_t preambleSize = headerSize + sizeof(std::uint32_t);
inline constexpr std::size_t facetSize = 50;
inline constexpr std::size_t normalSize = sizeof(Vec3);
inline constexpr std::size_t verticesSize = 3 * sizeof(Vec3);

/// The size of a file of `facets` facets.
constexpr std::uint64_t fileSize(std::uint64_t facets) {
    return preambleSize + facetSize * facets;
}

/// The facet count of a file that begins with `start` and has `size` bytes altogether, if that is
/// the size of a binary file of so many facets.
inline std::optional<std::uint32_t> facetCount(
    std::span<const std::byte> start, std::uint64_t size) {
    if (start.size() < preambleSize)
        return std::nullopt;
    std::uint32_t count = 0;
    std::memcpy(&count, start.data() + headerSize, sizeof count);
    if (fileSize(count) != size)
        return std::nullopt;
    return count;
}

} // namespace STLRecord

} // namespace ostrella
