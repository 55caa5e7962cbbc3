#include "ui/pictures/PictureStage.h"

#include "Models/Cancellation.h"
#include "Platform/SystemFacts.h"
#include "Solver/Geometry/ModelFile.h"
#include "Solver/Run/Harvest.h"
#include "Solver/Run/SolverLaunch.h"
#include "Update/UpdateController.h"
#include "Update/gate/ScriptedUpdater.h"
#include "Views/Controls/Theme.h"
#include "Views/Viewport/ViewportItem.h"

#include <QGuiApplication>
#include <QQuickItem>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace ostrella {

/// Puts the controller into states that a run would bring about.
class SimulationControllerProbe {
public:
    static std::int64_t begin(SimulationController& controller, Date date, int maxIterations) {
        controller.setMeshCells(std::nullopt);
        controller.setMaxIterations(maxIterations);
        controller.setSummary(std::nullopt);
        controller.setStartedAt(date);
        controller.setPhase(RunPhase::meshing());
        controller.parameters_->setLastRunResult(std::nullopt);
        controller.parameters_->setIsRunning(true);
        return ++controller.runID_;
    }
    static void apply(
        SimulationController& controller, const SolverRunner::Event& event, std::int64_t runID) {
        controller.apply(event, runID);
    }
    static void complete(SimulationController& controller, std::int64_t runID,
        SimulationController::Outcome outcome, const SimulationInputs& inputs) {
        controller.complete(
            runID, std::move(outcome), inputs, controller.startedAt().value_or(Date()));
    }
};

} // namespace ostrella

