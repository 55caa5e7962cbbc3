#include "Views/Chrome/WindowModel.h"

#include "Models/HistoryStore.h"
#include "Models/LogStore.h"
#include "Models/MainThread.h"
#include "Models/RenderSettings.h"
#include "Models/SimulationParameters.h"
#include "Solver/Run/STLImporter.h"
#include "Solver/Run/SampleLoader.h"
#include "Solver/Run/SimulationController.h"
#include "Solver/Tools/Background.h"
#include "Solver/Tools/ResultExporter.h"
#include "Views/Format/AppLinks.h"
#include "Views/Format/WindowTitle.h"
#include "Views/Viewport/ViewportSnapshot.h"

#include <QPointer>

#include <algorithm>
#include <any>
#include <utility>

namespace ostrella {

WindowModel::WindowModel(
    const SharedObjects& shared, const Surroundings& surroundings, QObject* parent)
    : QObject(parent),
      shared_(shared),
      surroundings_(surroundings),
      files_([this](const ReplaceQuestion& question, std::function<void(bool)> answer) {
          ask(question.title, question.text, question.replace, question.cancel, std::move(answer));
      }),
      panel_(shared),
      commands_(shared, panel_, surroundings.words,
          {.exportResults = [this] { exportResults(); },
              .openHelp = [this] { surroundings_.openAddress(std::string(AppLinks::help)); },
              .quit = surroundings.quit,
              .showSettings = surroundings.showSettings,
              .showAbout = surroundings.showAbout,
              .checkForUpdates = surroundings.checkForUpdates,
              .canCheckForUpdates = surroundings.canCheckForUpdates}),
      sidebar_(shared, surroundings.words),
      footer_(shared, surroundings.words, surroundings.clock, surroundings.timers),
      viewport_(shared, {.words = surroundings.words,
                            .preferences = surroundings.preferences,
                            .saveImage = [this] { saveImage(); },
                            .clock = surroundings.clock,
                            .timers = surroundings.timers}),
      statusBar_(shared, surroundings.temporaryDirectory, surroundings.machine) {
    observe();
    refreshTitle();
}

WindowModel::~WindowModel() = default;

void WindowModel::observe() {
    connect(&shared_.parameters, &SimulationParameters::stlURLChanged, this,
        &WindowModel::refreshTitle);

    const auto observe = [this](std::string_view name, NotificationCenter::Handler handler) {
        observers_.push_back(shared_.notifications.observe(name, std::move(handler)));
    };
    observe(Notifications::openSTLRequested, [this](const std::any&) { presentOpenPanel(); });
    observe(Notifications::sampleLoadRequested, [this](const std::any& object) {
        if (const auto* name = std::any_cast<std::string>(&object)) {
            shared_.samples.load(*name, shared_.parameters);
        }
    });
    observe(Notifications::showLogRequested, [this](const std::any& object) {
        const auto* level = std::any_cast<LogStore::Level>(&object);
        panel_.showLog(level != nullptr ? std::optional(*level) : std::nullopt);
    });
}

void WindowModel::refreshTitle() {
    QString title = QString::fromStdString(WindowTitle::make(shared_.parameters.stlURL()));
    if (title != title_) {
        title_ = std::move(title);
        Q_EMIT titleChanged();
    }
}

void WindowModel::presentOpenPanel() {
    files_.askForModel([this](const std::optional<std::filesystem::path>& file) {
        if (file) {
            shared_.importer.open(*file, shared_.parameters);
        }
    });
}

void WindowModel::exportResults() {
    if (!shared_.parameters.lastRunResult()) {
        return;
    }
    // A copy: a new run may replace the result while the user looks for a folder.
    files_.askForExportFolder([this, result = *shared_.parameters.lastRunResult()](
                                  const std::optional<std::filesystem::path>& folder) {
        if (!folder) {
            return;
        }
        const QPointer<LogStore> log(&shared_.log);
        Background::run(
            [log, result, folder = *folder] {
                const auto [text, level] = [&]() -> std::pair<std::string, LogStore::Level> {
                    try {
                        const auto count = ResultExporter::exportResult(result, folder).size();
                        return {ResultExporter::successMessage(count, folder),
                            count == 0 ? LogStore::Level::warn : LogStore::Level::ok};
                    } catch (...) {
                        return {"Export failed · " + errorDescription(std::current_exception()),
                            LogStore::Level::error};
                    }
                }();
                MainThread::post([log, text = text, level = level] {
                    if (log) {
                        log->append(text, level);
                    }
                });
            },
            Background::Priority::userInitiated);
    });
}

void WindowModel::saveImage() {
    std::optional<std::string> name;
    if (const auto& file = shared_.parameters.stlURL()) {
        name = file->filename().string();
    }
    ViewportSnapshot::save(
        shared_.renderSettings, name, shared_.log, ViewportSnapshot::patience,
        [this](const std::string& suggestedName, ViewportSnapshot::Chosen answer) {
            files_.askForPicture(suggestedName, std::move(answer));
        },
        surroundings_.timers, surroundings_.clock);
}

QString WindowModel::alertTitle() const {
    return alerts_.empty() ? QString() : alerts_.front().title;
}

QString WindowModel::alertText() const {
    return alerts_.empty() ? QString() : alerts_.front().text;
}

QString WindowModel::alertButton() const {
    return alerts_.empty() ? QString() : alerts_.front().button;
}

QString WindowModel::alertSecondButton() const {
    return alerts_.empty() ? QString() : alerts_.front().secondButton;
}

void WindowModel::showAlert(const std::string& title, const std::string& text) {
    const Alert alert{QString::fromStdString(title), QString::fromStdString(text),
        QStringLiteral("OK"), QString(), {}};
    // The same again says nothing new.
    const bool isThere = std::any_of(alerts_.begin(), alerts_.end(), [&](const Alert& other) {
        return !other.answer && other.title == alert.title && other.text == alert.text;
    });
    if (!isThere) {
        alerts_.push_back(alert);
        Q_EMIT alertChanged();
    }
}

void WindowModel::ask(const std::string& title, const std::string& text, const std::string& button,
    const std::string& secondButton, std::function<void(bool isFirst)> answer) {
    alerts_.push_back({QString::fromStdString(title), QString::fromStdString(text),
        QString::fromStdString(button), QString::fromStdString(secondButton), std::move(answer)});
    Q_EMIT alertChanged();
}

void WindowModel::dismissAlert(bool isFirst) {
    if (alerts_.empty()) {
        return;
    }
    const auto answer = std::move(alerts_.front().answer);
    alerts_.erase(alerts_.begin());
    Q_EMIT alertChanged();
    if (answer) {
        answer(isFirst);
    }
}

} // namespace ostrella
