#include "Views/Controls/Stepping.h"

#include "Views/Format/SettingsFormat.h"
#include "Views/Format/SteppedValue.h"

namespace ostrella {

int Stepping::stepped(int value, int steps, int step, int from, int to) {
    return SteppedValue::Counts{from, to, step}.stepped(value, steps);
}

bool Stepping::canStep(int value, int steps, int step, int from, int to) {
    return SteppedValue::Counts{from, to, step}.canStep(value, steps);
}

QString Stepping::count(int value) {
    return QString::fromStdString(SettingsFormat::count(value));
}

double Stepping::steppedFactor(double value, int steps, double step, double from, double to) {
    return SteppedValue::Factors{from, to, step}.stepped(value, steps);
}

double Stepping::factorInRange(double value, double from, double to) {
    return SteppedValue::Factors{from, to}.inRange(value);
}

double Stepping::snappedFactor(double value, double step, double from, double to) {
    return SteppedValue::Factors{from, to, step}.snapped(value);
}

QString Stepping::factor(double value) {
    return QString::fromStdString(SettingsFormat::factor(value));
}

} // namespace ostrella
