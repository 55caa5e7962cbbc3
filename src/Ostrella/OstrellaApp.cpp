#include "Ostrella/OstrellaApp.h"

#include "Update/UpdateController.h"

#include <QFileInfo>

#include <utility>

namespace ostrella {

OstrellaApp::OstrellaApp(RunEnvironment environment, PreferenceStore& preferences,
    const LogStore::BootFacts& bootFacts, Alert alert)
    : logStore(*environment.clock,
          LogStore::bootLines(bootFacts, *environment.words, environment.clock->now())),
      appSettings(preferences),
      simulation(environment, notifications),
      importer(notifications,
          [alert](const std::exception_ptr& error) {
              alert(STLImporter::errorTitle, errorDescription(error));
          }),
      samples(environment.bundle, importer, alert) {}

OstrellaApp::~OstrellaApp() = default;

void OstrellaApp::start() {
    simulation.configure(parameters, logStore, renderSettings, historyStore, appSettings);
    if (updates) {
        updates->attach(simulation, logStore);
        updates->startAfterLaunch();
    }
}

void OstrellaApp::openURL(const QUrl& url) {
    if (!url.isLocalFile()) {
        return;
    }
    const QString file = url.toLocalFile();
    if (QFileInfo(file).suffix().toLower() != QLatin1String("stl")) {
        return;
    }
    if (simulation.phase().isActive()) {
        return;
    }
    importer.open(std::filesystem::path(file.toStdU16String()), parameters);
}

} // namespace ostrella
