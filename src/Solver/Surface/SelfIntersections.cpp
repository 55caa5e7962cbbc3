#include "Solver/Surface/SelfIntersections.h"

#include "Solver/Surface/FacetPair.h"
#include "Solver/Surface/Halves.h"

#include <algorithm>
#include <array>
#include <bit>

namespace ostrella {

namespace {

constexpr std::size_t leastForThreads = 20'000;
constexpr std::size_t between = 1 << 16;

std::uint64_t pairOf(std::uint32_t a, std::uint32_t b) {
    return std::uint64_t{std::min(a, b)} << 32 | std::max(a, b);
}

/// Of each pair of shells the least pair of facets.
void keepLeast(std::vector<SelfIntersections::ShellPair>& shells) {
    std::sort(shells.begin(), shells.end());
    shells.erase(std::unique(shells.begin(), shells.end(),
                     [](const auto& a, const auto& b) { return a.shells == b.shells; }),
        shells.end());
}

/// The search of a range of the tree's leaves, each against itself and those behind it.
class Search {
public:
    Search(const BoxTree& tree, const LargeBuffer<CorneredFacet>& facets, const EdgeCensus& edges,
        double tolerance)
        : tree_(tree), facets_(facets), edges_(edges), tolerance_(tolerance) {}

    SelfIntersections run(
        std::size_t firstLeaf, std::size_t endLeaf, const CancellationToken& token) {
        for (std::size_t leaf = firstLeaf; leaf < endLeaf && !found_.isCutShort; ++leaf) {
            if (leaf % 256 == 0)
                token.throwIfCancelled();
            search(static_cast<std::uint32_t>(leaf), token);
        }
        keepLeast(found_.shells);
        return std::move(found_);
    }

private:
    static constexpr auto width = static_cast<std::uint32_t>(BoxTree::width);

    void search(std::uint32_t leaf, const CancellationToken& token) {
        const BoxTree::Node& own = tree_.at({leaf, 0});
        const auto count = std::min<std::size_t>(width, facets_.size() - leaf * BoxTree::width);
        std::array<FloatBox, BoxTree::width> boxes;
        FloatBox whole;
        for (std::size_t i = 0; i < count; ++i) {
            for (std::size_t axis = 0; axis < 3; ++axis) {
                boxes[i].low[static_cast<int>(axis)] = own.low[axis][i];
                boxes[i].high[static_cast<int>(axis)] = own.high[axis][i];
            }
            whole.low = i == 0 ? boxes[i].low : glm::min(whole.low, boxes[i].low);
            whole.high = i == 0 ? boxes[i].high : glm::max(whole.high, boxes[i].high);
        }
        tree_.forEachLeafMeeting(whole, leaf, [&](std::uint32_t other) {
            const BoxTree::Node& node = tree_.at({other, 0});
            for (std::uint32_t i = 0; i < count; ++i) {
                unsigned hits = node.meeting(boxes[i]);
                if (other == leaf)
                    hits &= ~0U << (i + 1);
                for (; hits != 0; hits &= hits - 1) {
                    ++candidates_;
                    look(facets_[leaf * BoxTree::width + i],
                        facets_[other * BoxTree::width +
                                static_cast<std::size_t>(std::countr_zero(hits))]);
                }
            }
            if (++leaves_ % 1024 == 0)
                token.throwIfCancelled();
            return !isExhausted();
        });
        found_.isCutShort = isExhausted();
    }

    bool isExhausted() const {
        return found_.cuts.count() + found_.overlaps.count() >= SelfIntersections::mostPairs ||
               candidates_ + leaves_ >= SelfIntersections::mostCandidates;
    }

    void look(const CorneredFacet& a, const CorneredFacet& b) {
        const FacetMeeting meeting = meetingOf(a, b, tolerance_);
        if (meeting == FacetMeeting::none)
            return;
        const std::uint64_t pair = pairOf(a.facet, b.facet);
        (meeting == FacetMeeting::cut ? found_.cuts : found_.overlaps).add(pair);
        const std::uint32_t aShell = edges_.shellOf[a.facet];
        const std::uint32_t bShell = edges_.shellOf[b.facet];
        if (aShell != bShell)
            found_.shells.push_back({pairOf(aShell, bShell), pair});
    }

    const BoxTree& tree_;
    const LargeBuffer<CorneredFacet>& facets_;
    const EdgeCensus& edges_;
    double tolerance_;
    SelfIntersections found_;
    std::int64_t candidates_ = 0;
    std::int64_t leaves_ = 0;
};

} // namespace

FacetTree FacetTree::of(const JudgedFacets& facets, const CancellationToken& token) {
    FacetTree result;
    const double half = 0.5 * static_cast<double>(facets.extent);
    result.frame = BoxFrame::around(facets.middle - half, facets.middle + half);
    result.facets = LargeBuffer<std::uint32_t>(facets.count());
    std::size_t count = 0;
    for (std::uint32_t facet = 0; facet < facets.count(); ++facet) {
        if ((facets.marks[facet] & (JudgedFacets::leftOut | JudgedFacets::collapsed)) == 0)
            result.facets[count++] = facet;
    }
    result.facets.truncate(count);
    LargeBuffer<FloatBox> boxes(count);
    inHalves(count, leastForThreads, [&](std::size_t first, std::size_t end, int) {
        for (std::size_t i = first; i < end; ++i) {
            if (i % between == 0)
                token.throwIfCancelled();
            const auto [a, b, c] = facets.points(result.facets[i]);
            boxes[i] = result.frame.outward(glm::min(glm::min(a, b), c) - facets.tolerance,
                glm::max(glm::max(a, b), c) + facets.tolerance);
        }
    });
    result.tree = BoxTree({boxes.data(), boxes.size()}, token);
    return result;
}

SelfIntersections SelfIntersections::of(const JudgedFacets& facets, const FacetTree& tree,
    const EdgeCensus& edges, const CancellationToken& token) {
    const auto order = tree.tree.order();
    LargeBuffer<CorneredFacet> cornered(order.size());
    inHalves(order.size(), leastForThreads, [&](std::size_t first, std::size_t end, int) {
        for (std::size_t place = first; place < end; ++place) {
            if (place % between == 0)
                token.throwIfCancelled();
            CorneredFacet& facet = cornered[place];
            facet.facet = tree.facetAt(static_cast<std::uint32_t>(place));
            facet.vertices = facets.cornersOf(facet.facet);
            for (std::size_t i = 0; i < 3; ++i)
                facet.points[i] = facets.vertices[facet.vertices[i]];
        }
    });
    std::array<SelfIntersections, 2> halves;
    const std::size_t leaves = (order.size() + BoxTree::width - 1) / BoxTree::width;
    inHalves(leaves, leastForThreads / BoxTree::width,
        [&](std::size_t first, std::size_t end, int half) {
            halves[static_cast<std::size_t>(half)] =
                Search(tree.tree, cornered, edges, facets.tolerance).run(first, end, token);
        });
    SelfIntersections found = std::move(halves[0]);
    found.cuts.add(halves[1].cuts);
    found.overlaps.add(halves[1].overlaps);
    found.isCutShort = found.isCutShort || halves[1].isCutShort;
    found.shells.insert(found.shells.end(), halves[1].shells.begin(), halves[1].shells.end());
    keepLeast(found.shells);
    return found;
}

Vec3 SelfIntersections::placeOf(const JudgedFacets& facets, std::uint64_t pair) {
    return Vec3(meetingPoint(facets.points(static_cast<std::size_t>(pair >> 32)),
        facets.points(static_cast<std::size_t>(pair & 0xFFFFFFFFU))));
}

} // namespace ostrella
