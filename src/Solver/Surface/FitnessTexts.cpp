#include "Solver/Surface/FitnessTexts.h"

#include "Models/NumberFormatting.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace ostrella {

namespace {

struct Words {
    SurfaceDefect SurfaceFitness::*defect;
    std::string_view one;
    std::string_view more;
    bool isBounded; ///< its count is a least number where the search was cut short
};

constexpr Words openEdges{&SurfaceFitness::openEdges, "open edge", "open edges", false};
constexpr Words nonManifoldEdges{
    &SurfaceFitness::nonManifoldEdges, "non-manifold edge", "non-manifold edges", false};
constexpr Words duplicatedFacets{
    &SurfaceFitness::duplicatedFacets, "duplicated facet", "duplicated facets", false};
constexpr Words inconsistentEdges{&SurfaceFitness::inconsistentEdges,
    "edge between facets of opposite orientation", "edges between facets of opposite orientation",
    false};
constexpr Words degenerateFacets{
    &SurfaceFitness::degenerateFacets, "degenerate facet", "degenerate facets", false};
constexpr Words slivers{&SurfaceFitness::slivers, "sliver", "slivers", false};
constexpr Words selfIntersections{
    &SurfaceFitness::selfIntersections, "self-intersection", "self-intersections", true};
constexpr Words overlaps{
    &SurfaceFitness::overlaps, "pair of overlapping facets", "pairs of overlapping facets", true};
constexpr Words insideOutShells{
    &SurfaceFitness::insideOutShells, "shell inside out", "shells inside out", false};
constexpr Words innerShells{&SurfaceFitness::innerShells, "inner shell", "inner shells", true};
constexpr Words cuttingShells{&SurfaceFitness::cuttingShells, "pair of shells that cut each other",
    "pairs of shells that cut each other", true};

/// As the log tells them.
constexpr std::array inOrder{openEdges, nonManifoldEdges, duplicatedFacets, inconsistentEdges,
    degenerateFacets, slivers, selfIntersections, overlaps, insideOutShells, innerShells,
    cuttingShells};
/// The worst one first; slivers alone spoil nothing.
constexpr std::array byWeight{openEdges, nonManifoldEdges, cuttingShells, selfIntersections,
    overlaps, inconsistentEdges, insideOutShells, innerShells, duplicatedFacets, degenerateFacets};

std::string counted(std::int64_t count, std::string_view one, std::string_view more) {
    return fmt::format("{} {}", NumberFormatting::grouped(count, " "), count == 1 ? one : more);
}

std::string counted(const SurfaceFitness& fitness, const Words& words) {
    const std::string text = counted((fitness.*words.defect).count, words.one, words.more);
    return words.isBounded && fitness.isCutShort ? "at least " + text : text;
}

/// With as many digits as tell a hundredth of the body's extent.
std::string number(float value, float extent) {
    std::string text;
    if (extent >= 1e-6F) {
        const int digits = std::max(0, 2 - static_cast<int>(std::floor(std::log10(extent))));
        text = NumberFormatting::fixed(static_cast<double>(value), digits);
    } else {
        text = fmt::format("{:.3g}", value == 0 ? 0.0F : value);
    }
    return text.starts_with('-') ? "−" + text.substr(1) : text;
}

} // namespace

std::string placeText(const Vec3& place, float extent) {
    return fmt::format(
        "({}, {}, {})", number(place.x, extent), number(place.y, extent), number(place.z, extent));
}

std::string fitnessLine(const SurfaceFitness& fitness) {
    std::string line =
        fmt::format("Surface judged · {}", counted(fitness.facets, "facet", "facets"));
    if (fitness.facets > 0) {
        line += fmt::format(" · {}", counted(fitness.shells, "shell", "shells"));
        if (fitness.shells > 0 && fitness.openEdges.count == 0)
            line += " · closed";
    }
    for (const Words& words : inOrder) {
        const SurfaceDefect& defect = fitness.*words.defect;
        if (defect.count == 0)
            continue;
        line += fmt::format(" · {}", counted(fitness, words));
        if (!defect.places.empty())
            line += fmt::format(" at {}", placeText(defect.places.front(), fitness.extent));
    }
    if (fitness.isCutShort)
        line += " · too entangled to be searched whole";
    return line + (fitness.isFit() ? " · fit for meshing" : " · not fit for meshing as it is");
}

std::string worstDefectSentence(const SurfaceFitness& fitness) {
    if (fitness.facets == 0)
        return "The surface has no facets.";
    for (const Words& words : byWeight) {
        const SurfaceDefect& defect = fitness.*words.defect;
        if (defect.count == 0)
            continue;
        std::string sentence = fmt::format("The surface has {}", counted(fitness, words));
        if (!defect.places.empty()) {
            sentence += fmt::format("{} at {} m", defect.count == 1 ? "" : ", the first",
                placeText(defect.places.front(), fitness.extent));
        }
        return sentence + ".";
    }
    return fitness.isCutShort ? "The surface is too entangled to be searched whole." : "";
}

} // namespace ostrella
