// ostrella: the application with its window.

#include "Models/MainThread.h"
#include "Ostrella/ApplicationUpdates.h"
#include "Ostrella/OstrellaApp.h"
#include "Ostrella/StartOptions.h"
#include "Platform/AppBundle.h"
#include "Platform/ChildProcess.h"
#include "Platform/DesktopAppearance.h"
#include "Platform/DesktopEntry.h"
#include "Platform/DisplayProbe.h"
#include "Platform/PackageUse.h"
#include "Platform/Preferences.h"
#include "Platform/SingleInstance.h"
#include "Platform/SystemFacts.h"
#include "Platform/TerminationSignals.h"
#include "Views/AlertWindow.h"
#include "Views/DesktopLink.h"
#include "Views/GraphicsChoice.h"
#include "Views/MainWindow.h"
#include "Views/Viewport/ViewportItem.h"

#include <QDesktopServices>
#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QLoggingCategory>
#include <QUrl>

#include <chrono>
#include <fmt/format.h>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

using namespace ostrella;

namespace {

constexpr int wrongUsage = 2;

Q_LOGGING_CATEGORY(startLog, "ostrella.start", QtWarningMsg)

/// Has the user read why nothing can be drawn, and ends then.
void giveUp(const std::string& reason) {
    AlertWindow::present(reason, "", [] { QGuiApplication::exit(EXIT_FAILURE); });
}

/// Libraries end the process by themselves when its display goes away: at once then, since the
/// workers of a run must not find what they use destroyed.
void endAtOnce() {
    ChildProcess::killAllForGood();
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
}

/// Ends this process as the start of another program, with the same documents.
void become(const std::filesystem::path& program, const HandOver& start) {
    std::vector<std::string> words{program.string()};
    for (const auto& document : start.documents) {
        words.push_back(document.string());
    }
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    ::execv(program.c_str(), arguments.data());
}

/// For measuring: the moment on the machine's steady clock, which every program reads alike.
void tellFirstFrame(MainWindow& window) {
    if (startLog().isDebugEnabled()) {
        QObject::connect(
            &window.window(), &QQuickWindow::frameSwapped, &window,
            [] {
                const std::chrono::duration<double> now =
                    std::chrono::steady_clock::now().time_since_epoch();
                qCDebug(startLog, "first frame at %.6f s", now.count());
            },
            Qt::SingleShotConnection);
    }
}

/// For window systems that take it from the window and not from the desktop's entry.
QIcon applicationIcon() {
    const auto icons = AppBundle::main().root() / "share" / "icons" / "hicolor";
    QIcon icon;
    for (const int size : {16, 32, 48, 128}) {
        const auto file = icons / fmt::format("{0}x{0}", size) / "apps" /
                          fmt::format("{}.png", DesktopEntry::identifier);
        icon.addFile(QString::fromStdString(file.string()), {size, size});
    }
    return icon;
}

int perform(const HandOver& start) {
    auto instance = std::make_unique<SingleInstance>(SingleInstance::usualSocket());
    if (instance->start(start) == SingleInstance::Role::second) {
        ApplicationUpdates::leaveToAnother();
        return EXIT_SUCCESS;
    }
    const MainThread mainThread;
    ApplicationUpdates updates(AppBundle::main());
    if (updates.startInstead()) {
        instance.reset();
        become(*updates.startInstead(), start);
        return EXIT_FAILURE;
    }
    if (!GraphicsChoice::settle()) {
        giveUp(std::string(SystemFacts::words().requiredGraphics));
        return QGuiApplication::exec();
    }
    Preferences preferences;
    std::unique_ptr<MainWindow> window;
    const auto alert = [&window](const std::string& message, const std::string& text) {
        window->model().showAlert(message, text);
    };
    const LogStore::BootFacts bootFacts =
        SystemFacts::bootFacts(GraphicsChoice::label(SystemFacts::words()));
    OstrellaApp app({AppBundle::main(), QDir::tempPath().toStdString(), &SystemFacts::words()},
        preferences, bootFacts, alert);
    const DesktopAppearance appearance;
    const auto end = [] { QGuiApplication::exit(EXIT_SUCCESS); };
    app.updates = updates.makeController({.preferences = preferences,
        .log = app.logStore,
        .ask = [&window](const UpdateAlert& question,
                   std::function<void(bool)> reply) { window->ask(question, std::move(reply)); },
        .quit = end});
    const auto openAddress = [](const std::string& address) {
        QDesktopServices::openUrl(QUrl(QString::fromStdString(address)));
    };
    window = std::make_unique<MainWindow>(app,
        WindowModel::Surroundings{.words = SystemFacts::words(),
            .preferences = preferences,
            .temporaryDirectory = QDir::tempPath().toStdString(),
            .openAddress = openAddress,
            .quit = end},
        appearance,
        PackageFacts{.renderer = bootFacts.graphicsLabel, .updates = app.updates.get()});
    auto link = std::make_unique<DesktopLink>(app, *window, *instance);
    auto updateLink = updates.showSessions(*window, openAddress);
    TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::requested, window.get(), end);
    QObject::connect(window.get(), &MainWindow::closed, window.get(), end);
    QObject::connect(&window->viewport(), &ViewportItem::deviceProblemChanged, window.get(), [&] {
        const std::string problem = window->viewport().deviceProblem().toStdString();
        if (problem == SystemFacts::words().requiredGraphics) {
            window->hide();
            giveUp(problem);
        } else if (!problem.empty()) {
            app.logStore.append("Viewport not drawn · " + problem, LogStore::Level::error);
        }
    });
    tellFirstFrame(*window);
    QObject::connect(
        &window->window(), &QQuickWindow::frameSwapped, window.get(),
        [&updates] { updates.confirmStarted(); }, Qt::SingleShotConnection);
    window->show();
    app.start();
    for (const auto& document : start.documents) {
        app.openURL(QUrl::fromLocalFile(QString::fromStdString(document.string())));
    }
    const int status = QGuiApplication::exec();
    // Nothing waits for a run under way: it ends with the process, and its programs here.
    window->hide();
    ChildProcess::killAllForGood();
    PackageUse::endAllForGood();
    // All of them show what the shared objects hold.
    updateLink.reset();
    link.reset();
    window.reset();
    // A new version that is started from here is the next to serve the user. Otherwise nobody is
    // to start while the two versions change places.
    if (updates.restartsAtQuit()) {
        instance.reset();
    }
    updates.installAtQuit();
    instance.reset();
    return status;
}

} // namespace

