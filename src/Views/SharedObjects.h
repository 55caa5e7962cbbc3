#pragma once

namespace ostrella {

class AppSettings;
class HistoryStore;
class LogStore;
class NotificationCenter;
class RenderSettings;
class SampleLoader;
class SimulationController;
class SimulationParameters;
class STLImporter;

/// The shared objects of the process, as the views are given them. Whoever owns them outlives every
/// view.
struct SharedObjects {
    SimulationParameters& parameters;
    RenderSettings& renderSettings;
    LogStore& log;
    HistoryStore& history;
    AppSettings& settings;
    SimulationController& simulation;
    NotificationCenter& notifications;
    STLImporter& importer;
    SampleLoader& samples;
};

} // namespace ostrella
