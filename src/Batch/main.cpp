// ostrella-batch: the application's run without its window.

#include "Batch/BatchConsole.h"
#include "Batch/BatchOptions.h"
#include "Batch/BatchRun.h"
#include "Batch/ExitStatus.h"
#include "Models/MainThread.h"
#include "Platform/SystemFacts.h"
#include "Platform/TerminationSignals.h"

#include <QCoreApplication>
#include <QUuid>

#include <cstdio>

using namespace ostrella;

namespace {

/// A parent for run directories that nobody else prunes, and in which nothing of anybody else's
/// lies.
std::filesystem::path ownTemporaryDirectory() {
    const std::string id = QUuid::createUuid().toString(QUuid::Id128).toStdString();
    std::error_code error;
    const auto parent = std::filesystem::temp_directory_path(error);
    return (error ? std::filesystem::path("/tmp") : parent) / ("ostrella-batch-" + id);
}

/// A folder for a case must not hold anything yet: nothing of the user's is written over.
bool isTaken(const std::filesystem::path& folder) {
    std::error_code error;
    return std::filesystem::exists(folder, error) &&
           !(std::filesystem::is_directory(folder, error) &&
               std::filesystem::is_empty(folder, error));
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ostrella-batch"));

    auto parsed = parseBatchOptions({argv, argv + argc});
    if (const auto* reply = std::get_if<BatchReply>(&parsed)) {
        std::fputs(reply->text.c_str(), reply->status == 0 ? stdout : stderr);
        return reply->status;
    }
    auto options = std::get<BatchOptions>(std::move(parsed));
    if (options.prepareFolder && isTaken(*options.prepareFolder)) {
        std::fprintf(stderr, "--prepare wants a new or empty folder: %s holds something already.\n",
            options.prepareFolder->c_str());
        return ExitStatus::wrongUsage;
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
