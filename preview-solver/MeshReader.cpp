#include "MeshReader.h"

#include "ConfigValue.h"
#include "Failure.h"

#include <fast_float/fast_float.h>
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>

namespace ostrella::preview {

namespace {

bool blank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

/// Goes through the text line by line, without comments and empty lines, and word by word.
class Lines {
public:
    explicit Lines(std::string_view text) : rest_(text) {}

    bool next() {
        while (!rest_.empty()) {
            ++number_;
            const auto end = rest_.find('\n');
            row_ = rest_.substr(0, end);
            rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
            if (const auto comment = row_.find('%'); comment != std::string_view::npos)
                row_ = row_.substr(0, comment);
            skipBlanks();
            if (!row_.empty())
                return true;
        }
        return false;
    }

    /// The next line must exist: `what` tells what is being read.
    void need(std::string_view what) {
        if (!next())
            throw Failure(fmt::format("The mesh file ends within its {}.", what));
    }

    std::string_view row() const { return row_; }
    bool atEnd() const { return row_.empty(); }

    [[noreturn]] void refuse(std::string_view reason) const {
        throw Failure(fmt::format("Line {} of the mesh file: {}", number_, reason));
    }

    std::int64_t integer() {
        std::int64_t value = 0;
        const auto result = std::from_chars(row_.data(), row_.data() + row_.size(), value);
        advance(result.ptr, result.ec, "a whole number is expected.");
        return value;
    }

    double number() {
        double value = 0;
        if (!row_.empty() && row_.front() == '+')
            row_.remove_prefix(1);
        const auto result = fast_float::from_chars(row_.data(), row_.data() + row_.size(), value);
        advance(result.ptr, result.ec, "a number is expected.");
        if (!std::isfinite(value))
            refuse("a coordinate is not finite.");
        return value;
    }

    /// The value of a line "KEY= value" if the line has this key.
    bool key(std::string_view name) {
        if (row_.substr(0, name.size()) != name)
            return false;
        std::string_view after = row_.substr(name.size());
        while (!after.empty() && blank(after.front()))
            after.remove_prefix(1);
        if (after.empty() || after.front() != '=')
            return false;
        after.remove_prefix(1);
        row_ = after;
        skipBlanks();
        return true;
    }

    /// A count, at most one line of the file for each.
    std::size_t count(std::string_view what) {
        const std::int64_t value = integer();
        if (value < 0)
            refuse(fmt::format("the number of {} is negative.", what));
        if (static_cast<std::uint64_t>(value) > rest_.size() + 1)
            throw Failure(fmt::format("The mesh file ends within its {}.", what));
        return static_cast<std::size_t>(value);
    }

private:
    void skipBlanks() {
        while (!row_.empty() && blank(row_.front()))
            row_.remove_prefix(1);
        while (!row_.empty() && blank(row_.back()))
            row_.remove_suffix(1);
    }

    void advance(const char* end, std::errc error, std::string_view reason) {
        if (error != std::errc() || (end != row_.data() + row_.size() && !blank(*end)))
            refuse(reason);
        row_.remove_prefix(static_cast<std::size_t>(end - row_.data()));
        while (!row_.empty() && blank(row_.front()))
            row_.remove_prefix(1);
    }

