// ostrella: the application with its window.

#include "Models/MainThread.h"
#include "Ostrella/OstrellaApp.h"
#include "Platform/DesktopAppearance.h"
#include "Platform/Preferences.h"
#include "Platform/SystemFacts.h"
#include "Platform/TerminationSignals.h"
#include "Views/AlertWindow.h"
#include "Views/GraphicsChoice.h"
#include "Views/MainWindow.h"
#include "Views/Viewport/ViewportItem.h"

#include <QDesktopServices>
#include <QDir>
#include <QGuiApplication>
#include <QUrl>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

using namespace ostrella;

namespace {

/// Has the user read why nothing can be drawn, and ends then.
void giveUp(const std::string& reason) {
    AlertWindow::present(reason, "", [] { QGuiApplication::exit(EXIT_FAILURE); });
}

int perform(const QStringList& files) {
    const MainThread mainThread;
    if (!GraphicsChoice::settle()) {
        giveUp(std::string(SystemFacts::words().requiredGraphics));
        return QGuiApplication::exec();
    }
    Preferences preferences;
    std::unique_ptr<MainWindow> window;
    const auto alert = [&window](const std::string& message, const std::string& text) {
        window->model().showAlert(message, text);
    };
    OstrellaApp app({AppBundle::main(), QDir::tempPath().toStdString(), &SystemFacts::words()},
        preferences, SystemFacts::bootFacts(), alert);
    const DesktopAppearance appearance;
    // A run under way ends with the process: its child programs are told by the system.
    const auto end = [] { QGuiApplication::quit(); };
    window = std::make_unique<MainWindow>(app,
        WindowModel::Surroundings{.words = SystemFacts::words(),
            .preferences = preferences,
            .temporaryDirectory = QDir::tempPath().toStdString(),
            .openAddress =
                [](const std::string& address) {
                    QDesktopServices::openUrl(QUrl(QString::fromStdString(address)));
                },
            .quit = end},
        appearance);
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
    window->show();
    app.start();
    for (const QString& file : files)
        app.openURL(QUrl::fromUserInput(file, QDir::currentPath(), QUrl::AssumeLocalFile));
    const int status = QGuiApplication::exec();
    // It shows what the shared objects hold.
    window.reset();
    return status;
}

} // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--version") {
            std::printf("Ostrella %s\n", AppBundle::version().c_str());
            return EXIT_SUCCESS;
        }
    }
    GraphicsChoice::prepare();
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Ostrella"));
    // The end is told by hand, since a run may have to end before.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    std::signal(SIGXFSZ, SIG_IGN);
    // Qt takes over the user's language; numbers in files have a point.
    std::setlocale(LC_NUMERIC, "C");
    return perform(QGuiApplication::arguments().mid(1));
}
