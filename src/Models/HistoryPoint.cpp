#include "Models/HistoryPoint.h"

#include <fmt/format.h>

#include <mutex>
#include <set>

namespace ostrella {

SeriesName::SeriesName() : text_(interned({})) {}

const std::string* SeriesName::interned(std::string_view text) {
    // Never destroyed: a worker may still read a name while the process ends.
    static auto* const mutex = new std::mutex;
    static auto* const names = new std::set<std::string, std::less<>>;
    const std::lock_guard lock(*mutex);
    auto found = names->find(text);
    if (found == names->end()) {
        found = names->emplace(text).first;
    }
    return &*found;
}

std::string HistoryPoint::id() const {
    return fmt::format("{}#{}", label.string(), iter);
}

} // namespace ostrella
