#include "Platform/Preferences.h"

#include "support/OrdinaryUser.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <filesystem>

namespace ostrella {
namespace {

class PreferencesTest : public testing::Test {
protected:
    /// What a later start of the application reads.
    std::optional<PreferenceValue> readAgain(std::string_view key) const {
        return Preferences(file_).value(key);
    }

    test::TemporaryDirectory directory_;
    QString file_ = QString::fromStdString((directory_.path() / "preferences.ini").string());
};

TEST_F(PreferencesTest, AMissingKeyIsNothing) {
    EXPECT_EQ(readAgain("Ostrella.defaultMaxIterations"), std::nullopt);
}

TEST_F(PreferencesTest, EachKindSurvivesTheProcess) {
    {
        Preferences preferences(file_);
        preferences.set("Ostrella.defaultMaxIterations", std::int64_t{300});
        preferences.set("Ostrella.streamlineUpstreamFactor", 0.25);
        preferences.set("flag", true);
        preferences.set("word", std::string("häuser · ×"));
        EXPECT_EQ(
            preferences.value("Ostrella.defaultMaxIterations"), PreferenceValue(std::int64_t{300}));
    }
    EXPECT_EQ(readAgain("Ostrella.defaultMaxIterations"), PreferenceValue(std::int64_t{300}));
    EXPECT_EQ(readAgain("Ostrella.streamlineUpstreamFactor"), PreferenceValue(0.25));
    EXPECT_EQ(readAgain("flag"), PreferenceValue(true));
    EXPECT_EQ(readAgain("word"), PreferenceValue(std::string("häuser · ×")));
}

TEST_F(PreferencesTest, AFileThatWasMangledGivesWhatCanStillBeRead) {
    test::writeFile(file_.toStdString(), "[General]\na=12\nb=\xFF\xFE\n;;;[[[\n\nc=1.5\n=x\n");
    EXPECT_EQ(readAgain("a"), PreferenceValue(std::int64_t{12}));
    EXPECT_EQ(readAgain("c"), PreferenceValue(1.5));
}

TEST_F(PreferencesTest, AFileThatMayOnlyBeReadGivesItsValuesAndKeepsThem) {
    const std::string text = "[General]\niterations=300\nword=kept\n";
    test::writeFile(file_.toStdString(), text);
    std::filesystem::permissions(file_.toStdString(), std::filesystem::perms(0444));
    const test::OrdinaryUser user(directory_.path());
    {
        Preferences preferences(file_);
        EXPECT_EQ(preferences.value("iterations"), PreferenceValue(std::int64_t{300}));
        preferences.set("iterations", std::int64_t{450});
        preferences.set("another", 0.25);
        // As the event loop does in a while.
        QCoreApplication::processEvents();
        EXPECT_EQ(preferences.value("iterations"), PreferenceValue(std::int64_t{450}));
        EXPECT_EQ(preferences.value("another"), PreferenceValue(0.25));
        EXPECT_EQ(preferences.value("word"), PreferenceValue(std::string("kept")));
    }
    EXPECT_EQ(test::readFile(file_.toStdString()), text);
}

TEST_F(PreferencesTest, NothingIsWrittenWhereNothingIsSet) {
    EXPECT_EQ(readAgain("a"), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(file_.toStdString()));
}

} // namespace
} // namespace ostrella
