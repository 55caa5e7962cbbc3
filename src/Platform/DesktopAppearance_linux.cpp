#include "Platform/DesktopAppearance.h"
#include "Platform/PortalSettings.h"
#include "Platform/SessionBus.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <QPointer>

#include <utility>

namespace ostrella {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

QDBusMessage portalCall(const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/portal/desktop"), interface, method);
    message.setArguments(arguments);
    return message;
}

/// The answer to ReadAll; nothing where it is an error or of another shape.
std::optional<PortalSettings> allSettings(const QDBusMessage& answer) {
    if (answer.type() != QDBusMessage::ReplyMessage ||
        answer.signature() != QLatin1String("a{sa{sv}}")) {
        return std::nullopt;
    }
    PortalSettings settings;
    const auto spaces = answer.arguments().constFirst().value<QDBusArgument>();
    spaces.beginMap();
    while (!spaces.atEnd()) {
        PortalSettings::Name name;
        spaces.beginMapEntry();
        spaces >> name.first;
        spaces.beginMap();
        while (!spaces.atEnd()) {
            QDBusVariant value;
            spaces.beginMapEntry();
            spaces >> name.second >> value;
            spaces.endMapEntry();
            settings.set(name, value.variant());
        }
        spaces.endMap();
        spaces.endMapEntry();
    }
    spaces.endMap();
    return settings;
}

/// True where asking in another form may help: the portal is there, and answers.
bool isThere(const QDBusMessage& answer) {
    const QString error = answer.errorName();
    return answer.type() == QDBusMessage::ReplyMessage ||
           (!error.endsWith(QLatin1String(".ServiceUnknown")) &&
               !error.endsWith(QLatin1String(".NameHasNoOwner")) &&
               !error.endsWith(QLatin1String(".NoReply")) &&
               !error.endsWith(QLatin1String(".Timeout")) &&
               !error.endsWith(QLatin1String(".TimedOut")) &&
               !error.endsWith(QLatin1String(".Disconnected")));
}

class PortalFollower final : public QObject {
public:
    explicit PortalFollower(std::function<void(const DesktopAppearance::Values&)> accept)
        : accept_(std::move(accept)) {
        if (auto* const application = qobject_cast<QGuiApplication*>(qApp)) {
            application->installEventFilter(this);
        }
        tell();
        SessionBus::whenConnected(this, [this](SessionBus& bus) {
            bus_ = &bus;
            connect(&bus, &SessionBus::heard, this, &PortalFollower::hear);
            readAll();
        });
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::ApplicationPaletteChange) {
            tell();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    static DesktopAppearance::Values palette() {
        DesktopAppearance::Values values;
        if (qobject_cast<QGuiApplication*>(qApp)) {
            constexpr int middle = 128;
            values.isDark = QGuiApplication::palette().color(QPalette::Window).lightness() < middle;
        }
        return values;
    }

    void tell() { accept_(settings_.appearance().completedBy(palette())); }

    void hear(const QDBusMessage& signal) {
        const QVariantList arguments = signal.arguments();
        if (signal.member() == QLatin1String("SettingChanged")) {
            if (signal.signature() == QLatin1String("ssv")) {
                settings_.set({arguments[0].toString(), arguments[1].toString()}, arguments[2]);
                tell();
            }
        } else if (signal.member() == QLatin1String("NameOwnerChanged") &&
                   signal.signature() == QLatin1String("sss") && arguments[0] == service &&
                   !arguments[2].toString().isEmpty()) {
            // A portal that has come, or come again, may see things in another way.
            readAll();
        }
    }

    /// Calls `done` with the answer, unless everything has been asked for anew meanwhile.
    void ask(const QString& method, const QVariantList& arguments, SessionBus::Answer done) {
        bus_->call(portalCall(method, arguments), this,
            [this, round = round_, done = std::move(done)](const QDBusMessage& answer) {
                if (round == round_) {
                    done(answer);
                }
            });
    }

    void readAll() {
        ++round_;
        ask(QStringLiteral("ReadAll"), {PortalSettings::namespaces()},
            [this](const QDBusMessage& answer) {
                if (auto settings = allSettings(answer)) {
                    settings_ = std::move(*settings);
                    tell();
                } else if (isThere(answer)) {
                    for (const auto& name : PortalSettings::names()) {
                        read(QStringLiteral("ReadOne"), name);
                    }
                }
            });
    }

    void read(const QString& method, const PortalSettings::Name& name) {
        ask(method, {name.first, name.second}, [this, method, name](const QDBusMessage& answer) {
            if (answer.type() == QDBusMessage::ReplyMessage &&
                answer.signature() == QLatin1String("v")) {
                settings_.set(name, answer.arguments().constFirst());
                tell();
            } else if (method == QLatin1String("ReadOne") && isThere(answer) &&
                       !answer.errorName().endsWith(QLatin1String(".NotFound"))) {
                // Older portals know this word alone.
                read(QStringLiteral("Read"), name);
            }
        });
    }

    std::function<void(const DesktopAppearance::Values&)> accept_;
    QPointer<SessionBus> bus_;
    PortalSettings settings_;
    int round_ = 0;
};

} // namespace

std::unique_ptr<QObject> DesktopAppearance::follow(Accept accept) {
    return std::make_unique<PortalFollower>(std::move(accept));
}

} // namespace ostrella
