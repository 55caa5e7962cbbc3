#include "Views/Format/SidebarFormat.h"

#include "Models/NumberFormatting.h"
#include "Solver/Geometry/MatrixMath.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace ostrella::SidebarFormat {

namespace {

float radians(double degrees) {
    return static_cast<float>(degrees * std::numbers::pi / 180);
}

} // namespace

std::string fixed(double value, int digits) {
    return NumberFormatting::fixed(value, digits);
}

std::string loadingMessage(std::string_view fileName) {
    return fmt::format("Loading {}…", fileName.empty() ? "STL" : fileName);
}

std::optional<BoundingBox> bounds(
    std::span<const Vec3> positions, const glm::dvec3& rotationDegrees) {
    if (positions.empty()) {
        return std::nullopt;
    }
    const Mat4 rotation = eulerXYZ(
        {radians(rotationDegrees.x), radians(rotationDegrees.y), radians(rotationDegrees.z)});
    const Vec3 first = transformed(rotation, positions[0], 0);
    BoundingBox box{first, first};
    for (const Vec3& position : positions) {
        const Vec3 turned = transformed(rotation, position, 0);
        box.min = glm::min(box.min, turned);
        box.max = glm::max(box.max, turned);
    }
    return box;
}

std::string boundingBox(const Vec3& min, const Vec3& max) {
    const Vec3 size = max - min;
    return fmt::format("{} × {} × {} m", fixed(static_cast<double>(size.x), 2),
        fixed(static_cast<double>(size.y), 2), fixed(static_cast<double>(size.z), 2));
}

std::string boundingBoxText(const TriangleMesh& mesh, const glm::dvec3& rotationDegrees) {
    BoundingBox box = mesh.boundingBox();
    if (rotationDegrees != glm::dvec3(0.0)) {
        box = bounds(mesh.positions().span(), rotationDegrees).value_or(box);
    }
    return boundingBox(box.min, box.max);
}

std::string duration(double seconds) {
    return NumberFormatting::duration(seconds);
}

std::vector<std::string> summaryParts(const RunSummary& summary) {
    std::vector<std::string> parts{fmt::format("{} s", fixed(summary.elapsedSeconds, 1))};
    if (summary.iterations) {
        parts.push_back(fmt::format("{} iter", *summary.iterations));
    }
    if (summary.cl) {
        parts.push_back(fmt::format("CL {}", fixed(*summary.cl, 4)));
    }
    if (summary.cd) {
        parts.push_back(fmt::format("CD {}", fixed(*summary.cd, 4)));
    }
    return parts;
}

std::string_view rawValue(StateLine::Tone tone) {
    switch (tone) {
    case StateLine::Tone::good:
        return "good";
    case StateLine::Tone::caution:
        return "caution";
    case StateLine::Tone::failure:
        return "failure";
    case StateLine::Tone::muted:
        return "muted";
    }
    return {};
}

std::optional<StateLine> stateLine(
    const RunPhase& phase, const std::optional<RunSummary>& summary) {
    switch (phase.kind) {
    case RunPhase::Kind::idle:
    case RunPhase::Kind::meshing:
    case RunPhase::Kind::solving:
    case RunPhase::Kind::postProcessing:
        return std::nullopt;
    case RunPhase::Kind::cancelled:
        return StateLine{"Cancelled", StateLine::Tone::muted};
    case RunPhase::Kind::failed:
        return StateLine{fmt::format("Failed · {}", phase.stage), StateLine::Tone::failure};
    case RunPhase::Kind::finished:
        break;
    }
    StateLine line = phase.converged
                         ? StateLine{"Converged", StateLine::Tone::good}
                         : StateLine{"Stopped at iteration cap", StateLine::Tone::caution};
    if (summary) {
        if (summary->iterations) {
            line.text += fmt::format(" · {} iter", *summary->iterations);
        }
        line.text += fmt::format(" · {} s", fixed(summary->elapsedSeconds, 1));
    }
    return line;
}

std::string progressTitle(
    const RunPhase& phase, std::optional<std::int64_t> iteration, std::int64_t maxIterations) {
    if (phase.kind == RunPhase::Kind::postProcessing) {
        return "Processing results…";
    }
    if (iteration) {
        return fmt::format("Iter {} / {}", *iteration, maxIterations);
    }
    return phase.kind == RunPhase::Kind::meshing ? "Meshing…" : "Starting solver…";
}

std::string timingLine(double elapsed, std::optional<double> remaining) {
    std::string line = fmt::format("{} elapsed", duration(elapsed));
    if (remaining) {
        line += fmt::format(" · ~{} remaining", duration(*remaining));
    }
    return line;
}

double progressFraction(
    const RunPhase& phase, std::optional<std::int64_t> iteration, std::int64_t maxIterations) {
    if (phase.kind == RunPhase::Kind::postProcessing) {
        return 1;
    }
    if (!iteration || maxIterations < 1) {
        return 0;
    }
    return std::clamp(
        static_cast<double>(*iteration) / static_cast<double>(maxIterations), 0.0, 1.0);
}

std::string progressValue(double fraction, std::string_view detail) {
    return fmt::format("{} percent, {}", std::llround(fraction * 100), detail);
}

std::optional<Hint> hint(const std::optional<std::string>& loadingFileName, bool hasMesh) {
    if (loadingFileName) {
        return Hint{loadingMessage(*loadingFileName), "", true};
    }
    if (!hasMesh) {
        return Hint{"Load an STL to enable Run.", "info.circle", false};
    }
    return std::nullopt;
}

} // namespace ostrella::SidebarFormat
