#include "Views/Format/ReplaceQuestion.h"

#include <fmt/format.h>

#include <system_error>

namespace ostrella {

namespace fs = std::filesystem;

std::optional<ReplaceQuestion> ReplaceQuestion::make(const fs::path& file, bool hasPanelAsked) {
    std::error_code error;
    // Of what cannot be looked at nothing is known, and nothing can be written there either.
    if (hasPanelAsked || !fs::exists(file, error) || fs::is_directory(file, error)) {
        return std::nullopt;
    }
    return ReplaceQuestion{.title = fmt::format("“{}” already exists. Do you want to replace it?",
                               file.filename().string()),
        .text = fmt::format("It is in the folder “{}”. Its present content will be lost.",
            file.parent_path().filename().string()),
        .replace = "Replace",
        .cancel = "Cancel"};
}

} // namespace ostrella
