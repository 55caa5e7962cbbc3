#include "Batch/BatchPicture.h"

#include "Batch/BatchTargets.h"
#include "Batch/ResultFiles.h"
#include "Models/FileError.h"

#include <fmt/format.h>

#include <new>

namespace ostrella {

namespace {

/// A line for each layer that was named and that the result does not have.
void tellMissingLayers(
    const BatchOptions& options, const SimulationResult& result, const RunLog& log) {
    if (!options.isGiven("layers")) {
        return;
    }
    const PictureOptions::Layers& layers = options.picture.layers;
    const auto tell = [&log](std::string_view layer, std::string_view reason) {
        log.warn(fmt::format("Layer {} left out of the picture · {}", layer, reason));
    };
    if (layers.cp && !result.surfaceField) {
        tell("cp", "surface_flow.vtk gave no surface");
    }
    if (layers.streams && !result.streamlines) {
        tell("streams", ResultFiles::whyNoStreamlines(result));
    }
    if (layers.vortex && !result.vortex && !options.demo) {
        tell("vortex", ResultFiles::whyNoVortex(result));
    }
}

} // namespace

BatchPicture::BatchPicture(const AppBundle& bundle)
    : drawer_(bundle.toolsDirectory() / "ostrella-picture") {}

void BatchPicture::prepare(const TriangleMesh& mesh, const PictureOptions& options) {
    const auto lines = options.shaded ? PreparedModel::Lines::none : PreparedModel::Lines::features;
    model_ = std::make_shared<PreparedModel>();
    preparation_ = Background::run(
        [mesh, lines, model = model_] {
            *model = PreparedModel::of(mesh, PreparedModel::Picking::walk, lines);
        },
        Background::Priority::userInitiated);
}

bool BatchPicture::make(BatchReport& report, const Vec3& rotation,
    const std::optional<SimulationResult>& result, const RunLog& log) {
    const BatchOptions& options = report.options;
    const auto notDrawn = [&log](std::string_view reason) {
        log.warn(fmt::format("Picture not drawn · {}", reason));
        return true;
    };
    PictureDrawer::Outcome outcome;
    try {
        std::optional<PreparedModel> model;
        if (model_) {
            preparation_.wait();
            model = *model_;
        }
        if (result) {
            tellMissingLayers(options, *result, log);
        }
        outcome = drawer_.draw(PictureScene::of(options.picture, model, rotation, result),
            [&log](const std::string& line) { log.info(line); });
    } catch (const std::bad_alloc&) {
        return notDrawn("there is not enough memory for the scene");
    }
    if (!outcome.png) {
        return notDrawn(outcome.failure);
    }
    const auto& file = *options.imageFile;
    try {
        BatchTargets::writeFile(file, *outcome.png);
    } catch (const std::filesystem::filesystem_error& error) {
        log.append(fmt::format("Picture not written · Cannot write {}: {}. Name another file with "
                               "--image.",
                       file.string(), error.code().message()),
            LogStore::Level::error);
        return false;
    }
    report.image = {file, outcome.device};
    log.append(fmt::format("Picture written to {} · {} × {} · {}", file.string(),
                   options.picture.width, options.picture.height, outcome.device),
        LogStore::Level::ok);
    return true;
}

} // namespace ostrella
