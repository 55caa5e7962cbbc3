#pragma once

#include "Emit.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QSocketNotifier>

#include <cstdlib>

/// A service of the desktop for tests, on the bus of the environment. It writes "ready" and then a
/// line for each call, takes commands as lines of its input, and ends with its input.
class BusService : public QDBusVirtualObject {
public:
    BusService(QString name, QString path, QString interface)
        : name_(std::move(name)), path_(std::move(path)), interface_(std::move(interface)) {}

    int serve() {
        alarm(lifetime);
        QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
        connect(&input, &QSocketNotifier::activated, this, [this] { readCommands(); });
        if (!bus_.registerVirtualObject(path_, this) || !bus_.registerService(name_)) {
            return EXIT_FAILURE;
        }
        emit("ready\n");
        return QCoreApplication::exec();
    }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        if (message.interface() != interface_) {
            return false;
        }
        QByteArray line = message.member().toUtf8();
        for (const QVariant& argument : message.arguments()) {
            line += '|' + said(argument).toUtf8();
        }
        // One line a call, whatever is in it.
        emit(line.replace('\n', ' ').append('\n').toStdString());
        called(message);
        return true;
    }

protected:
    virtual void called(const QDBusMessage& call) = 0;
    virtual void command(const QStringList& words) = 0;
    void answer(const QDBusMessage& call, const QVariant& value) {
        bus_.send(call.createReply(value));
    }
    void fail(const QDBusMessage& call, const char* error) {
        bus_.send(call.createErrorReply(QString::fromLatin1(error), QStringLiteral("so be it")));
    }
    void signal(const QString& member, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createSignal(path_, interface_, member);
        message.setArguments(arguments);
        bus_.send(message);
    }

private:
    /// An argument as it is written in the line of its call.
    static QString said(const QVariant& argument) {
        if (argument.metaType() == QMetaType::fromType<QDBusArgument>()) {
            QStringList pairs;
            const auto map = qdbus_cast<QVariantMap>(argument);
            for (auto pair = map.begin(); pair != map.end(); ++pair) {
                pairs.append(pair.key() + QLatin1Char('=') + pair.value().toString());
            }
            return pairs.join(QLatin1Char(','));
        }
        return argument.typeId() == QMetaType::QStringList
                   ? argument.toStringList().join(QLatin1Char(','))
                   : argument.toString();
    }

    void readCommands() {
        char buffer[4096];
        const ssize_t count = read(STDIN_FILENO, buffer, sizeof buffer);
        if (count <= 0) {
            QCoreApplication::quit();
            return;
        }
        unread_.append(buffer, count);
        for (auto end = unread_.indexOf('\n'); end >= 0; end = unread_.indexOf('\n')) {
            command(QString::fromUtf8(unread_.left(end)).split(QLatin1Char(' ')));
            unread_.remove(0, end + 1);
        }
    }

    QString name_;
    QString path_;
    QString interface_;
    QDBusConnection bus_ = QDBusConnection::sessionBus();
    QByteArray unread_;
};
