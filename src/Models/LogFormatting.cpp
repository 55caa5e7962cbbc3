#include "Models/LogFormatting.h"

#include "Models/NumberFormatting.h"

#include <fmt/format.h>

#include <ctime>

namespace ostrella::LogFormatting {

std::string_view tag(LogStore::Level level) {
    switch (level) {
    case LogStore::Level::info:
        return "[INFO]";
    case LogStore::Level::ok:
        return "[OK]";
    case LogStore::Level::warn:
        return "[WARN]";
    case LogStore::Level::error:
        return "[ERR]";
    case LogStore::Level::su2:
        return "[SU2]";
    }
    return {};
}

std::string time(Date date) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(date);
    std::tm local{};
    localtime_r(&seconds, &local);
    return fmt::format("{:02}:{:02}:{:02}", local.tm_hour, local.tm_min, local.tm_sec);
}

std::string line(const LogStore::Line& line) {
    return fmt::format("{} {} {}", time(line.date), tag(line.level), line.text);
}

std::string headerText(std::int64_t lineCount, bool following) {
    return fmt::format("{} {}{}", NumberFormatting::grouped(lineCount),
        lineCount == 1 ? "line" : "lines", following ? " · auto-scroll" : "");
}

} // namespace ostrella::LogFormatting
