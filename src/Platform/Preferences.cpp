#include "Platform/Preferences.h"

#include <QVariant>

namespace ostrella {

namespace {

/// A text file of preferences gives every value back as text, so a numeral counts as a number.
PreferenceValue fromText(const QString& text) {
    bool isWhole = false;
    if (const qlonglong whole = text.toLongLong(&isWhole); isWhole) {
        return std::int64_t{whole};
    }
    bool isReal = false;
    if (const double real = text.toDouble(&isReal); isReal) {
        return real;
    }
    if (text == QLatin1String("true") || text == QLatin1String("false")) {
        return text == QLatin1String("true");
    }
    return text.toStdString();
}

} // namespace

Preferences::Preferences() : settings_(QStringLiteral("Ostrella"), QStringLiteral("Ostrella")) {}

Preferences::Preferences(const QString& file) : settings_(file, QSettings::IniFormat) {}

std::optional<PreferenceValue> Preferences::value(std::string_view key) const {
    const QVariant stored =
        settings_.value(QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size())));
    switch (stored.typeId()) {
    case QMetaType::UnknownType:
        return std::nullopt;
    case QMetaType::Bool:
        return stored.toBool();
    case QMetaType::Int:
    case QMetaType::LongLong:
        return std::int64_t{stored.toLongLong()};
    case QMetaType::Double:
    case QMetaType::Float:
        return stored.toDouble();
    default:
        return fromText(stored.toString());
    }
}

void Preferences::set(std::string_view key, const PreferenceValue& value) {
    const QVariant variant = std::visit(
        [](const auto& held) -> QVariant {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::string>) {
                return QString::fromStdString(held);
            } else if constexpr (std::is_same_v<Held, std::int64_t>) {
                return QVariant::fromValue<qlonglong>(held);
            } else {
                return QVariant::fromValue(held);
            }
        },
        value);
    settings_.setValue(QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size())), variant);
}

} // namespace ostrella
