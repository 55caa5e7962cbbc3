#include "Views/Settings/SettingsModel.h"

#include "Models/AppSettings.h"
#include "Models/PreferenceStore.h"
#include "Platform/Preferences.h"
#include "Update/UpdateController.h"
#include "Update/gate/ScriptedUpdater.h"
#include "support/Changes.h"
#include "support/ManualTimers.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

namespace ostrella::test {
namespace {

const InformationDictionary info{{std::string(InformationKeys::version), std::string("1.2.0")},
    {std::string(InformationKeys::build), std::string("345")}};

class SettingsModelTest : public testing::Test {
protected:
    SettingsModelTest() {
        auto made = std::make_unique<ScriptedUpdater>();
        updater = made.get();
        updates = std::make_unique<UpdateController>(
            std::move(made), timers, [](const UpdateAlert&, const std::function<void(bool)>&) {});
    }

    SettingsModel& make() {
        settings = std::make_unique<AppSettings>(preferences);
        model = std::make_unique<SettingsModel>(*settings, preferences, info, updates.get());
        return *model;
    }

    MemoryPreferences preferences;
    ManualTimers timers;
    ScriptedUpdater* updater = nullptr;
    std::unique_ptr<UpdateController> updates;
    std::unique_ptr<AppSettings> settings;
    std::unique_ptr<SettingsModel> model;
};

TEST_F(SettingsModelTest, showsWhatIsSet) {
    make();
    EXPECT_EQ(model->maxIterations(), 200);
    EXPECT_EQ(model->inletOffset(), 0.5);
    EXPECT_EQ(model->wakeLength(), 2.0);
    EXPECT_EQ(model->seedCount(), 100);
    EXPECT_EQ(model->version(), QStringLiteral("1.2.0 (345)"));
}

TEST_F(SettingsModelTest, setsAndStoresWhatTheUserEdits) {
    make();
    model->setMaxIterations(250);
    model->setInletOffset(0.55);
    model->setWakeLength(2.1);
    model->setSeedCount(110);
    EXPECT_EQ(settings->defaultMaxIterations(), 250);
    EXPECT_EQ(settings->streamlineUpstreamFactor(), 0.55);
    EXPECT_EQ(settings->streamlineDownstreamFactor(), 2.1);
    EXPECT_EQ(settings->streamlineSeedCount(), 110);
    EXPECT_EQ(AppSettings(preferences).streamlineSeedCount(), 110);
}

TEST_F(SettingsModelTest, followsWhatIsSetElsewhere) {
    make();
    const Changes changes(model.get(), &SettingsModel::maxIterationsChanged);
    settings->setDefaultMaxIterations(1000);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(model->maxIterations(), 1000);
}

TEST_F(SettingsModelTest, restoresTheDefaultsOfTheTabOnShowAlone) {
    make();
    model->setMaxIterations(250);
    model->setSeedCount(110);
    model->setInletOffset(0.55);
    model->setWakeLength(2.1);
    model->restoreDefaults();
    EXPECT_EQ(model->maxIterations(), 200);
    EXPECT_EQ(model->seedCount(), 110);
    model->setMaxIterations(250);
    model->setTab(QStringLiteral("streamlines"));
    model->restoreDefaults();
    EXPECT_EQ(model->maxIterations(), 250);
    EXPECT_EQ(model->seedCount(), 100);
    EXPECT_EQ(model->inletOffset(), 0.5);
    EXPECT_EQ(model->wakeLength(), 2.0);
}

TEST_F(SettingsModelTest, comesBackToTheTabThatWasChosenLast) {
    EXPECT_EQ(make().tab(), QStringLiteral("solver"));
    const Changes changes(model.get(), &SettingsModel::tabChanged);
    model->setTab(QStringLiteral("streamlines"));
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(
        preferences.value("Ostrella.settingsTab"), PreferenceValue(std::string("streamlines")));
    EXPECT_EQ(make().tab(), QStringLiteral("streamlines"));
}

TEST_F(SettingsModelTest, takesNoTabThatIsNone) {
    for (const PreferenceValue& stored :
        {PreferenceValue(std::string("updates")), PreferenceValue(true), PreferenceValue(2.5)}) {
        preferences.set(SettingsModel::tabKey, stored);
        EXPECT_EQ(make().tab(), QStringLiteral("solver"));
    }
    model->setTab(QStringLiteral("nothing"));
    EXPECT_EQ(model->tab(), QStringLiteral("solver"));
}

TEST_F(SettingsModelTest, showsStoredValuesOutOfTheirRangesAsTheyAre) {
    preferences.set(AppSettings::maxIterationsKey, std::int64_t{1'000'000});
    preferences.set(AppSettings::upstreamFactorKey, -4.0);
    preferences.set(AppSettings::downstreamFactorKey, std::nan(""));
    preferences.set(AppSettings::seedCountKey, std::int64_t{0});
    make();
    EXPECT_EQ(model->maxIterations(), 1'000'000);
    EXPECT_EQ(model->inletOffset(), -4.0);
    EXPECT_TRUE(std::isnan(model->wakeLength()));
    EXPECT_EQ(model->seedCount(), 0);
}

TEST_F(SettingsModelTest, takesValuesOfAnotherTypeForMissing) {
    preferences.set(AppSettings::maxIterationsKey, std::string("many"));
    preferences.set(AppSettings::upstreamFactorKey, true);
    preferences.set(AppSettings::seedCountKey, 10.5);
    make();
    EXPECT_EQ(model->maxIterations(), 200);
    EXPECT_EQ(model->inletOffset(), 0.5);
    EXPECT_EQ(model->seedCount(), 100);
}

TEST_F(SettingsModelTest, worksWherePreferencesCannotBeWritten) {
    const TemporaryDirectory directory;
    // A file stands where the folder would have to be, as for a home that doesn't exist.
    writeFile(directory.path() / "home", "no folder");
    Preferences stuck(QString::fromStdString((directory.path() / "home" / "any.conf").string()));
    AppSettings kept(stuck);
    SettingsModel window(kept, stuck, info, nullptr);
    window.setMaxIterations(250);
    window.setTab(QStringLiteral("streamlines"));
    EXPECT_EQ(window.maxIterations(), 250);
    EXPECT_EQ(window.tab(), QStringLiteral("streamlines"));
    EXPECT_EQ(readFile(directory.path() / "home"), "no folder");
}

TEST_F(SettingsModelTest, switchesTheChecksForUpdates) {
    make();
    EXPECT_TRUE(model->hasUpdates());
    EXPECT_TRUE(model->checksAutomatically());
    const Changes changes(model.get(), &SettingsModel::checksAutomaticallyChanged);
    model->setChecksAutomatically(false);
    EXPECT_FALSE(updater->automaticallyChecksForUpdates());
    EXPECT_EQ(changes.count(), 1);
    EXPECT_FALSE(model->checksAutomatically());
}

TEST_F(SettingsModelTest, checksForUpdatesWhenThatCanBe) {
    make();
    ASSERT_TRUE(model->canCheckForUpdates());
    updater->canCheckWhenStarted = false;
    // The first check starts the updater, which isn't ready yet.
    model->checkForUpdates();
    EXPECT_EQ(updater->starts, 1);
    EXPECT_FALSE(model->canCheckForUpdates());
    model->checkForUpdates();
    EXPECT_EQ(updater->checks, 0);
    const Changes changes(model.get(), &SettingsModel::canCheckForUpdatesChanged);
    updater->setCanCheck(true);
    ASSERT_TRUE(waitUntil([&] { return model->canCheckForUpdates(); }));
    EXPECT_GE(changes.count(), 1);
}

TEST_F(SettingsModelTest, hasNothingOfUpdatesWhereThereIsNoUpdater) {
    settings = std::make_unique<AppSettings>(preferences);
    SettingsModel alone(*settings, preferences, std::nullopt, nullptr);
    EXPECT_FALSE(alone.hasUpdates());
    EXPECT_FALSE(alone.canCheckForUpdates());
    alone.setChecksAutomatically(true);
    alone.checkForUpdates();
    EXPECT_FALSE(alone.checksAutomatically());
    EXPECT_EQ(alone.version(), QStringLiteral("0.0.0"));
}

} // namespace
} // namespace ostrella::test
