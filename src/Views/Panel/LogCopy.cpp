#include "Views/Panel/LogCopy.h"

#include <QElapsedTimer>

#include <utility>

namespace ostrella {

namespace {

/// How long the main thread is held at a time, in milliseconds, looked at every so many lines.
constexpr qint64 slice = 8;
constexpr std::size_t linesBetweenLooks = 256;

} // namespace

LogCopy::LogCopy(const LogLines& lines, QObject* parent) : QObject(parent), lines_(lines) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &LogCopy::goOn);
}

void LogCopy::start(const LogSelection& selection) {
    timer_.stop();
    text_.clear();
    selection_ = selection;
    filter_ = lines_.filter();
    next_ = selection.from().number;
    if (!selection.empty()) {
        goOn();
    }
}

void LogCopy::goOn() {
    QElapsedTimer time;
    time.start();
    const std::size_t last = selection_.to().number;
    for (; next_ <= last; ++next_) {
        if (next_ % linesBetweenLooks == 0 && time.elapsed() >= slice) {
            timer_.start(0);
            return;
        }
        const LogStore::Line& line = lines_.line(next_);
        if (!passes(filter_, line.level)) {
            continue;
        }
        const QString plain = QString::fromStdString(LogRow::plainText(line));
        const LogRow::Span span = selection_.within(next_, plain.size());
        text_ += QStringView(plain).mid(span.from, span.to - span.from);
        if (span.goesOn) {
            text_ += QLatin1Char('\n');
        }
    }
    Q_EMIT finished(std::exchange(text_, {}));
}

} // namespace ostrella
