#include "Views/Format/LogFilter.h"

#include <fmt/format.h>

namespace ostrella {

using Level = LogStore::Level;

std::string_view rawValue(LogFilter filter) {
    switch (filter) {
    case LogFilter::all:
        return "all";
    case LogFilter::info:
        return "info";
    case LogFilter::warn:
        return "warn";
    case LogFilter::err:
        return "err";
    case LogFilter::su2:
        return "su2";
    }
    return {};
}

std::optional<LogFilter> logFilterFromRawValue(std::string_view raw) {
    for (const LogFilter filter : allLogFilters) {
        if (rawValue(filter) == raw) {
            return filter;
        }
    }
    return std::nullopt;
}

bool passes(LogFilter filter, Level level) {
    switch (filter) {
    case LogFilter::all:
        return true;
    case LogFilter::info:
        return level == Level::info || level == Level::ok;
    case LogFilter::warn:
        return level == Level::warn;
    case LogFilter::err:
        return level == Level::error;
    case LogFilter::su2:
        return level == Level::su2;
    }
    return false;
}

std::vector<LogStore::Line> apply(LogFilter filter, std::vector<LogStore::Line> lines) {
    std::erase_if(
        lines, [filter](const LogStore::Line& line) { return !passes(filter, line.level); });
    return lines;
}

LogFilter logFilterFor(std::optional<Level> level) {
    if (!level) {
        return LogFilter::all;
    }
    switch (*level) {
    case Level::info:
    case Level::ok:
        return LogFilter::info;
    case Level::warn:
        return LogFilter::warn;
    case Level::error:
        return LogFilter::err;
    case Level::su2:
        return LogFilter::su2;
    }
    return LogFilter::all;
}

std::string logFilterHelp(LogFilter filter) {
    return filter == LogFilter::all ? "Show every line"
                                    : fmt::format("Show only {} lines", rawValue(filter));
}

} // namespace ostrella
