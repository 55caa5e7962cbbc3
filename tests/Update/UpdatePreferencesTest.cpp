#include "Update/UpdatePreferences.h"

#include "Platform/Preferences.h"
#include "support/OrdinaryUser.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <chrono>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>

namespace {

using namespace ostrella;
using namespace ostrella::test;

TEST(UpdatePreferencesTest, NothingStoredMeansChecksAndNothingElse) {
    MemoryPreferences store;
    const UpdatePreferences preferences(store);
    EXPECT_TRUE(preferences.automatic());
    EXPECT_EQ(preferences.lastCheck(), std::nullopt);
    EXPECT_EQ(preferences.skippedVersion(), "");
}

TEST(UpdatePreferencesTest, WhatIsSetComesBackFromAFile) {
    const TemporaryDirectory directory;
    const auto file = QString::fromStdString((directory.path() / "preferences.ini").string());
    const Date date{std::chrono::seconds(1'800'000'000)};
    // Each of them reads as a number.
    for (const std::string version : {"345", "1.10", "1e3", "1.2.0", "true"}) {
        {
            Preferences store(file);
            UpdatePreferences preferences(store);
            preferences.setAutomatic(false);
            preferences.setLastCheck(date);
            preferences.setSkippedVersion(version);
        }
        Preferences store(file);
        const UpdatePreferences preferences(store);
        EXPECT_FALSE(preferences.automatic());
        EXPECT_EQ(preferences.lastCheck(), date);
        EXPECT_EQ(preferences.skippedVersion(), version);
    }
}

TEST(UpdatePreferencesTest, ValuesOfTheWrongKindCountAsNone) {
    MemoryPreferences store;
    store.set("Ostrella.updates.automatic", std::string("perhaps"));
    store.set("Ostrella.updates.lastCheck", std::string("yesterday"));
    store.set("Ostrella.updates.skipped", 3.5);
    const UpdatePreferences preferences(store);
    EXPECT_TRUE(preferences.automatic());
    EXPECT_EQ(preferences.lastCheck(), std::nullopt);
    EXPECT_EQ(preferences.skippedVersion(), "");
}

TEST(UpdatePreferencesTest, DatesThatTheClockCannotTellCountAsNone) {
    MemoryPreferences store;
    for (const std::int64_t seconds : {std::int64_t{-1}, std::numeric_limits<std::int64_t>::max(),
             std::numeric_limits<std::int64_t>::min()}) {
        store.set("Ostrella.updates.lastCheck", seconds);
        EXPECT_EQ(UpdatePreferences(store).lastCheck(), std::nullopt) << seconds;
    }
}

TEST(UpdatePreferencesTest, AFileThatMayOnlyBeReadHoldsTheSession) {
    const TemporaryDirectory directory;
    const auto path = directory.path() / "preferences.ini";
    const auto file = QString::fromStdString(path.string());
    {
        Preferences store(file);
        UpdatePreferences preferences(store);
        preferences.setAutomatic(false);
        preferences.setSkippedVersion("1.1.0");
    }
    const std::string text = readFile(path);
    std::filesystem::permissions(path, std::filesystem::perms(0444));
    const OrdinaryUser user(directory.path());
    {
        Preferences store(file);
        UpdatePreferences preferences(store);
        EXPECT_FALSE(preferences.automatic());
        EXPECT_EQ(preferences.skippedVersion(), "1.1.0");
        preferences.setAutomatic(true);
        preferences.setSkippedVersion("1.2.0");
        // As the event loop does in a while.
        QCoreApplication::processEvents();
        EXPECT_TRUE(preferences.automatic());
        EXPECT_EQ(preferences.skippedVersion(), "1.2.0");
    }
    EXPECT_EQ(readFile(path), text);
}

/// Otherwise one check would follow upon the other for as long as the application runs.
TEST(UpdatePreferencesTest, ACheckIsRememberedWhereNothingCanBeStored) {
    class ReadOnly final : public PreferenceStore {
        std::optional<PreferenceValue> value(std::string_view) const override { return {}; }
        void set(std::string_view, const PreferenceValue&) override {}
    } store;
    UpdatePreferences preferences(store);
    const Date date{std::chrono::seconds(100)};
    preferences.setLastCheck(date);
    EXPECT_EQ(preferences.lastCheck(), date);
}

} // namespace