namespace ostrella::test {

namespace {

/// Some day at 09:41:02 UTC.
constexpr double morning = 1'790'934'062.0;

fs::path recorded(const PictureStage::RecordedRun& run) {
    return fs::path(OSTRELLA_RECORDED_RUNS) / run.folder;
}

/// The first lines of a file.
std::string head(const fs::path& file, int lines) {
    std::istringstream text(readFile(file));
    std::string result;
    std::string line;
    for (int i = 0; i < lines && std::getline(text, line); ++i)
        result += line + "\n";
    return result;
}

void require(bool condition, const char* what) {
    if (!condition)
        throw std::runtime_error(std::string("the window never came to show ") + what);
}

void forEachItem(QQuickItem& root, const std::function<void(QQuickItem&)>& act) {
    for (QQuickItem* child : root.childItems()) {
        if (child->isVisible()) {
            act(*child);
            forEachItem(*child, act);
        }
    }
}

bool isOf(const QObject& object, const char* className) {
    return QString::fromLatin1(object.metaObject()->className())
        .startsWith(QLatin1String(className));
}

} // namespace

PictureStage::PictureStage()
    : app((clock_.advance(morning), RunEnvironment{AppBundle(OSTRELLA_STAGE_DIR), directory_.path(),
                                        &PlatformWords::freedesktop(), &clock_}),
          preferences_, {std::string(AppBundle::version()), 6, 1, "OpenGL"},
          [this](const std::string& message, const std::string& text) {
              model().showAlert(message, text);
          }) {
    app.updates = std::make_unique<UpdateController>(std::make_unique<ScriptedUpdater>(), timers_,
        [](const UpdateAlert&, const std::function<void(bool)>&) {});
    window_ = std::make_unique<MainWindow>(app,
        WindowModel::Surroundings{.words = PlatformWords::freedesktop(),
            .preferences = preferences_,
            .temporaryDirectory = directory_.path(),
            .openAddress = [](const std::string&) {},
            .quit = [] {},
            .clock = clock_,
            .timers = timers_,
            // The pictures are alike wherever they are made.
            .machine = {[](const fs::path&) { return std::int64_t{412'600'000'000}; },
                [] { return std::string("8-core processor"); }}},
        appearance_,
        PackageFacts{.bundle = AppBundle(OSTRELLA_STAGE_DIR),
            .renderer = "OpenGL",
            .updates = app.updates.get()});
    ViewportItem& scene = window_->viewport();
    scene.setModel(app.parameters, app.renderSettings, [this] { return mediaTime_; });
    scene.drawFinely();
    window_->show();
    app.start();
    user_.emplace(window_->window());
    user_->moveTo({4, 4});
    settle();
}

PictureStage::~PictureStage() {
    Theme::shared().setTextScale(1);
    user_->moveTo({4, 4});
    user_.reset();
    window_.reset();
}

void PictureStage::setTextScale(double scale) {
    Theme::shared().setTextScale(scale);
    settle();
}

void PictureStage::resize(QSize size) {
    window_->window().setMinimumSize(size);
    window_->window().resize(size);
    require(waitUntil([&] { return window_->window().size() == size; }), "in its size");
    settle();
}

void PictureStage::setDark(bool dark) {
    Theme::shared().setDark(dark);
    settle();
}

void PictureStage::load(const std::string& sample, const std::string& fileName) {
    const fs::path source =
        AppBundle(OSTRELLA_STAGE_DIR).resource(sample, "stl", "samples").value();
    fs::path file = source;
    if (!fileName.empty()) {
        file = directory_.path() / fileName;
        fs::copy_file(source, file, fs::copy_options::overwrite_existing);
    }
    app.importer.open(file, app.parameters);
    require(waitUntil([&] {
        return !app.parameters.loadingFileName() && app.parameters.openEdgeCount() &&
               window_->viewport().coordinator()->renderer().hasModel();
    }),
        "the model");
    settle();
}

void PictureStage::pretendRun(const RecordedRun& run) {
    app.historyStore.reset();
    runID_ = SimulationControllerProbe::begin(app.simulation, clock_.now(), run.maxIterations);
    // A phase that comes again has the time told anew.
    clock_.advance(4);
    SimulationControllerProbe::apply(app.simulation, RunPhase::meshing(), runID_);
    tick();
    settle();
}

void PictureStage::feedHistory(const RecordedRun& run, int rows, double seconds) {
    SimulationControllerProbe::apply(app.simulation, SolverRunner::MeshCells{run.cells}, runID_);
    SimulationControllerProbe::apply(app.simulation, RunPhase::solving(), runID_);
    const CancellationSource source;
    const QPointer<HistoryStore> history(&app.historyStore);
    // Every reading begins at the top: a long history comes in larger pieces.
    const int step = std::max(1, rows / 400);
    for (int row = 1 + (rows - 1) % step; row <= rows; row += step) {
        storeHistory(
            head(recorded(run) / "history.csv", row + 1), run.dimensions, history, source.token());
        clock_.advance(seconds);
        QCoreApplication::processEvents();
    }
    tick();
    settle();
}

void PictureStage::feedSolverLines(const RecordedRun& run, int rows) {
    std::istringstream table(head(recorded(run) / "history.csv", rows + 1));
    for (std::string row; std::getline(table, row);) {
        // Iteration, residuals and coefficients: the columns from the third to the ninth.
        std::istringstream cells(row);
        std::string line = "|";
        std::string cell;
        for (int column = 0; column < 9 && std::getline(cells, cell, ','); ++column) {
            std::erase_if(cell, [](char c) { return c == ' ' || c == '"'; });
            if (column >= 2) {
                line += fmt::format("{:>13}|", cell);
            }
        }
        app.logStore.append(line, LogStore::Level::su2);
    }
    settle();
}

void PictureStage::finishRun(const RecordedRun& run) {
    SimulationControllerProbe::apply(app.simulation, RunPhase::postProcessing(), runID_);
    const CancellationSource source;
    SimulationInputs inputs = app.parameters.snapshot(&app.appSettings);
    inputs.maxIterations = run.maxIterations;
    std::optional<SimulationResult> result;
    onWorker([&] {
        result = harvestResult(recorded(run), run.outcome, run.cells, run.dimensions, inputs,
            RunLog(app.logStore), source.token(), clock_);
    });
    SimulationControllerProbe::complete(app.simulation, runID_, std::move(result).value(), inputs);
    settle();
}

void PictureStage::failRun(const std::exception_ptr& error) {
    SimulationControllerProbe::complete(
        app.simulation, runID_, error, app.parameters.snapshot(&app.appSettings));
    settle();
}

QQuickItem* PictureStage::item(const char* className, const QString& text) const {
    QQuickItem* found = nullptr;
    forEachItem(*window_->window().contentItem(), [&](QQuickItem& candidate) {
        if (found == nullptr && isOf(candidate, className) &&
            candidate.property("text").toString() == text)
            found = &candidate;
    });
    return found;
}

QPointF PictureStage::centre(const QQuickItem& item) {
    return item.mapToScene(QPointF(item.width() / 2, item.height() / 2));
}

bool PictureStage::hoverRing(OrientationAxis axis) {
    ViewportItem& scene = window_->viewport();
    const QPointF middle = centre(scene);
    for (double offset = 8; offset < scene.height() / 2 - 16; offset += 2) {
        user_->moveTo(middle + QPointF(0, offset));
        if (scene.coordinator()->renderer().hoveredRing == axis)
            return true;
    }
    return false;
}

void PictureStage::waitForHelp() {
    require(waitUntil([&] {
        bool shows = false;
        forEachItem(*window_->window().contentItem(),
            [&](QQuickItem& candidate) { shows = shows || isOf(candidate, "QQuickPopupItem"); });
        return shows;
    }),
        "a tool tip");
}

void PictureStage::tick() {
    timers_.advance(1);
}

void PictureStage::drawAnew() {
    ViewportItem& scene = window_->viewport();
    const auto drawn = scene.frameCount();
    scene.update();
    waitUntil([&] { return scene.frameCount() > drawn; }, std::chrono::milliseconds(500));
}

void PictureStage::settle() {
    // A tween begins with one frame and is over in the next; insets may bring another.
    const double shown = 1.35;
    for (int turn = 0; turn < 4; ++turn) {
        mediaTime_ += 10;
        drawAnew();
    }
    mediaTime_ = std::ceil(mediaTime_ / 100) * 100 + shown;
    drawAnew();
    user_->settle();
}

void PictureStage::showSettings(const QString& tab) {
    window_->showSettings();
    beside_ = window_->settings().window();
    beside_->property("model").value<SettingsModel*>()->setTab(tab);
    require(waitUntil([&] { return beside_->isExposed(); }), "the settings");
}

void PictureStage::showAbout() {
    window_->showAbout();
    beside_ = window_->about().window();
    const auto* about = beside_->property("model").value<AboutModel*>();
    require(waitUntil(
                [&] { return beside_->isExposed() && about->mesher().contains(QLatin1Char(' ')); }),
        "what the tools are");
}

void PictureStage::showAcknowledgements() {
    showAbout();
    auto* about = beside_->property("model").value<AboutModel*>();
    about->setShowAcknowledgements(true);
    require(waitUntil([&] {
        const auto windows = QGuiApplication::topLevelWindows();
        const auto found = std::find_if(windows.begin(), windows.end(),
            [&](const QWindow* other) { return other->transientParent() == beside_; });
        const bool isThere = found != windows.end() && (*found)->isExposed();
        if (isThere) {
            beside_ = qobject_cast<QQuickWindow*>(*found);
        }
        return isThere;
    }),
        "the acknowledgements");
}

QImage PictureStage::picture() {
    QQuickWindow& shown = beside_ ? *beside_ : window_->window();
    return shown.grabWindow().convertToFormat(QImage::Format_RGB32);
}

} // namespace ostrella::test
