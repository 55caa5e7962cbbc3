// Runs that fail, and the way from what is said of them to the log.

#include "ui/support/AppUnderTest.h"

#include "Views/Panel/LogLines.h"

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

/// The staged package without its mesher.
class PackageWithoutMesher {
protected:
    PackageWithoutMesher() {
        const fs::path stage = OSTRELLA_STAGE_DIR;
        fs::create_directories(tools());
        fs::create_directory_symlink(stage / "share", package_.path() / "share");
        fs::create_symlink(stage / "libexec" / "ostrella" / "SU2_CFD", tools() / "SU2_CFD");
    }
    fs::path tools() const { return package_.path() / "libexec" / "ostrella"; }
    const fs::path& package() const { return package_.path(); }

private:
    TemporaryDirectory package_;
};

/// What comes forward when a run fails, and where it leads.
class FailedRun : public AppUnderTest {
protected:
    using AppUnderTest::AppUnderTest;

    void expectWayToTheErrors(const std::string& title) {
        EXPECT_TRUE(waitFor([&] { return shows(title); }));
        BottomPanelModel& panel = *model().panel();
        panel.chooseTab(static_cast<int>(BottomPanelModel::Tab::convergence));
        panel.setVisible(false);
        click("Show in log");
        EXPECT_TRUE(panel.isVisible());
        EXPECT_TRUE(panel.showsLog());
        EXPECT_EQ(panel.filter(), LogFilter::err);
        const auto errors = log(LogStore::Level::error);
        ASSERT_FALSE(errors.empty());
        EXPECT_EQ(panel.lines()->size(), errors.size());
        for (std::size_t row = 0; row < panel.lines()->size(); ++row) {
            EXPECT_EQ((*panel.lines())[row].level, LogStore::Level::error);
        }
        EXPECT_TRUE(waitFor([this] { return isChecked("err"); }));
    }
};

class FailedTool : protected PackageWithoutMesher, public FailedRun {
protected:
    FailedTool() : FailedRun(package()) {}
};

TEST_F(FailedTool, tellsOfTheToolThatIsMissingAndRunsAgainOnceItIsThere) {
    click("Load sample Sphere");
    waitForModel("sphere.stl");
    click("Run Simulation");
    ASSERT_TRUE(waitForPhase(RunPhase::Kind::failed));
    user->settle();
    EXPECT_TRUE(waitFor([this] { return shows(app->simulation.phase().message); }));
    EXPECT_THAT(app->simulation.phase().message, HasSubstr("gmsh"));
    EXPECT_TRUE(waitFor([this] { return showsLike("Failed · .*"); }))
        << "under the progress and in the status bar";
    EXPECT_TRUE(waitFor([this] { return isEnabled("Run Simulation"); }));
    expectWayToTheErrors("MESH FAILED");

    fs::create_symlink(
        fs::path(OSTRELLA_STAGE_DIR) / "libexec" / "ostrella" / "gmsh", tools() / "gmsh");
    click("Run Simulation");
    EXPECT_TRUE(waitFor([this] { return !shows("MESH FAILED"); }));
    EXPECT_TRUE(waitForPhase(RunPhase::Kind::solving));
    click("Cancel simulation");
    EXPECT_TRUE(waitForPhase(RunPhase::Kind::cancelled));
}

TEST_F(FailedRun, tellsOfABodyWithoutASurfaceToMesh) {
    TemporaryDirectory files;
    const fs::path line = files.path() / "line.stl";
    writeFile(line, "solid line\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n"
                    "vertex 2 0 0\nendloop\nendfacet\nendsolid line\n");
    app->openURL(QUrl::fromLocalFile(QString::fromStdString(line.string())));
    waitForModel("line.stl");
    EXPECT_TRUE(waitFor([this] { return row("Water-tight") == "3 open edges"; }));
    EXPECT_TRUE(logs("STL is not water-tight · 3 open edges", LogStore::Level::warn));
    click("Run Simulation");
    ASSERT_TRUE(waitForPhase(RunPhase::Kind::failed));
    EXPECT_TRUE(waitFor([this] { return shows(app->simulation.phase().message); }));
    expectWayToTheErrors("MESH FAILED");
}

} // namespace
} // namespace ostrella::test
