#include "Views/Viewport/CardModel.h"

#include "Models/HistoryStore.h"
#include "Models/LogStore.h"
#include "Models/NotificationCenter.h"
#include "Models/PreferenceStore.h"
#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Solver/Flow/LineChains.h"
#include "Solver/Run/SimulationController.h"
#include "Views/Format/SidebarFormat.h"
#include "Views/Format/ViewportText.h"
#include "Views/QStringOf.h"

#include <QVariantMap>

#include <utility>

namespace ostrella {

using ViewportFormat::TopLeftCard;

namespace {

QString name(TopLeftCard card) {
    switch (card) {
    case TopLeftCard::none:
        return QStringLiteral("none");
    case TopLeftCard::error:
        return QStringLiteral("error");
    case TopLeftCard::solver:
        return QStringLiteral("solver");
    case TopLeftCard::result:
        return QStringLiteral("result");
    case TopLeftCard::geometry:
        return QStringLiteral("geometry");
    }
    return {};
}

bool storedFlag(const PreferenceStore& store, std::string_view key) {
    const auto value = store.value(key);
    const bool* flag = value ? std::get_if<bool>(&*value) : nullptr;
    return flag != nullptr && *flag;
}

std::optional<std::string> fileName(const SimulationParameters& parameters) {
    const auto& file = parameters.stlURL();
    return file ? std::optional(file->filename().string()) : std::nullopt;
}

} // namespace

CardModel::CardModel(
    const SharedObjects& shared, PreferenceStore& preferences, const Clock& clock, QObject* parent)
    : QObject(parent),
      shared_(shared),
      preferences_(preferences),
      clock_(clock),
      isCollapsed_(storedFlag(preferences, collapsedKey)),
      boundingBox_([this] { update_.schedule(); }),
      update_(this, [this] { refresh(); }) {
    observe();
    refresh();
}

void CardModel::observe() {
    const auto later = [this] { update_.schedule(); };
    const auto model = [this] {
        const auto& parameters = shared_.parameters;
        boundingBox_.refresh(parameters.mesh(),
            {parameters.rotationX(), parameters.rotationY(), parameters.rotationZ()});
        update_.schedule();
    };
    const auto* parameters = &shared_.parameters;
    connect(parameters, &SimulationParameters::meshChanged, this, model);
    connect(parameters, &SimulationParameters::rotationXChanged, this, model);
    connect(parameters, &SimulationParameters::rotationYChanged, this, model);
    connect(parameters, &SimulationParameters::rotationZChanged, this, model);
    connect(parameters, &SimulationParameters::stlURLChanged, this, later);
    connect(parameters, &SimulationParameters::openEdgeCountChanged, this, later);
    connect(parameters, &SimulationParameters::lastRunResultChanged, this, [this] {
        const auto& result = shared_.parameters.lastRunResult();
        lineCount_ =
            result && result->streamlines
                ? static_cast<std::int64_t>(LineChains::of(*result->streamlines).lineCount())
                : 0;
        update_.schedule();
    });
    const auto* simulation = &shared_.simulation;
    connect(simulation, &SimulationController::phaseChanged, this, &CardModel::phaseChanged);
    connect(simulation, &SimulationController::summaryChanged, this, later);
    connect(simulation, &SimulationController::meshCellsChanged, this, later);
    connect(simulation, &SimulationController::maxIterationsChanged, this, later);
    const auto history = [this] {
        recordIteration();
        update_.schedule();
    };
    connect(&shared_.history, &HistoryStore::residualsChanged, this, history);
    connect(&shared_.history, &HistoryStore::coefficientsChanged, this, history);
    model();
}

void CardModel::phaseChanged() {
    const bool isActive = shared_.simulation.phase().isActive();
    if (!std::exchange(wasActive_, isActive) && isActive) {
        rate_ = {};
    }
    update_.schedule();
}

void CardModel::recordIteration() {
    const auto now = iteration();
    if (now != recorded_) {
        recorded_ = now;
        rate_.record(now, clock_.now());
    }
}

std::optional<std::int64_t> CardModel::iteration() const {
    const auto latest = shared_.history.latestIteration();
    return latest ? std::optional(*latest + 1) : std::nullopt;
}

void CardModel::refresh() {
    kind_ = ViewportFormat::topLeftCard(shared_.simulation.phase(),
        shared_.parameters.lastRunResult().has_value(), shared_.parameters.mesh().has_value());
    const RunPhase& phase = shared_.simulation.phase();
    if (kind_ == TopLeftCard::error) {
        stage_ = phase.stage;
        message_ = phase.message;
    } else if (kind_ != TopLeftCard::none) {
        infoKind_ = kind_;
        rows_ = currentRows();
        liveLine_ = kind_ == TopLeftCard::solver ? SidebarFormat::progressTitle(phase, iteration(),
                                                       shared_.simulation.maxIterations())
                                                 : "";
    }
    Q_EMIT changed();
}

std::vector<CardRowModel> CardModel::currentRows() const {
    switch (kind_) {
    case TopLeftCard::solver:
        return solverRows();
    case TopLeftCard::result:
        return resultRows();
    case TopLeftCard::geometry:
        return geometryRows();
    case TopLeftCard::none:
    case TopLeftCard::error:
        break;
    }
    return {};
}

std::vector<CardRowModel> CardModel::solverRows() const {
    const HistoryStore& history = shared_.history;
    return ViewportFormat::solverRows(history.latestValue("P"), history.latestValue("CL"),
        history.latestValue("CD"), rate_.secondsPerIteration());
}

std::vector<CardRowModel> CardModel::resultRows() const {
    const SimulationResult& result = *shared_.parameters.lastRunResult();
    ViewportFormat::ResultInput input;
    input.fileName = fileName(shared_.parameters);
    input.cells = shared_.simulation.meshCells();
    input.summary = shared_.simulation.summary();
    if (result.surfaceField) {
        input.cpRange = {result.surfaceField->scalarMin, result.surfaceField->scalarMax};
    }
    if (result.streamlines) {
        input.streamlines = lineCount_;
    }
    return ViewportFormat::resultRows(input);
}

std::vector<CardRowModel> CardModel::geometryRows() const {
    const SimulationParameters& parameters = shared_.parameters;
    return ViewportFormat::geometryRows({.fileName = fileName(parameters),
        .facets = static_cast<std::int64_t>(parameters.mesh()->positions().size() / 3),
        .boundingBoxText = boundingBox_.text(),
        .rotation = {parameters.rotationX(), parameters.rotationY(), parameters.rotationZ()},
        .openEdges = parameters.openEdgeCount()});
}

QString CardModel::kind() const {
    return name(kind_);
}

QString CardModel::title() const {
    return qStringOf(ViewportFormat::cardTitle(infoKind_));
}

QVariantList CardModel::rows() const {
    QVariantList rows;
    for (const CardRowModel& row : rows_) {
        rows.append(QVariantMap{{QStringLiteral("label"), qStringOf(row.label)},
            {QStringLiteral("value"), qStringOf(row.value)},
            {QStringLiteral("tone"), qStringOf(rawValue(row.tone))}});
    }
    return rows;
}

QString CardModel::liveLine() const {
    return qStringOf(liveLine_);
}

QString CardModel::errorTitle() const {
    return qStringOf(ViewportFormat::errorTitle(stage_));
}

QString CardModel::message() const {
    return qStringOf(message_);
}

QString CardModel::showInLog() const {
    return qStringOf(CardText::showInLog);
}

QString CardModel::showInLogHelp() const {
    return qStringOf(CardText::showInLogHelp);
}

void CardModel::setCollapsed(bool collapsed) {
    if (collapsed != isCollapsed_) {
        isCollapsed_ = collapsed;
        preferences_.set(collapsedKey, collapsed);
        Q_EMIT changed();
    }
}

QString CardModel::summary() const {
    return qStringOf(ViewportFormat::collapsedSummary(rows_).value_or(""));
}

QString CardModel::collapseHelp() const {
    return qStringOf(ViewportFormat::collapseHelp(isCollapsed_));
}

QString CardModel::collapseValue(bool isCollapsed) {
    return qStringOf(ViewportFormat::collapseValue(isCollapsed));
}

QString CardModel::collapseSymbol() const {
    return qStringOf(ViewportFormat::collapseSymbol(isCollapsed_));
}

void CardModel::openLog() {
    shared_.notifications.post(Notifications::showLogRequested, LogStore::Level::error);
}

} // namespace ostrella
