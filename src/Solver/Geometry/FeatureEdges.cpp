#include "Solver/Geometry/FeatureEdges.h"

#include "Models/LargeBuffer.h"
#include "Solver/Geometry/EdgeBuckets.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace ostrella {

const FeatureEdges FeatureEdges::empty;

namespace {

/// One use of an undirected edge by a face: the larger vertex, and the edge's place in the indices.
struct Use {
    std::uint32_t larger;
    std::uint32_t edge;
};

bool comesBefore(const Use& a, const Use& b) {
    return a.larger != b.larger ? a.larger < b.larger : a.edge < b.edge;
}

/// Puts the uses of each edge together, in the order of the faces.
void group(std::span<Use> uses) {
    constexpr std::size_t few = 24;
    if (uses.size() > few) {
        std::sort(uses.begin(), uses.end(), comesBefore);
        return;
    }
    // The uses of one edge are in the order of the faces already, and insertion keeps it.
    for (std::size_t i = 1; i < uses.size(); ++i) {
        const Use use = uses[i];
        std::size_t at = i;
        for (; at > 0 && uses[at - 1].larger > use.larger; --at)
            uses[at] = uses[at - 1];
        uses[at] = use;
    }
}

/// The unit normals of all triangles; NaN, which no comparison holds for, where there is none.
LargeBuffer<Vec3> faceNormals(const WeldedMesh& mesh) {
    LargeBuffer<Vec3> normals(mesh.indices.size() / 3);
    for (std::size_t i = 0; i < normals.size(); ++i) {
        const Vec3& p0 = mesh.positions[mesh.indices[3 * i]];
        const Vec3& p1 = mesh.positions[mesh.indices[3 * i + 1]];
        const Vec3& p2 = mesh.positions[mesh.indices[3 * i + 2]];
        const Vec3 c = cross(p1 - p0, p2 - p0);
        const float squared = squaredLength(c);
        normals[i] = squared > 0.0F && squared <= std::numeric_limits<float>::max()
                         ? c / std::sqrt(squared)
                         : Vec3(std::numeric_limits<float>::quiet_NaN());
    }
    return normals;
}

class Extraction {
public:
    Extraction(const WeldedMesh& mesh, float threshold)
        : mesh_(mesh),
          threshold_(threshold),
          edges_(mesh.indices.span(), mesh.positions.size(),
              [](std::uint32_t larger, std::uint32_t edge) {
                  return Use{larger, edge};
              }),
          normals_(faceNormals(mesh)),
          kept_(mesh.indices.size() / wordBits + 1) {}

    FeatureEdges run() {
        for (std::size_t vertex = 0; vertex < edges_.bucketCount(); ++vertex) {
            const auto uses = edges_.bucket(vertex);
            group(uses);
            for (std::size_t first = 0; first < uses.size();) {
                std::size_t end = first + 1;
                while (end < uses.size() && uses[end].larger == uses[first].larger)
                    ++end;
                classify(uses.subspan(first, end - first));
                first = end;
            }
        }
        result_.positions = keptLines();
        return std::move(result_);
    }

private:
    static constexpr std::size_t wordBits = 64;

    /// Counts the edge of these uses, and marks the first of them if it is to be drawn.
    void classify(std::span<const Use> uses) {
        if (uses.size() == 2) {
            if (!isSharp(uses[0].edge, uses[1].edge))
                return;
            ++result_.creaseCount;
        } else if (uses.size() == 1) {
            ++result_.boundaryCount;
        } else {
            ++result_.nonManifoldCount;
        }
        kept_[uses[0].edge / wordBits] |= std::uint64_t{1} << uses[0].edge % wordBits;
    }

    bool isSharp(std::uint32_t first, std::uint32_t second) const {
        // Neighbours wound alike pass their edge in opposite directions, so from different ends.
        const bool against = mesh_.indices[first] == mesh_.indices[second];
        const Vec3& normal = normals_[second / 3];
        return dot(against ? -normal : normal, normals_[first / 3]) < threshold_;
    }

    /// The marked edges in the order of the triangles, each from its smaller vertex to its larger.
    std::vector<Vec3> keptLines() const {
        std::vector<Vec3> lines;
        lines.reserve(2 * (result_.creaseCount + result_.boundaryCount + result_.nonManifoldCount));
        for (std::size_t word = 0; word < kept_.size(); ++word) {
            for (std::uint64_t bits = kept_[word]; bits != 0; bits &= bits - 1) {
                const std::size_t edge =
                    word * wordBits + static_cast<std::size_t>(std::countr_zero(bits));
                const std::uint32_t from = mesh_.indices[edge];
                const std::uint32_t to = mesh_.indices[edge % 3 == 2 ? edge - 2 : edge + 1];
                lines.push_back(mesh_.positions[std::min(from, to)]);
                lines.push_back(mesh_.positions[std::max(from, to)]);
            }
        }
        return lines;
    }

    const WeldedMesh& mesh_;
    float threshold_;
    EdgeBuckets<Use> edges_;
    LargeBuffer<Vec3> normals_;
    std::vector<std::uint64_t> kept_;
    FeatureEdges result_;
};

} // namespace

FeatureEdges FeatureEdges::extract(const WeldedMesh& mesh, float creaseAngleDegrees) {
    if (mesh.indices.size() < 3)
        return empty;
    // The product before the quotient, and this value of pi: together they make exact thresholds,
    // such as that of 90 degrees, come out the same everywhere.
    return Extraction(mesh, std::cos(creaseAngleDegrees * 3.1415925F / 180.0F)).run();
}

} // namespace ostrella
