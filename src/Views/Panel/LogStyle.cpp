#include "Views/Panel/LogStyle.h"

#include "Views/Controls/Theme.h"

#include <QFontMetricsF>

#include <cmath>

namespace ostrella {

LogStyle LogStyle::current() {
    const Theme& theme = Theme::shared();
    LogStyle style;
    style.font = theme.mono();
    style.tagFont = theme.monoSemibold();
    style.tagWidth = theme.length(62);
    style.timeWidth = theme.length(74);
    style.linePitch = theme.length(16);
    style.rowPadding = theme.length(3);
    // The letters' ink, from the foot of "g" to the top of "l", stands in the middle of its line.
    const QFontMetricsF metrics(style.font);
    style.baseline = std::round((style.linePitch + metrics.ascent() - metrics.descent()) / 2);
    return style;
}

const Brand::Color& LogStyle::tagColor(LogStore::Level level) {
    switch (level) {
    case LogStore::Level::info:
        return Brand::statusInfo;
    case LogStore::Level::ok:
        return Brand::statusSuccess;
    case LogStore::Level::warn:
        return Brand::statusWarning;
    case LogStore::Level::error:
        return Brand::statusError;
    case LogStore::Level::su2:
        break;
    }
    return Brand::textTertiary;
}

const Brand::Color& LogStyle::textColor(LogStore::Level level) {
    return level == LogStore::Level::su2 ? Brand::textSecondary : tagColor(level);
}

} // namespace ostrella
