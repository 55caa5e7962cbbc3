// Files dragged over the viewport and dropped on it.

#include "ui/support/AppUnderTest.h"
#include "ui/support/Drag.h"

#include <QUrl>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class Drop : public AppUnderTest {
protected:
    Drop() { place = inViewport({300, 200}); }

    /// A file of its own with the triangles of the sphere.
    fs::path body(const std::string& name) {
        const fs::path sphere =
            fs::path(OSTRELLA_STAGE_DIR) / "share" / "ostrella" / "samples" / "sphere.stl";
        fs::copy_file(sphere, files.path() / name);
        return files.path() / name;
    }
    fs::path text(const std::string& name) {
        writeFile(files.path() / name, "text");
        return files.path() / name;
    }
    fs::path folder(const std::string& name) {
        fs::create_directory(files.path() / name);
        return files.path() / name;
    }
    /// Over the viewport and dropped there; whether the drop was taken.
    bool drop(const std::vector<fs::path>& dropped) {
        Drag drag(window->window(), dropped);
        drag.moveTo(place);
        user->settle();
        drag.moveTo(place);
        const bool taken = drag.drop(place);
        user->settle();
        return taken;
    }
    /// A warning of this title comes up, is read, and goes.
    bool alerts(const std::string& title) {
        if (!waitFor([&] { return shows(title); })) {
            return false;
        }
        user->settle();
        user->type(Qt::Key_Return);
        return waitFor([&] { return !shows(title); });
    }
    std::string notice() { return model().viewport()->notice().toStdString(); }
    bool hasModel() const { return app->parameters.mesh().has_value(); }

    TemporaryDirectory files;
    QPointF place;
};

constexpr auto info = LogStore::Level::info;
constexpr auto warn = LogStore::Level::warn;

TEST_F(Drop, oneModelIsAnnouncedAndLoaded) {
    {
        Drag drag(window->window(), {body("body.stl")});
        EXPECT_TRUE(drag.moveTo(place));
        EXPECT_TRUE(waitFor([this] { return shows("Drop to load body.stl"); }));
        EXPECT_TRUE(drag.moveTo(place + QPointF(5, 5)));
        EXPECT_TRUE(drag.drop(place));
    }
    waitForModel("body.stl");
    EXPECT_FALSE(shows("Drop to load body.stl"));
    EXPECT_FALSE(find("Load sample Sphere")) << "the welcome goes";
    EXPECT_TRUE(logs("Loaded body.stl · 5 120 facets · 2.00 × 2.00 × 2.00 m", info));
    EXPECT_THAT(log(warn), IsEmpty());
    EXPECT_EQ(notice(), "");
    EXPECT_EQ(window->window().title().toStdString(), "body.stl · Ostrella");
}

TEST_F(Drop, theFirstOfSeveralModelsIsLoaded) {
    EXPECT_TRUE(drop({text("notes.txt"), body("first.STL"), body("second.stl")}));
    waitForModel("first.STL");
    EXPECT_EQ(notice(), "Ignored 2 other files · only one .stl file loads at a time");
    EXPECT_TRUE(find(notice())) << "it is said aloud";
    EXPECT_THAT(log(warn), ElementsAre("Ignored notes.txt, second.stl · only one .stl file loads "
                                       "at a time"));
    EXPECT_TRUE(waitFor([this] { return notice().empty(); })) << "it goes by itself";
}

TEST_F(Drop, whatCanHoldNoModelIsRefusedWhileItHovers) {
    Drag drag(window->window(), {text("notes.txt"), text("table.csv")});
    drag.moveTo(place);
    EXPECT_TRUE(waitFor([this] { return shows("Only .stl files can be loaded"); }));
    EXPECT_FALSE(drag.moveTo(place + QPointF(3, 0)));
    // A program that drops all the same.
    EXPECT_FALSE(drag.drop(place));
    user->settle();
    EXPECT_FALSE(shows("Only .stl files can be loaded"));
    EXPECT_FALSE(hasModel());
    EXPECT_EQ(notice(), "");
    EXPECT_THAT(log(warn), IsEmpty());
}

