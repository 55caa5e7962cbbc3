#include "Models/NotificationCenter.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace ostrella {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Notifications, haveTheirNames) {
    EXPECT_EQ(Notifications::openSTLRequested, "Ostrella.openSTLRequested");
    EXPECT_EQ(Notifications::sampleLoadRequested, "Ostrella.sampleLoadRequested");
    EXPECT_EQ(Notifications::runSimulationRequested, "Ostrella.runSimulationRequested");
    EXPECT_EQ(Notifications::runDemoRequested, "Ostrella.runDemoRequested");
    EXPECT_EQ(Notifications::cancelSimulationRequested, "Ostrella.cancelSimulationRequested");
    EXPECT_EQ(Notifications::geometryLoaded, "Ostrella.geometryLoaded");
    EXPECT_EQ(Notifications::viewPresetRequested, "Ostrella.viewPresetRequested");
    EXPECT_EQ(Notifications::fitToViewRequested, "Ostrella.fitToViewRequested");
    EXPECT_EQ(Notifications::showLogRequested, "Ostrella.showLogRequested");
}

TEST(NotificationCenter, deliversAtOnceInTheOrderOfTheSubscriptions) {
    NotificationCenter center;
    std::vector<std::string> heard;
    const auto first = center.observe("a", [&](const std::any&) { heard.emplace_back("first"); });
    const auto second = center.observe("a", [&](const std::any&) { heard.emplace_back("second"); });
    center.post("a");
    EXPECT_THAT(heard, ElementsAre("first", "second"));
}

TEST(NotificationCenter, deliversTheNameAskedForOnly) {
    NotificationCenter center;
    int count = 0;
    const auto token = center.observe("a", [&](const std::any&) { ++count; });
    center.post("b");
    center.post("aa");
    EXPECT_EQ(count, 0);
}

TEST(NotificationCenter, handsTheObjectOver) {
    NotificationCenter center;
    std::vector<std::string> heard;
    const auto token = center.observe("sample", [&](const std::any& object) {
        const auto* text = std::any_cast<std::string>(&object);
        heard.push_back(text ? *text : "nothing");
    });
    center.post("sample", std::string("wing"));
    center.post("sample");
    center.post("sample", 7);
    EXPECT_THAT(heard, ElementsAre("wing", "nothing", "nothing"));
}

TEST(NotificationCenter, endsASubscriptionWithItsToken) {
    NotificationCenter center;
    int count = 0;
    auto token = center.observe("a", [&](const std::any&) { ++count; });
    center.post("a");
    token.reset();
    center.post("a");
    EXPECT_EQ(count, 1);
}

TEST(NotificationCenter, letsAHandlerEndAnotherSubscription) {
    NotificationCenter center;
    int count = 0;
    NotificationCenter::Token other;
    const auto token = center.observe("a", [&](const std::any&) { other.reset(); });
    other = center.observe("a", [&](const std::any&) { ++count; });
    center.post("a");
    const int duringTheFirst = count;
    center.post("a");
    EXPECT_EQ(count, duringTheFirst) << "the ended subscription heard a later notification";
}

TEST(NotificationCenter, letsAHandlerSubscribe) {
    NotificationCenter center;
    std::vector<NotificationCenter::Token> late;
    int count = 0;
    const auto token = center.observe("a", [&](const std::any&) {
        late.push_back(center.observe("a", [&](const std::any&) { ++count; }));
    });
    center.post("a");
    EXPECT_EQ(count, 0);
    center.post("a");
    EXPECT_EQ(count, 1);
}

TEST(NotificationCenter, letsAHandlerPost) {
    NotificationCenter center;
    std::vector<std::string> heard;
    const auto outer = center.observe("a", [&](const std::any&) {
        center.post("b");
        heard.emplace_back("a");
    });
    const auto inner = center.observe("b", [&](const std::any&) { heard.emplace_back("b"); });
    EXPECT_THAT(heard, IsEmpty());
    center.post("a");
    EXPECT_THAT(heard, ElementsAre("b", "a"));
}

} // namespace
} // namespace ostrella