int main(int argc, char** argv) {
    ApplicationUpdates::adoptWatch();
    const auto parsed = parseStartOptions({argv + 1, argv + argc});
    if (const auto* reply = std::get_if<StartReply>(&parsed)) {
        std::fputs(reply->text.c_str(), reply->isError ? stderr : stdout);
        return reply->isError ? wrongUsage : EXIT_SUCCESS;
    }
    if (!DisplayProbe::canShowWindows()) {
        std::fputs("ostrella: there is no display to open a window on. Runs without a window are "
                   "ostrella-batch's.\n",
            stderr);
        return EXIT_FAILURE;
    }
    // The toolkit takes the desktop's token out of the environment.
    const HandOver start = HandOver::ofThisStart(std::get<StartOptions>(parsed).files);
    GraphicsChoice::prepare();
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Ostrella"));
    QGuiApplication::setDesktopFileName(QString::fromLatin1(DesktopEntry::identifier));
    QGuiApplication::setWindowIcon(applicationIcon());
    // The end is told by hand, since a run may have to end before.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    std::signal(SIGXFSZ, SIG_IGN);
    // Qt takes over the user's language; numbers in files have a point.
    std::setlocale(LC_NUMERIC, "C");
    std::atexit(endAtOnce);
    const int status = perform(start);
    // Workers that nobody waits for still run: what they use must not be destroyed under them.
    std::fflush(nullptr);
    std::_Exit(status);
}
