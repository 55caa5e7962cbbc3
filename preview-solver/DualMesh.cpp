#include "DualMesh.h"

#include "CellShape.h"
#include "Failure.h"
#include "Ordering.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace ostrella::preview {

namespace {

/// The mesh's edges, each once, as pairs of the mesh's point numbers, ascending.
std::vector<DualMesh::Edge> edgesOf(const Mesh& mesh) {
    std::vector<std::uint64_t> keys;
    keys.reserve(mesh.cells.size() * 6);
    for (const auto& cell : mesh.cells) {
        for (const auto& edge : CellShape::of(cell.type).edges) {
            const auto a = static_cast<std::uint64_t>(cell.points[edge[0]]);
            const auto b = static_cast<std::uint64_t>(cell.points[edge[1]]);
            keys.push_back(std::min(a, b) << 32 | std::max(a, b));
        }
    }
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    std::vector<DualMesh::Edge> edges;
    edges.reserve(keys.size());
    for (const auto key : keys)
        edges.push_back(
            {static_cast<std::int32_t>(key >> 32), static_cast<std::int32_t>(key & 0xffffffffu)});
    return edges;
}

/// Rows of neighbours from edges; row k of the result is ascending.
void rows(std::size_t count, std::span<const DualMesh::Edge> edges,
    std::vector<std::int32_t>& start, std::vector<DualMesh::Neighbour>& neighbours) {
    start.assign(count + 1, 0);
    for (const auto& edge : edges) {
        ++start[edge.from + 1];
        ++start[edge.to + 1];
    }
    for (std::size_t i = 0; i < count; ++i)
        start[i + 1] += start[i];
    neighbours.resize(2 * edges.size());
    std::vector<std::int32_t> at(start.begin(), start.end() - 1);
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const auto number = static_cast<std::int32_t>(e);
        neighbours[at[edges[e].from]++] = {edges[e].to, number, 1.0};
        neighbours[at[edges[e].to]++] = {edges[e].from, number, -1.0};
    }
    for (std::size_t i = 0; i < count; ++i)
        std::sort(neighbours.begin() + start[i], neighbours.begin() + start[i + 1],
            [](const auto& a, const auto& b) { return a.point < b.point; });
}

void order(DualMesh& dual, const Mesh& mesh) {
    const std::size_t count = mesh.points.size();
    auto edges = edgesOf(mesh);
    rows(count, edges, dual.neighbourStart, dual.neighbours);
    std::vector<std::int32_t> graph;
    graph.reserve(dual.neighbours.size());
    for (const auto& neighbour : dual.neighbours)
        graph.push_back(neighbour.point);
    dual.meshPoint = reverseCuthillMcKee(dual.neighbourStart, graph);
    dual.ownPoint.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        dual.ownPoint[dual.meshPoint[i]] = static_cast<std::int32_t>(i);
    for (auto& edge : edges) {
        const auto a = dual.ownPoint[edge.from];
        const auto b = dual.ownPoint[edge.to];
        edge = {std::min(a, b), std::max(a, b)};
    }
    std::sort(edges.begin(), edges.end(), [](const auto& a, const auto& b) {
        return a.from != b.from ? a.from < b.from : a.to < b.to;
    });
    dual.edges = std::move(edges);
    rows(count, dual.edges, dual.neighbourStart, dual.neighbours);
    dual.points.resize(count);
    for (std::size_t i = 0; i < count; ++i)
        dual.points[i] = mesh.points[dual.meshPoint[i]];
}

Vec3 triangleNormal(const Vec3& a, const Vec3& b, const Vec3& c) {
    return 0.5 * glm::cross(b - a, c - a);
}

class Builder {
public:
    Builder(DualMesh& dual, const Mesh& mesh) : dual_(dual), mesh_(mesh) {
        dual_.normals.assign(dual_.edges.size(), Vec3{0.0});
        dual_.volumes.assign(dual_.size(), 0.0);
    }

    void addCells() {
        for (const auto& cell : mesh_.cells) {
            const CellShape& shape = CellShape::of(cell.type);
            std::array<Vec3, 8> at{};
            Vec3 centre{0.0};
            for (int i = 0; i < shape.points; ++i) {
                at[i] = mesh_.points[cell.points[i]];
                centre += at[i] / static_cast<double>(shape.points);
            }
            if (mesh_.dimensions == 2)
                addPlane(cell, shape, at, centre);
            else
                addSolid(cell, shape, at, centre);
        }
    }

    void addBoundaries() {
        std::vector<std::int32_t> place(dual_.size(), -1);
        for (const auto& marker : mesh_.markers) {
            DualMesh::Boundary boundary{marker.name, {}};
            for (const auto& facet : marker.facets) {
                const int count = cellPoints(static_cast<int>(facet.type));
                for (int i = 0; i < count; ++i) {
                    const auto point = dual_.ownPoint[facet.points[i]];
                    if (place[point] < 0) {
                        place[point] = static_cast<std::int32_t>(boundary.vertices.size());
                        boundary.vertices.push_back({point, Vec3{0.0}});
                    }
                    boundary.vertices[place[point]].normal += facetShare(facet, count, i);
                }
            }
            for (const auto& vertex : boundary.vertices)
                place[vertex.point] = -1;
            std::sort(boundary.vertices.begin(), boundary.vertices.end(),
                [](const auto& a, const auto& b) { return a.point < b.point; });
            dual_.boundaries.push_back(std::move(boundary));
        }
    }

private:
    /// The edge between two of the mesh's points, and whether it points from `a` to `b`.
    std::pair<std::int32_t, double> edgeBetween(std::int32_t a, std::int32_t b) const {
        const auto from = dual_.ownPoint[a];
        const auto to = dual_.ownPoint[b];
        const auto row = dual_.around(from);
        const auto found = std::lower_bound(row.begin(), row.end(), to,
            [](const auto& neighbour, std::int32_t point) { return neighbour.point < point; });
        return {found->edge, found->sign};
    }

