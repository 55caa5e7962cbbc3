#pragma once

#include "Models/Timers.h"
#include "Platform/AppBundle.h"

#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <string>

namespace ostrella {

struct PlatformWords;
class UpdateController;

/// The about window: the application's version, what the tools and the renderer are, and the
/// acknowledgements. The tools are looked at each time the window appears, gmsh beside the main
/// thread; what was known stays until then. Main thread only.
class AboutModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")

    /// The fixed texts of AboutText by name, the version and the line of rights.
    Q_PROPERTY(QVariantMap texts READ texts CONSTANT)
    Q_PROPERTY(QString solver READ solver NOTIFY solverChanged)
    Q_PROPERTY(QString mesher READ mesher NOTIFY mesherChanged)
    Q_PROPERTY(QString renderer READ renderer NOTIFY rendererChanged)
    /// The notices of the tools: maps with `heading` and `text`.
    Q_PROPERTY(QVariantList notices READ notices NOTIFY mesherChanged)
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY canCheckForUpdatesChanged)
    Q_PROPERTY(bool showAcknowledgements READ showAcknowledgements WRITE setShowAcknowledgements
            NOTIFY showAcknowledgementsChanged)

public:
    struct Surroundings {
        AppBundle bundle;
        const PlatformWords& words;
        /// Label of the graphics interface, as the log's first lines have it.
        std::string renderer;
        /// Opens an address in the user's browser.
        std::function<void(const std::string& address)> openAddress;
        /// May be null; outlives the model.
        UpdateController* updates = nullptr;
        TimerService& timers = TimerService::system();
    };

    explicit AboutModel(Surroundings surroundings, QObject* parent = nullptr);

    QVariantMap texts() const { return texts_; }
    QString solver() const { return solver_; }
    QString mesher() const { return mesher_; }
    QString renderer() const { return renderer_; }
    QVariantList notices() const;
    bool canCheckForUpdates() const;
    bool showAcknowledgements() const { return showAcknowledgements_; }
    void setShowAcknowledgements(bool show);

    /// The window comes to be seen.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void openSite();
    Q_INVOKABLE void checkForUpdates();

Q_SIGNALS:
    void solverChanged();
    void mesherChanged();
    void rendererChanged();
    void canCheckForUpdatesChanged();
    void showAcknowledgementsChanged();

private:
    void probeMesher();

    Surroundings surroundings_;
    QVariantMap texts_;
    QString solver_;
    QString mesher_;
    QString renderer_;
    bool isProbing_ = false;
    bool showAcknowledgements_ = false;
};

} // namespace ostrella
