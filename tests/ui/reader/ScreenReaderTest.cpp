// The application as a reader of the screen meets it: over the desktop's bus, from another process.

#include "AccessibilityBus.h"
#include "ui/application/StartedApplication.h"

#include <gmock/gmock.h>

namespace ostrella::test {
namespace {

using testing::Contains;

class ScreenReader : public testing::Test {
protected:
    ScreenReader() {
        application_.process().setVariable(
            "DBUS_SESSION_BUS_ADDRESS", bus_.sessionAddress().toStdString());
        // The toolkit asks for it once, when the application starts, and does not hear of a reader
        // that starts later.
        bus_.startReader();
    }
    void meetApplication() {
        ASSERT_TRUE(waitUntil([this] {
            spoken_ = bus_.application("Ostrella");
            return spoken_.has_value() && !spoken_->children().empty();
        })) << "the application makes itself known, among "
            << testing::PrintToString(bus_.applications());
    }
    /// The thing of this name and role; a failed test if there is none.
    SpokenThing thing(const std::string& name, const std::string& role) const {
        std::optional<SpokenThing> found;
        EXPECT_TRUE(waitUntil([&] {
            found = spoken_->find([&](const SpokenThing& thing) {
                return thing.name() == name && thing.role() == role;
            });
            return found.has_value();
        })) << role
            << " " << name;
        return found.value_or(*spoken_);
    }

    AccessibilityBus bus_;
    StartedApplication application_;
    std::optional<SpokenThing> spoken_;
};

TEST_F(ScreenReader, FindsAndUsesTheWindow) {
    ASSERT_NO_FATAL_FAILURE(application_.openSphere());
    ASSERT_NO_FATAL_FAILURE(meetApplication());

    thing("Viewport", "graphic");
    EXPECT_EQ(thing("Velocity", "text").text(), "50.0");
    EXPECT_TRUE(thing("all", "radio button").isChecked());
    EXPECT_FALSE(thing("err", "radio button").isChecked());
    thing("Log", "page tab");
    EXPECT_FALSE(thing("Export Results", "push button").isEnabled()) << "there is no result yet";

    const SpokenThing wireframe = thing("Wireframe", "check box");
    EXPECT_FALSE(wireframe.isChecked());
    EXPECT_TRUE(wireframe.perform("Toggle"));
    EXPECT_TRUE(waitUntil([&] { return wireframe.isChecked(); }));

    EXPECT_TRUE(thing("View", "menu item").perform("Press"));
    EXPECT_TRUE(thing("Orient Model", "menu item").perform("Press"));
    EXPECT_TRUE(waitUntil([this] { return thing("Orient model", "check box").isChecked(); }));

    const SpokenThing run = thing("Run Simulation", "push button");
    EXPECT_TRUE(run.isEnabled());
    EXPECT_THAT(run.actions(), Contains("Press"));
    EXPECT_TRUE(run.perform("Press"));
    EXPECT_TRUE(waitUntil([this] {
        return spoken_
            ->find([](const SpokenThing& thing) {
                return thing.role() == "status bar" && thing.name().starts_with("Converged");
            })
            .has_value();
    })) << "the run ends, and the status bar says so";
    EXPECT_TRUE(thing("Export Results", "push button").isEnabled());
}

} // namespace
} // namespace ostrella::test
