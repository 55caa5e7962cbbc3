#include "Platform/DesktopNotification.h"

#include "Platform/DesktopEntry.h"
#include "Platform/SessionBus.h"

#include <QList>
#include <QPointer>
#include <QStringList>
#include <QVariantMap>

#include <optional>
#include <utility>

namespace ostrella {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString defaultAction = QStringLiteral("default");

QDBusMessage notificationCall(const char* method, const QVariantList& arguments = {}) {
    QDBusMessage message = QDBusMessage::createMethodCall(service,
        QStringLiteral("/org/freedesktop/Notifications"), service, QString::fromLatin1(method));
    message.setArguments(arguments);
    return message;
}

bool is(const QDBusMessage& message, const char* member, const char* signature) {
    return message.member() == QLatin1String(member) &&
           message.signature() == QLatin1String(signature);
}

} // namespace

/// Says one thing at a time: what is asked for while the desktop has yet to answer is said after
/// that, the last of it alone.
class DesktopNotification::Desk final : public QObject {
public:
    explicit Desk(DesktopNotification& owner) : owner_(owner) {
        SessionBus::whenConnected(this, [this](SessionBus& bus) {
            bus_ = &bus;
            connect(&bus, &SessionBus::heard, this, &Desk::hear);
            proceed();
        });
    }

    /// Nothing for no note.
    struct Note {
        QString title;
        QString body;
    };

    void want(std::optional<Note> note) {
        wanted_ = std::move(note);
        hasNews_ = true;
        proceed();
    }

private:
    void proceed() {
        if (!bus_ || isBusy_ || !hasNews_) {
            return;
        }
        if (!wanted_) {
            hasNews_ = false;
            close();
        } else if (!capabilities_) {
            ask(notificationCall("GetCapabilities"), [this](const QDBusMessage& answer) {
                if (answer.type() != QDBusMessage::ReplyMessage) {
                    // Nobody shows notes; the next one asks again.
                    hasNews_ = false;
                } else if (answer.signature() == QLatin1String("as")) {
                    capabilities_ = answer.arguments().constFirst().toStringList();
                } else {
                    capabilities_ = QStringList();
                }
            });
        } else {
            hasNews_ = false;
            notify(*wanted_);
        }
    }

    void ask(const QDBusMessage& message, const SessionBus::Answer& answer) {
        isBusy_ = true;
        bus_->call(message, this, [this, answer](const QDBusMessage& reply) {
            isBusy_ = false;
            answer(reply);
            for (const QDBusMessage& signal : std::exchange(heardEarly_, {})) {
                hearOfNote(signal);
            }
            proceed();
        });
    }

    void notify(const Note& note) {
        const bool hasMarkup = capabilities_->contains(QLatin1String("body-markup"));
        const bool hasActions = capabilities_->contains(QLatin1String("actions"));
        // The default action is the click on the note; its name is shown nowhere.
        const QStringList actions =
            hasActions ? QStringList{defaultAction, QString()} : QStringList();
        const QVariantMap hints{
            {QStringLiteral("desktop-entry"), QString::fromLatin1(DesktopEntry::identifier)}};
        constexpr int asTheDesktopDoes = -1;
        ask(notificationCall("Notify",
                {QStringLiteral("Ostrella"), number_, QString::fromLatin1(DesktopEntry::identifier),
                    note.title, hasMarkup ? note.body.toHtmlEscaped() : note.body, actions, hints,
                    asTheDesktopDoes}),
            [this](const QDBusMessage& answer) {
                const bool isShown = answer.type() == QDBusMessage::ReplyMessage &&
                                     answer.signature() == QLatin1String("u");
                number_ = isShown ? answer.arguments().constFirst().toUInt() : 0;
                token_.clear();
            });
    }

    void close() {
        if (number_ != 0) {
            bus_->send(notificationCall("CloseNotification", {std::exchange(number_, 0U)}));
        }
    }

    void hear(const QDBusMessage& signal) {
        const QVariantList arguments = signal.arguments();
        if (is(signal, "NameOwnerChanged", "sss") && arguments[0] == service) {
            // Another program shows them from now on, and knows of none.
            capabilities_.reset();
            number_ = 0;
            heardEarly_.clear();
        } else if (isBusy_) {
            // It may be of the note whose number the answer tells; answers and signals come by ways
            // of their own.
            heardEarly_.append(signal);
        } else {
            hearOfNote(signal);
        }
    }

    void hearOfNote(const QDBusMessage& signal) {
        const QVariantList arguments = signal.arguments();
        const bool isOurs = number_ != 0 && !arguments.isEmpty() && arguments[0] == number_;
        if (!isOurs) {
            return;
        }
        if (is(signal, "ActivationToken", "us")) {
            token_ = arguments[1].toString();
        } else if (is(signal, "ActionInvoked", "us") && arguments[1] == defaultAction) {
            Q_EMIT owner_.activated(std::exchange(token_, QString()));
        } else if (is(signal, "NotificationClosed", "uu")) {
            number_ = 0;
        }
    }

    DesktopNotification& owner_;
    QPointer<SessionBus> bus_;
    std::optional<QStringList> capabilities_;
    std::optional<Note> wanted_;
    bool hasNews_ = false;
    bool isBusy_ = false;
    quint32 number_ = 0; ///< of the note on show; 0 for none
    QString token_;
    QList<QDBusMessage> heardEarly_; ///< while an answer is awaited
};

DesktopNotification::DesktopNotification(QObject* parent)
    : QObject(parent), desk_(std::make_unique<Desk>(*this)) {}

DesktopNotification::~DesktopNotification() = default;

void DesktopNotification::show(const std::string& title, const std::string& body) {
    desk_->want(Desk::Note{QString::fromStdString(title), QString::fromStdString(body)});
}

void DesktopNotification::withdraw() {
    desk_->want(std::nullopt);
}

} // namespace ostrella
