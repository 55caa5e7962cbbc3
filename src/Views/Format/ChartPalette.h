#pragma once

#include "Brand/Brand.h"

#include <array>
#include <cstddef>

namespace ostrella::ChartPalette {

/// Colours of the series, in the order of their labels.
inline constexpr std::array residuals{Brand::accentPrimary, Brand::statusInfo, Brand::statusSuccess,
    Brand::textSecondary, Brand::textTertiary};
inline constexpr std::array coefficients{Brand::accentPrimary, Brand::statusInfo,
    Brand::textSecondary, Brand::statusSuccess, Brand::textTertiary};

/// The colour of a series; with more series than colours they repeat.
template <std::size_t count>
constexpr const Brand::Color& color(
    const std::array<Brand::Color, count>& palette, std::size_t series) {
    return palette[series % count];
}

} // namespace ostrella::ChartPalette
