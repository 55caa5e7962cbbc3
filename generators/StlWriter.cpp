#include "StlWriter.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include <fmt/format.h>
#include <glm/geometric.hpp>

namespace ostrella::generators {

namespace {

struct Facet {
    glm::vec3 normal;
    std::array<glm::vec3, 3> corners;
};

Facet facetOf(const Body& body, const Body::Triangle& triangle) {
    Facet facet{};
    for (int i = 0; i < 3; ++i) {
        facet.corners[i] = glm::vec3(body.vertices[triangle[i]]);
    }
    const glm::dvec3 a(facet.corners[0]);
    const glm::dvec3 cross =
        glm::cross(glm::dvec3(facet.corners[1]) - a, glm::dvec3(facet.corners[2]) - a);
    const double length = glm::length(cross);
    facet.normal = length > 0.0 ? glm::vec3(cross / length) : glm::vec3(0.0F);
    return facet;
}

void save(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

} // namespace

void writeBinaryStl(const Body& body, const std::filesystem::path& path, std::string_view title) {
    std::string bytes(84 + 50 * body.triangles.size(), '\0');
    title.copy(bytes.data(), 80);
    const auto count = static_cast<std::uint32_t>(body.triangles.size());
    std::memcpy(bytes.data() + 80, &count, sizeof count);
    char* at = bytes.data() + 84;
    for (const Body::Triangle& triangle : body.triangles) {
        const Facet facet = facetOf(body, triangle);
        std::memcpy(at, &facet, sizeof facet);
        at += 50;
    }
    save(path, bytes);
}

void writeAsciiStl(const Body& body, const std::filesystem::path& path, std::string_view name) {
    std::string text = fmt::format("solid {}\n", name);
    for (const Body::Triangle& triangle : body.triangles) {
        const Facet facet = facetOf(body, triangle);
        const glm::vec3& n = facet.normal;
        fmt::format_to(std::back_inserter(text),
            "  facet normal {:.9g} {:.9g} {:.9g}\n    outer loop\n", n.x, n.y, n.z);
        for (const glm::vec3& p : facet.corners) {
            fmt::format_to(
                std::back_inserter(text), "      vertex {:.9g} {:.9g} {:.9g}\n", p.x, p.y, p.z);
        }
        text += "    endloop\n  endfacet\n";
    }
    text += fmt::format("endsolid {}\n", name);
    save(path, text);
}

} // namespace ostrella::generators
