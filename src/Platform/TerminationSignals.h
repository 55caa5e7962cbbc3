#pragma once

#include <QObject>

class QSocketNotifier;

namespace ostrella {

/// Turns the signals that ask the process to end into a Qt signal on the main thread: SIGINT and
/// SIGTERM, SIGHUP when the terminal goes away (unless it was ignored at the start, as nohup does),
/// and SIGPIPE when nobody reads the output any more. One instance at a time.
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
