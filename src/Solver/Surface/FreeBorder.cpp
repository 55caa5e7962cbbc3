#include "Solver/Surface/FreeBorder.h"

#include "Solver/Geometry/EdgeBuckets.h"
#include "Solver/Surface/BoxTree.h"
#include "Solver/Surface/DisjointSets.h"
#include "Solver/Surface/PointClusters.h"

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include <algorithm>
#include <limits>
#include <tuple>

namespace ostrella {

namespace {

/// Bounds of the search for vertices on edges, so that a border of which all lies on all ends it.
constexpr std::size_t looksPerEdge = 32;
constexpr std::size_t splitsPerEdge = 4;
constexpr std::size_t leastLooks = 1'000'000;

constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

/// Corners are numbered from 3 × their triangle; an edge bears the number of the corner it starts
/// at.
std::uint32_t nextCorner(std::uint32_t corner) {
    return corner % 3 == 2 ? corner - 2 : corner + 1;
}

/// A use of an edge, which the bucket's vertex is the smaller end of.
struct EdgeUse {
    std::uint32_t larger;
    std::uint32_t corner;
};

struct BorderEdge {
    std::uint32_t from;
    std::uint32_t to;
    std::uint32_t corner;
};

/// A vertex on an edge, at this part of its length.
struct Split {
    std::uint32_t edge;
    double part;
    std::uint32_t vertex;
};

class BorderFinder {
public:
    BorderFinder(const IndexedSurface& surface, double seam)
        : surface_(surface),
          seam_(seam),
          shells_(surface.triangles.size()),
          fans_(3 * surface.triangles.size()) {}

    FreeBorder find(const CancellationToken& token) {
        collectEdges();
        token.throwIfCancelled();
        if (seam_ > 0 && !edges_.empty()) {
            joinEnds();
            findSplits(token);
        }
        token.throwIfCancelled();
        divideEdges();
        dropSeams();
        return finish();
    }

private:
    std::uint32_t vertexAt(std::uint32_t corner) const {
        return surface_.triangles[corner / 3][corner % 3];
    }

    bool isDegenerate(std::uint32_t corner) const {
        const Triangle& t = surface_.triangles[corner / 3];
        return t[0] == t[1] || t[1] == t[2] || t[2] == t[0];
    }

    /// Unites what an edge of two triangles joins, and keeps those of one.
    void collectEdges() {
        if (surface_.triangles.empty())
            return;
        const std::span<const std::uint32_t> indices(
            surface_.triangles.front().data(), 3 * surface_.triangles.size());
        EdgeBuckets<EdgeUse> buckets(
            indices, surface_.vertices.size(), [](std::uint32_t larger, std::uint32_t corner) {
                return EdgeUse{larger, corner};
            });
        for (std::size_t vertex = 0; vertex < buckets.bucketCount(); ++vertex) {
            const std::span<EdgeUse> bucket = buckets.bucket(vertex);
            const auto end = std::remove_if(bucket.begin(), bucket.end(),
                [this](const EdgeUse& use) { return isDegenerate(use.corner); });
            std::sort(bucket.begin(), end, [](const EdgeUse& a, const EdgeUse& b) {
                return std::tie(a.larger, a.corner) < std::tie(b.larger, b.corner);
            });
            for (auto use = bucket.begin(); use != end;) {
                auto last = use + 1;
                while (last != end && last->larger == use->larger)
                    ++last;
                if (last - use == 1)
                    edges_.push_back(
                        {vertexAt(use->corner), vertexAt(nextCorner(use->corner)), use->corner});
                else if (last - use == 2)
                    joinTriangles(use[0].corner, use[1].corner);
                use = last;
            }
        }
        std::sort(edges_.begin(), edges_.end(),
            [](const BorderEdge& a, const BorderEdge& b) { return a.corner < b.corner; });
    }

