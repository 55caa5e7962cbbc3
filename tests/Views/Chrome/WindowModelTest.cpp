#include "Views/Chrome/WindowModel.h"

#include "Views/Format/AppLinks.h"
#include "support/ManualClock.h"
#include "support/ManualTimers.h"
#include "support/ViewBench.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QUrl>

namespace ostrella::test {
namespace {

using Texts = std::vector<std::string>;

class WindowModelTest : public testing::Test, protected ViewBench {
protected:
    std::string title() const { return model.title().toStdString(); }
    /// Lines that came after the test began.
    std::vector<LogStore::Line> newLines() const {
        const auto& lines = app.logStore.lines();
        return {lines.begin() + static_cast<std::ptrdiff_t>(linesBefore), lines.end()};
    }
    void answer(const std::filesystem::path& place) {
        model.files()->accept(QUrl::fromLocalFile(QString::fromStdString(place.string())));
    }
    /// A result whose run left these files.
    void showResult(const std::vector<std::string>& files) {
        SimulationResult result;
        result.runDirectory = directory() / "run";
        result.flowVTK = result.runDirectory / "flow.vtk";
        result.surfaceVTK = result.runDirectory / "surface_flow.vtk";
        for (const std::string& file : files) {
            writeFile(result.runDirectory / file, "x\n");
        }
        app.parameters.setLastRunResult(result);
    }
    LogStore::Line exportTo(const std::filesystem::path& folder) {
        requestExport();
        EXPECT_EQ(model.files()->kind(), FilePanels::Kind::Folder);
        answer(folder);
        EXPECT_TRUE(waitUntil([this] { return newLines().size() == 1; }));
        return newLines().back();
    }
    void requestExport() {
        for (const QVariant& menu : model.commands()->menus()) {
            for (const QVariant& entry : menu.toMap().value(QStringLiteral("items")).toList()) {
                if (entry.toMap().value(QStringLiteral("text")) ==
                    QVariant(QString::fromUtf8("Export Results…"))) {
                    qobject_cast<CommandItem*>(
                        entry.toMap().value(QStringLiteral("item")).value<QObject*>())
                        ->trigger();
                }
            }
        }
    }
    std::string alert() const {
        return model.alertTitle().toStdString() + ": " + model.alertText().toStdString();
    }

