#include "Platform/AppBundle.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

namespace ostrella {
namespace {

TEST(Version, isANumberOfThreeParts) {
    EXPECT_THAT(AppBundle::version(), testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+"));
}

TEST(Version, standsAtTheTopOfTheChanges) {
    const std::string changes = test::readFile(OSTRELLA_SOURCE_DIR "/CHANGELOG.md");
    const auto top = changes.find("\n## ");
    ASSERT_NE(top, std::string::npos);
    EXPECT_THAT(changes.substr(top), testing::StartsWith("\n## " + AppBundle::version() + "\n"));
}

} // namespace
} // namespace ostrella