    void joinTriangles(std::uint32_t edge, std::uint32_t other) {
        shells_.unite(edge / 3, other / 3);
        const bool isSameWay = vertexAt(edge) == vertexAt(other);
        fans_.unite(edge, isSameWay ? other : nextCorner(other));
        fans_.unite(nextCorner(edge), isSameWay ? nextCorner(other) : other);
    }

    /// Makes one vertex of those on the border that are within a seam of each other.
    void joinEnds() {
        std::vector<std::uint32_t> leaderOf(surface_.vertices.size(), none);
        for (const BorderEdge& edge : edges_)
            leaderOf[edge.from] = leaderOf[edge.to] = 0;
        std::vector<std::uint32_t> vertices;
        for (std::uint32_t vertex = 0; vertex < leaderOf.size(); ++vertex) {
            if (leaderOf[vertex] != none)
                vertices.push_back(vertex);
        }
        const std::vector<std::uint32_t> leaders =
            clusterPoints(surface_.vertices, vertices, seam_);
        for (std::size_t i = 0; i < vertices.size(); ++i)
            leaderOf[vertices[i]] = leaders[i];
        for (BorderEdge& edge : edges_) {
            edge.from = leaderOf[edge.from];
            edge.to = leaderOf[edge.to];
        }
    }

    /// Finds the vertices of the border that lie on edges of it between their ends.
    void findSplits(const CancellationToken& token) {
        const BoxTree tree = edgeTree(token);
        const std::size_t mostLooks = looksPerEdge * edges_.size() + leastLooks;
        const std::size_t mostSplits = splitsPerEdge * edges_.size() + leastLooks;
        std::size_t looks = 0;
        std::vector<bool> isDone(surface_.vertices.size(), false);
        std::size_t count = 0;
        for (const std::uint32_t number : tree.order()) {
            if (count++ % 1024 == 0)
                token.throwIfCancelled();
            for (const std::uint32_t vertex : {edges_[number].from, edges_[number].to}) {
                if (isDone[vertex])
                    continue;
                isDone[vertex] = true;
                const DVec3& point = surface_.vertices[vertex];
                tree.forEachMeeting(
                    frame_.outward(point - seam_, point + seam_), [&](std::uint32_t place) {
                        if (++looks <= mostLooks && splits_.size() <= mostSplits)
                            split(tree.order()[place], vertex);
                    });
                if (looks > mostLooks || splits_.size() > mostSplits) {
                    splits_.clear();
                    return;
                }
            }
        }
        std::sort(splits_.begin(), splits_.end(), [](const Split& a, const Split& b) {
            return std::tie(a.edge, a.part, a.vertex) < std::tie(b.edge, b.part, b.vertex);
        });
    }

    BoxTree edgeTree(const CancellationToken& token) {
        DVec3 low = surface_.vertices[edges_.front().from];
        DVec3 high = low;
        for (const BorderEdge& edge : edges_) {
            const DVec3& from = surface_.vertices[edge.from];
            const DVec3& to = surface_.vertices[edge.to];
            low = glm::min(low, glm::min(from, to));
            high = glm::max(high, glm::max(from, to));
        }
        frame_ = BoxFrame::around(low, high);
        std::vector<FloatBox> boxes;
        boxes.reserve(edges_.size());
        for (const BorderEdge& edge : edges_) {
            const DVec3& from = surface_.vertices[edge.from];
            const DVec3& to = surface_.vertices[edge.to];
            boxes.push_back(frame_.outward(glm::min(from, to), glm::max(from, to)));
        }
        return BoxTree(boxes, token);
    }

    void split(std::uint32_t number, std::uint32_t vertex) {
        const BorderEdge& edge = edges_[number];
        if (edge.from == vertex || edge.to == vertex)
            return;
        const DVec3& start = surface_.vertices[edge.from];
        const DVec3 along = surface_.vertices[edge.to] - start;
        const DVec3 there = surface_.vertices[vertex] - start;
        const double part = glm::dot(there, along) / glm::dot(along, along);
        if (part > 0 && part < 1 && glm::length(there - part * along) <= seam_)
            splits_.push_back({number, part, vertex});
    }

