#pragma once

#include "Models/InformationDictionary.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace ostrella {

/// Where the parts of the application's package lie; the only place that knows. On macOS the
/// package is the .app, elsewhere the usual prefix with bin, libexec and share.
class AppBundle {
public:
    /// A package at a root of the caller's.
    explicit AppBundle(std::filesystem::path root);

    /// The package that the running program is part of.
    static AppBundle main();

    const std::filesystem::path& root() const { return root_; }

    /// Folder of gmsh and SU2_CFD.
    std::filesystem::path toolsDirectory() const;
    /// Folder of the templates, samples and the like.
    std::filesystem::path resourcesDirectory() const;

    /// The resource "name.extension" in a subdirectory of the resources, if it is there.
    std::optional<std::filesystem::path> resource(
        std::string_view name, std::string_view extension, std::string_view subdirectory) const;

    /// True where SU2_CFD of the tools directory is a link to the built-in preview solver.
    bool solverIsStandIn() const;
    /// Release of the real solver as recorded when it was staged, such as "8.3.0".
    std::optional<std::string> solverRelease() const;

    /// What the package says of itself; nothing where its file is missing or unreadable.
    std::optional<InformationDictionary> information() const;

    /// The version that the running program was built as.
    static std::string version();

private:
    std::filesystem::path root_;
};

} // namespace ostrella
