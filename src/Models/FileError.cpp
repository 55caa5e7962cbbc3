#include "Models/FileError.h"

namespace ostrella {

namespace {

/// What the user can do about it, as a sentence of its own; empty where nothing is certain.
std::string advice(std::error_code reason, std::string_view elsewhere) {
    if (elsewhere.empty()) {
        return "";
    }
    if (reason == std::errc::no_space_on_device) {
        return ". Free some space there or " + std::string(elsewhere) + ".";
    }
    if (reason == std::errc::permission_denied || reason == std::errc::read_only_file_system ||
        reason == std::errc::operation_not_permitted) {
        return ". Make it writable or " + std::string(elsewhere) + ".";
    }
    return "";
}

} // namespace

FileError::FileError(const std::string& attempt, const std::filesystem::path& path,
    std::error_code reason, std::string_view elsewhere)
    : filesystem_error(attempt, path, reason),
      text_(attempt + ": " + reason.message() + advice(reason, elsewhere)) {}

} // namespace ostrella
