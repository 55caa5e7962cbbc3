#include "Platform/TerminationSignals.h"

#include "Models/Precondition.h"

#include <QSocketNotifier>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ostrella {

namespace {

/// The handler's end and the notifier's end.
int ends[2] = {-1, -1};

extern "C" void passOn(int) {
    // The interrupted code may be about to look at its own error.
    const int error = errno;
    const char mark = 1;
    // Nothing can be done about a failure inside a signal handler, and one mark is enough.
    [[maybe_unused]] const auto written = write(ends[0], &mark, 1);
    errno = error;
}

bool isIgnored(int number) {
    struct sigaction present {};
    return sigaction(number, nullptr, &present) == 0 && present.sa_handler == SIG_IGN;
}

void setHandler(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        // Who ignores SIGHUP wants to go on without a terminal.
        if (number != SIGHUP || !isIgnored(SIGHUP)) {
            sigaction(number, &action, nullptr);
        }
    }
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    precondition(ends[0] < 0, "termination signals are watched once at a time");
    const int result = socketpair(AF_UNIX, SOCK_STREAM, 0, ends);
    precondition(result == 0, "no socket pair for the termination signals");
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    notifier_ = new QSocketNotifier(ends[1], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] {
        char marks[16];
        while (read(ends[1], marks, sizeof marks) > 0) {
        }
        Q_EMIT requested();
    });
    setHandler(passOn);
}

TerminationSignals::~TerminationSignals() {
    setHandler(SIG_DFL);
    delete notifier_;
    for (int& end : ends) {
        close(end);
        end = -1;
    }
}

} // namespace ostrella
