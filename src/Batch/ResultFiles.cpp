#include "Batch/ResultFiles.h"

#include "Batch/BatchTargets.h"
#include "Models/FileError.h"
#include "Solver/Flow/FlowFiles.h"
#include "Solver/Flow/FlowScreen.h"
#include "Solver/Flow/StreamlineFocus.h"
#include "Solver/Geometry/MeshOperations.h"

#include <fmt/format.h>

#include <functional>
#include <new>
#include <string_view>

namespace ostrella::ResultFiles {

namespace fs = std::filesystem;

namespace {

/// One of the files, and what it takes to write it.
struct Target {
    std::string_view option;
    /// What is in it, as a sentence begins.
    std::string_view name;
    const fs::path& file;
};

bool writeTarget(
    const Target& target, const std::function<std::string()>& text, const RunLog& log) {
    const auto fail = [&](std::string_view reason) {
        log.append(fmt::format("{} not written · Cannot write {}: {}. Name another file with --{}.",
                       target.name, target.file.string(), reason, target.option),
            LogStore::Level::error);
        return false;
    };
    try {
        BatchTargets::writeFile(target.file, text());
    } catch (const fs::filesystem_error& error) {
        return fail(error.code().message());
    } catch (const std::bad_alloc&) {
        return fail("there is not enough memory for its text");
    }
    log.append(
        fmt::format("{} written to {}", target.name, target.file.string()), LogStore::Level::ok);
    return true;
}

bool isFinite(const VolumeField& volume) {
    try {
        FlowScreen::requireFinite(volume);
        return true;
    } catch (const FlowScreenError&) {
        return false;
    }
}

/// Why nothing could be made of the volume; empty if something could have been.
std::string whyNothingOfVolume(const SimulationResult& result) {
    if (!result.volumeField) {
        return "flow.vtk gave no volume";
    }
    return isFinite(*result.volumeField) ? "" : "the volume's numbers are not finite";
}

} // namespace

bool write(BatchReport& report, const SimulationResult& result, const RunLog& log) {
    const BatchOptions& options = report.options;
    bool succeeded = true;
    if (options.streamlinesFile) {
        const Target target{"write-streamlines", "Streamlines", *options.streamlinesFile};
        if (!result.streamlines) {
            log.warn(fmt::format("Streamlines not written · {}", whyNoStreamlines(result)));
        } else if (writeTarget(
                       target, [&] { return FlowFiles::streamlinesVTK(*result.streamlines); },
                       log)) {
            report.streamlinesFile = target.file;
        } else {
            succeeded = false;
        }
    }
    // Of the built-in case it is told ahead that it has none.
    if (options.vortexFile && !options.demo) {
        const Target target{"write-vortex", "Vortex surface", *options.vortexFile};
        if (!result.vortex) {
            log.warn(fmt::format("Vortex surface not written · {}", whyNoVortex(result)));
        } else if (writeTarget(
                       target, [&] { return FlowFiles::isoSurfacePLY(*result.vortex); }, log)) {
            report.vortexFile = target.file;
        } else {
            succeeded = false;
        }
    }
    return succeeded;
}

bool writeSurface(BatchReport& report, const RunLog& log) {
    // Where there is no model to mesh, that is told ahead.
    if (!report.options.surfaceFile || !report.surface) {
        return true;
    }
    const Target target{"write-surface", "Surface", *report.options.surfaceFile};
    const auto& meshed = report.surface->meshed;
    if (!meshed) {
        log.warn("Surface not written · the mesher was given none");
        return true;
    }
    if (!writeTarget(
            target, [&] { return binarySTL(meshed->mesh, BatchTargets::surfaceBeginning); }, log)) {
        return false;
    }
    report.surface->file = target.file;
    return true;
}

std::string whyNoStreamlines(const SimulationResult& result) {
    const std::string reason = whyNothingOfVolume(result);
    return reason.empty() ? "they could not be traced" : reason;
}

std::string whyNoVortex(const SimulationResult& result) {
    if (const std::string reason = whyNothingOfVolume(result); !reason.empty()) {
        return reason;
    }
    if (!result.surfaceField) {
        return "surface_flow.vtk gave no surface to look behind";
    }
    const SurfaceField& surface = *result.surfaceField;
    if (!StreamlineFocus::around(surface.boundingMin, surface.boundingMax, 0, 0).isVolumetric) {
        return "the body is flat in z";
    }
    return "there is none in the wake";
}

} // namespace ostrella::ResultFiles