    void addPlane(const Cell& cell, const CellShape& shape, const std::array<Vec3, 8>& at,
        const Vec3& centre) {
        for (const auto& edge : shape.edges) {
            const Vec3 middle = 0.5 * (at[edge[0]] + at[edge[1]]);
            // From the edge's middle to the centre: its normal, turned to the right, points along
            // the edge, since the cell's points go round to the left.
            const Vec3 d = centre - middle;
            const auto [number, sign] = edgeBetween(cell.points[edge[0]], cell.points[edge[1]]);
            dual_.normals[number] += sign * Vec3(d.y, -d.x, 0.0);
            for (const int end : edge) {
                const Vec3 toMiddle = middle - at[end];
                const Vec3 toCentre = centre - at[end];
                dual_.volumes[dual_.ownPoint[cell.points[end]]] +=
                    0.5 * (toMiddle.x * toCentre.y - toMiddle.y * toCentre.x) *
                    (end == edge[0] ? 1.0 : -1.0);
            }
        }
    }

    void addSolid(const Cell& cell, const CellShape& shape, const std::array<Vec3, 8>& at,
        const Vec3& centre) {
        for (const auto& face : shape.faces) {
            Vec3 faceCentre{0.0};
            for (int i = 0; i < face.count; ++i)
                faceCentre += at[face.points[i]] / static_cast<double>(face.count);
            for (int i = 0; i < face.count; ++i) {
                const int a = face.points[i];
                const int b = face.points[(i + 1) % face.count];
                const Vec3 middle = 0.5 * (at[a] + at[b]);
                // Seen from outside the face goes round from a to b, so that this triangle's normal
                // points from a to b.
                const Vec3 normal = triangleNormal(middle, centre, faceCentre);
                const auto [number, sign] = edgeBetween(cell.points[a], cell.points[b]);
                dual_.normals[number] += sign * normal;
                dual_.volumes[dual_.ownPoint[cell.points[a]]] +=
                    glm::dot(normal, middle - at[a]) / 3;
                dual_.volumes[dual_.ownPoint[cell.points[b]]] +=
                    glm::dot(normal, at[b] - middle) / 3;
            }
        }
    }

    /// The part of a facet's area vector that belongs to its point `i`.
    Vec3 facetShare(const Cell& facet, int count, int i) const {
        const Vec3& here = mesh_.points[facet.points[i]];
        if (count == 2) {
            const Vec3 d = mesh_.points[facet.points[1]] - mesh_.points[facet.points[0]];
            return 0.5 * Vec3(d.y, -d.x, 0.0);
        }
        Vec3 centre{0.0};
        for (int k = 0; k < count; ++k)
            centre += mesh_.points[facet.points[k]] / static_cast<double>(count);
        const Vec3 next = 0.5 * (here + mesh_.points[facet.points[(i + 1) % count]]);
        const Vec3 previous = 0.5 * (here + mesh_.points[facet.points[(i + count - 1) % count]]);
        return triangleNormal(here, next, centre) + triangleNormal(here, centre, previous);
    }

    DualMesh& dual_;
    const Mesh& mesh_;
};

void check(const DualMesh& dual) {
    std::vector<Vec3> sums(dual.size(), Vec3{0.0});
    std::vector<double> areas(dual.size(), 0.0);
    for (std::size_t e = 0; e < dual.edges.size(); ++e) {
        sums[dual.edges[e].from] += dual.normals[e];
        sums[dual.edges[e].to] -= dual.normals[e];
        areas[dual.edges[e].from] += glm::length(dual.normals[e]);
        areas[dual.edges[e].to] += glm::length(dual.normals[e]);
    }
    for (const auto& boundary : dual.boundaries) {
        for (const auto& vertex : boundary.vertices) {
            sums[vertex.point] += vertex.normal;
            areas[vertex.point] += glm::length(vertex.normal);
        }
    }
    for (std::size_t i = 0; i < dual.size(); ++i) {
        const Vec3& p = dual.points[i];
        if (!(dual.volumes[i] > 0))
            throw Failure(
                fmt::format("The control volume at point {} ({:.6g}, {:.6g}, {:.6g}) is not "
                            "positive: the mesh has crushed or inverted cells there.",
                    dual.meshPoint[i], p.x, p.y, p.z));
        if (!(glm::length(sums[i]) <= 1e-6 * areas[i]))
            throw Failure(
                fmt::format("The control volume at point {} ({:.6g}, {:.6g}, {:.6g}) is not "
                            "closed: no marker covers the boundary there.",
                    dual.meshPoint[i], p.x, p.y, p.z));
    }
}

} // namespace

DualMesh DualMesh::build(const Mesh& mesh) {
    DualMesh dual;
    dual.dimensions = mesh.dimensions;
    order(dual, mesh);
    Builder builder(dual, mesh);
    builder.addCells();
    builder.addBoundaries();
    check(dual);
    return dual;
}

} // namespace ostrella::preview
