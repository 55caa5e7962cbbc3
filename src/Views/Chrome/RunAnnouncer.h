#pragma once

#include "Models/Clock.h"
#include "Views/Format/QueuedUpdate.h"
#include "Views/SharedObjects.h"

#include <QObject>

#include <functional>
#include <optional>
#include <string>

namespace ostrella {

/// Tells the desktop of the run: how far it has come, and, to a user who is elsewhere, that a long
/// one has ended. Main thread only.
class RunAnnouncer : public QObject {
    Q_OBJECT

public:
    /// What it is told by and tells to. All are called on the main thread.
    struct Desktop {
        /// The window is the one that the user works in.
        std::function<bool()> isInFront;
        std::function<void(const std::string& title, const std::string& body)> showNote;
        std::function<void()> withdrawNote;
        /// From 0 to 1; nothing takes it away.
        std::function<void(std::optional<double> fraction)> showProgress;
    };

    RunAnnouncer(const SharedObjects& shared, Desktop desktop, const Clock& clock = Clock::system(),
        QObject* parent = nullptr);

    /// The user has come back: what the note says is on show.
    void windowCameToFront();

private:
    void phaseChanged();
    void showProgress();
    void withdraw();

    SharedObjects shared_;
    Desktop desktop_;
    const Clock& clock_;
    bool isActive_ = false;
    bool hasNote_ = false;
    Date began_;
    QueuedUpdate progress_;
};

} // namespace ostrella
