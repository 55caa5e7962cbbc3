#include "Views/Controls/NumberEditing.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ostrella {

QString NumberEditing::text(double value, int fewest, int most) {
    QString text = QString::number(value, 'f', most);
    while (most > fewest && text.endsWith(QLatin1Char('0'))) {
        text.chop(1);
        --most;
    }
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

bool NumberEditing::isNumber(const QString& text) {
    return std::isfinite(number(text));
}

double NumberEditing::number(const QString& text) {
    bool read = false;
    const double value = QLocale::c().toDouble(text.trimmed(), &read);
    return read ? value : std::numeric_limits<double>::quiet_NaN();
}

double NumberEditing::within(double value, double from, double to) {
    return std::isfinite(value) ? std::clamp(value, from, to) : from;
}

} // namespace ostrella
