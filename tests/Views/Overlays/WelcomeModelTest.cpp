#include "Views/Viewport/WelcomeModel.h"

#include "OverlayBench.h"
#include "Platform/AppBundle.h"

namespace ostrella::test {
namespace {

class WelcomeModelTest : public OverlayBench {
protected:
    void putSample(const std::string& name, int facets) {
        std::string text = "solid s\n";
        for (int i = 0; i < facets; ++i) {
            text += "facet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n"
                    "endloop\nendfacet\n";
        }
        writeFile(AppBundle(directory()).resourcesDirectory() / "samples" / (name + ".stl"),
            text + "endsolid s\n");
    }
    /// Names of what was posted meanwhile, with the text that came with it.
    Texts posted;
    NotificationCenter::Token watch(std::string_view name) {
        return app.notifications.observe(
            name, [this, name = std::string(name)](const std::any& object) {
                const auto* text = std::any_cast<std::string>(&object);
                posted.push_back(name + (text != nullptr ? " " + *text : ""));
            });
    }

    WelcomeModel welcome{shared(), PlatformWords::freedesktop()};
};

TEST_F(WelcomeModelTest, Texts) {
    EXPECT_EQ(string(welcome.texts(), "title"), "Ostrella");
    EXPECT_EQ(string(welcome.texts(), "tagLine"), "Aerodynamic analysis on your computer.");
    EXPECT_EQ(string(welcome.texts(), "samples"), "Try a sample");
    EXPECT_EQ(string(welcome.texts(), "demo"), "Run the NACA0012 demo");
    EXPECT_EQ(string(welcome.texts(), "load"), "or Load your own STL…");
    EXPECT_EQ(string(WelcomeModel(shared(), PlatformWords::mac()).texts(), "tagLine"),
        "Aerodynamic analysis on your Mac.");
}

TEST_F(WelcomeModelTest, ATileForEachSample) {
    const QVariantList samples = welcome.samples();
    EXPECT_EQ(column(samples, "id"), (test::Texts{"sphere", "rounded_box", "simple_wing"}));
    EXPECT_EQ(column(samples, "name"), (test::Texts{"Sphere", "Rounded Box", "Simple Wing"}));
    EXPECT_EQ(column(samples, "symbol"), (test::Texts{"globe", "cube", "airplane"}));
    EXPECT_EQ(column(samples, "help")[1], "Load the Rounded Box sample");
    EXPECT_EQ(column(samples, "label")[2], "Load sample Simple Wing");
    EXPECT_EQ(column(samples, "facets"), (test::Texts{"", "", ""}));
}

TEST_F(WelcomeModelTest, CountsFacetsOnceInTheBackground) {
    putSample("sphere", 2);
    putSample("simple_wing", 1234);
    int changes = 0;
    QObject::connect(&welcome, &WelcomeModel::changed, [&changes] { ++changes; });
    welcome.count();
    welcome.count();
    ASSERT_TRUE(waitUntil([&changes] { return changes > 0; }));
    EXPECT_EQ(
        column(welcome.samples(), "facets"), (test::Texts{"2 facets", "", "1\u00A0234 facets"}));
    welcome.count();
    turn();
    EXPECT_EQ(changes, 1);
}

TEST_F(WelcomeModelTest, GoesWhileItCounts) {
    putSample("sphere", 5000);
    for (int i = 0; i < 20; ++i) {
        WelcomeModel(shared(), PlatformWords::freedesktop()).count();
    }
    welcome.count();
    EXPECT_TRUE(waitUntil([this] { return column(welcome.samples(), "facets")[0] != ""; }));
}

TEST_F(WelcomeModelTest, AsksForSampleAndPanel) {
    const auto sample = watch(Notifications::sampleLoadRequested);
    const auto panel = watch(Notifications::openSTLRequested);
    welcome.loadSample(QStringLiteral("sphere"));
    welcome.loadOwn();
    EXPECT_EQ(
        posted, (test::Texts{"Ostrella.sampleLoadRequested sphere", "Ostrella.openSTLRequested"}));
}

TEST_F(WelcomeModelTest, StartsTheDemo) {
    welcome.runDemo();
    EXPECT_TRUE(app.simulation.phase().isActive());
    // Without its template the run fails at once.
    EXPECT_TRUE(waitUntil([this] { return !app.simulation.phase().isActive(); }));
    EXPECT_EQ(app.simulation.phase().kind, RunPhase::Kind::failed);
}

} // namespace
} // namespace ostrella::test
