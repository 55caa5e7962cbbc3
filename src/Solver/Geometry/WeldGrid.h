#pragma once

#include "Models/BoundingBox.h"

#include <cstdint>
#include <optional>
#include <span>

namespace ostrella {

/// A position snapped to the weld grid: corners with equal keys are one vertex.
struct WeldKey {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t z = 0;

    friend bool operator==(const WeldKey&, const WeldKey&) = default;
};

/// The grid by which corners of a triangle soup become shared vertices. It snaps and does not
/// search: points closer than its step that lie on either side of a rounding boundary stay apart.
class WeldGrid {
public:
    /// The grid of step `epsilon`, by default a hundred-thousandth of the largest extent of `box`,
    /// and at least 1e-9.
    explicit WeldGrid(const BoundingBox& box, std::optional<float> epsilon = std::nullopt);

    /// Cells per unit of length.
    float scale() const { return scale_; }

    /// True if keys exist for both corners of `box`, and so for every finite point in it.
    bool covers(const BoundingBox& box) const;

    /// Writes the key of each of `points`: its components times the scale, rounded half away from
    /// zero. A scaled component that is NaN or beyond 32 bits signed ends the process.
    void keys(std::span<const Vec3> points, WeldKey* keys) const;

private:
    float scale_;
};

} // namespace ostrella
