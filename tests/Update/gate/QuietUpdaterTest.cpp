#include "Update/QuietUpdater.h"

#include "UpdateControllerFixture.h"

namespace ostrella::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view key = "Ostrella.updates.automatic";

/// A copy without a feed, as the application has it.
class QuietUpdaterTest : public UpdateControllerTest {
protected:
    QuietUpdaterTest() {
        controller = std::make_unique<UpdateController>(
            make(), timers, [this](const UpdateAlert& alert, std::function<void(bool)>) {
                alerts.push_back(alert);
            });
        attach();
    }

    std::unique_ptr<QuietUpdater> make() {
        return std::make_unique<QuietUpdater>(preferences,
            [this](const std::string& text, LogStore::Level level) { log->append(text, level); });
    }

    MemoryPreferences preferences;
    const Line refusal{
        "No update feed is configured for this copy of Ostrella.", LogStore::Level::info};
};

TEST_F(QuietUpdaterTest, startsWithoutAWord) {
    controller->startAfterLaunch();
    timers.advance(10);
    settle();
    EXPECT_TRUE(controller->isStarted());
    EXPECT_TRUE(controller->canCheckForUpdates());
    EXPECT_THAT(timers.pending(), IsEmpty());
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(QuietUpdaterTest, tellsWhoAsksThatThereIsNoFeed) {
    controller->startAfterLaunch();
    timers.advance(10);
    settle();
    controller->checkForUpdates();
    EXPECT_THAT(lines(), ElementsAre(refusal));
    controller->checkForUpdates();
    EXPECT_THAT(lines(), ElementsAre(refusal, refusal));
    EXPECT_THAT(alerts, IsEmpty());
}

TEST_F(QuietUpdaterTest, tellsItOnceToWhoAsksBeforeTheStart) {
    controller->checkForUpdates();
    settle();
    EXPECT_THAT(lines(), ElementsAre(refusal));
}

TEST_F(QuietUpdaterTest, checksByItselfUnlessToldOtherwise) {
    EXPECT_TRUE(make()->automaticallyChecksForUpdates());
    EXPECT_EQ(preferences.value(key), std::nullopt);
    int told = 0;
    QObject::connect(
        controller.get(), &UpdateController::automaticallyChecksForUpdatesChanged, [&] { ++told; });
    controller->setAutomaticallyChecksForUpdates(false);
    controller->setAutomaticallyChecksForUpdates(false);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(preferences.value(key), PreferenceValue(false));
    EXPECT_FALSE(make()->automaticallyChecksForUpdates());
    controller->setAutomaticallyChecksForUpdates(true);
    EXPECT_TRUE(make()->automaticallyChecksForUpdates());
}

TEST_F(QuietUpdaterTest, takesAChoiceOfAnotherTypeForNone) {
    for (const PreferenceValue& value : {PreferenceValue(std::int64_t{0}), PreferenceValue(0.0),
             PreferenceValue(std::string("no"))}) {
        preferences.set(key, value);
        EXPECT_TRUE(controller->automaticallyChecksForUpdates());
    }
}

} // namespace
} // namespace ostrella::test
