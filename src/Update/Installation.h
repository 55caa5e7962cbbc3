#pragma once

#include <filesystem>
#include <string>

namespace ostrella {

/// Whose the copy of the application at a root is.
class Installation {
public:
    /// Looks at the folders; reads nothing but names.
    explicit Installation(std::filesystem::path root);

    const std::filesystem::path& root() const { return root_; }

    /// True where the application may put another version in the place of this one: the user may
    /// write the root and the folder around it, the root holds nothing but what the application
    /// brings, and lies outside of what the system's package manager keeps and of where it was
    /// built.
    bool isOwn() const { return managedBecause_.empty(); }
    /// Why it is not ours to replace, as the end of a sentence; empty where it is.
    const std::string& managedBecause() const { return managedBecause_; }

private:
    std::filesystem::path root_;
    std::string managedBecause_;
};

} // namespace ostrella
