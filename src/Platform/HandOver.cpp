#include "Platform/HandOver.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <system_error>

namespace ostrella {

namespace {

constexpr std::string_view opening = "ostrella-open ";
/// The opening, seven digits and the end of the line.
constexpr std::size_t longestHead = opening.size() + 8;

bool isToken(std::string_view text) {
    return text.size() <= HandOver::longestToken &&
           std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c <= '~'; });
}

bool isDocument(const std::filesystem::path& path) {
    return path.is_absolute() && path.native().size() <= HandOver::longestPath;
}

bool isSound(const HandOver& handOver) {
    return isToken(handOver.activationToken) &&
           handOver.documents.size() <= HandOver::mostDocuments &&
           std::all_of(handOver.documents.begin(), handOver.documents.end(), isDocument);
}

} // namespace

HandOver HandOver::ofThisStart(const std::vector<std::filesystem::path>& arguments) {
    HandOver handOver;
    for (const auto& argument : arguments) {
        std::error_code error;
        const auto document = std::filesystem::absolute(argument, error);
        if (!error) {
            handOver.documents.push_back(document.lexically_normal());
        }
    }
    for (const char* const name : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
        const char* const token = std::getenv(name);
        if (token && *token != '\0' && isToken(token)) {
            handOver.activationToken = token;
            break;
        }
    }
    return handOver;
}

std::optional<std::string> HandOver::encoded() const {
    if (!isSound(*this)) {
        return std::nullopt;
    }
    std::string body = activationToken + '\0';
    for (const auto& document : documents) {
        body += document.native() + '\0';
    }
    std::string message = std::string(opening) + std::to_string(body.size()) + '\n' + body;
    return message.size() <= mostBytes ? std::optional(std::move(message)) : std::nullopt;
}

std::optional<std::size_t> HandOver::messageLength(std::string_view beginning) {
    const std::size_t known = std::min(beginning.size(), opening.size());
    if (beginning.substr(0, known) != opening.substr(0, known)) {
        return 0;
    }
    const std::size_t end = beginning.substr(0, longestHead).find('\n');
    if (end == beginning.npos) {
        return beginning.size() < longestHead ? std::nullopt : std::optional<std::size_t>(0);
    }
    const char* const last = beginning.data() + end;
    std::size_t length = 0;
    const auto [stop, error] = std::from_chars(beginning.data() + opening.size(), last, length);
    const std::size_t whole = end + 1 + length;
    const bool isLength = error == std::errc() && stop == last && length > 0 && whole <= mostBytes;
    return isLength ? whole : 0;
}

std::optional<HandOver> HandOver::decoded(std::string_view message) {
    if (messageLength(message) != message.size()) {
        return std::nullopt;
    }
    std::string_view rest = message.substr(message.find('\n') + 1);
    if (rest.empty() || rest.back() != '\0') {
        return std::nullopt;
    }
    HandOver handOver;
    for (bool isFirst = true; !rest.empty(); isFirst = false) {
        const std::size_t end = rest.find('\0');
        const std::string_view part = rest.substr(0, end);
        rest.remove_prefix(end + 1);
        if (isFirst) {
            handOver.activationToken = part;
        } else if (handOver.documents.size() == mostDocuments) {
            return std::nullopt;
        } else {
            handOver.documents.emplace_back(part);
        }
    }
    return isSound(handOver) ? std::optional(std::move(handOver)) : std::nullopt;
}

} // namespace ostrella
