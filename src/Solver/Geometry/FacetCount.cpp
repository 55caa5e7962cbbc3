#include "Solver/Geometry/FacetCount.h"

#include "Solver/Geometry/STLRecord.h"

#include <array>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

namespace ostrella {

namespace {

void lowerASCII(std::string& text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
}

std::int64_t occurrences(std::string_view text, std::string_view phrase) {
    std::int64_t count = 0;
    for (auto at = text.find(phrase); at != std::string_view::npos;
         at = text.find(phrase, at + phrase.size()))
        ++count;
    return count;
}

} // namespace

std::optional<std::int64_t> readFacetCount(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return std::nullopt; // a pipe or a device would keep the reader waiting
    const auto size = std::filesystem::file_size(path, error);
    if (error)
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    std::string text(STLRecord::preambleSize, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (file.bad())
        return std::nullopt;
    text.resize(static_cast<std::size_t>(file.gcount()));
    if (const auto facets = STLRecord::facetCount(std::as_bytes(std::span(text)), size))
        return *facets;
    if (!text.starts_with("solid"))
        return std::nullopt;
    file.clear();
    text.append(std::istreambuf_iterator<char>(file), {});
    if (file.bad())
        return std::nullopt;
    // No other letter becomes one of these when made small, so that bytes suffice.
    lowerASCII(text);
    const std::int64_t count = occurrences(text, "facet normal");
    return count > 0 ? std::optional(count) : std::nullopt;
}

} // namespace ostrella
