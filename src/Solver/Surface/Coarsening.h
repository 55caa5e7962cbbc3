#pragma once

#include "Models/Cancellation.h"
#include "Solver/Surface/EmbeddedMesh.h"
#include "Solver/Surface/Quadric.h"
#include "Solver/Surface/TriangleTree.h"

#include <cstdint>
#include <queue>
#include <vector>

namespace ostrella {

/// What the facets of a coarsened surface shall be like. Lengths in metres.
struct CoarseningGoal {
    /// Edges shorter than this are taken together where the shape allows.
    double leastEdge = 0;
    /// No edge becomes longer.
    double mostEdge = 0;
    /// Neither a sample of the shape nor the surface strays farther from the other than this.
    double tolerance = 0;
};

/// Makes a fine surface coarse, shortest edges first. Each vertex keeps the planes and the places
/// that it stands for, so that edges and corners of the shape stay where they are and nothing of it
/// gets lost.
class Coarsening {
public:
    /// `samples` are the places that the surface has to pass, one for each vertex of the mesh, and
    /// `lifts` how far from the model a vertex belongs (half the thickness of a sheet, or none).
    /// Vertices that lie elsewhere, since there was no room, may stay as far from their places as
    /// they are. Mesh and model must outlive it.
    Coarsening(EmbeddedMesh& mesh, const TriangleTree& model, std::vector<DVec3> samples,
        const std::vector<double>& lifts, const CoarseningGoal& goal);

    /// Takes edges together until none is left that may be. Throws CancellationError.
    void collapse(const CancellationToken& token);

    /// The same once more for edges shorter than `leastEdge`, with `extra` added to the tolerance:
    /// for details that would hold the mesher up and are too small for the flow to see.
    void collapseLoosely(double leastEdge, double extra, const CancellationToken& token);

    /// Moves vertices that have kept away from the model, for lack of room, onto it where there is
    /// room now.
    void settle(const CancellationToken& token);

    /// Moves vertices out where the shape bulges between them and in where it is hollow, by the
    /// mean height of their samples above the facets, so that the surface encloses as much as the
    /// shape.
    void balance(const CancellationToken& token);

    /// Wires as thin as `leastEdge` or so end as tubes of three sides, whose short edges no
    /// collapse can take away: gives those the cross-section of an even triangle, about that large.
    void roundWires(double leastEdge, const CancellationToken& token);

    /// Turns edges over where that makes the worse of two triangles better and keeps the shape.
    void flip(const CancellationToken& token);

    /// Moves vertices to the middle of their neighbours as far as the shape leaves them free, and
    /// onto the model.
    void relax(const CancellationToken& token);

private:
    struct Candidate {
        double length;
        std::uint32_t edge;
        std::uint32_t from;
        std::uint32_t to;
        std::uint32_t age; ///< of both ends together when it was found
        bool operator<(const Candidate& other) const {
            return length != other.length ? length > other.length : edge > other.edge;
        }
    };
    /// A triangle around a vertex as it would be.
    struct Side {
        DVec3 a;
        DVec3 b;
    };

    void offer(std::uint32_t edge);
    /// Takes the triangles around a vertex into `sides_`; gives the worst quality among them.
    double gatherSides(std::uint32_t vertex);
    /// Moves a vertex, whose sides are gathered, if the triangles around it stay as good.
    /// Mean height of a vertex' samples above the nearest of its sides, which are gathered.
    double meanHeight(std::uint32_t vertex) const;
    bool moveEvenly(std::uint32_t vertex, const DVec3& place, double qualityBefore);
    bool collapseAt(std::uint32_t edge);
    bool collapseTo(std::uint32_t edge, const DVec3& position, double qualityBefore);
    bool passesSamples(std::uint32_t first, const DVec3& apex) const;
    bool followsModel(const DVec3& apex, double most) const;
    /// How far the triangles around both ends of an edge are from the model now.
    double strayingAround(std::uint32_t edge) const;
    /// Of a vertex and its neighbours.
    double greatestLift(std::uint32_t vertex) const;
    /// The neighbour that both ends of an edge have besides the corners beside it, or none.
    std::uint32_t waistAt(std::uint32_t edge) const;
    bool isFlipWorthwhile(std::uint32_t edge) const;

    EmbeddedMesh& mesh_;
    const TriangleTree& model_;
    CoarseningGoal goal_;
    bool isLoose_ = false;
    std::vector<Quadric> quadrics_;
    std::vector<DVec3> samples_;
    std::vector<double> reaches_;    ///< of each sample: how far from it the surface may pass
    std::vector<double> lifts_;      ///< of each vertex: how far from the model it may be
    std::vector<double> sheetLifts_; ///< the part of it that sheets ask for
    std::vector<std::uint32_t> firstSample_; ///< of each vertex, a list by nextSample_
    std::vector<std::uint32_t> lastSample_;
    std::vector<std::uint32_t> nextSample_;
    std::vector<std::uint32_t> age_;
    std::priority_queue<Candidate> candidates_;
    std::vector<Side> sides_;
};

} // namespace ostrella
