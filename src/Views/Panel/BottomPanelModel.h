#pragma once

#include "Models/LogStore.h"
#include "Views/Format/LogFilter.h"
#include "Views/Format/PanelText.h"
#include "Views/Format/QueuedUpdate.h"
#include "Views/Panel/ChartModel.h"
#include "Views/Panel/LogLines.h"
#include "Views/SharedObjects.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <optional>
#include <string>

namespace ostrella {

/// What the panel under the viewport shows, and when it turns to the charts by itself.
class BottomPanelModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the window's model")
    Q_PROPERTY(int tab READ tabIndex NOTIFY tabChanged)
    Q_PROPERTY(bool showsLog READ showsLog NOTIFY tabChanged)
    Q_PROPERTY(int filter READ filterIndex NOTIFY filterChanged)
    Q_PROPERTY(bool isVisible READ isVisible WRITE setVisible NOTIFY isVisibleChanged)
    Q_PROPERTY(
        bool isFollowingLog READ isFollowingLog WRITE setFollowingLog NOTIFY isFollowingLogChanged)
    Q_PROPERTY(QString rightText READ rightText NOTIFY rightTextChanged)
    /// rightText and its shorter forms, in the toolkit's way of giving several: with U+009C
    /// between.
    Q_PROPERTY(QString rightForms READ rightForms NOTIFY rightTextChanged)
    Q_PROPERTY(bool hasData READ hasData NOTIFY hasDataChanged)
    Q_PROPERTY(QVariantList tabs READ tabs CONSTANT)
    Q_PROPERTY(QVariantList filters READ filters CONSTANT)
    Q_PROPERTY(QString emptySymbol READ emptySymbol CONSTANT)
    Q_PROPERTY(QString emptyText READ emptyText CONSTANT)
    Q_PROPERTY(ostrella::LogLines* lines READ lines CONSTANT)
    Q_PROPERTY(ostrella::ChartModel* residuals READ residuals CONSTANT)
    Q_PROPERTY(ostrella::ChartModel* coefficients READ coefficients CONSTANT)

public:
    using Tab = PanelText::Tab;

    explicit BottomPanelModel(const SharedObjects& shared, QObject* parent = nullptr);

    Tab tab() const { return tab_; }
    void setTab(Tab tab);
    bool showsLog() const { return tab_ == Tab::log; }
    LogFilter filter() const { return lines_.filter(); }
    /// Follows the log again; warnings and errors are taken to be read.
    void setFilter(LogFilter filter);
    bool isVisible() const { return isVisible_; }
    void setVisible(bool visible);
    bool isFollowingLog() const { return isFollowingLog_; }
    void setFollowingLog(bool following);
    /// The user looks at warnings or errors: the panel must not leave the log by itself.
    bool isReadingIssue() const { return isReadingIssue_; }

    /// Shows the log's lines of a level, or all.
    void showLog(std::optional<LogStore::Level> level);

    /// The run has begun to give data: turns to the charts unless a problem is being read.
    void dataAppeared();
    /// A run has begun: what was read belongs to the one before.
    void runBegan();

    /// The user's own choices, by the values of `tabs` and `filters`.
    Q_INVOKABLE void chooseTab(int tab);
    Q_INVOKABLE void chooseFilter(int filter);

    /// What the header says on the right of `lineCount` lines, or of the run.
    std::string rightText(std::int64_t lineCount) const;
    QString rightText() const;
    QString rightForms() const;

    /// Each a map of "value", "title" and, for filters, "help".
    QVariantList tabs() const;
    QVariantList filters() const;

    bool hasData() const;
    /// What stands in place of the charts until there is data.
    QString emptySymbol() const;
    QString emptyText() const;
    LogLines* lines() { return &lines_; }
    ChartModel* residuals() { return &residuals_; }
    ChartModel* coefficients() { return &coefficients_; }

Q_SIGNALS:
    void tabChanged();
    void filterChanged();
    void isVisibleChanged();
    void isFollowingLogChanged();
    void rightTextChanged();
    void hasDataChanged();

private:
    int tabIndex() const { return static_cast<int>(tab_); }
    int filterIndex() const { return static_cast<int>(filter()); }
    PanelText::HeaderInput header(std::int64_t lineCount) const;
    void watchRun();
    void watchData();

    const SimulationController& simulation_;
    const HistoryStore& history_;
    Tab tab_ = Tab::log;
    bool isVisible_ = true;
    bool isFollowingLog_ = true;
    bool isReadingIssue_ = false;
    bool isRunActive_;
    bool hadData_;
    LogLines lines_;
    ChartModel residuals_;
    ChartModel coefficients_;
    QueuedUpdate rightTextUpdate_;
};

} // namespace ostrella
