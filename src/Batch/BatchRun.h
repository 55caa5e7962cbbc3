#pragma once

#include "Batch/BatchConsole.h"
#include "Batch/BatchOptions.h"
#include "Batch/BatchPicture.h"
#include "Batch/BatchReport.h"
#include "Models/IterationRate.h"
#include "Models/PreferenceStore.h"
#include "Ostrella/OstrellaApp.h"
#include "Solver/Tools/Background.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrella {

/// One run from the command line: the shared objects of the application without its window. It ends
/// by leaving the event loop with the exit status.
class BatchRun : public QObject {
    Q_OBJECT

public:
    /// `environment.temporaryDirectory` is the parent of the run directory; it is made with the run
    /// and removed with it.
    BatchRun(RunEnvironment environment, BatchOptions options, BatchConsole& console);

    /// Loads the model and begins; the rest happens in the event loop.
    void start();
    /// Stops as the application's button does; the run still writes its closing line.
    void cancel();

private:
    void applyOptions();
    void probeTools();
    void loadModel();
    void begin();
    void prepare();
    void harvestEarlierRun();
    bool isCancelling() const;
    void printNewLines();
    void enter(const RunPhase& phase);
    void showPhaseOfRun();
    void updateProgress();
    void finish(const RunPhase& phase, int status);
    void conclude(BatchReport report, int status);
    void refuse(const std::string& message, const std::string& text);

    RunEnvironment environment_;
    BatchOptions options_;
    BatchConsole& console_;
    MemoryPreferences preferences_;
    OstrellaApp app_;

    std::size_t printedLines_ = 0;
    QTimer progressTimer_;
    IterationRate rate_;
    NotificationCenter::Token geometryObserver_;
    bool hasBegun_ = false;
    bool isEnding_ = false;
    /// When each phase began, in the order of the run.
    std::vector<std::pair<RunPhase, Date>> phases_;
    /// Of what is done without the controller: a preparation, or the harvest of an earlier run.
    CancellationSource ownWork_;
    std::optional<std::int64_t> preparedCells_;
    SurfaceFacts preparedSurface_;
    std::optional<ConfiguredInputs> earlierInputs_;
    /// Absent where none is wanted.
    std::optional<BatchPicture> picture_;

    /// Written by the probe alone, and read when it has ended.
    std::shared_ptr<ToolFacts> tools_ = std::make_shared<ToolFacts>();
    Background::Chore probe_;
};

} // namespace ostrella
