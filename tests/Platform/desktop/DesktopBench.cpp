#include "Platform/desktop/DesktopBench.h"

#include <gtest/gtest.h>

#include <csignal>

#include <sys/prctl.h>

namespace ostrella::test {

EnvironmentVariable::EnvironmentVariable(const char* name, const std::optional<QByteArray>& value)
    : name_(name) {
    if (qEnvironmentVariableIsSet(name)) {
        former_ = qgetenv(name);
    }
    set(value);
}

EnvironmentVariable::~EnvironmentVariable() {
    set(former_);
}

void EnvironmentVariable::set(const std::optional<QByteArray>& value) {
    if (value) {
        qputenv(name_, *value);
    } else {
        qunsetenv(name_);
    }
}

TalkingProgram::TalkingProgram(const QString& program, const QStringList& arguments) {
    // What it has to complain of would only stand between the lines of the test.
    process_.setStandardErrorFile(QProcess::nullDevice());
    // A test that is killed leaves nobody behind.
    process_.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process_.start(program, arguments);
    EXPECT_TRUE(process_.waitForStarted()) << program.toStdString() << " does not start";
}

TalkingProgram::~TalkingProgram() {
    kill();
}

void TalkingProgram::kill() {
    process_.kill();
    process_.waitForFinished();
}

const QStringList& TalkingProgram::lines() {
    unread_ += process_.readAllStandardOutput();
    for (auto end = unread_.indexOf('\n'); end >= 0; end = unread_.indexOf('\n')) {
        lines_.append(QString::fromUtf8(unread_.left(end)));
        unread_.remove(0, end + 1);
    }
    return lines_;
}

std::optional<QString> TalkingProgram::waitForLine(const QString& beginning) {
    std::optional<QString> found;
    waitUntil([&] {
        for (const QString& line : lines()) {
            if (line.startsWith(beginning)) {
                found = line;
                return true;
            }
        }
        return false;
    });
    return found;
}

void TalkingProgram::say(const QString& line) {
    process_.write(line.toUtf8() + '\n');
}

PrivateBus::PrivateBus() {
    const std::string folder = directory_.path().string();
    const std::filesystem::path configuration = directory_.path() / "bus.conf";
    writeFile(configuration, "<busconfig><type>session</type><listen>unix:dir=" + folder +
                                 "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                                 "<allow send_destination=\"*\" eavesdrop=\"true\"/>"
                                 "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy>"
                                 "</busconfig>\n");
    daemon_ = std::make_unique<TalkingProgram>(QStringLiteral("dbus-daemon"),
        QStringList{QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
            QStringLiteral("--print-address"),
            QStringLiteral("--config-file=") + QString::fromStdString(configuration.string())});
    const auto address = daemon_->waitForLine(QStringLiteral("unix:"));
    EXPECT_TRUE(address) << "the bus does not come up";
    address_ = address.value_or(QString());
    variable_.emplace("DBUS_SESSION_BUS_ADDRESS", address_.toUtf8());
}

void PrivateBus::freeze() {
    ::kill(static_cast<pid_t>(daemon_->process().processId()), SIGSTOP);
}

void PrivateBus::thaw() {
    ::kill(static_cast<pid_t>(daemon_->process().processId()), SIGCONT);
}

std::unique_ptr<TalkingProgram> startService(const QString& name, const QStringList& arguments) {
    auto service = std::make_unique<TalkingProgram>(
        QStringLiteral(OSTRELLA_TEST_PROGRAMS "/") + name, arguments);
    EXPECT_TRUE(service->waitForLine(QStringLiteral("ready")));
    return service;
}

} // namespace ostrella::test
