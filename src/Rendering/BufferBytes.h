#pragma once

#include "Models/LargeBuffer.h"
#include "Models/SharedArray.h"
#include "Models/Vector.h"

#include <cstddef>
#include <cstring>
#include <span>
#include <type_traits>
#include <utility>

namespace ostrella {

/// Arrays as the bytes of a scene buffer.
namespace BufferBytes {

/// The values one behind the other, as they lie in memory.
template <class T>
SharedArray<std::byte> of(std::span<const T> values) {
    static_assert(std::is_trivially_copyable_v<T>);
    LargeBuffer<std::byte> bytes(values.size_bytes());
    if (!values.empty())
        std::memcpy(bytes.data(), values.data(), values.size_bytes());
    return bytes;
}

/// Each point as x, y, z, 1.
SharedArray<std::byte> ofPoints(std::span<const Vec3> points);

/// Positions and normals in turn, each padded to 16 bytes.
SharedArray<std::byte> ofVertices(std::span<const Vec3> positions, std::span<const Vec3> normals);

/// What `of` made of numbers, as numbers again.
template <class T>
std::span<const T> as(const SharedArray<std::byte>& bytes) {
    static_assert(std::is_trivially_copyable_v<T>);
    return {reinterpret_cast<const T*>(bytes.data()), bytes.size() / sizeof(T)};
}

} // namespace BufferBytes

} // namespace ostrella
