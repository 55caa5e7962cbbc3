#pragma once

#include <QObject>

class QSocketNotifier;

namespace ostrella {

/// Turns SIGINT and SIGTERM into a Qt signal on the main thread. One at a time.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void requested();

private:
    QSocketNotifier* notifier_;
};

} // namespace ostrella
