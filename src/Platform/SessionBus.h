#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace ostrella {

/// A connection to the bus of the user's session, on which the desktop's services are met. Made by
/// a thread of its own, so that a bus that hangs holds nobody up. Lives as long as the process;
/// main thread only.
class SessionBus : public QObject {
    Q_OBJECT

public:
    using Use = std::function<void(SessionBus&)>;
    using Answer = std::function<void(const QDBusMessage&)>;

    /// Calls `use` in a later turn of the event loop, once the connection stands; never where there
    /// is no bus, it turns us down, or `context` has gone.
    static void whenConnected(QObject* context, Use use);

    /// Where the bus of this session listens, if there is one.
    static std::optional<QString> address();

    /// Sends a call. `answer` gets the reply or the error, a time-out included, unless `context`
    /// has gone.
    void call(const QDBusMessage& message, QObject* context, Answer answer);
    /// Sends a message that nobody answers.
    void send(const QDBusMessage& message);

Q_SIGNALS:
    /// A signal of one of the services of the desktop, or about their coming and going.
    void heard(const QDBusMessage& signal);

public Q_SLOTS:
    void hear(const QDBusMessage& signal);

private:
    explicit SessionBus(QString address);

    static SessionBus& at(const QString& address);
    /// Turns to the bus if that has not been done, or the connection has been lost.
    void connectIfNeeded();
    void connected(const QDBusConnection& connection);

    enum class State { apart, connecting, connected };

    QString address_;
    State state_ = State::apart;
    std::optional<QDBusConnection> connection_;
    std::vector<std::pair<QPointer<QObject>, Use>> waiting_;
};

} // namespace ostrella
