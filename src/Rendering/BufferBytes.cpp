#include "Rendering/BufferBytes.h"

#include <algorithm>

namespace ostrella::BufferBytes {

SharedArray<std::byte> ofPoints(std::span<const Vec3> points) {
    LargeBuffer<std::byte> bytes(points.size() * sizeof(Vec4));
    auto* rows = reinterpret_cast<Vec4*>(bytes.data());
    for (std::size_t i = 0; i < points.size(); ++i)
        rows[i] = Vec4(points[i], 1.0F);
    return bytes;
}

SharedArray<std::byte> ofVertices(std::span<const Vec3> positions, std::span<const Vec3> normals) {
    const std::size_t count = std::min(positions.size(), normals.size());
    LargeBuffer<std::byte> bytes(2 * count * sizeof(Vec4));
    auto* rows = reinterpret_cast<Vec4*>(bytes.data());
    for (std::size_t i = 0; i < count; ++i) {
        rows[2 * i] = Vec4(positions[i], 0.0F);
        rows[2 * i + 1] = Vec4(normals[i], 0.0F);
    }
    return bytes;
}

} // namespace ostrella::BufferBytes
