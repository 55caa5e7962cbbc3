#pragma once

#include "support/Wait.h"

#include <QProcess>
#include <QStringList>

#include <memory>
#include <optional>

namespace ostrella::test {

/// Sets a variable of the environment, or takes it away, and puts it back in the end.
class EnvironmentVariable {
public:
    EnvironmentVariable(const char* name, const std::optional<QByteArray>& value);
    ~EnvironmentVariable();
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    void set(const std::optional<QByteArray>& value);

    const char* name_;
    std::optional<QByteArray> former_;
};

/// A program that writes lines and takes lines; it is killed with the object.
class TalkingProgram {
public:
    TalkingProgram(const QString& program, const QStringList& arguments);
    ~TalkingProgram();

    /// Waits for a line that begins so, from the first on; nothing if none comes.
    std::optional<QString> waitForLine(const QString& beginning);
    /// The lines until now.
    const QStringList& lines();
    void say(const QString& line);
    /// Ends it at once, as a crash does.
    void kill();
    QProcess& process() { return process_; }

private:
    QProcess process_;
    QByteArray unread_;
    QStringList lines_;
};

/// A bus of the test's own, named by the environment as long as the object lives. No service but
/// the test's own is on it, and none is started by asking for it.
class PrivateBus {
public:
    PrivateBus();

    const QString& address() const { return address_; }
    /// The bus still takes connections, but does nothing any more.
    void freeze();
    void thaw();

private:
    TemporaryDirectory directory_;
    std::unique_ptr<TalkingProgram> daemon_;
    QString address_;
    std::optional<EnvironmentVariable> variable_;
};

/// One of the services among the test programs, on the bus of the environment, ready to be asked.
std::unique_ptr<TalkingProgram> startService(const QString& name, const QStringList& arguments);

} // namespace ostrella::test
