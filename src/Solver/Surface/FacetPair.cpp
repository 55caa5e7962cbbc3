#include "Solver/Surface/FacetPair.h"

#include "Solver/Surface/TriangleIntersection.h"

#include <glm/geometric.hpp>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

namespace ostrella {

namespace {

using Corners = std::array<DVec3, 3>;

constexpr double flatFold = 1e-4; // sine of the angle
/// Of a product of two differences, in parts of the factors' sizes: far more than its rounding.
constexpr double rounding = 1e-12;

/// The same in 32 bits, which decide most pairs: of facets that are far from each other but for
/// what they share.
constexpr float coarseRounding = 1e-5F;
constexpr float leastProduct = 1e-30F;

Corners cornersOf(const CorneredFacet& facet) {
    return {DVec3(facet.points[0]), DVec3(facet.points[1]), DVec3(facet.points[2])};
}

double squared(const DVec3& v) {
    return glm::dot(v, v);
}

std::size_t next(std::size_t i) {
    return i == 2 ? 0 : i + 1;
}

DVec3 normalOf(const Corners& t) {
    return glm::cross(t[1] - t[0], t[2] - t[0]);
}

/// By how much, in units of the axis' length, `t` lies beyond `from` along `axis`, at least.
double leastAlong(const DVec3& axis, const DVec3& from, const Corners& t) {
    return std::min(
        {glm::dot(axis, t[0] - from), glm::dot(axis, t[1] - from), glm::dot(axis, t[2] - from)});
}

double greatestAlong(const DVec3& axis, const DVec3& from, const Corners& t) {
    return std::max(
        {glm::dot(axis, t[0] - from), glm::dot(axis, t[1] - from), glm::dot(axis, t[2] - from)});
}

/// Whether all of `t` lies further than `tolerance` off the plane through `from`, on one side.
bool liesOff(const DVec3& normal, const DVec3& from, const Corners& t, double tolerance) {
    const double least = leastAlong(normal, from, t);
    const double greatest = greatestAlong(normal, from, t);
    const double off = least > 0 ? least : greatest < 0 ? -greatest : 0;
    return off > 0 && off * off > tolerance * tolerance * squared(normal);
}

/// Whether a side of `a` in its plane has all of `b` on its outer side, further than `tolerance`.
bool liesBeside(const Corners& a, const DVec3& normal, const Corners& b, double tolerance) {
    for (std::size_t i = 0; i < 3; ++i) {
        const DVec3 outward = glm::cross(a[next(i)] - a[i], normal);
        const double off = leastAlong(outward, a[i], b);
        if (off > 0 && off * off > tolerance * tolerance * squared(outward))
            return true;
    }
    return false;
}

bool liesInPlane(const DVec3& normal, const DVec3& from, const Corners& t, double tolerance) {
    const double most =
        std::max(std::abs(leastAlong(normal, from, t)), std::abs(greatestAlong(normal, from, t)));
    return most * most <= tolerance * tolerance * squared(normal);
}

/// Whether facets, one of which may be shifted off the plane of the other, overlap by more than
/// `tolerance` in every direction of it.
bool coverEachOther(const Corners& a, const DVec3& normal, const Corners& b, double tolerance) {
    for (std::size_t i = 0; i < 3; ++i) {
        for (const auto& [own, other] : {std::pair{&a, &b}, {&b, &a}}) {
            DVec3 outward = glm::cross((*own)[next(i)] - (*own)[i], normal);
            // Of `b` the corners may run the other way.
            if (glm::dot(outward, (*own)[next(next(i))] - (*own)[i]) > 0)
                outward = -outward;
            const double depth = -leastAlong(outward, (*own)[i], *other);
            if (!(depth > 0 && depth * depth > tolerance * tolerance * squared(outward)))
                return false;
        }
    }
    return true;
}

bool overlap(const Corners& a, const Corners& b, double tolerance) {
    const DVec3 normal = normalOf(a);
    return liesInPlane(normal, a[0], b, tolerance) &&
           liesInPlane(normalOf(b), b[0], a, tolerance) && coverEachOther(a, normal, b, tolerance);
}

FacetMeeting apartOrNot(const Corners& a, const Corners& b, double tolerance) {
    const DVec3 aNormal = normalOf(a);
    if (liesOff(aNormal, a[0], b, tolerance))
        return FacetMeeting::none;
    const DVec3 bNormal = normalOf(b);
    if (liesOff(bNormal, b[0], a, tolerance) || liesBeside(a, aNormal, b, tolerance) ||
        liesBeside(b, bNormal, a, tolerance)) {
        return FacetMeeting::none;
    }
    if (overlap(a, b, tolerance))
        return FacetMeeting::overlap;
    return trianglesMeet(a, b) ? FacetMeeting::cut : FacetMeeting::none;
}

/// Whether a plane through the common corner has the one facet strictly on the one side, and the
/// other one not on it: `axis` points from b to a.
bool parts(const DVec3& axis, const DVec3& a1, const DVec3& a2, const DVec3& b1, const DVec3& b2) {
    const double size = std::abs(axis.x) + std::abs(axis.y) + std::abs(axis.z);
    const auto bound = [&](const DVec3& v) {
        return rounding * size * (std::abs(v.x) + std::abs(v.y) + std::abs(v.z));
    };
    return glm::dot(axis, a1) > bound(a1) && glm::dot(axis, a2) > bound(a2) &&
           glm::dot(axis, b1) < -bound(b1) && glm::dot(axis, b2) < -bound(b2);
}

DVec3 unit(const DVec3& v) {
    // Only a direction to try: single precision does.
    const auto square = static_cast<float>(squared(v));
    return v * static_cast<double>(1.0F / std::sqrt(square));
}

/// Both facets with the common corner first.
FacetMeeting atCorner(const Corners& a, const Corners& b, double tolerance) {
    const DVec3 a1 = a[1] - a[0];
    const DVec3 a2 = a[2] - a[0];
    const DVec3 b1 = b[1] - b[0];
    const DVec3 b2 = b[2] - b[0];
    const DVec3 aWay = unit(a1) + unit(a2);
    const DVec3 bWay = unit(b1) + unit(b2);
    if (parts(aWay - bWay, a1, a2, b1, b2) || parts(aWay, a1, a2, b1, b2) ||
        parts(-bWay, a1, a2, b1, b2)) {
        return FacetMeeting::none;
    }
    // What is left is decided exactly: all that two facets have in common beside the corner reaches
    // the side opposite of it in one of them.
    if (overlap(a, b, tolerance))
        return FacetMeeting::overlap;
    return segmentMeetsTriangle(a[1], a[2], b) || segmentMeetsTriangle(b[1], b[2], a)
               ? FacetMeeting::cut
               : FacetMeeting::none;
}

/// Facets (from, to, a) and (from, to, b): they can only be folded onto each other.
FacetMeeting atEdge(
    const DVec3& from, const DVec3& to, const DVec3& a, const DVec3& b, double tolerance) {
    const DVec3 along = to - from;
    const DVec3 aNormal = glm::cross(along, a - from);
    const DVec3 bNormal = glm::cross(along, b - from);
    if (glm::dot(aNormal, bNormal) <= 0)
        return FacetMeeting::none;
    const double aSquare = squared(aNormal);
    const double bSquare = squared(bNormal);
    if (squared(glm::cross(aNormal, bNormal)) <= flatFold * flatFold * aSquare * bSquare)
        return FacetMeeting::overlap;
    const double bOff = glm::dot(aNormal, b - from);
    const double aOff = glm::dot(bNormal, a - from);
    const double square = tolerance * tolerance;
    return bOff * bOff <= square * aSquare && aOff * aOff <= square * bSquare
               ? FacetMeeting::overlap
               : FacetMeeting::none;
}

float sizeOf(const Vec3& v) {
    return std::abs(v.x) + std::abs(v.y) + std::abs(v.z);
}

/// Whether facets at a common corner surely lie on two sides of a plane through it.
bool arePartedAtCorner(
    const CorneredFacet& a, std::size_t i, const CorneredFacet& b, std::size_t j) {
    const Vec3 corner = a.points[i];
    const std::array<Vec3, 2> own{a.points[next(i)] - corner, a.points[next(next(i))] - corner};
    const std::array<Vec3, 2> other{b.points[next(j)] - corner, b.points[next(next(j))] - corner};
    const auto way = [](const std::array<Vec3, 2>& sides) {
        return sides[0] * (1.0F / std::sqrt(squaredLength(sides[0]))) +
               sides[1] * (1.0F / std::sqrt(squaredLength(sides[1])));
    };
    const Vec3 axis = way(own) - way(other);
    const float bound = coarseRounding * sizeOf(axis);
    const auto isAhead = [&](const Vec3& v) {
        return dot(axis, v) > bound * sizeOf(v) + leastProduct;
    };
    return isAhead(own[0]) && isAhead(own[1]) && isAhead(-other[0]) && isAhead(-other[1]);
}

/// Whether facets at a common edge surely enclose more than a right angle.
bool areSpreadAtEdge(const Vec3& from, const Vec3& to, const Vec3& a, const Vec3& b) {
    const Vec3 along = to - from;
    const Vec3 aSide = a - from;
    const Vec3 bSide = b - from;
    const float length = sizeOf(along);
    const float bound = coarseRounding * (length * sizeOf(aSide)) * (length * sizeOf(bSide));
    return dot(cross(along, aSide), cross(along, bSide)) < -bound - leastProduct;
}

/// The middle of what a segment and a triangle have in common.
std::optional<DVec3> commonMiddle(const DVec3& p, const DVec3& q, const Corners& t) {
    if (!segmentMeetsTriangle(p, q, t))
        return std::nullopt;
    const DVec3 normal = normalOf(t);
    const double pOff = glm::dot(normal, p - t[0]);
    const double qOff = glm::dot(normal, q - t[0]);
    if (pOff * qOff < 0)
        return p + (q - p) * (pOff / (pOff - qOff));
    if ((pOff != 0) != (qOff != 0))
        return pOff == 0 ? p : q;
    // In the triangle's plane: between where it comes in and where it leaves.
    double first = 0;
    double last = 1;
    for (std::size_t i = 0; i < 3; ++i) {
        const DVec3 inward = glm::cross(normal, t[next(i)] - t[i]);
        const double atP = glm::dot(inward, p - t[i]);
        const double atQ = glm::dot(inward, q - t[i]);
        if (atP < 0 && atQ > 0)
            first = std::max(first, atP / (atP - atQ));
        if (atP > 0 && atQ < 0)
            last = std::min(last, atP / (atP - atQ));
    }
    return p + (q - p) * std::clamp((first + last) / 2, 0.0, 1.0);
}

} // namespace

FacetMeeting meetingOf(const CorneredFacet& a, const CorneredFacet& b, double tolerance) {
    // Bit 3 i + j: corner i of a is corner j of b.
    unsigned shared = 0;
    for (unsigned i = 0; i < 3; ++i) {
        for (unsigned j = 0; j < 3; ++j)
            shared |= static_cast<unsigned>(a.vertices[i] == b.vertices[j]) << (3 * i + j);
    }
    if (shared == 0)
        return apartOrNot(cornersOf(a), cornersOf(b), tolerance);
    const auto first = static_cast<std::size_t>(std::countr_zero(shared));
    const std::size_t i = first / 3;
    const std::size_t j = first % 3;
    shared &= shared - 1;
    if (shared == 0) {
        if (arePartedAtCorner(a, i, b, j))
            return FacetMeeting::none;
        const Corners p = cornersOf(a);
        const Corners q = cornersOf(b);
        return atCorner(
            {p[i], p[next(i)], p[next(next(i))]}, {q[j], q[next(j)], q[next(next(j))]}, tolerance);
    }
    const auto second = static_cast<std::size_t>(std::countr_zero(shared));
    const Vec3& from = a.points[i];
    const Vec3& to = a.points[second / 3];
    const Vec3& own = a.points[3 - i - second / 3];
    const Vec3& other = b.points[3 - j - second % 3];
    if (areSpreadAtEdge(from, to, own, other))
        return FacetMeeting::none;
    return atEdge(DVec3(from), DVec3(to), DVec3(own), DVec3(other), tolerance);
}

DVec3 meetingPoint(const Corners& a, const Corners& b) {
    DVec3 sum(0);
    int count = 0;
    const auto add = [&](const Corners& of, const Corners& other) {
        for (std::size_t i = 0; i < 3; ++i) {
            if (const auto point = commonMiddle(of[i], of[next(i)], other)) {
                sum += *point;
                ++count;
            }
        }
    };
    add(a, b);
    add(b, a);
    return count > 0 ? sum / static_cast<double>(count)
                     : (a[0] + a[1] + a[2] + b[0] + b[1] + b[2]) / 6.0;
}

} // namespace ostrella
