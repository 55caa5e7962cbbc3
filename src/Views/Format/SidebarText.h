#pragma once

#include "Models/PlatformWords.h"
#include "Models/SimulationInputs.h"

#include <string>
#include <string_view>

namespace ostrella {

/// The fixed texts of the sidebar and its run footer.
namespace SidebarText {

inline constexpr std::string_view geometrySection = "Geometry";
inline constexpr std::string_view orientationSection = "Orientation";
inline constexpr std::string_view freeStreamSection = "Free Stream";
inline constexpr std::string_view turbulenceSection = "Turbulence";

inline constexpr std::string_view noModel = "No STL loaded";
inline constexpr std::string_view file = "File";
inline constexpr std::string_view facets = "Facets";
inline constexpr std::string_view boundingBox = "Bounding box";
inline constexpr std::string_view load = "Load STL…";
std::string loadHelp(const PlatformWords& words);

inline constexpr std::string_view angles = "X · Y · Z";
inline constexpr std::string_view anglesSuffix = "°";
inline constexpr std::string_view orientHint = "Or click the model to rotate it in the viewport.";
inline constexpr std::string_view orient = "Orient…";
inline constexpr std::string_view orientDone = "Done";

inline constexpr std::string_view regime = "Regime";
std::string_view title(FlowRegime option);
inline constexpr std::string_view model = "Model";
inline constexpr std::string_view modelHelp = "Turbulence model";
std::string_view title(TurbulenceModel option);

/// A switch of the turbulence model.
struct Switch {
    std::string_view title;
    /// Follows the title in the row.
    std::string_view suffix;
    /// As it is read out.
    std::string_view label;
    std::string_view help;
};

inline constexpr Switch rotationCorrection{"Rotation correction", "SA-R",
    "Rotation correction (SA-R)", "Spalart-Shur correction for swirling or rotating flows"};
inline constexpr Switch transition{"Transition", "BCM", "Transition (BCM)",
    "Bas-Cakmakcioglu algebraic laminar to turbulent transition"};

inline constexpr std::string_view run = "Run Simulation";
inline constexpr std::string_view runSymbol = "play.fill";
std::string runHelp(const PlatformWords& words);
inline constexpr std::string_view cancel = "Cancel simulation";
inline constexpr std::string_view cancelHelp = "Stop meshing or the solver";
inline constexpr std::string_view lastRun = "Last run";

} // namespace SidebarText

} // namespace ostrella
