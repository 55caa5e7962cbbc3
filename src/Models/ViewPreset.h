#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace ostrella {

/// Margins of the viewport that overlays cover, in points.
struct ViewportInsets {
    double top = 0;
    double leading = 0;
    double bottom = 0;
    double trailing = 0;

    bool operator==(const ViewportInsets&) const = default;
};

/// The named views of the camera.
enum class ViewPreset { iso, front, side, top };

inline constexpr std::array allViewPresets{
    ViewPreset::iso, ViewPreset::front, ViewPreset::side, ViewPreset::top};

std::string_view rawValue(ViewPreset preset);
std::optional<ViewPreset> viewPresetFromRawValue(std::string_view raw);

/// Camera pose of a preset, in radians: azimuth about +y from +z, elevation above the x-z plane.
struct ViewPose {
    float azimuth;
    float elevation;
};
ViewPose pose(ViewPreset preset);

} // namespace ostrella
