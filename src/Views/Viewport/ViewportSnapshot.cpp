#include "Views/Viewport/ViewportSnapshot.h"

#include "Models/LogStore.h"
#include "Models/MainThread.h"
#include "Models/RenderSettings.h"
#include "Solver/Tools/TextTrimming.h"

#include <QDateTime>
#include <QImage>
#include <QPointer>
#include <QSaveFile>
#include <QTimeZone>

#include <algorithm>
#include <cctype>
#include <string_view>
#include <utility>

namespace ostrella::ViewportSnapshot {

namespace {

bool endsWithSTL(std::string_view name) {
    constexpr std::string_view extension = ".stl";
    return name.size() >= extension.size() &&
           std::equal(extension.begin(), extension.end(), name.end() - extension.size(),
               [](char lower, char any) {
                   return lower == std::tolower(static_cast<unsigned char>(any));
               });
}

void logFailure(LogStore* log, const Failure& failure) {
    if (log) {
        log->append(
            std::string("Image could not be saved · ") + failure.what(), LogStore::Level::error);
    }
}

void write(const QImage& image, const std::filesystem::path& place, LogStore* log) {
    try {
        writePNG(image, place);
        if (log) {
            log->append("Saved image " + place.filename().string(), LogStore::Level::ok);
        }
    } catch (const Failure& failure) {
        logFailure(log, failure);
    }
}

} // namespace

const char* Failure::what() const noexcept {
    switch (kind_) {
    case Kind::noImage:
        return "the viewport did not return an image";
    case Kind::notWritten:
        break;
    }
    return "the PNG could not be written";
}

void save(RenderSettings& settings, const std::optional<std::string>& stlName, LogStore& log,
    std::chrono::duration<double> timeout, AskForPlace askForPlace, TimerService& timers,
    const Clock& clock) {
    const std::string suggested = fileName(stlName, clock.now(), QTimeZone::systemTimeZone());
    settings.requestSnapshot([suggested, ask = std::move(askForPlace), log = QPointer(&log)](
                                 const QImage* image) {
        if (!image) {
            logFailure(log, Failure(Failure::Kind::noImage));
            return;
        }
        ask(suggested, [picture = *image, log](const std::optional<std::filesystem::path>& place) {
            if (place) {
                write(picture, *place, log);
            }
        });
    });
    const auto giveUp = [settings = QPointer(&settings), id = settings.snapshotRequestID()] {
        if (settings && settings->snapshotRequestID() == id) {
            settings->deliverSnapshot(nullptr);
        }
    };
    timers.after(timeout, [giveUp] { MainThread::post(giveUp); }).detach();
}

std::string fileName(
    const std::optional<std::string>& stlName, Date date, const QTimeZone& timeZone) {
    std::string_view stem = trimmedWhiteSpace(stlName ? std::string_view(*stlName) : "");
    if (endsWithSTL(stem)) {
        stem.remove_suffix(4);
    }
    std::string name(stem);
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '/' || c == ':'; }, '-');
    name = std::string(trimmedBlanks(name));
    if (name.empty()) {
        name = "Ostrella";
    }
    const auto milliseconds =
        std::chrono::floor<std::chrono::milliseconds>(date).time_since_epoch().count();
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(milliseconds, timeZone);
    return name + " · " + moment.toString(u"yyyy-MM-dd HH.mm").toStdString() + ".png";
}

void writePNG(const QImage& image, const std::filesystem::path& to) {
    QSaveFile file(QString::fromStdString(to.string()));
    // Places where no second file can be made beside the first are written to directly.
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG") || !file.commit()) {
        throw Failure(Failure::Kind::notWritten);
    }
}

} // namespace ostrella::ViewportSnapshot
