#pragma once

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace ostrella {

/// What a start of the application is asked for.
struct StartOptions {
    /// To be opened, as they were named.
    std::vector<std::filesystem::path> files;

    bool operator==(const StartOptions&) const = default;
};

/// A start that only says something: the help, the version, or what is wrong with its command line.
struct StartReply {
    std::string text;
    bool isError = false;

    bool operator==(const StartReply&) const = default;
};

/// Reads a command line without the program's name. A document is named by its path or by an
/// address "file://…", as desktops do.
std::variant<StartOptions, StartReply> parseStartOptions(const std::vector<std::string>& arguments);

} // namespace ostrella
