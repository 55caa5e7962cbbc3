#pragma once

#include "Models/AppSettings.h"
#include "Models/HistoryStore.h"
#include "Models/LogStore.h"
#include "Models/NotificationCenter.h"
#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Solver/Run/STLImporter.h"
#include "Solver/Run/SampleLoader.h"
#include "Solver/Run/SimulationController.h"

#include <QUrl>

#include <memory>

namespace ostrella {

class UpdateController;

/// Owns the shared objects for the whole life of the process and wires them; no logic beyond that.
/// The desktop application and the batch program each make one. Main thread only.
class OstrellaApp {
public:
    /// How a warning is shown: a message and an informative text.
    using Alert = SampleLoader::Alert;

    OstrellaApp(RunEnvironment environment, PreferenceStore& preferences,
        const LogStore::BootFacts& bootFacts, Alert alert);
    ~OstrellaApp();

    /// Wires the controller, and the updates where there are any; once, when the window's content
    /// appears.
    void start();

    /// Takes a document handed over from outside. What is no file, no STL, or comes during a run is
    /// ignored.
    void openURL(const QUrl& url);

    NotificationCenter notifications;
    SimulationParameters parameters;
    RenderSettings renderSettings;
    LogStore logStore;
    HistoryStore historyStore;
    AppSettings appSettings;
    SimulationController simulation;
    STLImporter importer;
    SampleLoader samples;
    /// Of an application with a window, which sets it once before start(); null in a batch run.
    std::unique_ptr<UpdateController> updates;
};

} // namespace ostrella
