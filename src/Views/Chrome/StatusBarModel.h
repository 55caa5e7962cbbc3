#pragma once

#include "Models/RunState.h"
#include "Views/Format/QueuedUpdate.h"
#include "Views/Format/StatusLine.h"
#include "Views/SharedObjects.h"

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace ostrella {

/// The strip at the foot of the window: what the application does or how the last run ended, a few
/// figures, and the machine. Main thread only.
class StatusBarModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the window")

    Q_PROPERTY(QString text READ text NOTIFY changed)
    /// Of the dot: "idle", "ok", "run", "warn" or "err".
    Q_PROPERTY(QString tone READ tone NOTIFY changed)
    /// Maps with `text` and `mono` (the monospaced face), in their order.
    Q_PROPERTY(QVariantList counters READ counters NOTIFY changed)
    /// Free space and processor; may be empty.
    Q_PROPERTY(QString machine READ machine NOTIFY changed)

public:
    /// What is asked of the system. Asked on a background thread, since a disk may take its time.
    struct MachineQueries {
        /// Free bytes of the volume that holds a directory.
        std::function<std::optional<std::int64_t>(const std::filesystem::path&)> availableCapacity;
        std::function<std::optional<std::string>()> chipName;

        static MachineQueries system();
    };

    /// `temporaryDirectory` is where the runs of this process lie.
    StatusBarModel(const SharedObjects& shared, std::filesystem::path temporaryDirectory,
        MachineQueries queries = MachineQueries::system(), QObject* parent = nullptr);

    QString text() const;
    QString tone() const;
    QVariantList counters() const;
    QString machine() const;

Q_SIGNALS:
    /// At most once per turn of the event loop.
    void changed();

private:
    void phaseChanged();
    void meshChanged();
    void refreshMachine();
    void refreshLine();

    SharedObjects shared_;
    std::filesystem::path temporaryDirectory_;
    MachineQueries queries_;
    RunPhase phase_;
    /// The model has been changed since a run ended: that run's outcome says nothing of it.
    bool outcomeIsStale_ = false;
    StatusLine line_;
    std::string machine_;
    /// Number of the newest machine query; answers to older ones count no longer.
    std::int64_t query_ = 0;
    QueuedUpdate update_;
};

} // namespace ostrella
