// Files dragged from another program, over the X server's own protocol and with its pointer.

#include "Platform/desktop/DesktopBench.h"
#include "ui/support/AppUnderTest.h"

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto warn = LogStore::Level::warn;

class ForeignDrag : public AppUnderTest {
protected:
    ~ForeignDrag() override {
        if (isHeld_) {
            user->release();
        }
    }

    fs::path body(const std::string& name) {
        fs::copy_file(
            fs::path(OSTRELLA_STAGE_DIR) / "share" / "ostrella" / "samples" / "sphere.stl",
            files.path() / name);
        return files.path() / name;
    }
    fs::path text(const std::string& name) {
        writeFile(files.path() / name, "text");
        return files.path() / name;
    }

    /// Takes the files up in the other program, below the application's window.
    void take(const std::vector<fs::path>& dragged) {
        QStringList arguments{
            QStringLiteral("0"), QStringLiteral("880"), QStringLiteral("40"), QStringLiteral("20")};
        for (const fs::path& file : dragged) {
            arguments.append(QString::fromStdString(file.string()));
        }
        source_ = std::make_unique<TalkingProgram>(QStringLiteral(OSTRELLA_DRAG_SOURCE), arguments);
        ASSERT_TRUE(said("ready"));
        user->moveTo({20, 890});
        user->press();
        isHeld_ = true;
        ASSERT_TRUE(said("dragging"));
    }
    /// Carries them over the viewport until the window tells so.
    void carry(const std::string& announced) {
        // A drag begins with the first move and enters with the next.
        user->moveTo(inViewport({300, 200}), 4);
        ASSERT_TRUE(waitFor([&] { return shows(announced); })) << announced;
    }
    void letGo() {
        isHeld_ = false;
        user->release();
    }
    bool said(const char* line) {
        return source_->waitForLine(QString::fromLatin1(line)).has_value();
    }
    void drop(const std::vector<fs::path>& dragged, const std::string& announced) {
        ASSERT_NO_FATAL_FAILURE(take(dragged));
        ASSERT_NO_FATAL_FAILURE(carry(announced));
        ASSERT_TRUE(said("would copy"));
        letGo();
        ASSERT_TRUE(said("dropped copy"));
        EXPECT_FALSE(shows(announced));
    }
    /// The warning of a file that cannot be read comes up, is read, and goes.
    bool alerts() {
        const auto isUp = [this] { return shows("Couldn't load STL"); };
        if (!waitFor(isUp)) {
            return false;
        }
        user->settle();
        user->type(Qt::Key_Return);
        return waitFor([&] { return !isUp(); });
    }
    std::string notice() { return model().viewport()->notice().toStdString(); }
    bool hasModel() { return app->parameters.mesh().has_value(); }

    TemporaryDirectory files;

private:
    std::unique_ptr<TalkingProgram> source_;
    bool isHeld_ = false;
};

TEST_F(ForeignDrag, oneModelIsLoaded) {
    ASSERT_NO_FATAL_FAILURE(drop({body("body.stl")}, "Drop to load body.stl"));
    waitForModel("body.stl");
    EXPECT_EQ(notice(), "");
    EXPECT_THAT(log(warn), IsEmpty());
}

TEST_F(ForeignDrag, ofSeveralTheFirstModelIsLoaded) {
    ASSERT_NO_FATAL_FAILURE(
        drop({text("notes.txt"), body("first.STL"), body("second.stl")}, "Drop to load first.STL"));
    waitForModel("first.STL");
    EXPECT_EQ(notice(), "Ignored 2 other files · only one .stl file loads at a time");
    EXPECT_THAT(log(warn),
        ElementsAre("Ignored notes.txt, second.stl · only one .stl file loads at a time"));
}

TEST_F(ForeignDrag, aNameWithSignsAndBlanksComesWhole) {
    const std::string name = "50 % größer #2 · 翼.stl";
    ASSERT_NO_FATAL_FAILURE(drop({body(name)}, "Drop to load " + name));
    waitForModel(name);
}

TEST_F(ForeignDrag, aFolderIsLeftOut) {
    fs::create_directory(files.path() / "models");
    ASSERT_NO_FATAL_FAILURE(
        drop({files.path() / "models", body("body.stl")}, "Drop to load body.stl"));
    waitForModel("body.stl");
    EXPECT_EQ(notice(), "Ignored models · only .stl files can be loaded");
}

TEST_F(ForeignDrag, aFolderWithTheNameOfAModelIsToldToBeNone) {
    fs::create_directory(files.path() / "body.stl");
    ASSERT_NO_FATAL_FAILURE(drop({files.path() / "body.stl"}, "Drop to load body.stl"));
    EXPECT_TRUE(alerts());
    EXPECT_FALSE(hasModel());
}

TEST_F(ForeignDrag, aWrongFileIsRefusedAndTheUserToldWhy) {
    ASSERT_NO_FATAL_FAILURE(take({text("notes.txt")}));
    ASSERT_NO_FATAL_FAILURE(carry("Only .stl files can be loaded"));
    letGo();
    EXPECT_TRUE(said("dropped nothing"));
    EXPECT_TRUE(waitFor([this] { return !shows("Only .stl files can be loaded"); }));
    EXPECT_FALSE(hasModel());
    EXPECT_EQ(notice(), "");
}

TEST_F(ForeignDrag, aLinkIsLoadedByItsOwnName) {
    fs::create_symlink(body("body.stl"), files.path() / "link.stl");
    ASSERT_NO_FATAL_FAILURE(drop({files.path() / "link.stl"}, "Drop to load link.stl"));
    waitForModel("link.stl");
}

TEST_F(ForeignDrag, aFileThatVanishesOnItsWayIsToldToBeGone) {
    const fs::path file = body("gone.stl");
    ASSERT_NO_FATAL_FAILURE(take({file}));
    ASSERT_NO_FATAL_FAILURE(carry("Drop to load gone.stl"));
    ASSERT_TRUE(said("would copy"));
    fs::remove(file);
    letGo();
    EXPECT_TRUE(said("dropped copy"));
    EXPECT_TRUE(alerts());
    EXPECT_FALSE(hasModel());
}

TEST_F(ForeignDrag, carriedAwayAgainItLeavesNothingBehind) {
    ASSERT_NO_FATAL_FAILURE(take({body("body.stl")}));
    ASSERT_NO_FATAL_FAILURE(carry("Drop to load body.stl"));
    user->moveTo({60, 300}, 4);
    EXPECT_TRUE(waitFor([this] { return !shows("Drop to load body.stl"); }));
    letGo();
    EXPECT_TRUE(said("dropped nothing"));
    EXPECT_FALSE(hasModel());
}

} // namespace
} // namespace ostrella::test
