#pragma once

#include "Models/SimulationInputs.h"

#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

/// What a solver configuration tells of a run's inputs; absent where it tells nothing.
struct ConfiguredInputs {
    std::optional<double> velocity; ///< free-stream speed, m/s
    std::optional<double> alpha;    ///< degrees
    std::optional<double> beta;     ///< degrees
    std::optional<double> density;  ///< kg/m³
    std::optional<int> maxIterations;
    std::optional<TurbulenceModel> turbulenceModel;
    std::optional<FlowRegime> regime;
    std::optional<bool> saRotationCorrection;
    std::optional<bool> saTransition;
    std::optional<float> streamlineUpstreamFactor;
    std::optional<float> streamlineDownstreamFactor;
    std::optional<int> streamlineSeedCount;
    std::optional<double> referenceArea; ///< m²
    std::optional<std::string> meshFilename;

    bool operator==(const ConfiguredInputs&) const = default;
};

/// The way back from a "run.cfg" to the inputs behind it: what SU2ConfigTemplate wrote, or somebody
/// else in the solver's language.
namespace SU2ConfigReader {

/// A line, a comment to the solver, with the inputs that its options hold rounded or not at all, in
/// the words of ostrella-batch. Belongs at the end of a configuration.
std::string inputsComment(const SimulationInputs& inputs);

/// Reads a configuration. The speed is the length of the free-stream velocity or the Mach number
/// times the speed of sound; the comment above gives it to the last digit as long as it agrees with
/// the options, and without it the roundest speed is taken that would be written so. Values that
/// are no numbers, and anything else that cannot be understood, count as absent.
ConfiguredInputs parse(std::string_view text);

} // namespace SU2ConfigReader

} // namespace ostrella
