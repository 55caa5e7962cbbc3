#pragma once

#include "Batch/BatchReport.h"
#include "Batch/PictureDrawer.h"
#include "Models/RunState.h"
#include "Models/TriangleMesh.h"
#include "Models/Vector.h"
#include "Platform/AppBundle.h"
#include "Rendering/PreparedModel.h"
#include "Solver/Tools/Background.h"
#include "Solver/Tools/RunLog.h"

#include <memory>
#include <optional>

namespace ostrella {

/// The picture of a batch run, from the loaded model and the result to the file.
class BatchPicture {
public:
    explicit BatchPicture(const AppBundle& bundle);

    /// Starts what can be done beside the load: main thread.
    void begin() { drawer_.start(); }
    /// Prepares the model to be drawn, beside whatever else is done; main thread.
    void prepare(const TriangleMesh& mesh, const PictureOptions& options);

    /// Draws what the report's options ask for and writes the file, logs that, and notes it in the
    /// report. `rotation` in radians. What cannot be drawn costs a line with the reason. False if
    /// the file could not be written. For a worker thread.
    bool make(BatchReport& report, const Vec3& rotation,
        const std::optional<SimulationResult>& result, const RunLog& log);

private:
    PictureDrawer drawer_;
    std::shared_ptr<PreparedModel> model_;
    Background::Chore preparation_;
};

} // namespace ostrella
