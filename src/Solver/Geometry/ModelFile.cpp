#include "Solver/Geometry/ModelFile.h"

#include "Models/FileError.h"
#include "Solver/Geometry/ModelScreen.h"
#include "Solver/Geometry/STLParser.h"

#include <fmt/format.h>

#include <new>
#include <string>
#include <system_error>

namespace ostrella {

namespace {

using Reason = ModelLoadError::Reason;

/// "'part.stl'", or the whole path where it has no last component.
std::string quotedName(const std::filesystem::path& path) {
    const auto name = path.filename();
    return "'" + (name.empty() ? path : name).string() + "'";
}

/// The failure to read `path` in the words of the loader.
[[noreturn]] void refuse(
    const std::filesystem::path& path, const std::error_code& reason, std::uint64_t limit) {
    const auto name = quotedName(path);
    if (reason == std::errc::no_such_file_or_directory || reason == std::errc::not_a_directory)
        throw ModelLoadError(
            Reason::missing, name + " does not exist. Check its name and folder, and try again.");
    if (reason == std::errc::permission_denied || reason == std::errc::operation_not_permitted)
        throw ModelLoadError(Reason::notPermitted,
            name + " may not be read. Change its permissions, or copy it to a folder of yours.");
    if (reason == std::errc::is_a_directory)
        throw ModelLoadError(
            Reason::folder, name + " is a folder. Choose the STL file of one model.");
    if (reason == std::errc::not_supported)
        throw ModelLoadError(Reason::notAFile,
            name + " is a device, a pipe or a socket. Choose an STL file on disk.");
    if (reason == std::errc::file_too_large) {
        std::error_code gone;
        throw ModelLoadError(Reason::tooLarge,
            fmt::format("{} is too large: {:.1f} GB, and at most {:.1f} GB can be loaded. Export "
                        "the model with fewer facets.",
                name, static_cast<double>(std::filesystem::file_size(path, gone)) * 1e-9,
                static_cast<double>(limit) * 1e-9));
    }
    throw ModelLoadError(Reason::unreadable,
        fmt::format("{} could not be read: {}. Copy it to another place, and try again.", name,
            reason.message()));
}

[[noreturn]] void failForMemory(const std::filesystem::path& path) {
    throw ModelLoadError(Reason::outOfMemory,
        "There is not enough memory to load " + quotedName(path) +
            ". Close other applications, or export the model with fewer facets.");
}

} // namespace

void withModelFile(const std::filesystem::path& path,
    const std::function<void(const OrdinaryFile&)>& read, std::uint64_t limit) {
    try {
        read(OrdinaryFile(path, limit));
    } catch (const FileError& error) {
        refuse(path, error.code(), limit);
    } catch (const std::bad_alloc&) {
        failForMemory(path);
    }
}

LargeBuffer<std::byte> readModelFile(const std::filesystem::path& path, std::uint64_t limit) {
    LargeBuffer<std::byte> bytes;
    withModelFile(
        path,
        [&bytes](const OrdinaryFile& file) {
            bytes = LargeBuffer<std::byte>(static_cast<std::size_t>(file.size()));
            bytes.truncate(file.read({bytes.data(), bytes.size()}));
        },
        limit);
    return bytes;
}

TriangleMesh loadModelFile(const std::filesystem::path& path) {
    try {
        TriangleMesh mesh = STLParser::parse(path);
        screenModel(mesh);
        return mesh;
    } catch (const std::bad_alloc&) {
        failForMemory(path);
    }
}

} // namespace ostrella
