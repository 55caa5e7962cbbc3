#include "Solver/Tools/MeshQuality.h"

#include "Models/OrdinaryFile.h"
#include "Solver/Tools/TextTrimming.h"

#include <fast_float/fast_float.h>
#include <glm/geometric.hpp>
#include <glm/vec3.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <exception>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace ostrella {

namespace {

constexpr std::uint64_t mostItems = 16'000'000;
constexpr std::size_t bufferSize = std::size_t{1} << 20;
constexpr std::size_t itemsPerCancelPoint = std::size_t{1} << 16;
constexpr std::uint64_t tetrahedronKind = 10;
/// Of a line with three numbers and its end.
constexpr std::uint64_t leastLineBytes = 6;

using Cell = std::array<std::uint32_t, 4>;

/// The lines of a file, one after the other; none is longer than the buffer.
class Lines {
public:
    explicit Lines(const std::filesystem::path& path) : file_(path), buffer_(bufferSize) {}

    /// How many lines with three numbers or more there can be.
    std::uint64_t most() const { return file_.size() / leastLineBytes + 1; }

    /// The next line without its end, valid until the next call; nothing behind the last one.
    std::optional<std::string_view> next() {
        while (true) {
            const std::string_view rest(buffer_.data() + begin_, end_ - begin_);
            const std::size_t end = rest.find('\n');
            if (end != std::string_view::npos) {
                begin_ += end + 1;
                return rest.substr(0, end);
            }
            if (!fill()) {
                begin_ = end_;
                return rest.empty() ? std::nullopt : std::optional(rest);
            }
        }
    }

private:
    bool fill() {
        std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
        const std::size_t count =
            file_.read(std::as_writable_bytes(std::span(buffer_).subspan(end_)));
        end_ += count;
        return count > 0;
    }

    OrdinaryFile file_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

std::errc parse(const char*& at, const char* end, double& value) {
    const auto [stop, error] = fast_float::from_chars(at, end, value);
    at = stop;
    return error;
}

template <class Integer>
std::errc parse(const char*& at, const char* end, Integer& value) {
    const auto [stop, error] = std::from_chars(at, end, value);
    at = stop;
    return error;
}

/// Takes the number at the front of `text`, and the blanks ahead of it.
template <class Number>
bool take(std::string_view& text, Number& number) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.remove_prefix(1);
    }
    const char* at = text.data();
    const char* const end = text.data() + text.size();
    if (parse(at, end, number) != std::errc()) {
        return false;
    }
    text.remove_prefix(static_cast<std::size_t>(at - text.data()));
    return true;
}

bool takeCell(std::string_view line, Cell& cell) {
    std::uint64_t kind = 0;
    return take(line, kind) && kind == tetrahedronKind && take(line, cell[0]) &&
           take(line, cell[1]) && take(line, cell[2]) && take(line, cell[3]);
}

bool takePoint(std::string_view line, glm::dvec3& p) {
    return take(line, p.x) && take(line, p.y) && take(line, p.z);
}

/// Reads as many lines as `text` says, the rest of a keyword's line, each into an item of its own.
template <class Item, class Take>
bool takeItems(Lines& lines, std::string_view text, Take takeItem, std::vector<Item>& items,
    const CancellationToken& token) {
    std::uint64_t count = 0;
    // A section that comes twice is no mesh either.
    if (!take(text, count) || count > mostItems || !items.empty()) {
        return false;
    }
    // No more memory than what is there can need, whatever the count says.
    items.reserve(std::min(count, lines.most()));
    for (std::uint64_t i = 0; i < count; ++i) {
        if (i % itemsPerCancelPoint == 0) {
            token.throwIfCancelled();
        }
        const auto line = lines.next();
        Item item{};
        if (!line || !takeItem(*line, item)) {
            return false;
        }
        items.push_back(item);
    }
    return true;
}

struct Mesh {
    std::vector<Cell> cells;
    std::vector<glm::dvec3> points;
};

