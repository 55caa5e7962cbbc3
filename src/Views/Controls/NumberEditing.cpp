#include "Views/Controls/NumberEditing.h"

#include "Views/Format/NumberField.h"

namespace ostrella {

QString NumberEditing::text(double value, double from, double to, int fewest, int most) {
    return QString::fromStdString(NumberField{from, to, fewest, most}.text(value));
}

bool NumberEditing::isNumber(const QString& text) {
    return NumberField::number(text.toStdString()).has_value();
}

double NumberEditing::value(const QString& text, double before, double from, double to) {
    return NumberField{from, to, 0, 0}.value(text.toStdString()).value_or(before);
}

double NumberEditing::inRange(double value, double from, double to) {
    return NumberField{from, to, 0, 0}.inRange(value);
}

} // namespace ostrella