    std::string_view rest_;
    std::string_view row_;
    std::size_t number_ = 0;
};

Cell readCell(Lines& lines, int dimension, std::string_view what) {
    const std::int64_t type = lines.integer();
    const int points = type < 0 || type > 100 ? 0 : cellPoints(static_cast<int>(type));
    if (points == 0)
        lines.refuse(fmt::format("{} is no known cell type.", type));
    Cell cell;
    cell.type = static_cast<CellType>(type);
    if (cellDimension(cell.type) != dimension)
        lines.refuse(fmt::format("cell type {} cannot be one of the {}.", type, what));
    for (int i = 0; i < points; ++i) {
        const std::int64_t point = lines.integer();
        if (point < 0 || point > std::numeric_limits<std::int32_t>::max())
            lines.refuse(fmt::format("{} is no point of the mesh.", point));
        cell.points[i] = static_cast<std::int32_t>(point);
    }
    return cell;
}

/// Fails for a cell with a point that the mesh does not have, or the same point twice.
template <class Name>
void checkCell(const Cell& cell, std::size_t points, Name where) {
    const int count = cellPoints(static_cast<int>(cell.type));
    for (int i = 0; i < count; ++i) {
        if (static_cast<std::size_t>(cell.points[i]) >= points)
            throw Failure(fmt::format("{} names point {}, but the mesh has only {} points.",
                where(), cell.points[i], points));
        for (int j = 0; j < i; ++j)
            if (cell.points[i] == cell.points[j])
                throw Failure(fmt::format("{} names point {} twice.", where(), cell.points[i]));
    }
}

void check(const Mesh& mesh) {
    if (mesh.cells.empty())
        throw Failure("The mesh has no cells.");
    if (mesh.points.empty())
        throw Failure("The mesh has no points.");
    std::vector<char> used(mesh.points.size(), 0);
    for (std::size_t i = 0; i < mesh.cells.size(); ++i) {
        checkCell(mesh.cells[i], mesh.points.size(), [i] { return fmt::format("Cell {}", i); });
        for (int k = 0; k < cellPoints(static_cast<int>(mesh.cells[i].type)); ++k)
            used[mesh.cells[i].points[k]] = 1;
    }
    for (const auto& marker : mesh.markers)
        for (const auto& facet : marker.facets)
            checkCell(facet, mesh.points.size(), [&] { return "Marker " + marker.name; });
    const auto lost = std::find(used.begin(), used.end(), 0);
    if (lost != used.end())
        throw Failure(fmt::format("Mismatch between the points and the cells of the mesh: point {} "
                                  "belongs to no cell.",
            lost - used.begin()));
}

} // namespace

Mesh MeshReader::parse(std::string_view text) {
    Mesh mesh;
    Lines lines(text);
    bool haveDimension = false;
    bool havePoints = false;
    bool haveCells = false;
    while (lines.next()) {
        if (lines.key("NDIME")) {
            mesh.dimensions = static_cast<int>(lines.integer());
            if (mesh.dimensions != 2 && mesh.dimensions != 3)
                lines.refuse("the mesh must have 2 or 3 dimensions.");
            haveDimension = true;
        } else if (lines.key("NELEM")) {
            if (!haveDimension)
                lines.refuse("NDIME must come before the cells.");
            const std::size_t count = lines.count("cells");
            mesh.cells.reserve(count);
            for (std::size_t i = 0; i < count; ++i) {
                lines.need("cells");
                mesh.cells.push_back(readCell(lines, mesh.dimensions, "cells"));
            }
            haveCells = true;
        } else if (lines.key("NPOIN")) {
            if (!haveDimension)
                lines.refuse("NDIME must come before the points.");
            const std::size_t count = lines.count("points");
            mesh.points.reserve(count);
            for (std::size_t i = 0; i < count; ++i) {
                lines.need("points");
                Vec3 point{0.0};
                for (int d = 0; d < mesh.dimensions; ++d)
                    point[d] = lines.number();
                mesh.points.push_back(point);
            }
            havePoints = true;
        } else if (lines.key("MARKER_TAG")) {
            if (!haveDimension)
                lines.refuse("NDIME must come before the markers.");
            Marker marker;
            marker.name = lines.row();
            lines.need("markers");
            if (!lines.key("MARKER_ELEMS"))
                lines.refuse("MARKER_ELEMS is expected.");
            const std::size_t count = lines.count("markers");
            marker.facets.reserve(count);
            for (std::size_t i = 0; i < count; ++i) {
                lines.need("markers");
                marker.facets.push_back(readCell(lines, mesh.dimensions - 1, "facets"));
            }
            for (const auto& other : mesh.markers)
                if (other.name == marker.name)
                    lines.refuse(fmt::format("marker {} appears twice.", marker.name));
            mesh.markers.push_back(std::move(marker));
        } else if (lines.key("NZONE")) {
            if (lines.integer() != 1)
                lines.refuse("meshes of several zones are beyond the preview solver.");
        } else if (!lines.key("NMARK") && !lines.key("NPERIODIC") && !lines.key("NCHUNK") &&
                   !lines.key("IZONE") && !lines.key("AOA_OFFSET") && !lines.key("AOS_OFFSET") &&
                   !lines.key("SEND_RECV")) {
            lines.refuse("no known section begins here.");
        }
    }
    if (!haveDimension || !havePoints || !haveCells)
        throw Failure("The mesh file lacks NDIME, NELEM or NPOIN.");
    check(mesh);
    mesh.orient();
    return mesh;
}

Mesh MeshReader::read(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        throw Failure(fmt::format("There is no mesh file {}.", path));
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file)
        throw Failure(fmt::format("The mesh file {} cannot be read.", path));
    std::string text(static_cast<std::size_t>(std::max<std::streamoff>(file.tellg(), 0)), '\0');
    file.seekg(0);
    if (!file.read(text.data(), static_cast<std::streamsize>(text.size())) && !text.empty())
        throw Failure(fmt::format("The mesh file {} cannot be read.", path));
    return parse(text);
}

} // namespace ostrella::preview
