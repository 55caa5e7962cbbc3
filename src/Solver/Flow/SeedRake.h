#pragma once

#include "Models/Vector.h"
#include "Solver/Flow/StreamlineFocus.h"

#include <cstdint>

namespace ostrella {

/// Where streamlines begin: points in one plane across the stream, ahead of the body and centred on
/// it. It is one and a half times as wide as the body, and at least half the body's largest extent.
class SeedRake {
public:
    /// A column of `count` seeds along y; for a volumetric focus a square of rows and columns whose
    /// number of seeds is the square next to `count`, at least 4. The count must not be negative.
    SeedRake(int count, const StreamlineFocus& focus);

    /// The number of seeds.
    std::int64_t size() const { return rows_ * columns_; }
    /// Seed `i`, along y first.
    Vec3 operator[](std::int64_t i) const;

private:
    Vec3 center_;
    float halfY_;
    float halfZ_;
    std::int64_t rows_ = 1;
    std::int64_t columns_;
    bool isVolumetric_;
};

} // namespace ostrella
