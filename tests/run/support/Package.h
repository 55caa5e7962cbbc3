#pragma once

#include "support/Wait.h"

#include <filesystem>
#include <string>

namespace ostrella::test {

/// An application's package of a test's own: the real ostrella-batch, what draws for it and the
/// resources, and whatever other tools the test puts beside them. Readable by every user.
class Package {
public:
    /// `name` is the folder's; the tools directory has no mesher and no solver at first.
    explicit Package(const std::string& name = "package");

    const std::filesystem::path& root() const { return root_; }
    std::filesystem::path program() const { return root_ / "bin" / "ostrella-batch"; }
    std::filesystem::path tool(const std::string& name) const;
    std::filesystem::path resources() const { return root_ / "share" / "ostrella"; }
    std::filesystem::path sample(const std::string& name) const;

    /// Puts a shell script in a tool's place.
    void script(const std::string& toolName, const std::string& text) const;
    /// The scripts of a mesher and a solver that do what they should, at once.
    void scriptGoodTools() const;

private:
    TemporaryDirectory directory_;
    std::filesystem::path root_;
};

/// The package of the build, with the real tools.
std::filesystem::path stagedProgram();

} // namespace ostrella::test
