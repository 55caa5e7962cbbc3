#include "Solver/Geometry/TestMeshes.h"

#include <cstring>
#include <random>
#include <string>

namespace ostrella::test {

TriangleMesh soup(std::vector<Vec3> corners) {
    std::vector<Vec3> normals(corners.size(), Vec3(0, 0, 1));
    return {std::move(corners), std::move(normals)};
}

TriangleMesh soup(const std::vector<Vec3>& points, const std::vector<std::uint32_t>& indices) {
    std::vector<Vec3> corners;
    for (const std::uint32_t index : indices)
        corners.push_back(points.at(index));
    return soup(std::move(corners));
}

TriangleMesh unitCube() {
    const std::vector<Vec3> points = {
        {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
    return soup(points, {0, 2, 1, 0, 3, 2, 4, 5, 6, 4, 6, 7, 0, 1, 5, 0, 5, 4, 3, 7, 6, 3, 6, 2, 0,
                            4, 7, 0, 7, 3, 1, 2, 6, 1, 6, 5});
}

TriangleMesh tetrahedron() {
    return soup({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, {0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3});
}

TriangleMesh tangle(std::size_t facets, std::uint32_t points, std::uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<Vec3> corners;
    for (std::size_t i = 0; i < 3 * facets; ++i) {
        const auto point = static_cast<std::uint32_t>(random() % points);
        corners.emplace_back(point % 10, point / 10 % 10, point / 100);
    }
    return soup(std::move(corners));
}

TriangleMesh moved(const TriangleMesh& mesh, const Vec3& by) {
    std::vector<Vec3> corners;
    for (const Vec3& p : mesh.positions())
        corners.push_back(p + by);
    return soup(std::move(corners));
}

std::vector<std::byte> binarySTL(
    std::uint32_t records, std::uint32_t countField, std::string_view header) {
    std::vector<std::byte> bytes(84 + 50 * static_cast<std::size_t>(records), std::byte{0x20});
    std::memcpy(bytes.data(), header.data(), header.size());
    std::memcpy(bytes.data() + 80, &countField, 4);
    for (std::uint32_t i = 0; i < records; ++i)
        for (std::uint32_t k = 0; k < 12; ++k) {
            const auto number = static_cast<float>(100 * i + k + 1);
            std::memcpy(bytes.data() + 84 + 50 * i + 4 * k, &number, 4);
        }
    return bytes;
}

std::vector<std::byte> bytesOf(std::string_view text) {
    std::vector<std::byte> bytes(text.size());
    std::memcpy(bytes.data(), text.data(), text.size());
    return bytes;
}

std::filesystem::path fileIn(const TemporaryDirectory& folder, const std::filesystem::path& name,
    std::string_view contents) {
    const auto path = folder.path() / name;
    writeFile(path, std::string(contents));
    return path;
}

} // namespace ostrella::test
