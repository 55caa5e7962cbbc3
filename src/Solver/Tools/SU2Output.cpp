#include "Solver/Tools/SU2Output.h"

#include "Solver/Tools/TextTrimming.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <string>

namespace ostrella::SU2Output {

namespace {

// A mesh file can be very large; its counts stand at the head.
constexpr std::size_t headSize = 65536;

constexpr std::array<std::string_view, 2> convergedTexts{"All convergence criteria satisfied.",
    // Spelled as the solver prints it.
    "All windowed time-averaged convergence criteria are fullfilled."};
constexpr std::string_view iterationCapText = "Maximum number of iterations reached";

/// The integer that the digits at the front of `text` spell; what follows them is ignored.
template <class Integer>
std::optional<Integer> leadingInteger(std::string_view text) {
    if (text.empty() || text.front() < '0' || text.front() > '9') {
        return std::nullopt;
    }
    Integer result = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), result);
    return error == std::errc() ? std::optional(result) : std::nullopt;
}

template <class Integer>
std::optional<Integer> value(std::string_view line, std::string_view key) {
    if (!line.starts_with(key)) {
        return std::nullopt;
    }
    return leadingInteger<Integer>(trimmedBlanks(line.substr(key.size())));
}

} // namespace

std::optional<MeshHeader> readMeshHeader(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    std::string head(headSize, '\0');
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    if (file.bad()) {
        return std::nullopt;
    }
    head.resize(static_cast<std::size_t>(file.gcount()));

    std::optional<int> dimensions;
    std::optional<std::int64_t> elements;
    std::string_view rest = head;
    while (!rest.empty() && !(dimensions && elements)) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const std::string_view content = trimmedBlanks(line);
        if (!dimensions) {
            dimensions = value<int>(content, "NDIME=");
        }
        if (!elements) {
            elements = value<std::int64_t>(content, "NELEM=");
        }
    }
    if (!dimensions || !elements) {
        return std::nullopt;
    }
    return MeshHeader{*dimensions, *elements};
}

std::optional<StopReason> stopReason(std::string_view text) {
    for (const std::string_view converged : convergedTexts) {
        if (text.find(converged) != std::string_view::npos) {
            return StopReason::converged();
        }
    }
    const std::size_t found = text.find(iterationCapText);
    if (found == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view rest = text.substr(found + iterationCapText.size());
    const std::size_t equals = rest.find('=');
    if (equals == std::string_view::npos) {
        return StopReason::iterationCap(std::nullopt);
    }
    const std::size_t digits = rest.find_first_not_of(' ', equals + 1);
    if (digits == std::string_view::npos) {
        return StopReason::iterationCap(std::nullopt);
    }
    return StopReason::iterationCap(leadingInteger<std::int64_t>(rest.substr(digits)));
}

} // namespace ostrella::SU2Output
