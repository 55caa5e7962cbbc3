#pragma once

#include "Models/Clock.h"
#include "Models/IterationRate.h"
#include "Views/Format/BoundingBoxText.h"
#include "Views/Format/QueuedUpdate.h"
#include "Views/Format/ViewportFormat.h"
#include "Views/SharedObjects.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

class PreferenceStore;

/// The card at the top left of the viewport: the loaded geometry, the running solver, the result or
/// an error. Main thread only.
class CardModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the viewport's model")
    /// "none", "error", "solver", "result" or "geometry".
    Q_PROPERTY(QString kind READ kind NOTIFY changed)

    /// Of the card of geometry, solver or result. It keeps what it showed while it gives way to
    /// another kind, and so does the error card.
    Q_PROPERTY(QString title READ title NOTIFY changed)
    /// Points.
    Q_PROPERTY(double width READ width NOTIFY changed)
    /// Maps with `label`, `value` and `tone`: "normal", "success" or "warning".
    Q_PROPERTY(QVariantList rows READ rows NOTIFY changed)
    /// The line over the rows of the solver card; may be empty.
    Q_PROPERTY(QString liveLine READ liveLine NOTIFY changed)

    /// Of the error card.
    Q_PROPERTY(QString errorTitle READ errorTitle NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(QString showInLog READ showInLog CONSTANT)
    Q_PROPERTY(QString showInLogHelp READ showInLogHelp CONSTANT)

    /// All cards collapse as one, and the choice outlives the process.
    Q_PROPERTY(bool collapsed READ isCollapsed WRITE setCollapsed NOTIFY changed)
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(QString collapseHelp READ collapseHelp NOTIFY changed)
    Q_PROPERTY(QString collapseSymbol READ collapseSymbol NOTIFY changed)

public:
    static constexpr std::string_view collapsedKey = "viewport.cardsCollapsed";

    CardModel(const SharedObjects& shared, PreferenceStore& preferences, const Clock& clock,
        QObject* parent = nullptr);

    QString kind() const;
    QString title() const;
    double width() const { return ViewportFormat::cardWidth(infoKind_); }
    QVariantList rows() const;
    QString liveLine() const;
    QString errorTitle() const;
    QString message() const;
    QString showInLog() const;
    QString showInLogHelp() const;
    bool isCollapsed() const { return isCollapsed_; }
    void setCollapsed(bool collapsed);
    QString summary() const;
    QString collapseHelp() const;
    /// What a reader of the screen says of a card that is drawn so.
    Q_INVOKABLE static QString collapseValue(bool isCollapsed);
    QString collapseSymbol() const;

    /// Brings the log forward, filtered to errors.
    Q_INVOKABLE void openLog();

Q_SIGNALS:
    /// At most once per turn of the event loop.
    void changed();

private:
    void observe();
    void phaseChanged();
    void recordIteration();
    void refresh();
    std::optional<std::int64_t> iteration() const;
    std::vector<CardRowModel> currentRows() const;
    std::vector<CardRowModel> solverRows() const;
    std::vector<CardRowModel> resultRows() const;
    std::vector<CardRowModel> geometryRows() const;

    SharedObjects shared_;
    PreferenceStore& preferences_;
    const Clock& clock_;
    bool isCollapsed_;
    bool wasActive_ = false;
    std::optional<std::int64_t> recorded_;
    IterationRate rate_;
    std::int64_t lineCount_ = 0; ///< of the result's streamlines
    ViewportFormat::TopLeftCard kind_ = ViewportFormat::TopLeftCard::none;
    ViewportFormat::TopLeftCard infoKind_ = ViewportFormat::TopLeftCard::none;
    std::vector<CardRowModel> rows_;
    std::string liveLine_;
    std::string stage_; ///< of the failure, and what is said of it
    std::string message_;
    BoundingBoxText boundingBox_;
    QueuedUpdate update_;
};

} // namespace ostrella
