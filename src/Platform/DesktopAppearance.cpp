#include "Platform/DesktopAppearance.h"

#include <cmath>
#include <utility>

namespace ostrella {

DesktopAppearance::Values DesktopAppearance::Values::completedBy(const Values& other) const {
    Values both = *this;
    if (!both.isDark) {
        both.isDark = other.isDark;
    }
    if (!both.prefersReducedMotion) {
        both.prefersReducedMotion = other.prefersReducedMotion;
    }
    if (!both.textScale) {
        both.textScale = other.textScale;
    }
    return both;
}

DesktopAppearance::DesktopAppearance(QObject* parent) : QObject(parent) {
    accept({});
    follower_ = follow([this](const Values& values) { accept(values); });
}

DesktopAppearance::~DesktopAppearance() = default;

std::optional<double> DesktopAppearance::textScale(double scale) {
    const bool isOne = scale >= leastTextScale && scale <= largestTextScale;
    return isOne ? std::optional(scale) : std::nullopt;
}

DesktopAppearance::Values DesktopAppearance::overrides() {
    Values values;
    const QByteArray appearance = qgetenv("OSTRELLA_APPEARANCE");
    if (appearance == "dark" || appearance == "light") {
        values.isDark = appearance == "dark";
    }
    const QByteArray motion = qgetenv("OSTRELLA_REDUCED_MOTION");
    if (motion == "1" || motion == "0") {
        values.prefersReducedMotion = motion == "1";
    }
    bool isNumber = false;
    const double scale = qgetenv("OSTRELLA_TEXT_SCALE").toDouble(&isNumber);
    if (isNumber) {
        values.textScale = textScale(scale);
    }
    return values;
}

void DesktopAppearance::accept(const Values& desktop) {
    const Values values = overrides_.completedBy(desktop);
    const bool darkHasChanged = std::exchange(isDark_, values.isDark.value_or(false)) != isDark_;
    const bool motionHasChanged =
        std::exchange(prefersReducedMotion_, values.prefersReducedMotion.value_or(false)) !=
        prefersReducedMotion_;
    const bool scaleHasChanged =
        std::exchange(textScale_, values.textScale.value_or(1.0)) != textScale_;
    // Whoever is told about one finds all of them up to date.
    if (darkHasChanged) {
        Q_EMIT isDarkChanged();
    }
    if (motionHasChanged) {
        Q_EMIT prefersReducedMotionChanged();
    }
    if (scaleHasChanged) {
        Q_EMIT textScaleChanged();
    }
}

} // namespace ostrella
