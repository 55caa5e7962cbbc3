#pragma once

#include "Models/Clock.h"
#include "Models/NotificationCenter.h"
#include "Models/Timers.h"
#include "Views/Format/QueuedUpdate.h"
#include "Views/Format/ViewportLayout.h"
#include "Views/Format/ViewportNotice.h"
#include "Views/SharedObjects.h"
#include "Views/Viewport/CardModel.h"
#include "Views/Viewport/LegendModel.h"
#include "Views/Viewport/OrientCardModel.h"
#include "Views/Viewport/STLDropDelegate.h"
#include "Views/Viewport/ViewportItem.h"
#include "Views/Viewport/WelcomeModel.h"

#include <QObject>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>
#include <vector>

namespace ostrella {

class PreferenceStore;
struct PlatformWords;

/// What lies over the scene: which cards there are, what they say, and where they stand. Main
/// thread only.
class ViewportModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the window's model")
    Q_PROPERTY(ostrella::CardModel* card READ card CONSTANT)
    Q_PROPERTY(ostrella::LegendModel* legend READ legend CONSTANT)
    Q_PROPERTY(ostrella::OrientCardModel* orientCard READ orientCard CONSTANT)
    Q_PROPERTY(ostrella::WelcomeModel* welcome READ welcome CONSTANT)
    Q_PROPERTY(ostrella::STLDropDelegate* drop READ drop CONSTANT)

    Q_PROPERTY(bool showsWelcome READ showsWelcome NOTIFY changed)
    Q_PROPERTY(bool showsViewControl READ showsViewControl NOTIFY changed)
    Q_PROPERTY(bool showsOrientCard READ showsOrientCard NOTIFY changed)
    Q_PROPERTY(bool canOrient READ canOrient NOTIFY changed)
    /// While a file is being loaded; empty otherwise.
    Q_PROPERTY(QString loadingText READ loadingText NOTIFY changed)
    /// Empty for none.
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    Q_PROPERTY(QString noticeSymbol READ noticeSymbol CONSTANT)

    /// View control: maps with `view`, `name`, `label` and `help`.
    Q_PROPERTY(QVariantList views READ views CONSTANT)
    /// The marked one of them, or -1.
    Q_PROPERTY(int currentView READ currentView NOTIFY changed)
    /// `views`, and for `fit`, `orient`, `animate` and `saveImage` a map with `label`, `symbol` and
    /// `help`.
    Q_PROPERTY(QVariantMap tools READ tools NOTIFY changed)
    Q_PROPERTY(bool orients READ orients NOTIFY changed)
    Q_PROPERTY(bool hasStreamlines READ hasStreamlines NOTIFY changed)
    Q_PROPERTY(bool animates READ animates NOTIFY changed)

public:
    /// What reports its frame.
    enum Overlay { Card, Legend, ViewControl, OrientCard, Canvas };
    Q_ENUM(Overlay)

    struct Surroundings {
        const PlatformWords& words;
        PreferenceStore& preferences;
        std::function<void()> saveImage;
        const Clock& clock = Clock::system();
        TimerService& timers = TimerService::system();
    };

    ViewportModel(
        const SharedObjects& shared, const Surroundings& surroundings, QObject* parent = nullptr);

    CardModel* card() { return &card_; }
    LegendModel* legend() { return &legend_; }
    OrientCardModel* orientCard() { return &orientCard_; }
    WelcomeModel* welcome() { return &welcome_; }
    STLDropDelegate* drop() { return &drop_; }

    bool showsWelcome() const;
    bool showsViewControl() const;
    bool showsOrientCard() const;
    bool canOrient() const;
    QString loadingText() const;
    QString notice() const;
    QString noticeSymbol() const;
    QVariantList views() const;
    int currentView() const;
    QVariantMap tools() const;
    bool orients() const;
    bool hasStreamlines() const;
    bool animates() const;

    /// Shows the scene in a ViewportItem.
    Q_INVOKABLE void attach(QObject* item);
    /// The viewport has this size, and an overlay this frame in it; an empty one for an overlay
    /// that is not there.
    Q_INVOKABLE void reportSize(const QSizeF& size);
    Q_INVOKABLE void reportFrame(ostrella::ViewportModel::Overlay overlay, const QRectF& frame);

    /// Where the cards stand, as `placeOverlays` tells, and how wide the one at the top may be.
    Q_INVOKABLE QVariantMap place(const QVariantMap& wishes) const;
    Q_INVOKABLE double mostCardWidth(double viewWidth, double legendWidth) const;
    /// The most that the cards leave to the legend's bar.
    Q_INVOKABLE void reportBarHeight(double most);

    Q_INVOKABLE void requestView(int view);
    Q_INVOKABLE void fit();
    Q_INVOKABLE void toggleOrientMode();
    Q_INVOKABLE void toggleAnimation();
    Q_INVOKABLE void saveImage();
    Q_INVOKABLE void exitOrientMode();

    /// Takes what was dropped: loads a model, and tells what was left out.
    void handleDrop(const ViewportFormat::DropOutcome& outcome);

Q_SIGNALS:
    /// At most once per turn of the event loop.
    void changed();
    void noticeChanged();

private:
    void observe();
    void refreshLayout();
    void showNotice(std::string text);

    SharedObjects shared_;
    Surroundings surroundings_;
    CardModel card_;
    LegendModel legend_;
    OrientCardModel orientCard_;
    WelcomeModel welcome_;
    STLDropDelegate drop_;
    ViewportNotice notice_;
    Timer noticeTimer_;
    ViewportLayoutState layout_;
    std::optional<double> mostBarHeight_;
    QueuedUpdate update_;
    QueuedUpdate layoutUpdate_;
    std::vector<NotificationCenter::Token> observers_;
};

} // namespace ostrella
