#pragma once

#include <string_view>

namespace ostrella {

/// The fixed texts of the orientation card and the view control.
namespace OrientText {

inline constexpr std::string_view title = "Orient model";
/// Before the angles.
inline constexpr std::string_view rotation = "Rotation ";
inline constexpr std::string_view reset = "Reset";
inline constexpr std::string_view resetHelp = "Reset orientation to 0 · 0 · 0";
/// As it is read out.
inline constexpr std::string_view resetName = "Reset orientation";
inline constexpr std::string_view resetMenuItem = "Reset Orientation";
inline constexpr std::string_view done = "Done";
inline constexpr std::string_view doneKey = "↩";
inline constexpr std::string_view doneHelp = "Finish orienting · Return";
inline constexpr std::string_view close = "Close";
inline constexpr std::string_view turnGroup = "Turn 90°";
inline constexpr std::string_view facingGroup = "Face the flow";
inline constexpr std::string_view clearsResult = "Rotating clears the current result.";

} // namespace OrientText

/// The view control: its two groups and its tools.
namespace ViewControlText {

struct Tool {
    /// As it is read out.
    std::string_view label;
    std::string_view symbol;
    /// Empty where it depends on the state.
    std::string_view help;
};

inline constexpr std::string_view viewsGroup = "Standard views";
inline constexpr Tool fit{"Fit to view", "arrow.up.left.and.arrow.down.right", ""};
inline constexpr Tool orient{"Orient model", "rotate.3d", "Orient model"};
inline constexpr Tool animate{"Animate flow", "wind", ""};
inline constexpr Tool saveImage{"Save image", "camera", "Save Image…"};

} // namespace ViewControlText

/// The error card and the notice.
namespace CardText {

inline constexpr std::string_view showInLog = "Show in log";
inline constexpr std::string_view showInLogHelp = "Open the log filtered to errors";
inline constexpr std::string_view noticeSymbol = "exclamationmark.circle";

} // namespace CardText

} // namespace ostrella
