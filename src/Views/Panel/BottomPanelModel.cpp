#include "Views/Panel/BottomPanelModel.h"

#include "Models/HistoryStore.h"
#include "Solver/Run/SimulationController.h"
#include "Views/QStringOf.h"

#include <QStringList>
#include <QVariantMap>

#include <string_view>
#include <utility>

namespace ostrella {

namespace {

QVariantMap option(int value, const QString& title, const QString& help = {}) {
    QVariantMap result{{QStringLiteral("value"), value}, {QStringLiteral("title"), title}};
    if (!help.isEmpty()) {
        result.insert(QStringLiteral("help"), help);
    }
    return result;
}

} // namespace

BottomPanelModel::BottomPanelModel(const SharedObjects& shared, QObject* parent)
    : QObject(parent),
      simulation_(shared.simulation),
      history_(shared.history),
      isRunActive_(simulation_.phase().isActive()),
      hadData_(history_.hasData()),
      lines_(shared.log),
      residuals_(history_, ChartModel::Kind::residuals),
      coefficients_(history_, ChartModel::Kind::coefficients),
      rightTextUpdate_(this, [this] { Q_EMIT rightTextChanged(); }) {
    const auto updateRightText = [this] { rightTextUpdate_.schedule(); };
    connect(&lines_, &LogLines::changed, this, updateRightText);
    connect(this, &BottomPanelModel::tabChanged, this, updateRightText);
    connect(this, &BottomPanelModel::isFollowingLogChanged, this, updateRightText);
    connect(&simulation_, &SimulationController::phaseChanged, this, updateRightText);
    connect(&simulation_, &SimulationController::summaryChanged, this, updateRightText);
    connect(&history_, &HistoryStore::residualsChanged, this, updateRightText);
    connect(&history_, &HistoryStore::coefficientsChanged, this, updateRightText);

    connect(&simulation_, &SimulationController::phaseChanged, this, &BottomPanelModel::watchRun);
    connect(&history_, &HistoryStore::hasDataChanged, this, &BottomPanelModel::watchData);
}

void BottomPanelModel::setTab(Tab tab) {
    if (std::exchange(tab_, tab) != tab) {
        Q_EMIT tabChanged();
    }
}

void BottomPanelModel::setFilter(LogFilter filter) {
    const bool isOther = filter != lines_.filter();
    lines_.setFilter(filter);
    if (filter == LogFilter::warn || filter == LogFilter::err) {
        isReadingIssue_ = true;
    }
    if (isOther) {
        Q_EMIT filterChanged();
    }
    setFollowingLog(true);
}

void BottomPanelModel::setVisible(bool visible) {
    if (std::exchange(isVisible_, visible) != visible) {
        Q_EMIT isVisibleChanged();
    }
}

void BottomPanelModel::setFollowingLog(bool following) {
    if (std::exchange(isFollowingLog_, following) != following) {
        Q_EMIT isFollowingLogChanged();
    }
}

void BottomPanelModel::showLog(std::optional<LogStore::Level> level) {
    setFilter(logFilterFor(level));
    setTab(Tab::log);
    setVisible(true);
    isReadingIssue_ = true;
}

void BottomPanelModel::dataAppeared() {
    if (tab_ == Tab::log && !isReadingIssue_) {
        setTab(Tab::convergence);
    }
}

void BottomPanelModel::runBegan() {
    isReadingIssue_ = false;
}

void BottomPanelModel::watchRun() {
    const bool isActive = simulation_.phase().isActive();
    if (!std::exchange(isRunActive_, isActive) && isActive) {
        runBegan();
    }
}

void BottomPanelModel::watchData() {
    const bool hasData = history_.hasData();
    if (std::exchange(hadData_, hasData) == hasData) {
        return;
    }
    Q_EMIT hasDataChanged();
    if (hasData) {
        dataAppeared();
    }
}

void BottomPanelModel::chooseTab(int tab) {
    const Tab chosen = tab == static_cast<int>(Tab::log) ? Tab::log : Tab::convergence;
    if (chosen == Tab::convergence) {
        isReadingIssue_ = false;
    }
    setTab(chosen);
}

void BottomPanelModel::chooseFilter(int filter) {
    for (const LogFilter known : allLogFilters) {
        if (static_cast<int>(known) == filter) {
            setFilter(known);
        }
    }
}

PanelText::HeaderInput BottomPanelModel::header(std::int64_t lineCount) const {
    return {.tab = tab_,
        .lineCount = lineCount,
        .isFollowingLog = isFollowingLog_,
        .phase = simulation_.phase(),
        .summary = simulation_.summary(),
        .latestIteration = history_.latestIteration()};
}

std::string BottomPanelModel::rightText(std::int64_t lineCount) const {
    return PanelText::rightText(header(lineCount));
}

QString BottomPanelModel::rightText() const {
    return QString::fromStdString(rightText(lines_.count()));
}

QString BottomPanelModel::rightForms() const {
    QStringList forms;
    for (const std::string& form : PanelText::rightForms(header(lines_.count()))) {
        forms.push_back(QString::fromStdString(form));
    }
    return forms.join(QChar(0x9C));
}

QVariantList BottomPanelModel::tabs() const {
    QVariantList result;
    for (const Tab tab : PanelText::allTabs) {
        result.push_back(option(static_cast<int>(tab), qStringOf(PanelText::title(tab))));
    }
    return result;
}

QVariantList BottomPanelModel::filters() const {
    QVariantList result;
    for (const LogFilter filter : allLogFilters) {
        result.push_back(option(static_cast<int>(filter), qStringOf(rawValue(filter)),
            qStringOf(logFilterHelp(filter))));
    }
    return result;
}

bool BottomPanelModel::hasData() const {
    return history_.hasData();
}

QString BottomPanelModel::emptySymbol() const {
    return qStringOf(PanelText::emptySymbol);
}

QString BottomPanelModel::emptyText() const {
    return qStringOf(PanelText::emptyText);
}

} // namespace ostrella
