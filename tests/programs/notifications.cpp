#include "BusService.h"

#include <QStringList>

namespace {

/// Who shows notes, answering as told: "rich" with markup and actions, "hasty" as that but with a
/// click told before the answer to the note, "plain" without, "hang" never, "refuse" with errors,
/// "nonsense" in wrong shapes.
class Notifications final : public BusService {
public:
    explicit Notifications(QString mode)
        : BusService(QStringLiteral("org.freedesktop.Notifications"),
              QStringLiteral("/org/freedesktop/Notifications"),
              QStringLiteral("org.freedesktop.Notifications")),
          mode_(std::move(mode)) {}

protected:
    /// "click NUMBER", "press NUMBER ACTION", "token NUMBER TOKEN", "close NUMBER".
    void command(const QStringList& words) override {
        const quint32 number = words[1].toUInt();
        if (words[0] == QLatin1String("click")) {
            signal(QStringLiteral("ActionInvoked"), {number, QStringLiteral("default")});
        } else if (words[0] == QLatin1String("press")) {
            signal(QStringLiteral("ActionInvoked"), {number, words[2]});
        } else if (words[0] == QLatin1String("token")) {
            signal(QStringLiteral("ActivationToken"), {number, words[2]});
        } else {
            signal(QStringLiteral("NotificationClosed"), {number, 2U});
        }
    }

    void called(const QDBusMessage& call) override {
        const QString method = call.member();
        if (mode_ == QLatin1String("hang")) {
            return;
        }
        if (mode_ == QLatin1String("refuse")) {
            fail(call, "org.freedesktop.DBus.Error.AccessDenied");
        } else if (mode_ == QLatin1String("nonsense")) {
            answer(call, QStringLiteral("purple"));
        } else if (method == QLatin1String("GetCapabilities")) {
            answer(call, isRich() ? QStringList{QStringLiteral("body"),
                                        QStringLiteral("body-markup"), QStringLiteral("actions")}
                                  : QStringList{QStringLiteral("body")});
        } else if (method == QLatin1String("Notify")) {
            const quint32 replaced = call.arguments()[1].toUInt();
            const quint32 number = replaced != 0 ? replaced : ++last_;
            if (mode_ == QLatin1String("hasty")) {
                signal(QStringLiteral("ActionInvoked"), {number, QStringLiteral("default")});
            }
            answer(call, number);
        } else {
            answer(call, QVariant());
        }
    }

private:
    bool isRich() const {
        return mode_ == QLatin1String("rich") || mode_ == QLatin1String("hasty");
    }

    QString mode_;
    quint32 last_ = 40;
};

} // namespace

/// notifications MODE
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return Notifications(QCoreApplication::arguments().at(1)).serve();
}
