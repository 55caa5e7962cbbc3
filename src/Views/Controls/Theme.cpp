#include "Views/Controls/Theme.h"

#include <QJSEngine>

namespace ostrella {

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

QColor Theme::accentPrimary() const {
    const Brand::Shade& shade = Brand::accentPrimary.resolved(
        dark_ ? Brand::Appearance::dark : Brand::Appearance::light);
    return QColor::fromRgbF(shade.rgb.r, shade.rgb.g, shade.rgb.b, shade.alpha);
}

} // namespace ostrella
