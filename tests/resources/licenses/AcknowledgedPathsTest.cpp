// The places that the acknowledgements name are there in the package.

#include "Models/PlatformWords.h"
#include "Views/Format/AboutText.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <string>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;

/// What a text names as a place in the folder of licences.
fs::path placeIn(const std::string& text, const PlatformWords& words) {
    const std::regex place(std::string(words.licensesFolder) + "[A-Za-z0-9/]*");
    std::smatch found;
    return std::regex_search(text, found, place) ? fs::path(found.str()) : fs::path();
}

TEST(AcknowledgedPaths, AreThereWithTheirTexts) {
    const PlatformWords& words = PlatformWords::freedesktop();
    const fs::path stage = OSTRELLA_STAGE_DIR;
    for (const auto& notice :
        AboutText::notices({.solverRelease = "8.5.0", .mesherVersion = "4.8.4"}, words)) {
        const fs::path place = placeIn(notice.text, words);
        EXPECT_EQ(place.filename(), notice.heading) << notice.text;
        ASSERT_TRUE(fs::is_directory(stage / place)) << place;
        std::uintmax_t bytes = 0;
        for (const auto& entry : fs::directory_iterator(stage / place)) {
            bytes += entry.file_size();
        }
        EXPECT_GT(bytes, 10'000U) << "a whole licence";
    }
    EXPECT_TRUE(fs::is_directory(stage / placeIn(AboutText::librariesNote(words), words)));
}

} // namespace
} // namespace ostrella::test
