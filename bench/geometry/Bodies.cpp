#include "Bodies.h"

#include "Solver/Geometry/MeshOperations.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>

#include <unistd.h>

namespace ostrella::bench {

namespace {

Vec3 unit(const Vec3& v) {
    return v / std::sqrt(squaredLength(v));
}

void divide(const Vec3& a, const Vec3& b, const Vec3& c, int times, std::vector<Vec3>& out) {
    if (times == 0) {
        out.insert(out.end(), {a, b, c});
        return;
    }
    const Vec3 ab = unit(a + b);
    const Vec3 bc = unit(b + c);
    const Vec3 ca = unit(c + a);
    divide(a, ab, ca, times - 1, out);
    divide(b, bc, ab, times - 1, out);
    divide(c, ca, bc, times - 1, out);
    divide(ab, bc, ca, times - 1, out);
}

TriangleMesh makeSphere(int divisions) {
    const float golden = (1.0F + std::sqrt(5.0F)) / 2.0F;
    std::array<Vec3, 12> corners;
    for (int i = 0; i < 12; ++i) {
        const float one = (i & 1) != 0 ? -1.0F : 1.0F;
        const float far = (i & 2) != 0 ? -golden : golden;
        const int turn = i / 4;
        corners[static_cast<std::size_t>(i)][(turn + 1) % 3] = one;
        corners[static_cast<std::size_t>(i)][(turn + 2) % 3] = far;
        corners[static_cast<std::size_t>(i)][turn] = 0.0F;
    }
    std::vector<Vec3> positions;
    positions.reserve(std::size_t{60} << (2 * divisions));
    // The faces are the triples of corners at the edge's length, 2, from each other.
    const auto near = [](const Vec3& p, const Vec3& q) { return squaredLength(p - q) < 4.1F; };
    for (std::size_t i = 0; i < 12; ++i)
        for (std::size_t j = i + 1; j < 12; ++j)
            for (std::size_t k = j + 1; k < 12; ++k) {
                const Vec3& a = corners[i];
                Vec3 b = corners[j];
                Vec3 c = corners[k];
                if (!near(a, b) || !near(b, c) || !near(c, a))
                    continue;
                if (dot(cross(b - a, c - a), a) < 0.0F)
                    std::swap(b, c);
                divide(unit(a), unit(b), unit(c), divisions, positions);
            }
    std::vector<Vec3> normals(positions.size());
    for (std::size_t i = 0; i < positions.size(); i += 3)
        normals[i] = normals[i + 1] = normals[i + 2] =
            unit(cross(positions[i + 1] - positions[i], positions[i + 2] - positions[i]));
    return {std::move(positions), std::move(normals)};
}

class ScratchFile {
public:
    explicit ScratchFile(const TriangleMesh& mesh)
        : path_(std::filesystem::temp_directory_path() /
                fmt::format("ostrella-bench-{}.stl", ::getpid())) {
        writeBinarySTL(mesh, path_);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

} // namespace

const TriangleMesh& sphere(int divisions) {
    static std::map<int, TriangleMesh> made;
    const auto known = made.find(divisions);
    return known != made.end() ? known->second
                               : made.emplace(divisions, makeSphere(divisions)).first->second;
}

std::vector<std::byte> binarySTL(const TriangleMesh& mesh) {
    const ScratchFile file(mesh);
    std::ifstream in(file.path(), std::ios::binary);
    std::vector<std::byte> bytes(std::filesystem::file_size(file.path()));
    in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

std::string asciiSTL(const TriangleMesh& mesh) {
    std::string text = "solid sphere\n";
    const auto out = std::back_inserter(text);
    for (std::size_t i = 0; i < mesh.positions().size(); i += 3) {
        const Vec3& n = mesh.normals()[i];
        fmt::format_to(out, "  facet normal {:e} {:e} {:e}\n    outer loop\n", n.x, n.y, n.z);
        for (std::size_t corner = i; corner < i + 3; ++corner) {
            const Vec3& p = mesh.positions()[corner];
            fmt::format_to(out, "      vertex {:e} {:e} {:e}\n", p.x, p.y, p.z);
        }
        text += "    endloop\n  endfacet\n";
    }
    return text + "endsolid sphere\n";
}

const std::filesystem::path& sphereFile() {
    static const ScratchFile file(sphere(usualDivisions));
    return file.path();
}

} // namespace ostrella::bench
