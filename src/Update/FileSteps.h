#pragma once

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

/// The steps on files that an update is made of. Links are not followed.
namespace ostrella::FileSteps {

/// The error of the last call to the system.
std::error_code lastError();

bool isThere(const std::filesystem::path& place);

/// Whether it is a folder that nobody but this process's user can change, and no link to one.
bool isOwnFolder(const std::filesystem::path& place);

/// In one step; no error on success.
std::error_code moveTo(const std::filesystem::path& from, const std::filesystem::path& to);

/// Both names change places in one step; function_not_supported where there is no such step.
std::error_code swapNames(const std::filesystem::path& one, const std::filesystem::path& other);

/// Removes it with all that it holds, as far as that can be done.
void clear(const std::filesystem::path& place);

/// Everything written so far to the file system of `folder` survives a loss of power.
void settle(const std::filesystem::path& folder);

/// The names in `folder` survive a loss of power. Waits for no other file's content.
void settleNames(const std::filesystem::path& folder);

/// The file and its text survive a loss of power. Throws UpdateRefusal.
void write(const std::filesystem::path& file, const std::string& text);

/// The first two words of a small file; none if it cannot be read.
std::vector<std::string> words(const std::filesystem::path& file);

} // namespace ostrella::FileSteps
