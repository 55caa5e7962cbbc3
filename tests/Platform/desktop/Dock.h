#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <vector>

namespace ostrella::test {

/// Where a desktop shows programs: it listens to how far they say they are.
class Dock : public QObject {
    Q_OBJECT

public:
    explicit Dock(const QString& address);
    ~Dock() override;

    bool isListening() const { return isListening_; }

    /// For each update the progress, or -1 where none is to be seen.
    std::vector<double> heard;
    /// Of the last update.
    QString application;

public Q_SLOTS:
    void hear(const QDBusMessage& update);

private:
    QDBusConnection bus_;
    bool isListening_;
};

} // namespace ostrella::test
