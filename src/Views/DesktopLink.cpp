#include "Views/DesktopLink.h"

#include "Ostrella/OstrellaApp.h"
#include "Platform/SingleInstance.h"
#include "Views/MainWindow.h"

namespace ostrella {

DesktopLink::DesktopLink(OstrellaApp& app, MainWindow& window, SingleInstance& instance)
    : announcer_(MainWindow::sharedObjects(app),
          {.isInFront = [&window] { return window.window().isActive(); },
              .showNote = [this](const std::string& title,
                              const std::string& body) { note_.show(title, body); },
              .withdrawNote = [this] { note_.withdraw(); },
              .showProgress = [this](
                                  std::optional<double> fraction) { progress_.set(fraction); }}) {
    connect(&documents_, &DocumentEvents::handedOver, this, [&app, &window](const QUrl& document) {
        app.openURL(document);
        window.raise();
    });
    connect(
        &instance, &SingleInstance::handedOver, this, [&app, &window](const HandOver& handOver) {
            for (const auto& document : handOver.documents) {
                app.openURL(QUrl::fromLocalFile(QString::fromStdString(document.string())));
            }
            window.raise(QString::fromStdString(handOver.activationToken));
        });
    connect(&note_, &DesktopNotification::activated, this,
        [&window](const QString& token) { window.raise(token); });
    connect(&window.window(), &QWindow::activeChanged, this, [this, &window] {
        if (window.window().isActive()) {
            announcer_.windowCameToFront();
        }
    });
}

} // namespace ostrella
