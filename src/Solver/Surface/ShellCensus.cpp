#include "Solver/Surface/ShellCensus.h"

#include "Solver/Surface/ExactSign.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <vector>

namespace ostrella {

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr std::uint32_t none = 0xFFFFFFFFU;

struct Shell {
    std::uint32_t first = none;  ///< facet
    std::uint32_t within = none; ///< a facet with an area
    std::uint8_t marks = 0;      ///< of all its facets
    double volume = 0;
    Vec3 low{infinity};
    Vec3 high{-infinity};

    /// Encloses a volume: a ray from within leaves it an odd number of times.
    bool isClosed() const { return within != none && (marks & JudgedFacets::oddEdge) == 0; }
    bool isTurnedOneWay() const { return (marks & JudgedFacets::disagreeing) == 0; }
};

std::vector<Shell> shellsOf(
    const JudgedFacets& facets, const EdgeCensus& edges, const CancellationToken& token) {
    std::vector<Shell> shells(edges.shells);
    for (std::uint32_t facet = 0; facet < facets.count(); ++facet) {
        if (facet % (1 << 16) == 0)
            token.throwIfCancelled();
        if (edges.shellOf[facet] == EdgeCensus::noShell)
            continue;
        Shell& shell = shells[edges.shellOf[facet]];
        if (shell.first == none)
            shell.first = facet;
        if (shell.within == none && !facets.is(facet, JudgedFacets::collapsed))
            shell.within = facet;
        shell.marks |= facets.marks[facet];
        const auto [a, b, c] = facets.points(facet);
        const DVec3& m = facets.middle;
        shell.volume += glm::dot(a - m, glm::cross(b - m, c - m)) / 6.0;
        for (const std::uint32_t vertex : facets.cornersOf(facet)) {
            shell.low = glm::min(shell.low, facets.vertices[vertex]);
            shell.high = glm::max(shell.high, facets.vertices[vertex]);
        }
    }
    return shells;
}

bool encloses(const Shell& outer, const Shell& inner) {
    for (int axis = 0; axis < 3; ++axis) {
        if (outer.low[axis] > inner.low[axis] || outer.high[axis] < inner.high[axis])
            return false;
    }
    return true;
}

/// How a ray from a point along x passes a triangle.
enum class Passing { beside, through, unclear };

/// Without rounding. Unclear is a ray through an edge or a corner, or from the triangle itself:
/// such a point says nothing, and another one is tried.
Passing passing(const DVec3& from, const std::array<DVec3, 3>& t) {
    const int whole = ExactSign::area(t[0], t[1], t[2], 0);
    const int a = ExactSign::area(t[0], t[1], from, 0);
    const int b = ExactSign::area(t[1], t[2], from, 0);
    const int c = ExactSign::area(t[2], t[0], from, 0);
    if ((a > 0 || b > 0 || c > 0) && (a < 0 || b < 0 || c < 0))
        return Passing::beside;
    const int side = ExactSign::volume(t[0], t[1], t[2], from);
    if (whole == 0 || a == 0 || b == 0 || c == 0) {
        const double behind = std::max({t[0].x, t[1].x, t[2].x});
        return behind < from.x ? Passing::beside : Passing::unclear;
    }
    if (side == 0)
        return Passing::unclear;
    return side * whole < 0 ? Passing::through : Passing::beside;
}

class Containment {
public:
    Containment(const JudgedFacets& facets, const FacetTree& tree, const EdgeCensus& edges,
        const std::vector<Shell>& shells, const SelfIntersections& intersections)
        : facets_(facets),
          tree_(tree),
          edges_(edges),
          shells_(shells),
          intersections_(intersections) {
        std::vector<FloatBox> boxes;
        for (std::uint32_t i = 0; i < shells.size(); ++i) {
            if (shells[i].isClosed()) {
                closed_.push_back(i);
                boxes.push_back(tree.frame.outward(DVec3(shells[i].low), DVec3(shells[i].high)));
            }
        }
        boxes_ = BoxTree(boxes);
    }