    MemoryPreferences preferences;
    ManualClock clock;
    ManualTimers timers;
    Texts addresses;
    WindowModel model{shared(),
        {.words = PlatformWords::freedesktop(),
            .preferences = preferences,
            .temporaryDirectory = directory(),
            .openAddress = [this](const std::string& address) { addresses.push_back(address); },
            .quit = [] {},
            .clock = clock,
            .timers = timers}};
    std::size_t linesBefore = app.logStore.lines().size();
};

TEST_F(WindowModelTest, TheTitleNamesTheModel) {
    EXPECT_EQ(title(), "Ostrella");
    int changes = 0;
    QObject::connect(&model, &WindowModel::titleChanged, [&changes] { ++changes; });
    app.parameters.setSTLURL("/models/wing.stl");
    EXPECT_EQ(title(), "wing.stl · Ostrella");
    app.parameters.setSTLURL("/other/wing.stl");
    EXPECT_EQ(changes, 1);
    app.parameters.setSTLURL(std::nullopt);
    EXPECT_EQ(title(), "Ostrella");
}

TEST_F(WindowModelTest, TheOpenPanelsChoiceIsLoaded) {
    app.notifications.post(Notifications::openSTLRequested);
    EXPECT_EQ(model.files()->kind(), FilePanels::Kind::Model);
    answer(directory() / "none.stl");
    EXPECT_EQ(app.parameters.loadingFileName(), "none.stl");
    EXPECT_TRUE(waitUntil([this] { return !app.parameters.loadingFileName(); }));
}

TEST_F(WindowModelTest, ADismissedOpenPanelLoadsNothing) {
    app.notifications.post(Notifications::openSTLRequested);
    model.files()->dismiss();
    EXPECT_FALSE(app.parameters.loadingFileName());
}

TEST_F(WindowModelTest, SamplesAreLoadedByTheirName) {
    writeFile(AppBundle(directory()).resourcesDirectory() / "samples" / "sphere.stl",
        "solid s\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n"
        "endloop\nendfacet\nendsolid s\n");
    app.notifications.post(Notifications::sampleLoadRequested, std::string("sphere"));
    EXPECT_EQ(app.parameters.loadingFileName(), "sphere.stl");
    ASSERT_TRUE(waitUntil([this] { return app.parameters.mesh().has_value(); }));
    EXPECT_EQ(title(), "sphere.stl · Ostrella");
}

TEST_F(WindowModelTest, ASampleThatIsNoneLoadsNothing) {
    app.notifications.post(Notifications::sampleLoadRequested);
    app.notifications.post(Notifications::sampleLoadRequested, 7);
    app.notifications.post(Notifications::sampleLoadRequested, std::string("teapot"));
    turn();
    EXPECT_FALSE(app.parameters.loadingFileName());
}

TEST_F(WindowModelTest, TheLogComesForwardWithTheAskedLevel) {
    model.panel()->setVisible(false);
    model.panel()->setTab(BottomPanelModel::Tab::convergence);
    app.notifications.post(Notifications::showLogRequested, LogStore::Level::error);
    EXPECT_TRUE(model.panel()->isVisible());
    EXPECT_TRUE(model.panel()->showsLog());
    EXPECT_EQ(model.panel()->filter(), LogFilter::err);
    app.notifications.post(Notifications::showLogRequested, 3);
    EXPECT_EQ(model.panel()->filter(), LogFilter::all);
}

TEST_F(WindowModelTest, WithoutAResultThereIsNothingToExport) {
    requestExport();
    EXPECT_EQ(model.files()->kind(), FilePanels::Kind::None);
}

TEST_F(WindowModelTest, AnExportCopiesAndTells) {
    showResult({"flow.vtk", "surface_flow.vtk", "run.cfg"});
    const auto folder = directory() / "out";
    const LogStore::Line line = exportTo(folder);
    EXPECT_EQ(line.text, "Exported 3 files to " + folder.string());
    EXPECT_EQ(line.level, LogStore::Level::ok);
    EXPECT_TRUE(std::filesystem::exists(folder / "surface_flow.vtk"));
}

TEST_F(WindowModelTest, AnExportOfNothingWarns) {
    showResult({});
    const LogStore::Line line = exportTo(directory() / "out");
    EXPECT_EQ(line.text, "Nothing exported · the run folder had no result files");
    EXPECT_EQ(line.level, LogStore::Level::warn);
}

TEST_F(WindowModelTest, AnExportThatFailsSaysWhy) {
    showResult({"flow.vtk"});
    writeFile(directory() / "file", "in the way\n");
    const LogStore::Line line = exportTo(directory() / "file" / "out");
    EXPECT_EQ(line.text.find("Export failed · "), 0U) << line.text;
    EXPECT_GT(line.text.size(), std::string("Export failed · ").size() + 5);
    EXPECT_EQ(line.level, LogStore::Level::error);
}

TEST_F(WindowModelTest, AnExportIsOfTheResultThatWasThereWhenItWasAskedFor) {
    showResult({"flow.vtk"});
    requestExport();
    app.parameters.setLastRunResult(std::nullopt);
    answer(directory() / "out");
    ASSERT_TRUE(waitUntil([this] { return newLines().size() == 1; }));
    EXPECT_TRUE(std::filesystem::exists(directory() / "out" / "flow.vtk"));
}

TEST_F(WindowModelTest, ThinkingBetterOfAnExportTellsNothing) {
    showResult({"flow.vtk"});
    requestExport();
    model.files()->dismiss();
    turn();
    EXPECT_TRUE(newLines().empty());
}

TEST_F(WindowModelTest, APictureIsTakenThenAskedForThenWritten) {
    app.parameters.setSTLURL("/models/wing.stl");
    model.viewport()->saveImage();
    EXPECT_TRUE(app.renderSettings.snapshotRequestID());
    EXPECT_EQ(model.files()->kind(), FilePanels::Kind::None);
    QImage picture(4, 3, QImage::Format_RGB32);
    picture.fill(Qt::red);
    app.renderSettings.deliverSnapshot(&picture);
    EXPECT_EQ(model.files()->kind(), FilePanels::Kind::Picture);
    EXPECT_EQ(model.files()->suggestedName().toStdString().find("wing · 19"), 0U);
    answer(directory() / "a");
    ASSERT_TRUE(waitUntil([this] { return newLines().size() == 1; }));
    EXPECT_EQ(QImage(QString::fromStdString((directory() / "a.png").string())).size(), QSize(4, 3));
}

TEST_F(WindowModelTest, APictureThatDoesNotComeIsGivenUp) {
    model.viewport()->saveImage();
    timers.advance(3.1);
    ASSERT_TRUE(waitUntil([this] { return newLines().size() == 1; }));
    EXPECT_EQ(newLines()[0].level, LogStore::Level::error);
    EXPECT_EQ(model.files()->kind(), FilePanels::Kind::None);
}

TEST_F(WindowModelTest, HelpIsOpenedOutside) {
    for (const QVariant& entry : model.commands()->toolbar().back().toList()) {
        if (entry.toMap().value(QStringLiteral("text")) == QVariant(QStringLiteral("Help"))) {
            qobject_cast<CommandItem*>(
                entry.toMap().value(QStringLiteral("item")).value<QObject*>())
                ->trigger();
        }
    }
    EXPECT_EQ(addresses, Texts{std::string(AppLinks::help)});
}

TEST_F(WindowModelTest, WarningsWaitForOneAnother) {
    EXPECT_TRUE(model.alertTitle().isEmpty());
    model.dismissAlert();
    int changes = 0;
    QObject::connect(&model, &WindowModel::alertChanged, [&changes] { ++changes; });
    model.showAlert("Couldn't load STL", "STL file is empty.");
    model.showAlert("Couldn't load sample", "Unknown sample 'x'.");
    model.showAlert("Couldn't load STL", "STL file is empty.");
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(alert(), "Couldn't load STL: STL file is empty.");
    model.dismissAlert();
    EXPECT_EQ(alert(), "Couldn't load sample: Unknown sample 'x'.");
    model.dismissAlert();
    EXPECT_EQ(alert(), ": ");
    EXPECT_EQ(changes, 4);
}

TEST_F(WindowModelTest, AQuestionWaitsForItsAnswer) {
    std::vector<bool> answers;
    model.showAlert("Couldn't load STL", "STL file is empty.");
    EXPECT_EQ(model.alertButton().toStdString(), "OK");
    EXPECT_TRUE(model.alertSecondButton().isEmpty());
    for (int i = 0; i < 2; ++i) {
        model.ask("Do it?", "It takes long.", "Do It", "Cancel",
            [&answers](bool isFirst) { answers.push_back(isFirst); });
    }
    model.dismissAlert();
    EXPECT_EQ(alert(), "Do it?: It takes long.");
    EXPECT_EQ(model.alertButton().toStdString(), "Do It");
    EXPECT_EQ(model.alertSecondButton().toStdString(), "Cancel");
    EXPECT_TRUE(answers.empty());
    model.dismissAlert(true);
    model.dismissAlert(false);
    EXPECT_EQ(answers, (std::vector<bool>{true, false}));
    EXPECT_EQ(alert(), ": ");
}

} // namespace
} // namespace ostrella::test
