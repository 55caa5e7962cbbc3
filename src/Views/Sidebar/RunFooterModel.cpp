#include "Views/Sidebar/RunFooterModel.h"

#include "Models/HistoryStore.h"
#include "Models/MainThread.h"
#include "Models/PlatformWords.h"
#include "Models/SimulationParameters.h"
#include "Solver/Run/SimulationController.h"
#include "Views/Format/SidebarFormat.h"
#include "Views/Format/SidebarText.h"
#include "Views/QStringOf.h"

#include <QPointer>

namespace ostrella {

namespace {

constexpr std::chrono::duration<double> tickInterval = std::chrono::seconds(1);

QVariantMap footerTexts(const PlatformWords& words) {
    return {{QStringLiteral("run"), qStringOf(SidebarText::run)},
        {QStringLiteral("runSymbol"), qStringOf(SidebarText::runSymbol)},
        {QStringLiteral("runHelp"), qStringOf(SidebarText::runHelp(words))},
        {QStringLiteral("cancel"), qStringOf(SidebarText::cancel)},
        {QStringLiteral("cancelHelp"), qStringOf(SidebarText::cancelHelp)}};
}

} // namespace

RunFooterModel::RunFooterModel(const SharedObjects& shared, const PlatformWords& words,
    const Clock& clock, TimerService& timers, QObject* parent)
    : QObject(parent),
      shared_(shared),
      clock_(clock),
      timers_(timers),
      texts_(footerTexts(words)),
      now_(clock.now()),
      update_(this, [this] { Q_EMIT changed(); }) {
    const auto schedule = [this] { update_.schedule(); };
    SimulationController& simulation = shared_.simulation;
    connect(&simulation, &SimulationController::phaseChanged, this, &RunFooterModel::phaseChanged);
    connect(&simulation, &SimulationController::startedAtChanged, this, schedule);
    connect(&simulation, &SimulationController::summaryChanged, this, schedule);
    connect(&simulation, &SimulationController::maxIterationsChanged, this, schedule);
    for (const auto signal :
        {&HistoryStore::residualsChanged, &HistoryStore::coefficientsChanged}) {
        connect(&shared_.history, signal, this, &RunFooterModel::recordIteration);
    }
    for (const auto signal :
        {&SimulationParameters::meshChanged, &SimulationParameters::loadingFileNameChanged,
            &SimulationParameters::lastRunResultChanged}) {
        connect(&shared_.parameters, signal, this, schedule);
    }
    phaseChanged();
    recordIteration();
}

void RunFooterModel::phaseChanged() {
    const bool isActive = shared_.simulation.phase().isActive();
    if (isActive && !wasActive_) {
        rate_ = IterationRate();
    }
    if (isActive != wasActive_) {
        wasActive_ = isActive;
        // The timeline runs only while the progress block is on show.
        timer_.cancel();
        if (isActive) {
            tick();
        }
    }
    update_.schedule();
}

void RunFooterModel::recordIteration() {
    const auto newest = iteration();
    if (newest != recorded_) {
        recorded_ = newest;
        rate_.record(newest, clock_.now());
    }
    update_.schedule();
}

void RunFooterModel::tick() {
    now_ = clock_.now();
    timer_ = timers_.after(tickInterval, [weak = QPointer(this)] {
        MainThread::post([weak] {
            if (weak && weak->wasActive_) {
                weak->tick();
            }
        });
    });
    update_.schedule();
}

std::optional<std::int64_t> RunFooterModel::iteration() const {
    const auto latest = shared_.history.latestIteration();
    return latest ? std::optional(*latest + 1) : std::nullopt;
}

bool RunFooterModel::showsProgress() const {
    return shared_.simulation.phase().isActive();
}

QString RunFooterModel::progressTitle() const {
    return qStringOf(SidebarFormat::progressTitle(
        shared_.simulation.phase(), iteration(), shared_.simulation.maxIterations()));
}

QString RunFooterModel::progressDetail() const {
    const SimulationController& simulation = shared_.simulation;
    const auto startedAt = simulation.startedAt();
    const double elapsed = startedAt ? secondsBetween(*startedAt, now_) : 0;
    std::optional<double> remaining;
    if (simulation.phase().kind != RunPhase::Kind::postProcessing && iteration()) {
        remaining = rate_.remainingSeconds(simulation.maxIterations(), now_);
    }
    return qStringOf(SidebarFormat::timingLine(elapsed, remaining));
}

double RunFooterModel::progressFraction() const {
    return SidebarFormat::progressFraction(
        shared_.simulation.phase(), iteration(), shared_.simulation.maxIterations());
}

QString RunFooterModel::progressValue() const {
    return qStringOf(
        SidebarFormat::progressValue(progressFraction(), progressDetail().toStdString()));
}

QString RunFooterModel::summaryHead() const {
    return shared_.parameters.lastRunResult() && shared_.simulation.summary()
               ? qStringOf(SidebarText::lastRun)
               : QString();
}

QString RunFooterModel::summaryParts() const {
    if (summaryHead().isEmpty()) {
        return {};
    }
    std::string text;
    for (const std::string& part : SidebarFormat::summaryParts(*shared_.simulation.summary())) {
        text += " · " + part;
    }
    return qStringOf(text);
}

std::optional<SidebarFormat::StateLine> RunFooterModel::stateLine() const {
    const RunPhase& phase = shared_.simulation.phase();
    // Another model has taken the result away, and the line goes with it.
    if (phase.kind == RunPhase::Kind::finished && !shared_.parameters.lastRunResult()) {
        return std::nullopt;
    }
    return SidebarFormat::stateLine(phase, shared_.simulation.summary());
}

QString RunFooterModel::stateText() const {
    const auto line = stateLine();
    return line ? qStringOf(line->text) : QString();
}

QString RunFooterModel::stateTone() const {
    const auto line = stateLine();
    return line ? qStringOf(SidebarFormat::rawValue(line->tone)) : QString();
}

bool RunFooterModel::canRun() const {
    return shared_.simulation.canRun() && !shared_.parameters.loadingFileName();
}

std::optional<SidebarFormat::Hint> RunFooterModel::currentHint() const {
    return SidebarFormat::hint(
        shared_.parameters.loadingFileName(), shared_.parameters.mesh().has_value());
}

QString RunFooterModel::hint() const {
    const auto hint = currentHint();
    return hint ? qStringOf(hint->text) : QString();
}

QString RunFooterModel::hintSymbol() const {
    const auto hint = currentHint();
    return hint ? qStringOf(hint->symbol) : QString();
}

bool RunFooterModel::hintIsBusy() const {
    const auto hint = currentHint();
    return hint && hint->isBusy;
}

void RunFooterModel::run() {
    shared_.simulation.run();
}

void RunFooterModel::cancel() {
    shared_.simulation.cancel();
}

} // namespace ostrella
