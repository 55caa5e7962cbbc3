#include "VtkWriter.h"

#include "Failure.h"

#include <fmt/format.h>
#include <omp.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

namespace ostrella::preview {

namespace {

class File {
public:
    explicit File(const std::string& path) : path_(path), file_(std::fopen(path.c_str(), "wb")) {
        if (!file_)
            fail();
    }
    ~File() {
        if (file_)
            std::fclose(file_);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    void put(const char* text, std::size_t size) {
        if (std::fwrite(text, 1, size, file_) != size)
            fail();
    }
    void put(const std::string& text) { put(text.data(), text.size()); }

    /// Puts what `format(i, buffer)` makes for each i below `count`, in order; the texts are made
    /// by all threads.
    template <class Format>
    void putAll(std::size_t count, Format format) {
        const int parts = omp_get_max_threads();
        std::vector<fmt::memory_buffer> buffers(static_cast<std::size_t>(parts));
#pragma omp parallel for schedule(static, 1)
        for (int part = 0; part < parts; ++part) {
            const std::size_t last = count * static_cast<std::size_t>(part + 1) / parts;
            for (std::size_t i = count * static_cast<std::size_t>(part) / parts; i < last; ++i)
                format(i, buffers[static_cast<std::size_t>(part)]);
        }
        for (const auto& buffer : buffers)
            put(buffer.data(), buffer.size());
    }

    void close() {
        std::FILE* file = file_;
        file_ = nullptr;
        if (std::fclose(file) != 0)
            fail();
    }

private:
    [[noreturn]] void fail() const {
        throw Failure(fmt::format("{} cannot be written: {}.", path_, std::strerror(errno)));
    }

    std::string path_;
    std::FILE* file_;
};

void number(fmt::memory_buffer& buffer, double value) {
    fmt::format_to(std::back_inserter(buffer), "{:.6e}\t", value);
}

template <class At>
void vector(fmt::memory_buffer& buffer, int dimensions, At at) {
    for (int k = 0; k < dimensions; ++k)
        number(buffer, at(k));
    if (dimensions == 2)
        buffer.append(std::string_view("0.0\t"));
}

void writeTo(File& file, const VtkWriter::Grid& grid, const std::vector<PointField>& fields) {
    const std::size_t count = grid.points.size();
    file.put(
        fmt::format("# vtk DataFile Version 3.0\nvtk output\nASCII\nDATASET UNSTRUCTURED_GRID\n"
                    "POINTS {} double\n",
            count));
    file.putAll(count, [&](std::size_t i, fmt::memory_buffer& buffer) {
        vector(buffer, grid.dimensions, [&](int k) { return grid.points[i][k]; });
    });
    std::size_t words = 0;
    for (const auto& cell : grid.cells)
        words += 1 + static_cast<std::size_t>(cellPoints(static_cast<int>(cell.type)));
    file.put(fmt::format("\nCELLS {}\t{}\n", grid.cells.size(), words));
    file.putAll(grid.cells.size(), [&](std::size_t i, fmt::memory_buffer& buffer) {
        const Cell& cell = grid.cells[i];
        const int points = cellPoints(static_cast<int>(cell.type));
        fmt::format_to(std::back_inserter(buffer), "{}\t", points);
        for (int k = 0; k < points; ++k)
            fmt::format_to(std::back_inserter(buffer), "{}\t", cell.points[k]);
    });
    file.put(fmt::format("\nCELL_TYPES {}\n", grid.cells.size()));
    file.putAll(grid.cells.size(), [&](std::size_t i, fmt::memory_buffer& buffer) {
        fmt::format_to(std::back_inserter(buffer), "{}\t", static_cast<int>(grid.cells[i].type));
    });
    file.put(fmt::format("\nPOINT_DATA {}\n", count));
    for (const auto& field : fields) {
        const auto stride = static_cast<std::size_t>(field.components);
        if (field.components == 1)
            file.put(fmt::format("\nSCALARS {} double 1\nLOOKUP_TABLE default\n", field.name));
        else
            file.put(fmt::format("\nVECTORS {} double\n", field.name));
        file.putAll(count, [&](std::size_t i, fmt::memory_buffer& buffer) {
            const double* values =
                field.values.data() + static_cast<std::size_t>(grid.source[i]) * stride;
            if (stride == 1)
                number(buffer, values[0]);
            else
                vector(buffer, field.components, [&](int k) { return values[k]; });
        });
    }
}

} // namespace

namespace {

/// In the surface file the facets' normals point off the body, into the flow.
void turn(Cell& facet) {
    const auto last = facet.points.begin() + cellPoints(static_cast<int>(facet.type));
    std::reverse(facet.points.begin() + 1, last);
}

} // namespace

VtkWriter::Grid VtkWriter::volumeGrid(const Mesh& mesh) {
    Grid grid{mesh.dimensions, mesh.points, mesh.cells, {}};
    grid.source.resize(mesh.points.size());
    for (std::size_t i = 0; i < grid.source.size(); ++i)
        grid.source[i] = static_cast<std::int32_t>(i);
    return grid;
}

VtkWriter::Grid VtkWriter::surfaceGrid(const Mesh& mesh, const std::set<std::string>& markers) {
    Grid grid;
    grid.dimensions = mesh.dimensions;
    std::vector<std::int32_t> number(mesh.points.size(), -1);
    for (const auto& marker : mesh.markers) {
        if (!markers.contains(marker.name))
            continue;
        for (const auto& facet : marker.facets) {
            grid.cells.push_back(facet);
            if (mesh.dimensions == 3)
                turn(grid.cells.back());
            for (int k = 0; k < cellPoints(static_cast<int>(facet.type)); ++k)
                number[facet.points[k]] = 0;
        }
    }
    for (std::size_t i = 0; i < number.size(); ++i) {
        if (number[i] < 0)
            continue;
        number[i] = static_cast<std::int32_t>(grid.points.size());
        grid.points.push_back(mesh.points[i]);
        grid.source.push_back(static_cast<std::int32_t>(i));
    }
    for (auto& cell : grid.cells)
        for (int k = 0; k < cellPoints(static_cast<int>(cell.type)); ++k)
            cell.points[k] = number[cell.points[k]];
    return grid;
}

void VtkWriter::write(
    const std::string& path, const Grid& grid, const std::vector<PointField>& fields) {
    const std::string part = path + ".part";
    {
        File file(part);
        writeTo(file, grid, fields);
        file.close();
    }
    std::error_code error;
    std::filesystem::rename(part, path, error);
    if (error)
        throw Failure(fmt::format("{} cannot be written: {}.", path, error.message()));
}

} // namespace ostrella::preview
