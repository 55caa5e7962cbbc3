#include "support/MeshQuality.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>

#include <glm/geometric.hpp>

namespace ostrella::test {

namespace {

constexpr int triangleKind = 5;
constexpr int tetrahedronKind = 10;

/// The words of a mesh file; whatever does not fit ends in an error with the file's name.
class MeshWords {
public:
    explicit MeshWords(const std::filesystem::path& file) : name_(file.string()), in_(file) {
        if (!in_) {
            fail("cannot be read");
        }
    }

    bool next(std::string& word) { return static_cast<bool>(in_ >> word); }

    template <class Value>
    Value take() {
        Value value{};
        if (!(in_ >> value)) {
            fail("ends early");
        }
        return value;
    }

    void expect(int kind) {
        if (take<int>() != kind) {
            fail("has elements other than triangles around tetrahedra");
        }
    }

    [[noreturn]] void fail(const std::string& what) const {
        throw std::runtime_error(name_ + " " + what);
    }

private:
    std::string name_;
    std::ifstream in_;
};

void measure(MeshQuality& quality, const std::vector<glm::dvec3>& points,
    const std::vector<std::array<std::size_t, 4>>& cells) {
    std::vector<double> gammas;
    gammas.reserve(cells.size());
    for (const auto& c : cells) {
        const Tetrahedron p{points.at(c[0]), points.at(c[1]), points.at(c[2]), points.at(c[3])};
        const double volume = signedVolume(p);
        quality.volume += volume;
        quality.inverted += volume > 0.0 ? 0 : 1;
        gammas.push_back(gammaOf(p));
    }
    quality.points = points.size();
    quality.cells = cells.size();
    if (gammas.empty()) {
        return;
    }
    std::ranges::sort(gammas);
    quality.leastGamma = gammas.front();
    quality.firstPercentileGamma = gammas[gammas.size() / 100];
    quality.medianGamma = gammas[gammas.size() / 2];
}

} // namespace

double signedVolume(const Tetrahedron& p) {
    return glm::dot(glm::cross(p[1] - p[0], p[2] - p[0]), p[3] - p[0]) / 6.0;
}

double gammaOf(const Tetrahedron& p) {
    const double volume = std::abs(signedVolume(p));
    double surface = 0.0;
    for (std::size_t left = 0; left < 4; ++left) {
        const glm::dvec3& a = p[(left + 1) % 4];
        surface += glm::length(glm::cross(p[(left + 2) % 4] - a, p[(left + 3) % 4] - a)) / 2.0;
    }
    // The products of opposite edges are the sides of a triangle whose area is 6 R V (Crelle).
    const double a = glm::length(p[1] - p[0]) * glm::length(p[3] - p[2]);
    const double b = glm::length(p[2] - p[0]) * glm::length(p[3] - p[1]);
    const double c = glm::length(p[3] - p[0]) * glm::length(p[2] - p[1]);
    const double heron = (a + b + c) * (a + b - c) * (b + c - a) * (c + a - b);
    if (!(volume > 0.0) || !(heron > 0.0)) {
        return 0.0;
    }
    const double inscribed = 3.0 * volume / surface;
    const double circumscribed = std::sqrt(heron) / (24.0 * volume);
    return 3.0 * inscribed / circumscribed;
}

MeshQuality MeshQuality::read(const std::filesystem::path& file) {
    MeshWords words(file);
    MeshQuality quality;
    std::vector<glm::dvec3> points;
    std::vector<std::array<std::size_t, 4>> cells;
    std::string marker;
    bool hasPoints = false;
    bool hasCells = false;
    for (std::string word; words.next(word);) {
        if (word == "NDIME=") {
            if (words.take<int>() != 3) {
                words.fail("is not three-dimensional");
            }
        } else if (word == "NELEM=") {
            hasCells = true;
            cells.resize(words.take<std::size_t>());
            for (auto& cell : cells) {
                words.expect(tetrahedronKind);
                for (std::size_t& corner : cell) {
                    corner = words.take<std::size_t>();
                }
                words.take<std::size_t>(); // the cell's own number
            }
        } else if (word == "NPOIN=") {
            hasPoints = true;
            points.resize(words.take<std::size_t>());
            for (glm::dvec3& p : points) {
                for (int axis = 0; axis < 3; ++axis) {
                    p[axis] = words.take<double>();
                }
                words.take<std::size_t>();
            }
        } else if (word == "MARKER_TAG=") {
            marker = words.take<std::string>();
        } else if (word == "MARKER_ELEMS=") {
            const auto count = quality.markers[marker] = words.take<std::size_t>();
            for (std::size_t i = 0; i < count; ++i) {
                words.expect(triangleKind);
                for (int corner = 0; corner < 3; ++corner) {
                    words.take<std::size_t>();
                }
            }
        }
    }
    if (!hasPoints || !hasCells) {
        words.fail("has no points or no cells");
    }
    measure(quality, points, cells);
    return quality;
}

} // namespace ostrella::test
