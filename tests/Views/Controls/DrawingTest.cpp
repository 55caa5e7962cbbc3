#include "Views/Controls/CardShadow.h"
#include "Views/Controls/Faces.h"
#include "Views/Controls/SymbolPainter.h"
#include "Views/Controls/Theme.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QTextLayout>
#include <gtest/gtest.h>

namespace ostrella {

void useControlsModule();

namespace {

/// Whether each of the text's signs has a picture in the font or in one that steps in for it.
bool canShow(const QString& text, const QFont& font) {
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const auto runs = layout.glyphRuns();
    return !runs.isEmpty() && std::all_of(runs.begin(), runs.end(), [](const QGlyphRun& run) {
        return !run.glyphIndexes().contains(0);
    });
}

} // namespace

TEST(Faces, showEverySignOfTheTexts) {
    const Theme& theme = Theme::shared();
    const QString signs = QStringLiteral("⌘⌥↩⁺≲ων·×₁₀✓…°³−");
    for (const QFont& font : {theme.body(), theme.bodyNumbers(), theme.mono(), theme.label()}) {
        for (const QChar sign : signs)
            EXPECT_TRUE(canShow(sign, font)) << QString(sign).toStdString();
    }
    EXPECT_FALSE(canShow(QString(QChar(0xFDD0)), theme.body())); // no sign at all
}

TEST(Faces, haveDigitsOfOneWidthForNumbers) {
    const Theme& theme = Theme::shared();
    for (const QFont& font : {theme.bodyNumbers(), theme.captionNumbers(),
             theme.bodyMediumNumbers(), theme.mono(), theme.monoSmall()}) {
        const QFontMetricsF metrics(font);
        const qreal ones = metrics.horizontalAdvance(QStringLiteral("1111111111"));
        const qreal eights = metrics.horizontalAdvance(QStringLiteral("8888888888"));
        EXPECT_NEAR(ones, eights, 0.01);
    }
}

TEST(Faces, numbersLookLikeTheTextsAroundThem) {
    const QFontMetricsF text(Theme::shared().body());
    const QFontMetricsF numbers(Theme::shared().bodyNumbers());
    const QString letters = QStringLiteral("Bounding box");
    EXPECT_DOUBLE_EQ(text.horizontalAdvance(letters), numbers.horizontalAdvance(letters));
    EXPECT_DOUBLE_EQ(text.ascent(), numbers.ascent());
}

TEST(Symbols, areAllThereAndLeaveTheirMarginFree) {
    useControlsModule();
    const QStringList names = SymbolPainter::names();
    EXPECT_GE(names.size(), 39);
    for (const QString& name : names) {
        const QImage picture = SymbolPainter::picture(name, 48, Qt::white);
        ASSERT_EQ(picture.size(), QSize(48, 48)) << name.toStdString();
        int inked = 0;
        for (int y = 0; y < 48; ++y) {
            for (int x = 0; x < 48; ++x)
                inked += qAlpha(picture.pixel(x, y)) > 128 ? 1 : 0;
        }
        EXPECT_GT(inked, 20) << name.toStdString();
        EXPECT_EQ(qAlpha(picture.pixel(0, 0)), 0) << name.toStdString();
    }
}

TEST(Symbols, haveOneColour) {
    useControlsModule();
    const QImage picture =
        SymbolPainter::picture(QStringLiteral("stop.fill"), 24, QColor(10, 20, 30));
    EXPECT_EQ(picture.pixelColor(12, 12), QColor(10, 20, 30));
    const QImage faint =
        SymbolPainter::picture(QStringLiteral("stop.fill"), 24, QColor(255, 255, 255, 128));
    EXPECT_EQ(faint.pixelColor(12, 12).alpha(), 128);
}

TEST(Symbols, areDrawnOnceForASizeAndColour) {
    useControlsModule();
    const QString name = QStringLiteral("camera");
    const QImage first = SymbolPainter::picture(name, 18, Qt::red);
    EXPECT_EQ(SymbolPainter::picture(name, 18, Qt::red).cacheKey(), first.cacheKey());
    EXPECT_NE(SymbolPainter::picture(name, 36, Qt::red).cacheKey(), first.cacheKey());
    EXPECT_NE(SymbolPainter::picture(name, 18, Qt::blue).cacheKey(), first.cacheKey());
}

TEST(Symbols, areNothingWhereThereIsNone) {
    EXPECT_TRUE(SymbolPainter::picture(QStringLiteral("no.such.symbol"), 18, Qt::red).isNull());
    EXPECT_TRUE(SymbolPainter::picture(QString(), 18, Qt::red).isNull());
    EXPECT_TRUE(SymbolPainter::picture(QStringLiteral("camera"), 0, Qt::red).isNull());
}

TEST(CardShadow, isSoftBelowAndGoneAtItsReach) {
    const QImage picture = CardShadow::picture({120, 100}, 12, 1);
    ASSERT_EQ(picture.size(), QSize(120 + 72, 100 + 72));
    const auto alpha = [&](int x, int y) { return qAlpha(picture.pixel(x, y)); };
    const int middle = 36 + 60;
    // Deep within, both layers lie whole upon one another: 1 - 0.55 * 0.70.
    EXPECT_NEAR(alpha(middle, 36 + 58), 157, 3);
    // Eight below the foot the soft one alone is at its half.
    EXPECT_NEAR(alpha(middle, 36 + 100 + 8), 57, 4);
    EXPECT_GT(alpha(middle, 36 + 100 + 10), alpha(middle, 36 - 10));
    EXPECT_EQ(alpha(20, 80), alpha(120 + 72 - 1 - 20, 80));
    EXPECT_LE(alpha(0, 80), 2);
    EXPECT_LE(alpha(middle, 0), 1);
}

} // namespace ostrella
