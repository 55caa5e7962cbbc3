#pragma once

#include "Models/Clock.h"
#include "Models/Timers.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

class QImage;
class QTimeZone;

namespace ostrella {

class LogStore;
class RenderSettings;

/// Saves what the viewport shows as a picture file of the user's choice.
namespace ViewportSnapshot {

/// Why a picture could not be saved; what() is the text for the log.
class Failure final : public std::exception {
public:
    enum class Kind { noImage, notWritten };

    explicit Failure(Kind kind) : kind_(kind) {}

    Kind kind() const noexcept { return kind_; }
    const char* what() const noexcept override;

private:
    Kind kind_;
};

/// Receives the place that the user chose, or nothing.
using Chosen = std::function<void(const std::optional<std::filesystem::path>&)>;
/// Asks the user for a place, with a name to begin with, and answers on the main thread, at once or
/// later.
using AskForPlace = std::function<void(const std::string& suggestedName, Chosen answer)>;

/// How long a viewport may take for its picture.
inline constexpr std::chrono::duration<double> patience = std::chrono::seconds(3);

/// Asks the viewport for a picture and saves it where the user wants it; returns at once. How it
/// ends is told in the log, unless the user thinks better of it. Main thread; log and settings may
/// go meanwhile.
void save(RenderSettings& settings, const std::optional<std::string>& stlName, LogStore& log,
    std::chrono::duration<double> timeout, AskForPlace askForPlace,
    TimerService& timers = TimerService::system(), const Clock& clock = Clock::system());

/// "wing · 2026-03-09 14.05.png": the model's name without its extension, and the moment.
std::string fileName(
    const std::optional<std::string>& stlName, Date date, const QTimeZone& timeZone);

/// Writes a PNG; a file that is there stays as it was if that fails. Throws Failure.
void writePNG(const QImage& image, const std::filesystem::path& to);

} // namespace ViewportSnapshot

} // namespace ostrella
