#pragma once

#include "Models/BoundingBox.h"
#include "Models/RunState.h"
#include "Models/TriangleMesh.h"
#include "Models/Vector.h"

#include <glm/vec3.hpp>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

/// The texts of the sidebar and its run footer.
namespace SidebarFormat {

/// "%.<digits>f" without the sign of a value that prints as zero.
std::string fixed(double value, int digits);

/// "Loading wing.stl…"; "Loading STL…" for an empty name.
std::string loadingMessage(std::string_view fileName);

/// The box around `positions` turned by degrees about x, then y, then z; nothing without any.
std::optional<BoundingBox> bounds(
    std::span<const Vec3> positions, const glm::dvec3& rotationDegrees);

/// Extents of a box in metres: "1.00 × 0.12 × 2.00 m".
std::string boundingBox(const Vec3& min, const Vec3& max);

/// Extents of the box around the turned model, which walks over every vertex; of the stored box for
/// an unturned one.
std::string boundingBoxText(const TriangleMesh& mesh, const glm::dvec3& rotationDegrees);

/// "59 s", "1 min 05 s" or "1 h 01 min". A value that is not finite ends the process.
std::string duration(double seconds);

/// Time, iterations, CL and CD of a run, as far as they are known.
std::vector<std::string> summaryParts(const RunSummary& summary);

/// How the last run ended.
struct StateLine {
    enum class Tone { good, caution, failure, muted };

    std::string text;
    Tone tone = Tone::muted;

    bool operator==(const StateLine&) const = default;
};

/// "good", "caution", "failure" or "muted".
std::string_view rawValue(StateLine::Tone tone);

/// Nothing while no run has ended. Of a failure it tells the stage.
std::optional<StateLine> stateLine(const RunPhase& phase, const std::optional<RunSummary>& summary);

std::string progressTitle(
    const RunPhase& phase, std::optional<std::int64_t> iteration, std::int64_t maxIterations);

/// "1 min 15 s elapsed · ~1 h 01 min remaining"; seconds.
std::string timingLine(double elapsed, std::optional<double> remaining);

/// Share of the run that is done, from 0 to 1.
double progressFraction(
    const RunPhase& phase, std::optional<std::int64_t> iteration, std::int64_t maxIterations);

/// The progress bar's value as it is read out: "42 percent, 57 s elapsed".
std::string progressValue(double fraction, std::string_view detail);

/// What stands under the Run button.
struct Hint {
    std::string text;
    /// Name of a symbol before it; may be empty.
    std::string_view symbol;
    /// A spinner before it.
    bool isBusy = false;

    bool operator==(const Hint&) const = default;
};

std::optional<Hint> hint(const std::optional<std::string>& loadingFileName, bool hasMesh);

} // namespace SidebarFormat

} // namespace ostrella
