#pragma once

#include "Solver/Surface/TriangleClearance.h"

#include <cstdint>
#include <vector>

namespace ostrella {

/// Triangles by the cells of a box that their boxes meet, for a surface that changes: which ones
/// may touch a given one. The cells are a dense array; triangles beyond the box count to its
/// outermost cells.
class TriangleCells {
public:
    TriangleCells(const DVec3& low, const DVec3& high, double cellEdge);

    void insert(std::uint32_t triangle, const Corners& corners);
    /// `corners` are those it was inserted with.
    void remove(std::uint32_t triangle, const Corners& corners);

    /// Calls `visit(triangle)` for each triangle whose box comes nearer to that of `corners` than
    /// `clearance`, once for each; ends when `visit` returns false, and then returns false.
    template <class Visit>
    bool visitNear(const Corners& corners, double clearance, Visit&& visit) {
        const Box box = boxOf(corners, clearance);
        ++stamp_;
        const Span span = spanOf(box);
        for (int z = span.low.z; z <= span.high.z; ++z) {
            for (int y = span.low.y; y <= span.high.y; ++y) {
                for (int x = span.low.x; x <= span.high.x; ++x) {
                    for (const Entry& entry : cells_[indexOf(x, y, z)]) {
                        if (!meets(entry.box, box) || seen_[entry.triangle] == stamp_) {
                            continue;
                        }
                        seen_[entry.triangle] = stamp_;
                        if (!visit(entry.triangle)) {
                            return false;
                        }
                    }
                }
            }
        }
        return true;
    }

private:
    /// In 32 bits, widened by the rounding.
    struct Box {
        glm::vec3 low;
        glm::vec3 high;
    };
    struct Entry {
        std::uint32_t triangle;
        Box box;
    };
    struct Span {
        glm::ivec3 low;
        glm::ivec3 high;
    };

    Box boxOf(const Corners& corners, double clearance) const;
    Span spanOf(const Box& box) const;
    std::size_t indexOf(int x, int y, int z) const {
        return (static_cast<std::size_t>(z) * static_cast<std::size_t>(count_.y) +
                   static_cast<std::size_t>(y)) *
                   static_cast<std::size_t>(count_.x) +
               static_cast<std::size_t>(x);
    }
    static bool meets(const Box& a, const Box& b) {
        return a.low.x <= b.high.x && b.low.x <= a.high.x && a.low.y <= b.high.y &&
               b.low.y <= a.high.y && a.low.z <= b.high.z && b.low.z <= a.high.z;
    }

    DVec3 low_;
    double scale_;
    float slack_;
    glm::ivec3 count_;
    std::vector<std::vector<Entry>> cells_;
    std::vector<std::uint32_t> seen_;
    std::uint32_t stamp_ = 0;
};

} // namespace ostrella
