#include "Platform/PortalSettings.h"

#include <QDBusVariant>

namespace ostrella {

namespace {

using Name = PortalSettings::Name;

const QString common = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString plasma = QStringLiteral("org.kde.kdeglobals.KDE");

const Name colorScheme{common, QStringLiteral("color-scheme")};
const Name reducedMotion{common, QStringLiteral("reduced-motion")};
const Name gnomeScheme{gnome, QStringLiteral("color-scheme")};
const Name gnomeTheme{gnome, QStringLiteral("gtk-theme")};
const Name gnomeAnimations{gnome, QStringLiteral("enable-animations")};
const Name gnomeTextScale{gnome, QStringLiteral("text-scaling-factor")};
const Name plasmaAnimations{plasma, QStringLiteral("AnimationDurationFactor")};

/// A number of one of the integer types, else one that no setting has.
qint64 integer(const QVariant& value) {
    constexpr qint64 none = -1;
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::UChar:
        return value.toLongLong();
    default:
        return none;
    }
}

QString word(const QVariant& value) {
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

std::optional<bool> saysDark(const QVariant& scheme) {
    switch (integer(scheme)) {
    case 1:
        return true;
    case 2:
        return false;
    default:
        return std::nullopt; // 0: no preference
    }
}

std::optional<bool> saysDark(const QString& scheme, const QString& theme) {
    if (scheme == QLatin1String("prefer-dark")) {
        return true;
    }
    if (scheme == QLatin1String("prefer-light")) {
        return false;
    }
    // "Adwaita-dark", and "Adwaita:dark" as a variant of a theme.
    if (theme.endsWith(QLatin1String("-dark"), Qt::CaseInsensitive) ||
        theme.endsWith(QLatin1String(":dark"), Qt::CaseInsensitive)) {
        return true;
    }
    return std::nullopt;
}

/// Plasma keeps numbers as words.
bool isZero(const QString& text) {
    bool isNumber = false;
    return text.toDouble(&isNumber) == 0 && isNumber;
}

} // namespace

const std::vector<Name>& PortalSettings::names() {
    static const std::vector<Name> all{colorScheme, reducedMotion, gnomeScheme, gnomeTheme,
        gnomeAnimations, gnomeTextScale, plasmaAnimations};
    return all;
}

const QStringList& PortalSettings::namespaces() {
    static const QStringList all{common, gnome, plasma};
    return all;
}

void PortalSettings::set(const Name& name, const QVariant& value) {
    values_[name] = bare(value);
}

QVariant PortalSettings::bare(const QVariant& value) {
    QVariant inner = value;
    while (inner.metaType() == QMetaType::fromType<QDBusVariant>()) {
        inner = inner.value<QDBusVariant>().variant();
    }
    return inner;
}

QVariant PortalSettings::value(const Name& name) const {
    const auto found = values_.find(name);
    return found != values_.end() ? found->second : QVariant();
}

DesktopAppearance::Values PortalSettings::appearance() const {
    DesktopAppearance::Values values;
    values.isDark = saysDark(value(colorScheme));
    if (!values.isDark) {
        values.isDark = saysDark(word(value(gnomeScheme)), word(value(gnomeTheme)));
    }

    const QVariant animations = value(gnomeAnimations);
    const bool hasAnimations = animations.typeId() == QMetaType::Bool;
    const auto motion = integer(value(reducedMotion));
    if (motion == 1 || (hasAnimations && !animations.toBool()) ||
        isZero(word(value(plasmaAnimations)))) {
        values.prefersReducedMotion = true;
    } else if (motion == 0 || hasAnimations) {
        values.prefersReducedMotion = false;
    }

    const QVariant scale = value(gnomeTextScale);
    if (scale.typeId() == QMetaType::Double) {
        values.textScale = DesktopAppearance::textScale(scale.toDouble());
    }
    return values;
}

} // namespace ostrella
