#pragma once

#include <QObject>

#include <optional>
#include <string>

namespace ostrella {

class UpdaterDelegate;

/// What finds, fetches and installs updates. It shows them itself and has its delegate asked before
/// it disturbs anybody. Main thread only; a signal comes after its value has changed.
class Updater : public QObject {
    Q_OBJECT

public:
    explicit Updater(QObject* parent = nullptr);
    ~Updater() override;

    /// Begins with checks by schedule. Nothing on success, else why it failed, for people; after a
    /// failure it may be tried again.
    virtual std::optional<std::string> startUpdater() = 0;

    /// A check because the user asked for it; brings up an update that is held back or on show.
    virtual void checkForUpdates() = 0;

    /// A check of the user's can begin, or the one on show can be brought to the front.
    virtual bool canCheckForUpdates() const = 0;
    /// A check or what came of it goes on.
    virtual bool sessionInProgress() const = 0;

    /// The user's choice, remembered.
    virtual bool automaticallyChecksForUpdates() const = 0;
    virtual void setAutomaticallyChecksForUpdates(bool automatically) = 0;

    /// Null takes it away. It outlives the updater, or is taken away before it goes.
    virtual void setDelegate(UpdaterDelegate* delegate) = 0;

Q_SIGNALS:
    void canCheckForUpdatesChanged();
    void sessionInProgressChanged();
    void automaticallyChecksForUpdatesChanged();
};

} // namespace ostrella
