#include "Views/Format/SettingsFormat.h"

#include "Models/LogStore.h"

#include <fmt/format.h>

namespace ostrella::SettingsFormat {

std::string count(std::int64_t n) {
    return LogStore::grouped(n);
}

std::string factor(double value) {
    return fmt::format("{:.2f} ×c", value);
}

} // namespace ostrella::SettingsFormat
