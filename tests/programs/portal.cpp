#include "BusService.h"

#include <QDBusArgument>
#include <QDBusVariant>

#include <map>

namespace {

using Settings = std::map<QString, std::map<QString, QVariant>>;

/// A value of the type that a letter of D-Bus stands for.
QVariant valueOf(const QString& type, const QString& text) {
    if (type == QLatin1String("u")) {
        return text.toUInt();
    }
    if (type == QLatin1String("i")) {
        return text.toInt();
    }
    if (type == QLatin1String("b")) {
        return text == QLatin1String("true");
    }
    if (type == QLatin1String("d")) {
        return text.toDouble();
    }
    return text;
}

QVariant wrapped(const QVariant& value) {
    return QVariant::fromValue(QDBusVariant(value));
}

/// The settings of a desktop, answering as it is told: "all" methods there are, "one" without
/// ReadAll, "old" with Read alone, "hang" never, "refuse" with errors, "nonsense" in wrong shapes.
class Portal final : public BusService {
public:
    explicit Portal(QString mode)
        : BusService(QStringLiteral("org.freedesktop.portal.Desktop"),
              QStringLiteral("/org/freedesktop/portal/desktop"),
              QStringLiteral("org.freedesktop.portal.Settings")),
          mode_(std::move(mode)) {}

    void set(const QStringList& words) {
        settings_[words[0]][words[1]] = valueOf(words[2], words[3]);
    }

protected:
    /// "NAMESPACE KEY TYPE VALUE" changes a setting and says so.
    void command(const QStringList& words) override {
        set(words);
        signal(QStringLiteral("SettingChanged"),
            {words[0], words[1], wrapped(settings_[words[0]][words[1]])});
    }

    void called(const QDBusMessage& call) override {
        const QString method = call.member();
        if (mode_ == QLatin1String("hang")) {
            return;
        }
        if (mode_ == QLatin1String("refuse")) {
            fail(call, "org.freedesktop.DBus.Error.AccessDenied");
        } else if (mode_ == QLatin1String("nonsense")) {
            answer(call, method == QLatin1String("ReadOne")
                             ? QVariant(QStringList{QStringLiteral("a"), QStringLiteral("b")})
                             : QVariant(QStringLiteral("purple")));
        } else if (method == QLatin1String("ReadAll") && mode_ == QLatin1String("all")) {
            answerAll(call);
        } else if (method == QLatin1String("ReadOne") && mode_ != QLatin1String("old")) {
            answerOne(call, 1);
        } else if (method == QLatin1String("Read")) {
            answerOne(call, 2);
        } else {
            fail(call, "org.freedesktop.DBus.Error.UnknownMethod");
        }
    }

private:
    void answerAll(const QDBusMessage& call) {
        const QStringList wanted = call.arguments().constFirst().toStringList();
        QDBusArgument argument;
        argument.beginMap(QMetaType(QMetaType::QString), QMetaType(QMetaType::QVariantMap));
        for (const auto& [space, values] : settings_) {
            if (wanted.contains(space)) {
                QVariantMap map;
                for (const auto& [key, value] : values) {
                    map.insert(key, value);
                }
                argument.beginMapEntry();
                argument << space << map;
                argument.endMapEntry();
            }
        }
        argument.endMap();
        answer(call, QVariant::fromValue(argument));
    }

    void answerOne(const QDBusMessage& call, int wraps) {
        const auto& values = settings_[call.arguments()[0].toString()];
        const auto found = values.find(call.arguments()[1].toString());
        if (found == values.end()) {
            fail(call, "org.freedesktop.portal.Error.NotFound");
            return;
        }
        QVariant value = found->second;
        for (int i = 0; i < wraps; ++i) {
            value = wrapped(value);
        }
        answer(call, value);
    }

    QString mode_;
    Settings settings_;
};

} // namespace

/// portal MODE [NAMESPACE KEY TYPE VALUE]...
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    Portal portal(words.at(1));
    for (qsizetype i = 2; i + 3 < words.size(); i += 4) {
        portal.set(words.sliced(i, 4));
    }
    return portal.serve();
}
