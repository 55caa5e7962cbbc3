#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella {

/// What a start of the application hands to the one that runs already, and its form on the way.
struct HandOver {
    /// Absolute paths of the documents to open; none where the user only wants the window.
    std::vector<std::filesystem::path> documents;
    /// What the desktop gave the start along, so that a window may come to the front; empty for
    /// none.
    std::string activationToken;

    /// Of this process: its file arguments, taken from its folder, and the desktop's token.
    static HandOver ofThisStart(const std::vector<std::filesystem::path>& arguments);

    /// The whole message: a head line with the length of what follows, then the token and the
    /// documents, each ended by a zero byte. Nothing if it would be one that is refused.
    std::optional<std::string> encoded() const;
    /// What a whole message says; nothing if it is none.
    static std::optional<HandOver> decoded(std::string_view message);

    /// Length of the message that begins so; nothing while its head is not there yet, and zero if
    /// it cannot become a message.
    static std::optional<std::size_t> messageLength(std::string_view beginning);

    static constexpr std::size_t mostBytes = 1 << 20;
    static constexpr std::size_t mostDocuments = 256;
    static constexpr std::size_t longestPath = 4096;
    static constexpr std::size_t longestToken = 256;

    bool operator==(const HandOver&) const = default;
};

} // namespace ostrella
