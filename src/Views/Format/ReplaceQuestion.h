#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace ostrella {

/// What the user is asked before a file takes the place of another.
struct ReplaceQuestion {
    std::string title;
    std::string text;
    std::string replace; ///< of the button that lets it
    std::string cancel;  ///< of the button that does not

    /// The question before `file` is written; nothing if there is no such file (a folder is none:
    /// writing fails there anyway), or if the panel in which it was chosen has asked by itself.
    static std::optional<ReplaceQuestion> make(
        const std::filesystem::path& file, bool hasPanelAsked);

    bool operator==(const ReplaceQuestion&) const = default;
};

} // namespace ostrella
