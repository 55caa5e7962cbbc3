#pragma once

#include "Models/IsoSurface.h"
#include "Models/Streamlines.h"
#include "Solver/Flow/StreamlineGenerator.h"
#include "Solver/Flow/VTKLegacyParser.h"
#include "Solver/Flow/VTKText.h"

#include <exception>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

/// What keeps a file's numbers from being computed with; what() is the text the user reads.
class FlowScreenError final : public std::exception {
public:
    explicit FlowScreenError(std::string text) : text_(std::move(text)) {}
    const char* what() const noexcept override { return text_.c_str(); }

private:
    std::string text_;
};

/// The door through which files and their fields enter: the same operations as behind it, but what
/// would end the process there is an error here, since a file can bring anything. Their results are
/// the same bytes.
namespace FlowScreen {

/// The largest coordinate (m) and speed (m/s) that are computed with: products and squares of such
/// numbers stay within 32-bit floats everywhere on the way. Nothing real comes near.
inline constexpr float largestNumber = 1e12F;

/// VTKLegacyParser::parseSurface. Throws FlowScreenError, too: for a count or id that cannot be,
/// for an id beyond the points, and for a coordinate that is not finite or beyond `largestNumber`.
/// The scalar may hold anything.
SurfaceField parseSurface(const std::filesystem::path& url, std::string_view scalarName);
SurfaceField parseSurface(VTKText text, std::string_view scalarName);

/// VTKLegacyParser::parseVolume. Throws FlowScreenError, too, for a count or id that cannot be.
/// Coordinates and velocities may be anything: what computes with them asks `requireFinite`.
VolumeField parseVolume(const std::filesystem::path& url, std::string_view vectorName);
VolumeField parseVolume(VTKText text, std::string_view vectorName);

/// VTKLegacyParser::extractScalarStats. Throws FlowScreenError, too, for a count that cannot be.
ScalarFieldStats extractScalarStats(const std::filesystem::path& url, std::string_view scalarName);
ScalarFieldStats extractScalarStats(VTKText text, std::string_view scalarName);

/// Throws FlowScreenError if a coordinate or velocity is not finite or beyond `largestNumber`, with
/// the number of such points and the first of them.
void requireFinite(const VolumeField& volume);

/// StreamlineGenerator::generate behind requireFinite. Throws FlowScreenError, too, for a way past
/// the body that is not finite or beyond `largestNumber`, and for a negative number of seeds.
Streamlines generate(const VolumeField& volume, float freeStreamVelocity,
    const std::optional<StreamlineGenerator::Focus>& focus, std::optional<int> seedCount,
    int stepCount, const std::function<bool()>& isCancelled = {});

/// VortexExtractor::extract behind requireFinite. Throws FlowScreenError, too, for a surface so
/// small and so far from the origin that its vertices cannot be told apart.
std::optional<IsoSurface> extract(const VolumeField& volume,
    const std::optional<StreamlineGenerator::Focus>& focus, int resolution, float percentile,
    const std::function<bool()>& isCancelled = {});

} // namespace FlowScreen

} // namespace ostrella
