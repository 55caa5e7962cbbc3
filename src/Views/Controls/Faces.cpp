#include "Views/Controls/Faces.h"

#include <QFontDatabase>

namespace ostrella::Faces {

namespace {

QStringList families(const QString& wanted, QFontDatabase::SystemFont fallback) {
    const QString other = QFontDatabase::systemFont(fallback).family();
    return QFontDatabase::hasFamily(wanted) ? QStringList{wanted, other} : QStringList{other};
}

} // namespace

QStringList system() {
    static const QStringList names = families(QStringLiteral("Inter"), QFontDatabase::GeneralFont);
    return names;
}

QStringList monospaced() {
    static const QStringList names =
        families(QStringLiteral("JetBrains Mono"), QFontDatabase::FixedFont);
    return names;
}

QStringList tabular(QFont::Weight) {
    return system();
}

} // namespace ostrella::Faces
