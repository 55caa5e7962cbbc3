#include "Solver/Tools/BundledTool.h"

#include "support/Wait.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <set>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

const AppBundle bundle("/opt/ostrella");

/// A predicate that holds for the given paths, and the answers of locate with it.
struct Machine {
    std::set<std::string> executables;

    std::optional<fs::path> locate(BundledTool tool, bool allowFallback) const {
        return BundledTools::locate(tool, bundle, allowFallback,
            [this](const std::string& path) { return executables.contains(path); });
    }
};

TEST(BundledTool, hasAnExecutableName) {
    EXPECT_EQ(BundledTools::executableName(BundledTool::gmsh), "gmsh");
    EXPECT_EQ(BundledTools::executableName(BundledTool::su2), "SU2_CFD");
}

TEST(BundledTool, hasFallbacksForDevelopers) {
    EXPECT_THAT(BundledTools::developerFallbacks(BundledTool::gmsh),
        ElementsAre("/opt/homebrew/bin/gmsh", "/usr/local/bin/gmsh"));
    EXPECT_THAT(BundledTools::developerFallbacks(BundledTool::su2),
        ElementsAre("/opt/homebrew/bin/SU2_CFD", "/usr/local/bin/SU2_CFD"));
}

TEST(BundledTool, isFoundInThePackageFirst) {
    const fs::path packaged = bundle.toolsDirectory() / "gmsh";
    const Machine machine{{packaged.string(), "/opt/homebrew/bin/gmsh", "/usr/local/bin/gmsh"}};
    EXPECT_EQ(machine.locate(BundledTool::gmsh, false), packaged);
    EXPECT_EQ(machine.locate(BundledTool::gmsh, true), packaged);
}

TEST(BundledTool, isSoughtElsewhereOnlyIfAllowed) {
    const Machine both{{"/usr/local/bin/SU2_CFD", "/opt/homebrew/bin/SU2_CFD"}};
    EXPECT_EQ(both.locate(BundledTool::su2, false), std::nullopt);
    EXPECT_EQ(both.locate(BundledTool::su2, true), "/opt/homebrew/bin/SU2_CFD");
    EXPECT_EQ(both.locate(BundledTool::gmsh, true), std::nullopt);
    const Machine one{{"/usr/local/bin/SU2_CFD"}};
    EXPECT_EQ(one.locate(BundledTool::su2, true), "/usr/local/bin/SU2_CFD");
}

TEST(BundledTool, isAnExecutableFileOrALinkToOne) {
    const test::TemporaryDirectory directory;
    const AppBundle real(directory.path());
    const fs::path gmsh = real.toolsDirectory() / "gmsh";
    EXPECT_EQ(BundledTools::locate(BundledTool::gmsh, real), std::nullopt);

    fs::create_directories(gmsh);
    EXPECT_EQ(BundledTools::locate(BundledTool::gmsh, real), std::nullopt) << "a directory";
    fs::remove(gmsh);

    test::writeFile(gmsh, "#!/bin/sh\n");
    EXPECT_EQ(BundledTools::locate(BundledTool::gmsh, real), std::nullopt) << "not executable";
    fs::permissions(gmsh, fs::perms::owner_all);
    EXPECT_EQ(BundledTools::locate(BundledTool::gmsh, real), gmsh);

    fs::create_symlink(gmsh, real.toolsDirectory() / "SU2_CFD");
    EXPECT_EQ(BundledTools::locate(BundledTool::su2, real), real.toolsDirectory() / "SU2_CFD");
    fs::remove(gmsh);
    EXPECT_EQ(BundledTools::locate(BundledTool::su2, real), std::nullopt) << "a broken link";
}

} // namespace
} // namespace ostrella
