#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

/// Draws an icon as a square picture: makeIcon DRAWING.svg PIXELS PICTURE.png
int main(int argc, char** argv) {
    if (argc != 4)
        return std::fputs("makeIcon DRAWING.svg PIXELS PICTURE.png\n", stderr), 2;
    const QString target = QString::fromLocal8Bit(argv[3]);
    const int pixels = QByteArray(argv[2]).toInt();
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    if (!drawing.isValid() || pixels <= 0)
        return std::fprintf(stderr, "%s cannot be drawn.\n", argv[1]), 1;

    // Drawn larger and brought down, small sizes keep what is thinner than their pixels.
    const int larger = pixels < 64 ? 8 * pixels : 2 * pixels;
    QImage picture(larger, larger, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    QDir().mkpath(QFileInfo(target).path());
    const QImage icon =
        picture.scaled(pixels, pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (!icon.save(target, "PNG"))
        return std::fprintf(stderr, "%s cannot be written.\n", argv[3]), 1;
    return 0;
}
