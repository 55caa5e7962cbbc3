#pragma once

#include "Solver/Surface/TriangleCells.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {

/// A closed manifold surface that is changed step by step and never comes to touch itself: every
/// operation looks at what it would do first, and does nothing where that would be a contact.
///
/// A half-edge is a number 3 · triangle + corner; it runs from that corner to the next one. Each
/// has a twin that runs the other way in the neighbouring triangle.
class EmbeddedMesh {
public:
    static constexpr std::uint32_t none = 0xFFFFFFFFU;

    /// Distance kept between parts that share no vertex, and cosine of the least angle between
    /// neighbouring triangles that may fold towards each other.
    struct Clearance {
        double distance = 0;
        double angleCosine = 1;
    };

    /// The surface must be closed, manifold and consistently oriented, or the process ends. It may
    /// touch itself; contacts() finds where. Cells of edge `cellEdge` hold the triangles.
    EmbeddedMesh(const IndexedSurface& surface, double cellEdge, const Clearance& clearance);

    std::size_t vertexCount() const { return positions_.size(); }
    std::size_t triangleCount() const { return corners_.size() / 3; }
    bool isVertex(std::uint32_t vertex) const { return outgoing_[vertex] != none; }
    bool isTriangle(std::uint32_t triangle) const { return corners_[3 * triangle] != none; }
    const DVec3& position(std::uint32_t vertex) const { return positions_[vertex]; }

    static std::uint32_t next(std::uint32_t edge) { return edge % 3 == 2 ? edge - 2 : edge + 1; }
    static std::uint32_t previous(std::uint32_t edge) {
        return edge % 3 == 0 ? edge + 2 : edge - 1;
    }
    std::uint32_t twin(std::uint32_t edge) const { return twins_[edge]; }
    std::uint32_t from(std::uint32_t edge) const { return corners_[edge]; }
    std::uint32_t to(std::uint32_t edge) const { return corners_[next(edge)]; }
    /// A half-edge that leaves the vertex.
    std::uint32_t outgoing(std::uint32_t vertex) const { return outgoing_[vertex]; }

    Triangle triangle(std::uint32_t number) const {
        return {corners_[3 * number], corners_[3 * number + 1], corners_[3 * number + 2]};
    }
    Corners cornersOf(std::uint32_t number) const;

    /// Calls `visit` with each half-edge that leaves the vertex, in a circle.
    template <class Visit>
    void visitRing(std::uint32_t vertex, Visit&& visit) const {
        const std::uint32_t first = outgoing_[vertex];
        std::uint32_t edge = first;
        do {
            visit(edge);
            edge = twins_[previous(edge)];
        } while (edge != first);
    }
    std::size_t valence(std::uint32_t vertex) const;

    /// Triangles in contact with another one, in rising order; of `among` only.
    std::vector<std::uint32_t> contacts(std::span<const std::uint32_t> among);

    /// Moves vertices whatever that does.
    void moveAnyway(std::span<const std::uint32_t> vertices, std::span<const DVec3> positions);

    /// Moves a vertex if nothing comes to touch.
    bool tryMove(std::uint32_t vertex, const DVec3& position);

    /// Whether taking both ends of the edge together leaves a manifold.
    bool mayCollapse(std::uint32_t edge) const;
    /// Takes the ends of an edge, for which mayCollapse holds, together to the vertex to(edge) at
    /// `position`, unless something would come to touch.
    bool tryCollapse(std::uint32_t edge, const DVec3& position);

    /// Turns the edge between two triangles over to their other corners, unless that edge exists or
    /// something would come to touch.
    bool tryFlip(std::uint32_t edge);

    /// Adds a vertex in the middle of an edge, which changes no shape; gives the vertex.
    std::uint32_t split(std::uint32_t edge);

    /// What is left, with vertices numbered anew.
    IndexedSurface surface() const;

private:
    /// A triangle as it would be.
    struct Proposal {
        std::uint32_t triangle;
        Triangle vertices;
        Corners corners;
    };

    bool touches(const Triangle& vertices, const Corners& corners, const Triangle& otherVertices,
        const Corners& otherCorners) const;
    /// Whether the proposed triangles, which close a circle around the vertex `apex`, all face one
    /// way and go around once, so that none can touch another; the quick answer for most.
    static bool isFlatFan(std::span<const Proposal> proposals, std::uint32_t apex);
    /// Whether the proposed triangles touch each other or any that is not among them; `vanishing`
    /// ones do not count. `apex` is the vertex that they go around, or none.
    bool isFree(std::span<const Proposal> proposals, std::uint32_t apex,
        std::span<const std::uint32_t> vanishing);
    void replace(std::span<const Proposal> proposals);
    void linkTwins(std::uint32_t a, std::uint32_t b);

    std::vector<DVec3> positions_;
    std::vector<std::uint32_t> corners_;
    std::vector<std::uint32_t> twins_;
    std::vector<std::uint32_t> outgoing_;
    TriangleCells cells_;
    Clearance clearance_;
    std::vector<Proposal> proposals_;
    std::vector<std::uint32_t> changing_; ///< stamp of the proposal that a triangle takes part in
    std::uint32_t stamp_ = 0;
};

} // namespace ostrella
