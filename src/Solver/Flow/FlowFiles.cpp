#include "Solver/Flow/FlowFiles.h"

#include "Models/Precondition.h"
#include "Solver/Flow/LineChains.h"

#include <fmt/compile.h>
#include <fmt/format.h>

#include <array>
#include <string_view>
#include <utility>

namespace ostrella {

namespace {

/// The longest number is "-1.23456789e-38", and a character that separates.
constexpr std::size_t wordRoom = 24;

/// A text that grows by numbers, each with its separator behind it.
class NumberText {
public:
    explicit NumberText(std::size_t room) { text_.reserve(room); }

    void add(std::string_view words) { text_ += words; }

    void add(float number, char separator) {
        std::array<char, wordRoom> word;
        append(word, fmt::format_to(word.data(), FMT_COMPILE("{:.9g}{}"), number, separator));
    }

    void add(std::size_t number, char separator) {
        std::array<char, wordRoom> word;
        append(word, fmt::format_to(word.data(), FMT_COMPILE("{}{}"), number, separator));
    }

    /// Three numbers with blanks between them.
    void add(const Vec3& vector, char separator) {
        add(vector.x, ' ');
        add(vector.y, ' ');
        add(vector.z, separator);
    }

    std::string take() { return std::move(text_); }

private:
    void append(const std::array<char, wordRoom>& word, const char* end) {
        text_.append(word.data(), end);
    }

    std::string text_;
};

/// Usual lengths of a float and of an index, for the reservation.
constexpr std::size_t floatLength = 13;
constexpr std::size_t indexLength = 7;

} // namespace

std::string FlowFiles::streamlinesVTK(const Streamlines& streamlines) {
    const auto chains = LineChains::of(streamlines);
    const float* vertices = streamlines.interleavedVertices.data();
    const std::size_t count = streamlines.interleavedVertices.size() / 4;
    NumberText text(4 * count * floatLength + chains.vertices.size() * indexLength + 512);
    text.add("# vtk DataFile Version 3.0\n"
             "Streamlines, metres and metres per second\n"
             "ASCII\n"
             "DATASET POLYDATA\n");
    text.add(fmt::format("POINTS {} float\n", count));
    for (std::size_t i = 0; i < count; ++i)
        text.add(Vec3(vertices[4 * i], vertices[4 * i + 1], vertices[4 * i + 2]), '\n');
    text.add(fmt::format(
        "LINES {} {}\n", chains.lineCount(), chains.lineCount() + chains.vertices.size()));
    for (std::size_t line = 0; line < chains.lineCount(); ++line) {
        const auto members = chains.line(line);
        text.add(members.size(), ' ');
        for (std::size_t k = 0; k < members.size(); ++k)
            text.add(std::size_t{members[k]}, k + 1 < members.size() ? ' ' : '\n');
    }
    text.add(fmt::format("POINT_DATA {}\nSCALARS Speed float 1\nLOOKUP_TABLE default\n", count));
    for (std::size_t i = 0; i < count; ++i)
        text.add(vertices[4 * i + 3], '\n');
    return text.take();
}

std::string FlowFiles::isoSurfacePLY(const IsoSurface& surface) {
    precondition(surface.normals.size() == surface.positions.size(),
        "a surface needs one normal for each position");
    const std::size_t triangles = surface.indices.size() / 3;
    NumberText text(
        surface.positions.size() * 6 * floatLength + triangles * (3 * indexLength + 2) + 512);
    text.add("ply\n"
             "format ascii 1.0\n");
    text.add(fmt::format("comment surface of Q = {:.9g} per square second, metres\n"
                         "element vertex {}\n",
        surface.isoValue, surface.positions.size()));
    text.add("property float x\n"
             "property float y\n"
             "property float z\n"
             "property float nx\n"
             "property float ny\n"
             "property float nz\n");
    text.add(fmt::format("element face {}\n"
                         "property list uchar int vertex_indices\n"
                         "end_header\n",
        triangles));
    for (std::size_t i = 0; i < surface.positions.size(); ++i) {
        text.add(surface.positions[i], ' ');
        text.add(surface.normals[i], '\n');
    }
    for (std::size_t i = 0; i < triangles; ++i) {
        text.add("3 ");
        for (std::size_t corner = 0; corner < 3; ++corner)
            text.add(std::size_t{surface.indices[3 * i + corner]}, corner < 2 ? ' ' : '\n');
    }
    return text.take();
}

} // namespace ostrella
