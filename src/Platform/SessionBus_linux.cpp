#include "Platform/SessionBus.h"

#include "Models/MainThread.h"
#include "Platform/BusProbe.h"

#include <QDBusPendingCallWatcher>
#include <QFileInfo>

#include <map>
#include <memory>
#include <thread>

namespace ostrella {

namespace {

struct Heard {
    const char* path;
    const char* interface;
    const char* member;
};

/// What is listened to. No sender is named: the bus would have to be asked who that is, and whoever
/// is on the user's own bus can do worse than change a colour.
constexpr Heard signalsHeard[]{
    {"/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings", "SettingChanged"},
    {"/org/freedesktop/Notifications", "org.freedesktop.Notifications", "ActionInvoked"},
    {"/org/freedesktop/Notifications", "org.freedesktop.Notifications", "ActivationToken"},
    {"/org/freedesktop/Notifications", "org.freedesktop.Notifications", "NotificationClosed"},
};
constexpr const char* servicesWatched[]{
    "org.freedesktop.portal.Desktop", "org.freedesktop.Notifications"};

/// Runs on the connecting thread, since the bus is waited for; the messages come to the main one.
void listen(QDBusConnection& connection, QObject* listener) {
    const char* const slot = SLOT(hear(QDBusMessage));
    for (const Heard& heard : signalsHeard) {
        connection.connect(QString(), QString::fromLatin1(heard.path),
            QString::fromLatin1(heard.interface), QString::fromLatin1(heard.member), listener,
            slot);
    }
    for (const char* const service : servicesWatched) {
        connection.connect(QStringLiteral("org.freedesktop.DBus"),
            QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
            QStringLiteral("NameOwnerChanged"), QStringList{QString::fromLatin1(service)},
            QString(), listener, slot);
    }
}

} // namespace

SessionBus::SessionBus(QString address) : address_(std::move(address)) {}

std::optional<QString> SessionBus::address() {
    const QString named = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!named.isEmpty()) {
        return named;
    }
    // Without an address the library would start a bus of its own, which nobody else is on.
    const QString directory = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString socket = directory + QStringLiteral("/bus");
    if (!directory.isEmpty() && QFileInfo::exists(socket)) {
        return QStringLiteral("unix:path=") + socket;
    }
    return std::nullopt;
}

SessionBus& SessionBus::at(const QString& address) {
    // Never destroyed: messages may still be under way to them while the process ends.
    static auto* const all = new std::map<QString, SessionBus*>;
    SessionBus*& bus = (*all)[address];
    if (!bus) {
        bus = new SessionBus(address);
    }
    return *bus;
}

void SessionBus::whenConnected(QObject* context, Use use) {
    if (const auto place = address()) {
        SessionBus& bus = at(*place);
        bus.waiting_.emplace_back(context, std::move(use));
        bus.connectIfNeeded();
    }
}

void SessionBus::connectIfNeeded() {
    if (state_ == State::connecting) {
        return;
    }
    if (state_ == State::connected && connection_->isConnected()) {
        MainThread::post([this] { connected(*connection_); });
        return;
    }
    state_ = State::connecting;
    static int count = 0;
    const QString name = QStringLiteral("ostrella-%1").arg(++count);
    std::thread([this, name, place = address_] {
        QDBusConnection connection = busAnswers(place) ? QDBusConnection::connectToBus(place, name)
                                                       : QDBusConnection(QString());
        if (connection.isConnected()) {
            listen(connection, this);
        }
        MainThread::post([this, connection] { connected(connection); });
    }).detach();
}

void SessionBus::connected(const QDBusConnection& connection) {
    connection_ = connection;
    const bool isConnected = connection.isConnected();
    state_ = isConnected ? State::connected : State::apart;
    const auto waiting = std::exchange(waiting_, {});
    for (const auto& [context, use] : waiting) {
        if (isConnected && context) {
            use(*this);
        }
    }
}

void SessionBus::call(const QDBusMessage& message, QObject* context, Answer answer) {
    if (state_ != State::connected) {
        return;
    }
    auto* const watcher = new QDBusPendingCallWatcher(connection_->asyncCall(message), context);
    connect(watcher, &QDBusPendingCallWatcher::finished, context,
        [watcher, answer = std::move(answer)] {
            watcher->deleteLater();
            answer(watcher->reply());
        });
}

void SessionBus::send(const QDBusMessage& message) {
    if (state_ == State::connected) {
        connection_->send(message);
    }
}

void SessionBus::hear(const QDBusMessage& signal) {
    Q_EMIT heard(signal);
}

} // namespace ostrella
