#include "Platform/AppBundle.h"
#include "Update/Installation.h"
#include "Update/UpdateInstaller.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace ostrella;
using namespace ostrella::test;
namespace fs = std::filesystem;

/// Otherwise a new file in the package would quietly end all updates.
TEST(PackageTest, ACopyOfThePackageInAFolderOfTheUsersCanBeReplaced) {
    const TemporaryDirectory directory;
    const fs::path root = directory.path() / "place" / "ostrella";
    const fs::path package(OSTRELLA_STAGE_DIR);
    for (const auto& entry : fs::recursive_directory_iterator(package)) {
        const fs::path place = root / entry.path().lexically_relative(package);
        fs::create_directories(place.parent_path());
        if (entry.is_directory() && !entry.is_symlink()) {
            fs::create_directories(place);
        } else {
            fs::create_symlink(entry.path(), place);
        }
    }
    EXPECT_EQ(Installation(root).managedBecause(), "");
    EXPECT_EQ(UpdateInstaller::version(root), AppBundle::version());
}

} // namespace
