// A copy of the application as far as updates go: it does at its start what that does, tells what
// it found, and behaves as the text beside it says.

#include "Models/MainThread.h"
#include "Models/PreferenceStore.h"
#include "Platform/AppBundle.h"
#include "Update/AppcastUpdater.h"
#include "Update/UpdateRestart.h"

#include <QCoreApplication>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>

#include <unistd.h>

using namespace ostrella;

namespace {

std::string behaviour(const AppBundle& bundle) {
    std::ifstream file(bundle.resourcesDirectory() / "behaviour.txt");
    std::string word;
    file >> word;
    return word;
}

int perform(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const AppBundle bundle = AppBundle::main();
    const MainThread mainThread;
    auto recovery = AppcastUpdater::recover(bundle.root());
    if (recovery.startInstead) {
        ::execv(recovery.startInstead->c_str(), argv);
        return EXIT_FAILURE;
    }
    // One line at once, so that whoever waits for it never sees a part of it.
    const std::string line = UpdateInstaller::version(bundle.root()) +
                             (UpdateRestart::isWatched() ? " watched" : " alone") +
                             (recovery.failedVersion.empty() ? "" : " " + recovery.failedVersion) +
                             "\n";
    std::ofstream(bundle.root().parent_path() / "starts.txt", std::ios::app) << line << std::flush;

    const std::string word = behaviour(bundle);
    if (word == "ends") {
        return EXIT_FAILURE;
    }
    if (word == "hangs") {
        // Not for ever, whatever becomes of the test.
        constexpr unsigned longest = 300;
        ::alarm(longest);
        while (true) {
            ::pause();
        }
    }
    MemoryPreferences preferences;
    AppcastUpdater updater({.root = bundle.root(),
        .information = bundle.information(),
        .preferences = preferences,
        .cache = bundle.root().parent_path() / "cache",
        .report = [](const std::string&, LogStore::Level) {},
        .quit = [] {}});
    updater.confirmStarted(std::move(recovery.claim), [] { QCoreApplication::quit(); });
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    UpdateRestart::adoptWatch();
    if (argc > 1 && std::string_view(argv[1]) == "--version") {
        std::cout << "sample\n";
        return EXIT_SUCCESS;
    }
    const int status = perform(argc, argv);
    std::cout.flush();
    std::_Exit(status);
}
