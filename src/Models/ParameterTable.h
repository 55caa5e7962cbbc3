#pragma once

#include <array>
#include <string_view>

namespace ostrella {

/// What the user is told of a numeric parameter, declared once: the sidebar's fields, the settings
/// window and the options of the batch program are made from it.
struct ParameterInfo {
    /// Name of the batch program's option, without the dashes.
    std::string_view option;
    std::string_view label;
    std::string_view unit;
    double minimum;
    double maximum;
    double defaultValue;
    /// One sentence for the help text.
    std::string_view help;
};

namespace ParameterTable {

inline constexpr ParameterInfo velocity{
    "velocity", "Velocity", "m/s", 0.01, 500, 50, "Free-stream speed."};
inline constexpr ParameterInfo alpha{
    "alpha", "Angle of attack", "°", -90, 90, 0, "Angle of attack; positive tilts the flow up."};
inline constexpr ParameterInfo beta{
    "beta", "Sideslip", "°", -90, 90, 0, "Sideslip angle; no effect in two dimensions."};
inline constexpr ParameterInfo density{
    "density", "Density", "kg/m³", 0.01, 10, 1.225, "Free-stream density."};
inline constexpr ParameterInfo rotationX{
    "rotation-x", "X rotation", "°", -180, 180, 0, "Turn of the model about x, before y and z."};
inline constexpr ParameterInfo rotationY{
    "rotation-y", "Y rotation", "°", -180, 180, 0, "Turn of the model about y, after x."};
inline constexpr ParameterInfo rotationZ{
    "rotation-z", "Z rotation", "°", -180, 180, 0, "Turn of the model about z, after x and y."};
inline constexpr ParameterInfo maxIterations{
    "iterations", "Max iterations", "", 50, 50000, 200, "Iteration limit of the solver."};
inline constexpr ParameterInfo upstreamFactor{"inlet-offset", "Inlet offset", "×c", 0.1, 3.0, 0.5,
    "Where streamline seeds start, in body lengths ahead of the body."};
inline constexpr ParameterInfo downstreamFactor{"wake-length", "Wake length", "×c", 0.5, 10.0, 2.0,
    "How far streamlines go, in body lengths behind the body."};
inline constexpr ParameterInfo seedCount{
    "seed-count", "Seed count", "", 20, 500, 100, "Number of streamlines released."};

} // namespace ParameterTable

} // namespace ostrella
