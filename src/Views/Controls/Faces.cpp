#include "Views/Controls/Faces.h"

#include "Views/Controls/TabularFace.h"

#include <QFontDatabase>
#include <QHash>
#include <QRawFont>

namespace ostrella::Faces {

namespace {

QStringList families(const QString& wanted, QFontDatabase::SystemFont fallback) {
    const QString other = QFontDatabase::systemFont(fallback).family();
    return QFontDatabase::hasFamily(wanted) ? QStringList{wanted, other} : QStringList{other};
}

/// The system face of a weight with tabular digits, registered under a family of its own.
QStringList registered(QFont::Weight weight) {
    QFont font(system());
    font.setWeight(weight);
    font.setPixelSize(64);
    const QRawFont face = QRawFont::fromFont(font);
    if (!face.isValid() || TabularFace::hasEqualDigits(face))
        return system();
    const QString family = QStringLiteral("Ostrella Tabular %1").arg(static_cast<int>(weight));
    const int id = QFontDatabase::addApplicationFontFromData(TabularFace::file(face, family));
    const QStringList added = QFontDatabase::applicationFontFamilies(id);
    return added.isEmpty() ? system() : added + system();
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

QStringList tabular(QFont::Weight weight) {
    static QHash<int, QStringList> known;
    const auto found = known.constFind(weight);
    return found != known.constEnd() ? *found : *known.insert(weight, registered(weight));
}

} // namespace ostrella::Faces