    void divideEdges() {
        auto split = splits_.begin();
        for (std::uint32_t i = 0; i < edges_.size(); ++i) {
            const BorderEdge& edge = edges_[i];
            BorderPiece piece;
            piece.triangle = edge.corner / 3;
            piece.from = edge.from;
            piece.fromFan = edge.corner;
            for (; split != splits_.end() && split->edge == i; ++split) {
                piece.to = split->vertex;
                piece.toFan = fans_.add();
                addPiece(piece);
                piece.from = piece.to;
                piece.fromFan = piece.toFan;
            }
            piece.to = edge.to;
            piece.toFan = nextCorner(edge.corner);
            addPiece(piece);
        }
    }

    void addPiece(const BorderPiece& piece) {
        if (piece.from != piece.to)
            pieces_.push_back(piece);
        else
            fans_.unite(piece.fromFan, piece.toFan);
    }

    /// Leaves only the pieces that run alone, and unites what two pieces together join.
    void dropSeams() {
        struct Run {
            std::uint32_t low;
            std::uint32_t high;
            std::uint32_t piece;
        };
        std::vector<Run> runs;
        runs.reserve(pieces_.size());
        for (std::uint32_t i = 0; i < pieces_.size(); ++i)
            runs.push_back({std::min(pieces_[i].from, pieces_[i].to),
                std::max(pieces_[i].from, pieces_[i].to), i});
        std::sort(runs.begin(), runs.end(), [](const Run& a, const Run& b) {
            return std::tie(a.low, a.high, a.piece) < std::tie(b.low, b.high, b.piece);
        });
        std::vector<bool> isAlone(pieces_.size(), false);
        for (auto run = runs.begin(); run != runs.end();) {
            auto last = run + 1;
            while (last != runs.end() && last->low == run->low && last->high == run->high)
                ++last;
            if (last - run == 1)
                isAlone[run->piece] = true;
            else if (last - run == 2)
                joinPieces(pieces_[run[0].piece], pieces_[run[1].piece]);
            run = last;
        }
        std::size_t kept = 0;
        for (std::size_t i = 0; i < pieces_.size(); ++i) {
            if (isAlone[i])
                pieces_[kept++] = pieces_[i];
        }
        pieces_.resize(kept);
    }

    void joinPieces(const BorderPiece& piece, const BorderPiece& other) {
        shells_.unite(piece.triangle, other.triangle);
        const bool isSameWay = piece.from == other.from;
        fans_.unite(piece.fromFan, isSameWay ? other.fromFan : other.toFan);
        fans_.unite(piece.toFan, isSameWay ? other.toFan : other.fromFan);
    }

    FreeBorder finish() {
        FreeBorder border;
        border.pieces = std::move(pieces_);
        for (BorderPiece& piece : border.pieces) {
            piece.fromFan = fans_.find(piece.fromFan);
            piece.toFan = fans_.find(piece.toFan);
        }
        std::vector<std::uint32_t> numbers(surface_.triangles.size(), none);
        border.shellOf.reserve(surface_.triangles.size());
        for (std::uint32_t i = 0; i < surface_.triangles.size(); ++i) {
            std::uint32_t& number = numbers[shells_.find(i)];
            if (number == none)
                number = border.shellCount++;
            border.shellOf.push_back(number);
        }
        return border;
    }

    const IndexedSurface& surface_;
    double seam_;
    DisjointSets shells_;
    DisjointSets fans_; ///< of corners, and of the places where edges are divided
    std::vector<BorderEdge> edges_;
    BoxFrame frame_;
    std::vector<Split> splits_;
    std::vector<BorderPiece> pieces_;
};

} // namespace

FreeBorder freeBorderOf(
    const IndexedSurface& surface, double seam, const CancellationToken& token) {
    return BorderFinder(surface, seam).find(token);
}

} // namespace ostrella
