#include "Views/About/AboutModel.h"

#include "Models/PlatformWords.h"
#include "Update/UpdateController.h"
#include "Update/gate/ScriptedUpdater.h"
#include "support/Changes.h"
#include "support/ManualTimers.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class AboutModelTest : public testing::Test {
protected:
    AboutModelTest() {
        fs::create_directories(bundle.toolsDirectory());
        auto made = std::make_unique<ScriptedUpdater>();
        updater = made.get();
        updates = std::make_unique<UpdateController>(
            std::move(made), timers, [](const UpdateAlert&, const std::function<void(bool)>&) {});
    }
    ~AboutModelTest() override {
        // Whoever still asks gmsh uses the timers.
        if (model) {
            EXPECT_TRUE(waitUntil([&] { return model->mesher() != QStringLiteral("·"); }));
        }
    }

    AboutModel& make(UpdateController* given = nullptr) {
        model = std::make_unique<AboutModel>(AboutModel::Surroundings{.bundle = bundle,
            .words = PlatformWords::freedesktop(),
            .renderer = "OpenGL",
            .openAddress = [this](const std::string& address) { opened.push_back(address); },
            .updates = given,
            .timers = timers});
        return *model;
    }

    void installScript(const std::string& name, const std::string& script) const {
        const fs::path file = bundle.toolsDirectory() / name;
        writeFile(file, "#!/bin/sh\n" + script + "\n");
        fs::permissions(file, fs::perms::owner_all);
    }
    /// Installs one of the small child programs.
    void installProgram(const std::string& name, const std::string& program) const {
        fs::create_symlink(
            fs::path(OSTRELLA_TEST_PROGRAMS) / program, bundle.toolsDirectory() / name);
    }

    /// The window appears, and everything is known of the tools.
    void appear() {
        const Changes answers(model.get(), &AboutModel::mesherChanged);
        model->appear();
        ASSERT_TRUE(waitUntil([&] { return answers.count() > 0; }));
    }

    std::string text(const char* name) const {
        return model->texts().value(QString::fromLatin1(name)).toString().toStdString();
    }
    std::string notice(int index) const {
        return model->notices()
            .at(index)
            .toMap()
            .value(QStringLiteral("text"))
            .toString()
            .toStdString();
    }

    const TemporaryDirectory directory;
    const AppBundle bundle{directory.path()};
    ManualTimers timers;
    std::vector<std::string> opened;
    ScriptedUpdater* updater = nullptr;
    std::unique_ptr<UpdateController> updates;
    std::unique_ptr<AboutModel> model;
};

TEST_F(AboutModelTest, saysWhatThePackageSaysOfItself) {
    writeFile(bundle.resourcesDirectory() / "Info.json",
        R"({"CFBundleShortVersionString": "1.2.0", "CFBundleVersion": "345"})");
    make();
    EXPECT_EQ(text("title"), "Ostrella");
    EXPECT_EQ(text("tagLine"), "Native CFD for external aerodynamics on Linux");
    EXPECT_EQ(text("version"), "Version 1.2.0 (345)");
    appear();
}

TEST_F(AboutModelTest, hasAVersionWhereThePackageSaysNothing) {
    writeFile(bundle.resourcesDirectory() / "Info.json", "rubbish");
    make();
    EXPECT_EQ(text("version"), "Version 0.0.0");
    appear();
}

TEST_F(AboutModelTest, keepsTheRowsWhileNothingIsKnown) {
    make();
    EXPECT_EQ(model->solver(), QStringLiteral("·"));
    EXPECT_EQ(model->mesher(), QStringLiteral("·"));
    EXPECT_EQ(model->renderer(), QStringLiteral("·"));
    appear();
}

TEST_F(AboutModelTest, tellsTheToolsAndTheRenderer) {
    installScript("SU2_CFD", "exit 0");
    installScript("gmsh", "echo 4.8.4 >&2");
    make();
    appear();
    EXPECT_EQ(model->solver(), QStringLiteral("SU2 8.5.0 (LGPL)"));
    EXPECT_EQ(model->mesher(), QStringLiteral("gmsh 4.8.4 (GPL)"));
    EXPECT_EQ(model->renderer(), QStringLiteral("OpenGL"));
    EXPECT_THAT(notice(0), HasSubstr("Ostrella runs SU2 8.5.0 as"));
    EXPECT_THAT(notice(1), HasSubstr("Ostrella runs gmsh 4.8.4 as"));
}