    /// Whether a closed shell that does not cut it has shell `i` within; nothing if the bound was
    /// hit.
    std::optional<bool> isInner(std::uint32_t i) {
        const Shell& shell = shells_[i];
        if (shell.within == none)
            return false;
        around_.clear();
        boxes_.forEachMeeting(
            tree_.frame.outward(DVec3(shell.low), DVec3(shell.low)), [&](std::uint32_t place) {
                ++inFront_;
                const std::uint32_t other = closed_[boxes_.order()[place]];
                if (other != i && encloses(shells_[other], shell) && !cut(i, other))
                    around_.push_back({other, 0});
            });
        if (around_.empty())
            return false;
        std::sort(around_.begin(), around_.end());
        // Points of the first facet whose weights are not those of anything in a model.
        constexpr std::array<std::array<double, 2>, 4> weights{
            {{0.3719, 0.2843}, {0.1931, 0.5417}, {0.6173, 0.1297}, {0.2711, 0.3163}}};
        const auto [a, b, c] = facets_.points(shell.within);
        for (const auto& [u, v] : weights) {
            if (inFront_ > ShellCensus::mostFacetsInFront)
                return std::nullopt;
            if (const auto found = isWithin(a + (b - a) * u + (c - a) * v))
                return found;
        }
        return false;
    }

private:
    struct Around {
        std::uint32_t shell;
        std::uint32_t passes;
        auto operator<=>(const Around&) const = default;
    };

    bool cut(std::uint32_t a, std::uint32_t b) const {
        const std::uint64_t pair = std::uint64_t{std::min(a, b)} << 32 | std::max(a, b);
        const auto at = std::lower_bound(intersections_.shells.begin(), intersections_.shells.end(),
            pair, [](const auto& known, std::uint64_t value) { return known.shells < value; });
        return at != intersections_.shells.end() && at->shells == pair;
    }

    /// Nothing where a ray is unclear.
    std::optional<bool> isWithin(const DVec3& point) {
        for (Around& around : around_)
            around.passes = 0;
        FloatBox ray = tree_.frame.outward(point, point);
        ray.high.x = infinity;
        bool isClear = true;
        tree_.tree.forEachMeeting(ray, [&](std::uint32_t place) {
            ++inFront_;
            const std::uint32_t facet = tree_.facetAt(place);
            const std::uint32_t shell = edges_.shellOf[facet];
            const auto at = std::lower_bound(around_.begin(), around_.end(), Around{shell, 0});
            if (at == around_.end() || at->shell != shell)
                return;
            const Passing how = passing(point, facets_.points(facet));
            isClear = isClear && how != Passing::unclear;
            at->passes += how == Passing::through ? 1 : 0;
        });
        if (!isClear)
            return std::nullopt;
        return std::any_of(around_.begin(), around_.end(),
            [](const Around& around) { return around.passes % 2 == 1; });
    }

    const JudgedFacets& facets_;
    const FacetTree& tree_;
    const EdgeCensus& edges_;
    const std::vector<Shell>& shells_;
    const SelfIntersections& intersections_;
    std::vector<std::uint32_t> closed_;
    BoxTree boxes_; ///< of the closed shells
    std::vector<Around> around_;
    std::int64_t inFront_ = 0;
};

} // namespace

ShellCensus ShellCensus::of(const JudgedFacets& facets, const FacetTree& tree,
    const EdgeCensus& edges, const SelfIntersections& intersections,
    const CancellationToken& token) {
    ShellCensus census;
    for (const auto& pair : intersections.shells)
        census.cutting.add(pair.facets);
    const std::vector<Shell> shells = shellsOf(facets, edges, token);
    Containment containment(facets, tree, edges, shells, intersections);
    for (std::uint32_t i = 0; i < shells.size(); ++i) {
        if (i % 64 == 0)
            token.throwIfCancelled();
        const std::optional<bool> isInner =
            shells.size() > 1 && !census.isCutShort ? containment.isInner(i) : false;
        census.isCutShort = census.isCutShort || !isInner;
        const Shell& shell = shells[i];
        if (isInner == true)
            census.inner.add(shell.first);
        else if (shell.isClosed() && shell.isTurnedOneWay() && shell.volume < 0)
            census.insideOut.add(shell.first);
    }
    return census;
}

} // namespace ostrella
