#include "Platform/TaskBarProgress.h"

#include "Platform/DesktopEntry.h"
#include "Platform/SessionBus.h"

#include <QPointer>
#include <QVariantMap>

namespace ostrella {

class TaskBarProgress::Bar final : public QObject {
public:
    QPointer<SessionBus> bus;
};

TaskBarProgress::TaskBarProgress(QObject* parent) : QObject(parent), bar_(std::make_unique<Bar>()) {
    SessionBus::whenConnected(bar_.get(), [this](SessionBus& bus) {
        bar_->bus = &bus;
        if (steps_) {
            show();
        }
    });
}

TaskBarProgress::~TaskBarProgress() {
    set(std::nullopt);
}

/// Announces it by the signal that the docks of several desktops listen to.
void TaskBarProgress::show() {
    if (!bar_->bus) {
        return;
    }
    QDBusMessage message =
        QDBusMessage::createSignal(QStringLiteral("/org/ostrella/Ostrella/launcher"),
            QStringLiteral("com.canonical.Unity.LauncherEntry"), QStringLiteral("Update"));
    const double progress = static_cast<double>(steps_.value_or(0)) / stepCount;
    message.setArguments({QStringLiteral("application://%1.desktop")
                              .arg(QString::fromLatin1(DesktopEntry::identifier)),
        QVariantMap{{QStringLiteral("progress"), progress},
            {QStringLiteral("progress-visible"), steps_.has_value()}}});
    bar_->bus->send(message);
}

} // namespace ostrella
