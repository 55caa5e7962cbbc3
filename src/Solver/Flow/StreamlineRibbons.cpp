#include "Solver/Flow/StreamlineRibbons.h"

#include "Models/Precondition.h"
#include "Solver/Flow/LineChains.h"

#include <cmath>
#include <span>

namespace ostrella {

namespace {

using Point = StreamlineRibbons::Point;

constexpr float firstPoint = 1.0F;
constexpr float lastPoint = 2.0F;

/// Both sides of a point have an index of 32 bits.
constexpr std::size_t mostPoints = std::size_t{1} << 31U;

/// Multiples of the golden ratio, less their whole part: they spread the phases of neighbouring
/// lines evenly, the same in every run. No two of them come nearer to a whole number than
/// 1 / (√5 × line), so none is narrowed to 1 below fourteen million lines.
float phaseOf(std::size_t line) {
    const double turns = static_cast<double>(line) * 0.6180339887498949;
    return static_cast<float>(turns - std::floor(turns));
}

float distance(const Vec4& from, const Vec4& to) {
    return std::sqrt(squaredLength(Vec3(to) - Vec3(from)));
}

/// Fills `points` with the line through `vertices`.
void writeLine(std::span<const std::uint32_t> vertices, const float* interleavedVertices,
    float phase, Point* points) {
    float arcLength = 0.0F;
    for (std::size_t k = 0; k < vertices.size(); ++k) {
        const float* vertex = interleavedVertices + std::size_t{4} * vertices[k];
        points[k].positionSpeed = {vertex[0], vertex[1], vertex[2], vertex[3]};
        if (k > 0)
            arcLength += distance(points[k - 1].positionSpeed, points[k].positionSpeed);
        points[k].params = {arcLength, 0.0F, phase, 0.0F};
    }
    for (std::size_t k = 0; k < vertices.size(); ++k)
        points[k].params.y = arcLength;
    points[0].params.w = firstPoint;
    points[vertices.size() - 1].params.w = lastPoint;
}

/// Two triangles between the sides of point `from` and those of the next.
void writeBand(std::size_t from, std::uint32_t* indices) {
    const auto corner = static_cast<std::uint32_t>(2 * from);
    indices[0] = corner;
    indices[1] = corner + 1;
    indices[2] = corner + 2;
    indices[3] = corner + 1;
    indices[4] = corner + 3;
    indices[5] = corner + 2;
}

} // namespace

StreamlineRibbons StreamlineRibbons::build(const Streamlines& streamlines) {
    const auto chains = LineChains::of(streamlines);
    precondition(chains.vertices.size() <= mostPoints, "the ribbons' indices must fit 32 bits");
    StreamlineRibbons ribbons;
    ribbons.lineCount = chains.lineCount();
    ribbons.points.resize(chains.vertices.size());
    ribbons.indices.resize(6 * chains.segmentCount());
    std::uint32_t* band = ribbons.indices.data();
    for (std::size_t line = 0; line < ribbons.lineCount; ++line) {
        const auto vertices = chains.line(line);
        const std::size_t first = chains.starts[line];
        writeLine(vertices, streamlines.interleavedVertices.data(), phaseOf(line),
            ribbons.points.data() + first);
        for (std::size_t k = 0; k + 1 < vertices.size(); ++k, band += 6)
            writeBand(first + k, band);
    }
    return ribbons;
}

} // namespace ostrella
