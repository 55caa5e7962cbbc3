#pragma once

#include "Models/LogStore.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

/// Which lines of the log are on show.
enum class LogFilter { all, info, warn, err, su2 };

inline constexpr std::array allLogFilters{
    LogFilter::all, LogFilter::info, LogFilter::warn, LogFilter::err, LogFilter::su2};

/// "all", "info", "warn", "err" or "su2"; the label of its chip as well.
std::string_view rawValue(LogFilter filter);
std::optional<LogFilter> logFilterFromRawValue(std::string_view raw);

/// Whether a filter lets lines of a level through.
bool passes(LogFilter filter, LogStore::Level level);

/// The lines that a filter lets through, in their order.
std::vector<LogStore::Line> apply(LogFilter filter, std::vector<LogStore::Line> lines);

/// The filter that shows the lines of a level; of no level, every line.
LogFilter logFilterFor(std::optional<LogStore::Level> level);

/// What a filter's chip does.
std::string logFilterHelp(LogFilter filter);

} // namespace ostrella