TEST_F(AboutModelTest, tellsToolsThatAreNotThere) {
    make();
    appear();
    EXPECT_EQ(model->solver(), QStringLiteral("SU2 8.5.0 (LGPL) · not found"));
    EXPECT_EQ(model->mesher(), QStringLiteral("gmsh missing · reinstall Ostrella"));
    EXPECT_THAT(notice(1), HasSubstr("Ostrella runs gmsh as"));
}

TEST_F(AboutModelTest, tellsTheBuiltInSolver) {
    writeFile(bundle.toolsDirectory() / "ostrella-preview-solver", "#!/bin/sh\n");
    fs::permissions(bundle.toolsDirectory() / "ostrella-preview-solver", fs::perms::owner_all);
    fs::create_symlink("ostrella-preview-solver", bundle.toolsDirectory() / "SU2_CFD");
    make();
    appear();
    EXPECT_EQ(model->solver(), QStringLiteral("Built-in preview solver · SU2 not packaged"));
    EXPECT_THAT(notice(0), HasSubstr("a preview solver of its own"));
}

TEST_F(AboutModelTest, isCalmAboutASolverOfTenBytes) {
    writeFile(bundle.toolsDirectory() / "SU2_CFD", "0123456789");
    fs::permissions(bundle.toolsDirectory() / "SU2_CFD", fs::perms::owner_all);
    make();
    appear();
    EXPECT_EQ(model->solver(), QStringLiteral("SU2 8.5.0 (LGPL)"));
}

TEST_F(AboutModelTest, isCalmAboutAMesherOfAMegabyteOfWords) {
    installScript("gmsh", "echo 4.8.4; head -c 1048576 /dev/zero | tr '\\0' x");
    make();
    appear();
    EXPECT_EQ(model->mesher(), QStringLiteral("gmsh 4.8.4 (GPL)"));
}

TEST_F(AboutModelTest, doesNotWaitForAMesherThatHangs) {
    installProgram("gmsh", "slow");
    make();
    model->appear();
    EXPECT_EQ(model->solver(), QStringLiteral("SU2 8.5.0 (LGPL) · not found"));
    EXPECT_EQ(model->renderer(), QStringLiteral("OpenGL"));
    EXPECT_EQ(model->mesher(), QStringLiteral("·"));
    ASSERT_TRUE(waitUntil([&] { return timers.pending().size() == 2; }));
    timers.advance(3);
    ASSERT_TRUE(waitUntil([&] { return model->mesher() == QStringLiteral("gmsh (GPL)"); }));
}

TEST_F(AboutModelTest, asksOnceAtATime) {
    const fs::path asked = directory.path() / "asked";
    installScript("gmsh", "echo x >> '" + asked.string() + "'; echo 4.8.4");
    make();
    const Changes answers(model.get(), &AboutModel::mesherChanged);
    model->appear();
    model->appear();
    ASSERT_TRUE(waitUntil([&] { return answers.count() == 1; }));
    EXPECT_EQ(readFile(asked), "x\n");
    // A window that appears again looks again: the tools may have been replaced meanwhile.
    installScript("gmsh", "echo 4.9.0");
    model->appear();
    EXPECT_EQ(model->mesher(), QStringLiteral("gmsh 4.8.4 (GPL)"));
    ASSERT_TRUE(waitUntil([&] { return answers.count() == 2; }));
    EXPECT_EQ(model->mesher(), QStringLiteral("gmsh 4.9.0 (GPL)"));
}

TEST_F(AboutModelTest, mayGoWhileTheMesherIsAsked) {
    installProgram("gmsh", "slow");
    make();
    model->appear();
    ASSERT_TRUE(waitUntil([&] { return timers.pending().size() == 2; }));
    model.reset();
    timers.advance(3);
    // Its timers go when it has given up.
    EXPECT_TRUE(waitUntil([&] { return timers.pending().empty(); }));
}

TEST_F(AboutModelTest, opensTheSiteAndChecksForUpdates) {
    make(updates.get());
    appear();
    model->openSite();
    EXPECT_EQ(opened.size(), 1U);
    ASSERT_TRUE(model->canCheckForUpdates());
    model->checkForUpdates();
    EXPECT_EQ(updater->starts, 1);
}

TEST_F(AboutModelTest, cannotCheckWithoutAnUpdater) {
    make();
    appear();
    EXPECT_FALSE(model->canCheckForUpdates());
    model->checkForUpdates();
    EXPECT_EQ(updater->starts, 0);
}

} // namespace
} // namespace ostrella::test
