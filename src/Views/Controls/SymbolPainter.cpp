#include "Views/Controls/SymbolPainter.h"

#include <QCache>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace ostrella::SymbolPainter {

namespace {

QString fileOf(const QString& name) {
    return QStringLiteral(":/icons/%1.svg").arg(name);
}

QImage draw(const QString& name, int pixels, const QColor& color) {
    QSvgRenderer renderer(fileOf(name));
    if (!renderer.isValid())
        return {};
    QImage picture(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    renderer.render(&painter, QRectF(0, 0, pixels, pixels));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), color);
    return picture;
}

} // namespace

bool knows(const QString& name) {
    return !name.isEmpty() && QFile::exists(fileOf(name));
}

QStringList names() {
    QStringList names;
    const QStringList files = QDir(QStringLiteral(":/icons")).entryList(QDir::Files, QDir::Name);
    for (const QString& file : files)
        names << file.chopped(4);
    return names;
}

QImage picture(const QString& name, int pixels, const QColor& color) {
    if (pixels <= 0 || pixels > 4096 || !knows(name))
        return {};
    static QCache<QString, QImage> drawn(4 * 1024 * 1024); // bytes
    const QString key =
        QStringLiteral("%1|%2|%3").arg(name).arg(pixels).arg(color.rgba(), 8, 16, QLatin1Char('0'));
    if (const QImage* kept = drawn.object(key))
        return *kept;
    QImage picture = draw(name, pixels, color);
    drawn.insert(key, new QImage(picture), picture.sizeInBytes());
    return picture;
}

} // namespace ostrella::SymbolPainter