TEST_F(Drop, aFolderThatSeemedToBeAFileIsLeftOut) {
    EXPECT_TRUE(drop({folder("models"), body("body.stl")}));
    waitForModel("body.stl");
    EXPECT_EQ(notice(), "Ignored models · only .stl files can be loaded");
    EXPECT_THAT(log(warn), ElementsAre("Ignored models · only .stl files can be loaded"));
}

TEST_F(Drop, aFolderWithTheNameOfAModelIsToldToBeNone) {
    EXPECT_TRUE(drop({folder("body.stl")}));
    EXPECT_TRUE(alerts("Couldn't load STL"));
    EXPECT_FALSE(hasModel());
    EXPECT_TRUE(find("Load sample Sphere")) << "the welcome is back";
}

TEST_F(Drop, aLinkToAModelIsLoadedByItsOwnName) {
    fs::create_symlink(body("body.stl"), files.path() / "link.stl");
    EXPECT_TRUE(drop({files.path() / "link.stl"}));
    waitForModel("link.stl");
}

TEST_F(Drop, aLinkToNothingIsToldToBeNone) {
    fs::create_symlink("nowhere.stl", files.path() / "link.stl");
    EXPECT_TRUE(drop({files.path() / "link.stl"}));
    EXPECT_TRUE(alerts("Couldn't load STL"));
    EXPECT_FALSE(hasModel());
}

TEST_F(Drop, aFileThatVanishesWhileItHoversIsToldToBeGoneAndTheModelStays) {
    EXPECT_TRUE(drop({body("kept.stl")}));
    waitForModel("kept.stl");
    const fs::path file = body("gone.stl");
    Drag drag(window->window(), {file});
    drag.moveTo(place);
    EXPECT_TRUE(waitFor([this] { return shows("Drop to load gone.stl"); }));
    fs::remove(file);
    EXPECT_TRUE(drag.drop(place));
    EXPECT_TRUE(alerts("Couldn't load STL"));
    EXPECT_TRUE(hasModel());
    EXPECT_EQ(window->window().title().toStdString(), "kept.stl · Ostrella");
    EXPECT_TRUE(row("File")) << "its card is still there";
}

TEST_F(Drop, fiveHundredFilesAreCountedAndThreeOfThemNamed) {
    std::vector<fs::path> many;
    for (int i = 0; i < 499; ++i) {
        many.push_back(files.path() / ("file" + std::to_string(i) + ".txt"));
    }
    many.insert(many.begin() + 250, body("body.stl"));
    EXPECT_TRUE(drop(many));
    waitForModel("body.stl");
    EXPECT_EQ(notice(), "Ignored 499 other files · only .stl files can be loaded");
    EXPECT_THAT(log(warn), ElementsAre("Ignored file0.txt, file1.txt, file2.txt and 496 more · "
                                       "only .stl files can be loaded"));
}

TEST_F(Drop, whatLiesOnAnotherMachineLoadsNothing) {
    Drag drag(window->window(), {QUrl(QStringLiteral("https://example.org/body.stl"))});
    drag.moveTo(place);
    user->settle();
    EXPECT_FALSE(shows("Drop to load body.stl"));
    drag.drop(place);
    user->settle();
    EXPECT_FALSE(hasModel());
    EXPECT_TRUE(find("Load sample Sphere"));
    EXPECT_FALSE(shows("Drop an STL to load"));
}

TEST_F(Drop, aDragThatGoesAwayLeavesNothingBehind) {
    Drag drag(window->window(), {body("body.stl")});
    drag.moveTo(place);
    EXPECT_TRUE(waitFor([this] { return shows("Drop to load body.stl"); }));
    drag.leave();
    EXPECT_TRUE(waitFor([this] { return !shows("Drop to load body.stl"); }));
    EXPECT_FALSE(hasModel());
}

TEST_F(Drop, theSidebarTakesNoFiles) {
    Drag drag(window->window(), {body("body.stl")});
    EXPECT_FALSE(drag.moveTo({60, 300}));
    user->settle();
    EXPECT_FALSE(shows("Drop to load body.stl"));
}

} // namespace
} // namespace ostrella::test
