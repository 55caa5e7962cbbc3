#include "Solver/Flow/FlowScreen.h"

#include "Solver/Flow/VTKNumberError.h"
#include "Solver/Flow/VTKReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

namespace ostrella::FlowScreen {

namespace {

/// What `read` gives of a file that nobody vouches for.
template <class Read>
auto screened(Read read, VTKText text, std::string_view name) {
    try {
        return read(std::move(text), name);
    } catch (const VTKNumberError& error) {
        throw FlowScreenError(error.what());
    }
}

/// False for NaN, too.
bool isUsable(const Vec3& v) {
    return std::abs(v.x) <= largestNumber && std::abs(v.y) <= largestNumber &&
           std::abs(v.z) <= largestNumber;
}

/// Throws unless all points are usable: "3 of 100 points have a WHAT that is not finite or …".
template <class IsUsablePoint>
void requirePoints(std::size_t count, std::string_view what, IsUsablePoint isUsablePoint) {
    std::size_t bad = 0;
    std::size_t first = 0;
    for (std::size_t i = count; i-- > 0;)
        if (!isUsablePoint(i)) {
            ++bad;
            first = i;
        }
    if (bad > 0)
        throw FlowScreenError(
            fmt::format("{} of {} points {} a {} that is not finite or beyond {:g}; the first is "
                        "point {}, counted from 0",
                bad, count, bad == 1 ? "has" : "have", what, largestNumber, first));
}

void requireIds(const SurfaceField& surface) {
    const auto points = surface.positions.size();
    const auto* beyond = std::find_if(surface.indices.begin(), surface.indices.end(),
        [points](std::uint32_t id) { return id >= points; });
    if (beyond != surface.indices.end())
        throw FlowScreenError(fmt::format(
            "Malformed VTK: a cell has the point id {}, but there are {} points", *beyond, points));
}

} // namespace

SurfaceField parseSurface(const std::filesystem::path& url, std::string_view scalarName) {
    return parseSurface(VTKText::read(url), scalarName);
}

SurfaceField parseSurface(VTKText text, std::string_view scalarName) {
    auto surface = screened(VTKReader::surface, std::move(text), scalarName);
    requireIds(surface);
    requirePoints(surface.positions.size(), "coordinate",
        [&](std::size_t i) { return isUsable(surface.positions[i]); });
    return surface;
}

VolumeField parseVolume(const std::filesystem::path& url, std::string_view vectorName) {
    return parseVolume(VTKText::read(url), vectorName);
}

VolumeField parseVolume(VTKText text, std::string_view vectorName) {
    return screened(VTKReader::volume, std::move(text), vectorName);
}

ScalarFieldStats extractScalarStats(const std::filesystem::path& url, std::string_view scalarName) {
    return extractScalarStats(VTKText::read(url), scalarName);
}

ScalarFieldStats extractScalarStats(VTKText text, std::string_view scalarName) {
    return screened(VTKReader::scalarStats, std::move(text), scalarName);
}

void requireFinite(const VolumeField& volume) {
    requirePoints(volume.positions.size(), "coordinate or velocity", [&](std::size_t i) {
        return isUsable(volume.positions[i]) && isUsable(volume.velocity[i]);
    });
}

} // namespace ostrella::FlowScreen
