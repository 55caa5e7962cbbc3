#include "Views/Controls/Theme.h"

#include "Views/Controls/Faces.h"
#include "Views/Controls/SpokenItem.h"

#include <QJSEngine>

#include <algorithm>
#include <cmath>

namespace ostrella {

namespace {

QColor asColor(const Brand::Shade& shade) {
    return QColor::fromRgbF(shade.rgb.r, shade.rgb.g, shade.rgb.b, shade.alpha);
}

QColor white(float alpha) {
    return QColor::fromRgbF(1.0F, 1.0F, 1.0F, alpha);
}

QColor black(float alpha) {
    return QColor::fromRgbF(0.0F, 0.0F, 0.0F, alpha);
}

QFont::Weight asWeight(Brand::Weight weight) {
    switch (weight) {
    case Brand::Weight::regular:
        return QFont::Normal;
    case Brand::Weight::medium:
        return QFont::Medium;
    case Brand::Weight::semibold:
        return QFont::DemiBold;
    }
    return QFont::Normal;
}

} // namespace

// Nothing of the window is shown without it.
Theme::Theme() {
    SpokenItem::install();
}

Theme& Theme::shared() {
    static Theme theme;
    return theme;
}

Theme* Theme::create(QQmlEngine*, QJSEngine*) {
    QJSEngine::setObjectOwnership(&shared(), QJSEngine::CppOwnership);
    return &shared();
}

void Theme::setDark(bool dark) {
    if (dark_ != dark) {
        dark_ = dark;
        Q_EMIT changed();
    }
}

void Theme::setTextScale(qreal scale) {
    const qreal kept = std::isfinite(scale) ? std::clamp(scale, 0.5, 3.0) : 1.0;
    if (textScale_ != kept) {
        textScale_ = kept;
        Q_EMIT changed();
    }
}

void Theme::setReducedMotion(bool reduced) {
    if (reducedMotion_ != reduced) {
        reducedMotion_ = reduced;
        Q_EMIT changed();
    }
}

int Theme::length(int points) const {
    return static_cast<int>(std::lround(points * lengthScale()));
}

qreal Theme::line(qreal points, qreal devicePixelRatio) const {
    const qreal ratio = devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    return std::max(1.0, std::floor(points * ratio)) / ratio;
}

QColor Theme::over(const QColor& under, const QColor& top) const {
    const float t = top.alphaF();
    const float u = under.alphaF() * (1 - t);
    const float alpha = t + u;
    if (alpha <= 0)
        return black(0);
    const auto mix = [&](float a, float b) { return (a * t + b * u) / alpha; };
    return QColor::fromRgbF(mix(top.redF(), under.redF()), mix(top.greenF(), under.greenF()),
        mix(top.blueF(), under.blueF()), alpha);
}

QColor Theme::color(const Brand::Color& color) const {
    return asColor(color.resolved(dark_ ? Brand::Appearance::dark : Brand::Appearance::light));
}

QColor Theme::darkColor(const Brand::Color& color) {
    return asColor(color.resolved(Brand::Appearance::dark));
}

QFont Theme::font(const Brand::Typeface& typeface, bool tabular) const {
    const bool mono = typeface.design == Brand::Design::monospaced;
    const QFont::Weight weight = asWeight(typeface.weight);
    QFont font(mono ? Faces::monospaced() : tabular ? Faces::tabular(weight) : Faces::system());
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(typeface.size * textScale_))));
    font.setWeight(weight);
    // Letters keep their widths, so that words look as they were drawn at every size.
    font.setHintingPreference(QFont::PreferNoHinting);
    if (mono)
        font.setStyleHint(QFont::Monospace);
    else
        font.setStyleHint(QFont::SansSerif);
    return font;
}

QColor Theme::floatingShadow() const {
    return asColor(Brand::floatingShadow);
}

QColor Theme::washHover() const {
    return dark_ ? white(0.05F) : black(0.035F);
}

QColor Theme::washPressed() const {
    return dark_ ? white(0.09F) : black(0.07F);
}

QColor Theme::buttonFill() const {
    return dark_ ? white(0.06F) : white(1);
}

QColor Theme::buttonHover() const {
    return dark_ ? white(0.09F) : surfaceSunken();
}

QColor Theme::buttonPressed() const {
    return dark_ ? white(0.03F) : over(surfaceSunken(), black(0.035F));
}

QColor Theme::destructiveHover() const {
    QColor tint = statusError();
    tint.setAlphaF(dark_ ? 0.10F : 0.06F);
    return dark_ ? tint : over(surfaceBase(), tint);
}

QColor Theme::accentHover() const {
    return over(accentPrimary(), dark_ ? white(0.16F) : black(0.07F));
}

QColor Theme::fieldFill() const {
    return dark_ ? surfaceSunken() : white(1);
}

QColor Theme::segmentFill() const {
    return dark_ ? white(0.10F) : white(1);
}

QColor Theme::keyCapOnAccent() const {
    return white(0.28F);
}

QColor Theme::progressFill() const {
    QColor fill = accentPrimary();
    fill.setAlphaF(0.20F);
    return fill;
}

QFont Theme::sectionLabel() const {
    QFont font = label();
    font.setCapitalization(QFont::AllUppercase);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.055 * font.pixelSize());
    return font;
}

QFont Theme::segment() const {
    QFont font = caption();
    font.setWeight(QFont::Medium);
    return font;
}

QFont Theme::keys() const {
    QFont font = label();
    font.setWeight(QFont::Normal);
    return font;
}

QFont Theme::monoSemibold() const {
    QFont font = mono();
    font.setWeight(QFont::DemiBold);
    return font;
}

} // namespace ostrella
