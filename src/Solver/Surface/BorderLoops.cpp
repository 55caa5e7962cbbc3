#include "Solver/Surface/BorderLoops.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <limits>
#include <tuple>

namespace ostrella {

namespace {

constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();
/// From so many ends at one vertex on they are paired as they come.
constexpr std::size_t mostEndsCompared = 32;

/// The ends of piece i are numbered 2 i, where it starts, and 2 i + 1.
class BorderTracer {
public:
    BorderTracer(const IndexedSurface& surface, std::span<const BorderPiece> pieces)
        : surface_(surface),
          pieces_(pieces),
          partners_(2 * pieces.size(), none),
          isUsed_(pieces.size(), false) {}

    BorderLoops trace(const CancellationToken& token) {
        pairEnds();
        token.throwIfCancelled();
        // Lines that end first: what is left then are closed ones.
        for (std::uint32_t end = 0; end < partners_.size(); ++end) {
            if (partners_[end] == none)
                follow(end);
        }
        token.throwIfCancelled();
        for (std::uint32_t end = 0; end < partners_.size(); end += 2)
            follow(end);
        return std::move(loops_);
    }

private:
    struct Step {
        std::uint32_t vertex;
        std::uint32_t triangle;
    };

    std::uint32_t vertexAt(std::uint32_t end) const {
        const BorderPiece& piece = pieces_[end / 2];
        return end % 2 == 0 ? piece.from : piece.to;
    }
    std::uint32_t fanAt(std::uint32_t end) const {
        const BorderPiece& piece = pieces_[end / 2];
        return end % 2 == 0 ? piece.fromFan : piece.toFan;
    }
    /// The direction of the piece from this end on.
    DVec3 directionAt(std::uint32_t end) const {
        const DVec3 along = surface_.vertices[vertexAt(end ^ 1)] - surface_.vertices[vertexAt(end)];
        const double length = glm::length(along);
        return length > 0 ? along / length : DVec3(0);
    }

    void pairEnds() {
        std::vector<std::uint32_t> ends(partners_.size());
        for (std::uint32_t end = 0; end < ends.size(); ++end)
            ends[end] = end;
        std::sort(ends.begin(), ends.end(), [this](std::uint32_t a, std::uint32_t b) {
            return std::tuple(vertexAt(a), fanAt(a), a) < std::tuple(vertexAt(b), fanAt(b), b);
        });
        for (auto first = ends.begin(); first != ends.end();) {
            auto last = first + 1;
            while (last != ends.end() && vertexAt(*last) == vertexAt(*first))
                ++last;
            const std::span<const std::uint32_t> here(first, last);
            if (here.size() > 2 && here.size() <= mostEndsCompared) {
                pairAcrossGaps(here);
            } else {
                for (std::size_t i = 0; i + 1 < here.size(); i += 2)
                    pair(here[i], here[i + 1]);
            }
            first = last;
        }
    }

    void pair(std::uint32_t a, std::uint32_t b) {
        partners_[a] = b;
        partners_[b] = a;
    }

    /// Two ends of one fan have triangles between them and not a gap.
    void pairAcrossGaps(std::span<const std::uint32_t> ends) {
        struct Gap {
            bool isFan;
            double opening; ///< the cosine's opposite: it grows with the angle
            std::uint32_t a;
            std::uint32_t b;
        };
        std::vector<Gap> gaps;
        for (std::size_t i = 0; i < ends.size(); ++i) {
            for (std::size_t j = i + 1; j < ends.size(); ++j)
                gaps.push_back({fanAt(ends[i]) == fanAt(ends[j]),
                    -glm::dot(directionAt(ends[i]), directionAt(ends[j])), ends[i], ends[j]});
        }
        std::sort(gaps.begin(), gaps.end(), [](const Gap& a, const Gap& b) {
            return std::tie(a.isFan, a.opening, a.a, a.b) < std::tie(b.isFan, b.opening, b.a, b.b);
        });
        for (const Gap& gap : gaps) {
            if (partners_[gap.a] == none && partners_[gap.b] == none)
                pair(gap.a, gap.b);
        }
    }

    /// Walks from the start of a line, or once around.
    void follow(std::uint32_t end) {
        if (isUsed_[end / 2])
            return;
        while (end != none && !isUsed_[end / 2]) {
            isUsed_[end / 2] = true;
            const std::uint32_t triangle = pieces_[end / 2].triangle;
            visit({vertexAt(end), triangle});
            const std::uint32_t far = end ^ 1;
            end = partners_[far];
            if (end == none)
                visit({vertexAt(far), triangle});
        }
        cutLoop(0);
    }

    /// Goes on to a vertex; the way since it was there before is a loop of its own.
    void visit(const Step& step) {
        if (placeOnWay_.empty())
            placeOnWay_.assign(surface_.vertices.size(), none);
        const std::uint32_t place = placeOnWay_[step.vertex];
        if (place != none)
            cutLoop(place);
        placeOnWay_[step.vertex] = static_cast<std::uint32_t>(way_.size());
        way_.push_back(step);
    }

    /// Takes the way from `place` on out.
    void cutLoop(std::size_t place) {
        const bool isLoop = way_.size() >= place + 2;
        for (std::size_t i = place; i < way_.size(); ++i) {
            placeOnWay_[way_[i].vertex] = none;
            if (isLoop)
                loops_.add(way_[i].vertex, way_[i].triangle);
        }
        if (isLoop)
            loops_.endLoop();
        way_.resize(place);
    }

    const IndexedSurface& surface_;
    std::span<const BorderPiece> pieces_;
    std::vector<std::uint32_t> partners_;
    std::vector<bool> isUsed_;
    std::vector<Step> way_;
    std::vector<std::uint32_t> placeOnWay_;
    BorderLoops loops_;
};

} // namespace

BorderLoops borderLoops(const IndexedSurface& surface, std::span<const BorderPiece> pieces,
    const CancellationToken& token) {
    return BorderTracer(surface, pieces).trace(token);
}

} // namespace ostrella
