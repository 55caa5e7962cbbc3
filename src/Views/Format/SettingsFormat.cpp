#include "Views/Format/SettingsFormat.h"

#include "Models/LogStore.h"

namespace ostrella::SettingsFormat {

std::string count(std::int64_t n) {
    return LogStore::grouped(n);
}

} // namespace ostrella::SettingsFormat
