#include "Views/Chrome/RunAnnouncer.h"

#include "Models/HistoryStore.h"
#include "Solver/Run/SimulationController.h"
#include "Views/Format/RunNote.h"
#include "Views/Format/SidebarFormat.h"

#include <utility>

namespace ostrella {

RunAnnouncer::RunAnnouncer(
    const SharedObjects& shared, Desktop desktop, const Clock& clock, QObject* parent)
    : QObject(parent),
      shared_(shared),
      desktop_(std::move(desktop)),
      clock_(clock),
      began_(clock.now()),
      progress_(this, [this] { showProgress(); }) {
    connect(&shared_.simulation, &SimulationController::phaseChanged, this,
        &RunAnnouncer::phaseChanged);
    for (const auto signal :
        {&HistoryStore::residualsChanged, &HistoryStore::coefficientsChanged}) {
        connect(&shared_.history, signal, this, [this] {
            if (isActive_) {
                progress_.schedule();
            }
        });
    }
    phaseChanged();
}

void RunAnnouncer::windowCameToFront() {
    withdraw();
}

void RunAnnouncer::phaseChanged() {
    const RunPhase& phase = shared_.simulation.phase();
    const bool wasActive = std::exchange(isActive_, phase.isActive());
    if (isActive_ || wasActive) {
        progress_.schedule();
    }
    if (isActive_ && !wasActive) {
        began_ = clock_.now();
        withdraw();
    } else if (wasActive && !isActive_) {
        const auto& summary = shared_.simulation.summary();
        const auto note =
            RunNote::make(phase, secondsBetween(began_, clock_.now()), desktop_.isInFront(),
                summary ? SimulationController::finishLine(*summary).first : std::string());
        if (note) {
            hasNote_ = true;
            desktop_.showNote(note->title, note->body);
        }
    }
}

void RunAnnouncer::showProgress() {
    if (!isActive_) {
        desktop_.showProgress(std::nullopt);
        return;
    }
    const auto latest = shared_.history.latestIteration();
    desktop_.showProgress(SidebarFormat::progressFraction(shared_.simulation.phase(),
        latest ? std::optional(*latest + 1) : std::nullopt, shared_.simulation.maxIterations()));
}

void RunAnnouncer::withdraw() {
    if (std::exchange(hasNote_, false)) {
        desktop_.withdrawNote();
    }
}

} // namespace ostrella
