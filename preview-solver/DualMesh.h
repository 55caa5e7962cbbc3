#pragma once

#include "Mesh.h"

#include <span>
#include <vector>

namespace ostrella::preview {

/// Median-dual control volumes about a mesh's points, in an order of points of their own that keeps
/// neighbours close in memory (reverse Cuthill-McKee).
struct DualMesh {
    struct Edge {
        std::int32_t from;
        std::int32_t to;
    };
    /// One neighbour of a point: the point, the edge to it, and whether the edge points away.
    struct Neighbour {
        std::int32_t point;
        std::int32_t edge;
        double sign;
    };
    /// A boundary point within one marker.
    struct Vertex {
        std::int32_t point;
        /// Area vector of the dual face on the boundary, out of the domain, square metres.
        Vec3 normal;
    };
    struct Boundary {
        std::string name;
        std::vector<Vertex> vertices;
    };

    int dimensions = 3;
    std::vector<Vec3> points;
    /// Control volumes, cubic metres; areas in two dimensions.
    std::vector<double> volumes;
    std::vector<Edge> edges;
    /// Area vectors of the dual faces, from `from` to `to`.
    std::vector<Vec3> normals;
    /// The neighbours of point i are those from neighbourStart[i] to neighbourStart[i + 1],
    /// ascending.
    std::vector<std::int32_t> neighbourStart;
    std::vector<Neighbour> neighbours;
    /// One for each marker of the mesh, in its order.
    std::vector<Boundary> boundaries;
    /// The mesh's number of each point, and the reverse.
    std::vector<std::int32_t> meshPoint;
    std::vector<std::int32_t> ownPoint;

    [[nodiscard]] std::size_t size() const { return points.size(); }
    [[nodiscard]] std::span<const Neighbour> around(std::size_t point) const {
        return {neighbours.data() + neighbourStart[point],
            neighbours.data() + neighbourStart[point + 1]};
    }

    /// Throws Failure where a control volume is not positive or its faces do not close (a part of
    /// the boundary that no marker covers).
    static DualMesh build(const Mesh& mesh);
};

} // namespace ostrella::preview
