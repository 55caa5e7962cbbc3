// ostrella-batch: the application's run without its window.

#include "Batch/BatchConsole.h"
#include "Batch/BatchOptions.h"
#include "Batch/BatchRun.h"
#include "Batch/BatchTargets.h"
#include "Batch/ExitStatus.h"
#include "Batch/UsageError.h"
#include "Models/MainThread.h"
#include "Platform/SystemFacts.h"
#include "Platform/TerminationSignals.h"

#include <QCoreApplication>
#include <QUuid>

#include <clocale>
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

using namespace ostrella;

namespace {

/// A parent for run directories that nobody else prunes, and in which nothing of anybody else's
/// lies. Throws UsageError.
std::filesystem::path ownTemporaryDirectory() {
    const std::string id = QUuid::createUuid().toString(QUuid::Id128).toStdString();
    return BatchTargets::temporaryDirectory() / ("ostrella-batch-" + id);
}

/// Whatever is opened while a standard stream is closed would take its number, and the log would
/// be written into it.
void fillStandardStreams() {
    for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number) {
        if (fcntl(number, F_GETFD) < 0) {
            // The lowest free number is the one that was found free.
            [[maybe_unused]] const int opened = open("/dev/null", O_RDWR);
        }
    }
}

int perform(BatchOptions options) {
    if (const auto problem = BatchTargets::problem(options)) {
        throw UsageError(*problem);
    }
    const MainThread mainThread;
    TerminationSignals signals;
    BatchConsole console(stdout, options.quiet);
    BatchRun run({AppBundle::main(), ownTemporaryDirectory(), &SystemFacts::words()},
        std::move(options), console);
    QObject::connect(&signals, &TerminationSignals::requested, &run, &BatchRun::cancel);
    QMetaObject::invokeMethod(&run, &BatchRun::start, Qt::QueuedConnection);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    fillStandardStreams();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ostrella-batch"));
    // A file beyond the limit of the user's quota is an error to be told, not a reason to die.
    std::signal(SIGXFSZ, SIG_IGN);
    // Qt takes over the user's language; numbers in files and on the command line have a point.
    std::setlocale(LC_NUMERIC, "C");

    auto parsed = parseBatchOptions({argv, argv + argc});
    if (const auto* reply = std::get_if<BatchReply>(&parsed)) {
        std::fputs(reply->text.c_str(), reply->status == 0 ? stdout : stderr);
        return reply->status;
    }
    try {
        return perform(std::get<BatchOptions>(std::move(parsed)));
    } catch (const UsageError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return ExitStatus::wrongUsage;
    }
}
