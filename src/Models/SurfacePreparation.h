#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace ostrella {

/// What becomes of the model's surface before it is meshed.
enum class SurfaceChoice {
    automatic, ///< as it is where that works, else prepared
    asIs,      ///< never prepared
    prepared,  ///< prepared in any case
};

inline constexpr std::array allSurfaceChoices{
    SurfaceChoice::automatic, SurfaceChoice::asIs, SurfaceChoice::prepared};

/// "auto", "as-is", "prepared".
std::string_view rawValue(SurfaceChoice choice);
std::optional<SurfaceChoice> surfaceChoiceFromRawValue(std::string_view raw);

/// What the preparation of a surface did. Lengths in metres.
struct SurfacePreparation {
    std::int64_t facets = 0;
    /// Greatest distance of a point of the prepared surface from the model.
    double deviation = 0;
    /// Openings wider than a seam that were closed.
    std::int64_t openingsClosed = 0;
    /// Shells without thickness that were given one.
    std::int64_t sheetsThickened = 0;
    /// Shells of the model of which nothing is left, since others enclose them.
    std::int64_t shellsRemoved = 0;
    /// Bodies of the prepared surface: closed shells apart from each other.
    std::int64_t bodies = 0;
    /// Those among them that are no larger than two of its facets, which keep little of their
    /// shape.
    std::int64_t smallBodies = 0;
    /// Gaps narrower than this were closed.
    double gapWidth = 0;
    /// Thickness that sheets were given.
    double sheetThickness = 0;
    double shortestEdge = 0;
    double medianEdge = 0;
    double longestEdge = 0;

    bool operator==(const SurfacePreparation&) const = default;
};

} // namespace ostrella
