#include "Views/Chrome/StatusBarModel.h"

#include "Models/HistoryStore.h"
#include "Models/MainThread.h"
#include "Models/SimulationParameters.h"
#include "Platform/SystemFacts.h"
#include "Solver/Run/SimulationController.h"
#include "Solver/Tools/Background.h"
#include "Views/Format/SystemInfo.h"
#include "Views/QStringOf.h"

#include <QPointer>
#include <QVariantMap>

#include <string_view>
#include <utility>

namespace ostrella {

StatusBarModel::MachineQueries StatusBarModel::MachineQueries::system() {
    return {SystemFacts::availableCapacity, [] {
                // The processor stays the same as long as the process lives.
                static const auto chip = SystemFacts::chipName();
                return chip;
            }};
}

StatusBarModel::StatusBarModel(const SharedObjects& shared,
    std::filesystem::path temporaryDirectory, MachineQueries queries, QObject* parent)
    : QObject(parent),
      shared_(shared),
      temporaryDirectory_(std::move(temporaryDirectory)),
      queries_(std::move(queries)),
      phase_(shared.simulation.phase()),
      update_(this, [this] { refreshLine(); }) {
    const auto schedule = [this] { update_.schedule(); };
    SimulationController& simulation = shared_.simulation;
    connect(&simulation, &SimulationController::phaseChanged, this, &StatusBarModel::phaseChanged);
    connect(&simulation, &SimulationController::meshCellsChanged, this, schedule);
    connect(&simulation, &SimulationController::maxIterationsChanged, this, schedule);
    connect(&simulation, &SimulationController::summaryChanged, this, schedule);
    connect(&shared_.parameters, &SimulationParameters::meshChanged, this,
        &StatusBarModel::meshChanged);
    for (const auto signal :
        {&HistoryStore::residualsChanged, &HistoryStore::coefficientsChanged}) {
        connect(&shared_.history, signal, this, schedule);
    }
    refreshLine();
    refreshMachine();
}

void StatusBarModel::phaseChanged() {
    const RunPhase old = std::exchange(phase_, shared_.simulation.phase());
    if (phase_ == old) {
        return;
    }
    outcomeIsStale_ = false;
    if (old.isActive() && !phase_.isActive()) {
        // A run has just used up disk space.
        refreshMachine();
    }
    update_.schedule();
}

void StatusBarModel::meshChanged() {
    if (!phase_.isActive()) {
        outcomeIsStale_ = true;
    }
    update_.schedule();
}

void StatusBarModel::refreshMachine() {
    const auto& result = shared_.parameters.lastRunResult();
    const auto directory = result ? result->runDirectory : temporaryDirectory_;
    Background::run([weak = QPointer(this), directory, queries = queries_, number = ++query_] {
        std::string text =
            SystemInfo::summary(queries.availableCapacity(directory), queries.chipName());
        MainThread::post([weak, number, text = std::move(text)] {
            if (weak && weak->query_ == number) {
                weak->machine_ = text;
                Q_EMIT weak->changed();
            }
        });
    });
}

void StatusBarModel::refreshLine() {
    const SimulationController& simulation = shared_.simulation;
    const SimulationParameters& parameters = shared_.parameters;
    StatusLine::Inputs inputs;
    inputs.phase = simulation.phase();
    if (outcomeIsStale_ && !inputs.phase.isActive()) {
        inputs.phase = RunPhase::idle();
    }
    if (const auto& mesh = parameters.mesh()) {
        inputs.facets = static_cast<std::int64_t>(mesh->facetCount());
    }
    if (inputs.phase.kind != RunPhase::Kind::idle) {
        inputs.cells = simulation.meshCells();
        if (!inputs.cells && simulation.summary()) {
            inputs.cells = simulation.summary()->cells;
        }
    }
    if (const auto latest = shared_.history.latestIteration()) {
        inputs.iteration = *latest + 1;
    }
    inputs.maxIterations = simulation.maxIterations();
    inputs.summary = simulation.summary();
    line_ = StatusLine::make(inputs);
    Q_EMIT changed();
}

QString StatusBarModel::text() const {
    return qStringOf(line_.text);
}

QString StatusBarModel::tone() const {
    return qStringOf(rawValue(line_.tone));
}

QVariantList StatusBarModel::counters() const {
    QVariantList counters;
    for (const StatusCounter& counter : line_.counters) {
        counters.append(QVariantMap{{QStringLiteral("text"), qStringOf(counter.text)},
            {QStringLiteral("mono"), counter.mono}});
    }
    return counters;
}

QString StatusBarModel::machine() const {
    return qStringOf(machine_);
}

} // namespace ostrella
