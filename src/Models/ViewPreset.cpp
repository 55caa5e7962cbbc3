#include "Models/ViewPreset.h"

namespace ostrella {

namespace {

// Pi as a 32-bit number rounded towards zero.
constexpr float pi = 3.1415925F;

} // namespace

std::string_view rawValue(ViewPreset preset) {
    switch (preset) {
    case ViewPreset::iso:
        return "iso";
    case ViewPreset::front:
        return "front";
    case ViewPreset::side:
        return "side";
    case ViewPreset::top:
        return "top";
    }
    return {};
}

std::optional<ViewPreset> viewPresetFromRawValue(std::string_view raw) {
    for (const ViewPreset preset : allViewPresets) {
        if (rawValue(preset) == raw) {
            return preset;
        }
    }
    return std::nullopt;
}

ViewPose pose(ViewPreset preset) {
    switch (preset) {
    case ViewPreset::iso:
        return {pi / 4, 0.5654867F};
    case ViewPreset::front:
        return {-pi / 2, 0};
    case ViewPreset::side:
        return {0, 0};
    case ViewPreset::top:
        return {0, pi / 2};
    }
    return {};
}

} // namespace ostrella