std::optional<Mesh> readMesh(const std::filesystem::path& file, const CancellationToken& token) {
    Lines lines(file);
    Mesh mesh;
    std::uint64_t dimensions = 0;
    while (mesh.cells.empty() || mesh.points.empty()) {
        const auto line = lines.next();
        if (!line) {
            return std::nullopt;
        }
        std::string_view text = trimmedBlanks(*line);
        const auto isAt = [&text](std::string_view keyword) {
            const bool found = text.starts_with(keyword);
            text.remove_prefix(found ? keyword.size() : 0);
            return found;
        };
        if ((isAt("NDIME=") && (!take(text, dimensions) || dimensions != 3)) ||
            (isAt("NELEM=") && !takeItems(lines, text, takeCell, mesh.cells, token)) ||
            (isAt("NPOIN=") && !takeItems(lines, text, takePoint, mesh.points, token))) {
            return std::nullopt;
        }
    }
    return dimensions == 3 ? std::optional(std::move(mesh)) : std::nullopt;
}

struct CellFigures {
    double volume = 0;
    double gamma = 0;
};

CellFigures figuresOf(const std::array<glm::dvec3, 4>& p) {
    const glm::dvec3 u = p[1] - p[0];
    const glm::dvec3 v = p[2] - p[0];
    const glm::dvec3 w = p[3] - p[0];
    const glm::dvec3 vw = p[3] - p[2];
    const glm::dvec3 uw = p[3] - p[1];
    const glm::dvec3 uv = p[2] - p[1];
    const double six = glm::dot(glm::cross(u, v), w);
    const double twiceSurface = glm::length(glm::cross(u, v)) + glm::length(glm::cross(u, w)) +
                                glm::length(glm::cross(v, w)) + glm::length(glm::cross(uv, uw));
    // The products of opposite edges are the sides of a triangle of the area 6 R V (Crelle), and
    // the inscribed radius is 3 V over the surface.
    const double a = glm::length(u) * glm::length(vw);
    const double b = glm::length(v) * glm::length(uw);
    const double c = glm::length(w) * glm::length(uv);
    const double heron = (a + b + c) * (a + b - c) * (b + c - a) * (c + a - b);
    if (!(six * six > 0) || !(heron > 0)) {
        return {six / 6, 0};
    }
    return {six / 6, 12 * six * six / (twiceSurface * std::sqrt(heron))};
}

std::optional<MeshQuality> qualityOf(const Mesh& mesh, const CancellationToken& token) {
    MeshQuality quality;
    std::vector<float> gammas;
    gammas.reserve(mesh.cells.size());
    double least = 1;
    for (std::size_t i = 0; i < mesh.cells.size(); ++i) {
        if (i % itemsPerCancelPoint == 0) {
            token.throwIfCancelled();
        }
        std::array<glm::dvec3, 4> corners;
        for (std::size_t k = 0; k < corners.size(); ++k) {
            if (mesh.cells[i][k] >= mesh.points.size()) {
                return std::nullopt;
            }
            corners[k] = mesh.points[mesh.cells[i][k]];
        }
        const CellFigures cell = figuresOf(corners);
        quality.inverted += cell.volume > 0 ? 0 : 1;
        least = std::min(least, cell.gamma);
        gammas.push_back(static_cast<float>(cell.gamma));
    }
    quality.cells = static_cast<std::int64_t>(gammas.size());
    quality.leastGamma = least;
    const auto percentile = gammas.begin() + static_cast<std::ptrdiff_t>(gammas.size() / 100);
    std::ranges::nth_element(gammas, percentile);
    quality.firstPercentileGamma = static_cast<double>(*percentile);
    return quality;
}

} // namespace

bool MeshQuality::isBetterThan(const MeshQuality& other) const {
    return inverted != other.inverted ? inverted < other.inverted : leastGamma > other.leastGamma;
}

std::optional<MeshQuality> readMeshQuality(
    const std::filesystem::path& file, const CancellationToken& token) {
    try {
        const auto mesh = readMesh(file, token);
        return mesh ? qualityOf(*mesh, token) : std::nullopt;
    } catch (const CancellationError&) {
        throw;
    } catch (const std::exception&) {
        // Nobody's run depends on it, so a lack of memory is no failure either.
        return std::nullopt;
    }
}

} // namespace ostrella
