#pragma once

#include "Views/Panel/LogLines.h"
#include "Views/Panel/LogSelection.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <cstddef>

namespace ostrella {

/// Gathers the text of a selection, however long, a few milliseconds at a time, so that copying a
/// million lines holds up nothing. What is short is there at once.
class LogCopy final : public QObject {
    Q_OBJECT

public:
    explicit LogCopy(const LogLines& lines, QObject* parent = nullptr);

    /// Begins anew with the lines of the present filter; what was under way is dropped.
    void start(const LogSelection& selection);

Q_SIGNALS:
    /// The whole text, a line break between lines.
    void finished(const QString& text);

private:
    void goOn();

    const LogLines& lines_;
    LogSelection selection_;
    LogFilter filter_ = LogFilter::all;
    std::size_t next_ = 0;
    QString text_;
    QTimer timer_;
};

} // namespace ostrella
