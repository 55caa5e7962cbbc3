#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace ostrella {

/// A failure with a file of the user's; what() is the text the user reads: what was tried, the
/// system's words, and what to do where that is known.
class FileError final : public std::filesystem::filesystem_error {
public:
    /// `attempt` such as "Cannot write /a/b"; `elsewhere` what helps where the place is full or not
    /// writable, such as "choose another folder", or empty.
    FileError(const std::string& attempt, const std::filesystem::path& path, std::error_code reason,
        std::string_view elsewhere = {});

    const char* what() const noexcept override { return text_.c_str(); }

private:
    std::string text_;
};

} // namespace ostrella
