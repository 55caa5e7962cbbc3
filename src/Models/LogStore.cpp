#include "Models/LogStore.h"

#include "Models/NumberFormatting.h"
#include "Models/PlatformWords.h"

#include <fmt/format.h>

#include <array>
#include <iterator>
#include <utility>

namespace ostrella {

namespace {

constexpr std::array<std::string_view, 5> levelNames{"info", "ok", "warn", "error", "su2"};

} // namespace

std::string_view LogStore::Line::rawValue(Level level) {
    return levelNames[static_cast<std::size_t>(level)];
}

std::optional<LogStore::Level> LogStore::Line::levelFromRawValue(std::string_view raw) {
    for (std::size_t i = 0; i < levelNames.size(); ++i) {
        if (levelNames[i] == raw) {
            return static_cast<Level>(i);
        }
    }
    return std::nullopt;
}

LogStore::LogStore(const Clock& clock, std::vector<Line> lines, QObject* parent)
    : QObject(parent),
      clock_(clock),
      lines_(std::make_move_iterator(lines.begin()), std::make_move_iterator(lines.end())) {}

void LogStore::append(std::string text, Level level) {
    lines_.push_back(Line{QUuid::createUuid(), std::move(text), level, clock_.now()});
    Q_EMIT linesChanged();
}

std::vector<LogStore::Line> LogStore::bootLines(
    const BootFacts& facts, const PlatformWords& words, Date date) {
    return {
        Line{QUuid::createUuid(),
            fmt::format("Ostrella {} · {} {}.{} · {}", facts.version.value_or("dev"),
                words.systemName, facts.systemMajor, facts.systemMinor, facts.graphicsLabel),
            Level::info, date},
        Line{QUuid::createUuid(),
            fmt::format(
                "Awaiting geometry. Drop an STL onto the viewport, press {}, or pick a sample.",
                words.openShortcut),
            Level::info, date},
    };
}

std::string LogStore::grouped(std::int64_t n) {
    return NumberFormatting::grouped(n, " ");
}

std::string LogStore::loadedLine(std::string_view fileName, std::int64_t facets, Vec3 extent) {
    return fmt::format("Loaded {} · {} facets · {:.2f} × {:.2f} × {:.2f} m", fileName,
        grouped(facets), static_cast<double>(extent.x), static_cast<double>(extent.y),
        static_cast<double>(extent.z));
}

std::string LogStore::openEdgesLine(std::int64_t count) {
    return fmt::format(
        "STL is not water-tight · {} open {}", grouped(count), count == 1 ? "edge" : "edges");
}

} // namespace ostrella
