#include "fuzz/AppcastBody.h"

#include "Models/Precondition.h"
#include "Update/Appcast.h"
#include "Update/UpdateRefusal.h"
#include "Update/VersionOrder.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella::fuzz {

namespace {

bool isPageOrNothing(const std::string& address) {
    return address.empty() || address.starts_with("https://") || address.starts_with("http://");
}

bool isOneLine(const std::string& text) {
    return std::none_of(
        text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; });
}

void check(const AppcastItem& item) {
    precondition(!item.version.empty() && item.version.size() <= 64, "a version can be compared");
    precondition(item.version.find('/') == std::string::npos, "a version leads nowhere");
    precondition(isOneLine(item.version) && isOneLine(item.displayVersionString), "versions show");
    precondition(isOneLine(item.title), "a title is one line");
    precondition(item.notes.size() <= 3 * (64 << 10), "notes come to an end");
    precondition(isPageOrNothing(item.infoAddress), "a link is a page");
    precondition(isPageOrNothing(item.notesAddress), "notes are a page");
    precondition(item.archiveLength >= 0, "a length is no debt");
}

void checkOrder(const std::vector<AppcastItem>& items) {
    const auto count = std::min<std::size_t>(items.size(), 8);
    const auto before = [&](std::size_t i, std::size_t j) {
        return VersionOrder::compare(items[i].version, items[j].version) < 0;
    };
    for (std::size_t i = 0; i < count; ++i) {
        precondition(!before(i, i), "no version is before itself");
        for (std::size_t j = 0; j < count; ++j) {
            precondition(!(before(i, j) && before(j, i)), "one of two is the older");
            for (std::size_t k = 0; k < count; ++k) {
                precondition(!before(i, j) || !before(j, k) || before(i, k), "ages are in order");
            }
        }
    }
}

} // namespace

void appcast(std::span<const std::uint8_t> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    try {
        const auto items = Appcast::items(text, "linux-x86_64", "1.2b3 (4)");
        std::for_each(items.begin(), items.end(), check);
        checkOrder(items);
    } catch (const UpdateRefusal& refusal) {
        precondition(isOneLine(refusal.what()), "a refusal is one line of the log");
    }
}

} // namespace ostrella::fuzz
