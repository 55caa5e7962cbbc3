#include "Rendering/GridGeometry.h"

#include <glm/common.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace ostrella::GridGeometry {

namespace {

/// The greatest power of ten that is at most `x`, which is above 0.
float powerOfTenBelow(float x) {
    return std::pow(10.0F, std::floor(std::log10(x)));
}

/// The nearest whole number, halves away from zero. Bodies far out on a fine grid have indices past
/// 32 bits; what is past any use (or no number) stays within what an integer can hold.
std::int64_t nearestIndex(float x) {
    constexpr float most = 1e15F;
    return std::isnan(x) ? 0 : std::llround(std::clamp(x, -most, most));
}

bool isMajor(std::int64_t index, int every) {
    return every >= 1 && index % every == 0;
}

} // namespace

float niceSpacing(float x) {
    if (!std::isfinite(x) || !(x > 0.0F))
        return 1.0F;
    // The geometric means of 1, 2, 5 and 10.
    const float power = powerOfTenBelow(x);
    const float mantissa = x / power;
    if (mantissa < 1.4142F)
        return power;
    if (mantissa < 3.1623F)
        return 2.0F * power;
    if (mantissa < 7.0711F)
        return 5.0F * power;
    return 10.0F * power;
}

Plan planFor(const BoundingBox& bounds) {
    // How many times the body's width the grid spans, and about how many lines that are.
    constexpr float spanOfWidth = 7.0F;
    constexpr float linesOfSpan = 36.0F;
    constexpr float gapOfSize = 0.02F;
    constexpr float mostLines = 1000.0F;

    const Vec3 size = glm::max(bounds.max - bounds.min, Vec3(0.0F));
    float largest = std::max({size.x, size.y, size.z});
    if (!(largest > 0.0F))
        largest = 1.0F;
    float width = std::max(size.x, size.z);
    if (!(width > 0.0F))
        width = largest;

    Plan plan;
    const float span = spanOfWidth * width;
    plan.spacing = niceSpacing(span / linesOfSpan);
    const float lines = std::ceil(span / 2.0F / plan.spacing);
    // Only a body near the limits of the number format gets to the bound.
    plan.halfCount = lines > 1.0F ? static_cast<int>(std::min(lines, mostLines)) : 1;
    const Vec3 middle = (bounds.min + bounds.max) * 0.5F;
    plan.centre = {std::round(middle.x / plan.spacing) * plan.spacing,
        std::round(middle.z / plan.spacing) * plan.spacing};
    plan.y = bounds.min.y - gapOfSize * largest;
    // Ten of the spacing lie between major lines where it is a 5, otherwise five.
    const bool leadsWithFive = std::isfinite(plan.spacing) && plan.spacing > 0.0F &&
                               std::round(plan.spacing / powerOfTenBelow(plan.spacing)) == 5.0F;
    plan.majorEvery = leadsWithFive ? 2 : 5;
    return plan;
}

Layers makeLayers(const Plan& plan) {
    const std::int64_t middleX = nearestIndex(plan.centre.x / plan.spacing);
    const std::int64_t middleZ = nearestIndex(plan.centre.y / plan.spacing);
    const float extent = plan.spacing * static_cast<float>(plan.halfCount);
    Layers layers;
    const auto add = [&](std::int64_t index, const Vec3& from, const Vec3& to) {
        std::vector<Vec3>& layer = isMajor(index, plan.majorEvery) ? layers.major : layers.minor;
        layer.push_back(from);
        layer.push_back(to);
    };
    for (int i = -plan.halfCount; i <= plan.halfCount; ++i) {
        const float x = plan.spacing * static_cast<float>(middleX + i);
        add(middleX + i, {x, plan.y, plan.centre.y - extent}, {x, plan.y, plan.centre.y + extent});
        const float z = plan.spacing * static_cast<float>(middleZ + i);
        add(middleZ + i, {plan.centre.x - extent, plan.y, z}, {plan.centre.x + extent, plan.y, z});
    }
    return layers;
}

} // namespace ostrella::GridGeometry
