#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

/// Triangles of thick lines and dots with smooth edges: each has a rim, one device pixel wide,
/// across which it fades to nothing, so that it needs no multisampling. Lengths are in points.
class StrokeMesh {
public:
    struct Point {
        float x = 0;
        float y = 0;

        bool operator==(const Point&) const = default;
    };
    /// Premultiplied, a byte each.
    struct Color {
        std::uint8_t r = 0;
        std::uint8_t g = 0;
        std::uint8_t b = 0;
        std::uint8_t a = 255;

        bool operator==(const Color&) const = default;
    };
    struct Vertex {
        Point at;
        Color color;
    };

    /// `pixel` is the size of a device pixel.
    explicit StrokeMesh(float pixel) : pixel_(pixel) {}

    /// A line through `points`, with round joins and round ends. Points that coincide count once;
    /// a line of one point is a dot.
    void line(std::span<const Point> points, float width, Color color);
    void dot(Point center, float diameter, Color color);
    /// A rectangle without a rim, for what covers whole pixels.
    void box(Point topLeft, Point bottomRight, Color color);

    const std::vector<Vertex>& vertices() const { return vertices_; }
    /// Three for each triangle.
    const std::vector<std::uint32_t>& indices() const { return indices_; }

private:
    /// The cross-section of a line: its rim, its two edges and its other rim.
    std::uint32_t section(Point at, Point offset);
    void bridge(std::uint32_t from, std::uint32_t to);
    void fan(Point center, Point from, float angle);
    void join(Point at, Point before, Point after);
    std::uint32_t vertex(Point at, bool isOpaque);
    void triangle(std::uint32_t a, std::uint32_t b, std::uint32_t c);

    float pixel_;
    float inner_ = 0;
    float outer_ = 0;
    Color color_;
    std::uint32_t section_ = 0;
    std::vector<Point> path_;
    std::vector<Vertex> vertices_;
    std::vector<std::uint32_t> indices_;
};

} // namespace ostrella
