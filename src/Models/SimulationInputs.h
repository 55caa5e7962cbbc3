#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace ostrella {

/// Closure of the Reynolds-averaged equations.
enum class TurbulenceModel { spalartAllmaras, sst, laminar };

inline constexpr std::array allTurbulenceModels{
    TurbulenceModel::spalartAllmaras, TurbulenceModel::sst, TurbulenceModel::laminar};

std::string_view rawValue(TurbulenceModel model);
std::optional<TurbulenceModel> turbulenceModelFromRawValue(std::string_view raw);

/// Which equations, and so which solver template, a run uses.
enum class FlowRegime { incompressible, compressible };

inline constexpr std::array allFlowRegimes{FlowRegime::incompressible, FlowRegime::compressible};

std::string_view rawValue(FlowRegime regime);
std::optional<FlowRegime> flowRegimeFromRawValue(std::string_view raw);

/// The inputs of one run, frozen at its start: nothing that the user touches afterwards reaches it.
struct SimulationInputs {
    /// Free-stream speed, m/s.
    double velocity = 50.0;
    /// Angle of attack, degrees; positive tilts the flow up.
    double alpha = 0;
    /// Sideslip, degrees.
    double beta = 0;
    /// Free-stream density, kg/m³.
    double density = 1.225;
    /// Iteration limit.
    int maxIterations = 200;
    TurbulenceModel turbulenceModel = TurbulenceModel::spalartAllmaras;
    FlowRegime regime = FlowRegime::incompressible;
    bool saRotationCorrection = false;
    bool saTransition = false;
    /// Streamline window in lengths of the body, ahead of it and behind it.
    float streamlineUpstreamFactor = 0.5F;
    float streamlineDownstreamFactor = 2.0F;
    int streamlineSeedCount = 100;

    bool operator==(const SimulationInputs&) const = default;
};

} // namespace ostrella
