#include "resources/mesh/MeshCase.h"

#include "Solver/Tools/GMSHRunner.h"
#include "Solver/Tools/SurfaceRoad.h"
#include "Solver/Tools/TextTemplate.h"

#include "StlWriter.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace ostrella::test {

namespace fs = std::filesystem;

namespace {

std::string contentOf(const fs::path& file, std::size_t most) {
    std::ifstream in(file, std::ios::binary);
    std::string text(most, '\0');
    in.read(text.data(), static_cast<std::streamsize>(most));
    text.resize(static_cast<std::size_t>(in.gcount()));
    return text;
}

/// Volume of a tetrahedron, whichever way it is turned.
double tetrahedron(const std::array<glm::dvec3, 4>& p) {
    return std::abs(glm::dot(p[1] - p[0], glm::cross(p[2] - p[0], p[3] - p[0]))) / 6.0;
}

double linearSize(double volume) {
    return std::cbrt(volume * 6.0 * std::sqrt(2.0));
}

} // namespace

MeshCase::MeshCase(const generators::Body& body, int seconds) {
    std::string pattern = (fs::temp_directory_path() / "ostrella-mesh-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary directory");
    }
    directory_ = pattern;

    // The solver's frame: flow along x, z up.
    generators::Body turned = body;
    for (glm::dvec3& v : turned.vertices) {
        v = {v.x, -v.z, v.y};
    }
    generators::writeBinaryStl(turned, directory_ / "input.stl", "mesh test");
    std::vector<Vec3> positions;
    for (const auto& triangle : turned.triangles) {
        for (const auto corner : triangle) {
            positions.emplace_back(turned.vertices[corner]);
        }
    }
    Vec3 low = positions.front();
    Vec3 high = low;
    for (const Vec3& p : positions) {
        low = glm::min(low, p);
        high = glm::max(high, p);
    }
    const GMSHRunner::FarField field = GMSHRunner::farField(low, high);
    lcMin_ = field.lcMin;
    lcMax_ = field.lcMax;
    const glm::dvec3 box(field.max - field.min);
    boxVolume_ = box.x * box.y * box.z;

    std::string script = contentOf(
        fs::path(OSTRELLA_STAGE_DIR) / "share/ostrella/su2/templates/stl_external_aero.geo",
        1U << 20U);
    const auto fill = [&script](const char* name, const std::string& value) {
        script = replaceAll(script, name, value);
    };
    fill("{{STL_FILENAME}}", "input.stl");
    fill("{{XMIN}}", std::to_string(field.min.x));
    fill("{{XMAX}}", std::to_string(field.max.x));
    fill("{{YMIN}}", std::to_string(field.min.y));
    fill("{{YMAX}}", std::to_string(field.max.y));
    fill("{{ZMIN}}", std::to_string(field.min.z));
    fill("{{ZMAX}}", std::to_string(field.max.z));
    fill("{{LC_MIN}}", std::to_string(field.lcMin));
    fill("{{LC_MAX}}", std::to_string(field.lcMax));
    fill("{{SURFACE_ROAD}}", surfaceRoad(positions, field.lcMin, field.lcMax).scriptValue());
    fill("{{OPTIMIZE_BELOW}}", "0.3");
    std::ofstream(directory_ / "mesh.geo") << script;

    const std::string gmsh = (fs::path(OSTRELLA_STAGE_DIR) / "libexec/ostrella/gmsh").string();
    const std::string command = "cd '" + directory_.string() + "' && timeout -s KILL " +
                                std::to_string(seconds) + " '" + gmsh +
                                "' mesh.geo -3 -o mesh.su2 -nopopup > output.txt 2>&1";
    const int result = std::system(command.c_str());
    status_ = WIFEXITED(result) ? WEXITSTATUS(result) : 128 + WTERMSIG(result);
    timedOut_ = status_ == 137;
    outputSize_ = fs::file_size(directory_ / "output.txt");
    output_ = contentOf(directory_ / "output.txt", 1U << 20U);
}

MeshCase::~MeshCase() {
    std::error_code ignored;
    fs::remove_all(directory_, ignored);
}

std::string MeshCase::firstError() const {
    std::size_t start = 0;
    while (start < output_.size()) {
        const std::size_t end = std::min(output_.find('\n', start), output_.size());
        const std::string line = output_.substr(start, end - start);
        if (line.starts_with("Error")) {
            return line;
        }
        start = end + 1;
    }
    return {};
}

VolumeMesh VolumeMesh::read(const fs::path& file) {
    VolumeMesh mesh;
    std::ifstream in(file);
    std::string key;
    std::string marker;
    while (in >> key) {
        std::size_t count = 0;
        int kind = 0;
        if (key == "NELEM=" && in >> count) {
            mesh.cells.resize(count);
            for (auto& c : mesh.cells) {
                std::size_t number = 0;
                in >> kind >> c[0] >> c[1] >> c[2] >> c[3] >> number;
                EXPECT_EQ(kind, 10) << "a cell that is no tetrahedron";
            }
        } else if (key == "NPOIN=" && in >> count) {
            mesh.points.resize(count);
            for (auto& p : mesh.points) {
                std::size_t number = 0;
                in >> p.x >> p.y >> p.z >> number;
            }
        } else if (key == "MARKER_TAG=") {
            in >> marker;
        } else if (key == "MARKER_ELEMS=" && in >> count) {
            EXPECT_TRUE(marker == "body" || marker == "farfield") << marker;
            auto& facets = marker == "body" ? mesh.body : mesh.farField;
            facets.resize(count);
            for (auto& f : facets) {
                in >> kind >> f[0] >> f[1] >> f[2];
            }
        }
    }
    return mesh;
}

double VolumeMesh::volume() const {
    double sum = 0.0;
    for (const auto& c : cells) {
        sum += tetrahedron({points[c[0]], points[c[1]], points[c[2]], points[c[3]]});
    }
    return sum;
}

std::vector<double> VolumeMesh::bodyEdges() const {
    std::vector<double> edges;
    for (const auto& f : body) {
        for (std::size_t k = 0; k < 3; ++k) {
            edges.push_back(glm::length(points[f[(k + 1) % 3]] - points[f[k]]));
        }
    }
    std::ranges::sort(edges);
    return edges;
}

std::vector<double> VolumeMesh::neighbourRatios() const {
    std::map<std::array<std::size_t, 3>, double> open;
    std::vector<double> ratios;
    for (const auto& c : cells) {
        const double size =
            linearSize(tetrahedron({points[c[0]], points[c[1]], points[c[2]], points[c[3]]}));
        for (std::size_t left = 0; left < 4; ++left) {
            std::array<std::size_t, 3> face{
                c[(left + 1) % 4], c[(left + 2) % 4], c[(left + 3) % 4]};
            std::ranges::sort(face);
            const auto [entry, isNew] = open.try_emplace(face, size);
            if (!isNew) {
                ratios.push_back(std::max(size / entry->second, entry->second / size));
                open.erase(entry);
            }
        }
    }
    std::ranges::sort(ratios);
    return ratios;
}

double VolumeMesh::cellSizeNear(const glm::dvec3& point) const {
    double nearest = INFINITY;
    double size = 0.0;
    for (const auto& c : cells) {
        const glm::dvec3 middle = (points[c[0]] + points[c[1]] + points[c[2]] + points[c[3]]) / 4.0;
        const double distance = glm::length(middle - point);
        if (distance < nearest) {
            nearest = distance;
            size =
                linearSize(tetrahedron({points[c[0]], points[c[1]], points[c[2]], points[c[3]]}));
        }
    }
    return size;
}

} // namespace ostrella::test
