#include "Views/Viewport/ViewportModel.h"

#include "OverlayBench.h"

namespace ostrella::test {
namespace {

class ViewportModelTest : public OverlayBench {
protected:
    using Model = ViewportModel;

    ViewportModelTest() {
        QObject::connect(&app.renderSettings, &RenderSettings::viewportInsetsChanged,
            [this] { ++insetChanges; });
        QObject::connect(
            &app.renderSettings, &RenderSettings::reframeRequestIDChanged, [this] { ++fits; });
        QObject::connect(&app.renderSettings, &RenderSettings::viewPresetRequestIDChanged,
            [this] { ++viewRequests; });
    }
    const ViewportInsets& insets() const { return app.renderSettings.viewportInsets(); }
    std::string notice() const { return model.notice().toStdString(); }
    /// Lets so many seconds pass.
    void pass(double seconds) {
        timers.advance(seconds);
        turn();
    }
    void drop(const std::vector<std::filesystem::path>& files) {
        model.handleDrop(ViewportFormat::DropOutcome(files));
    }

    int insetChanges = 0;
    int fits = 0;
    int viewRequests = 0;
    int savedImages = 0;
    ViewportModel model{shared(), {.words = PlatformWords::freedesktop(),
                                      .preferences = preferences,
                                      .saveImage = [this] { ++savedImages; },
                                      .clock = clock,
                                      .timers = timers}};
};

TEST_F(ViewportModelTest, FramesBecomeInsets) {
    model.reportSize({1000, 800});
    model.reportFrame(Model::Canvas, {0, 0, 1000, 800});
    model.reportFrame(Model::Card, {16, 16, 320, 100});
    model.reportFrame(Model::Legend, {884, 16, 100, 400});
    EXPECT_EQ(insetChanges, 0);
    turn();
    EXPECT_EQ(insetChanges, 1);
    EXPECT_EQ(insets(), (ViewportInsets{132, 0, 0, 132}));
}

TEST_F(ViewportModelTest, TheSameInsetsAreNotSetAgain) {
    model.reportSize({1000, 800});
    model.reportFrame(Model::Card, {16, 16, 320, 100});
    turn();
    model.reportFrame(Model::Card, {16, 16, 320, 100});
    turn();
    // Wider, but as deep.
    model.reportFrame(Model::Card, {16, 16, 330, 100});
    turn();
    EXPECT_EQ(insetChanges, 1);
    model.reportFrame(Model::Card, {16, 16, 330, 101});
    turn();
    EXPECT_EQ(insetChanges, 2);
}

TEST_F(ViewportModelTest, AnOverlayThatGoesFreesItsRoom) {
    model.reportSize({1000, 800});
    model.reportFrame(Model::Card, {16, 16, 320, 100});
    turn();
    model.reportFrame(Model::Card, {});
    turn();
    EXPECT_EQ(insets(), ViewportInsets());
}

TEST_F(ViewportModelTest, TheLegendsBarFollowsTheRoom) {
    EXPECT_EQ(model.legend()->barHeight(), 220);
    model.reportSize({1000, 360});
    model.reportFrame(Model::ViewControl, {600, 304, 384, 40});
    turn();
    // 360 - 16 - 56 - 12 - 20 exceeds the most; a lower view does not.
    EXPECT_EQ(model.legend()->barHeight(), 220);
    model.reportSize({1000, 200});
    model.reportFrame(Model::ViewControl, {600, 144, 384, 40});
    turn();
    EXPECT_EQ(model.legend()->barHeight(), 96);
    model.reportSize({1000, 100});
    turn();
    EXPECT_EQ(model.legend()->barHeight(), 72);
}

TEST_F(ViewportModelTest, TheLegendsBarIsNoHigherThanTheOtherCardsLeave) {
    model.reportSize({1000, 360});
    model.reportBarHeight(150);
    turn();
    EXPECT_EQ(model.legend()->barHeight(), 150);
}

TEST_F(ViewportModelTest, TellsTheViewWhereTheCardsStand) {
    const QVariantMap places = model.place({{QStringLiteral("size"), QSizeF(1000, 800)},
        {QStringLiteral("lengthScale"), 1.0},
        {QStringLiteral("card"),
            QVariantMap{{QStringLiteral("width"), 320}, {QStringLiteral("leastHeight"), 36},
                {QStringLiteral("height"), 164}}},
        {QStringLiteral("viewControl"), QSizeF(384, 40)}, {QStringLiteral("notice"), QVariant()}});
    EXPECT_EQ(places[QStringLiteral("card")].toMap()[QStringLiteral("frame")].toRectF(),
        QRectF(16, 16, 320, 164));
    EXPECT_EQ(places[QStringLiteral("viewControl")].toMap()[QStringLiteral("frame")].toRectF(),
        QRectF(600, 744, 384, 40));
    EXPECT_EQ(places[QStringLiteral("viewControl")].toMap()[QStringLiteral("scale")].toDouble(), 1);
    EXPECT_EQ(places[QStringLiteral("mostCardHeight")].toDouble(), 800 - 76 - 8 - 16);
    EXPECT_FALSE(places[QStringLiteral("cardIsSqueezed")].toBool());
    EXPECT_FALSE(places.contains(QStringLiteral("notice")));
    EXPECT_EQ(model.mostCardWidth(1000, 84), 1000 - 32 - 84 - 8);
}

TEST_F(ViewportModelTest, ADropIsLoadedAndTheRestTold) {
    const auto before = app.logStore.lines().size();
    drop({"/d/a.stl", "/d/b.png", "/d/c.png", "/d/d.png", "/d/e.png"});
    EXPECT_EQ(app.parameters.loadingFileName(), "a.stl");
    ASSERT_EQ(app.logStore.lines().size(), before + 1);
    EXPECT_EQ(app.logStore.lines().back().text,
        "Ignored b.png, c.png, d.png and 1 more · only .stl files can be loaded");
    EXPECT_EQ(app.logStore.lines().back().level, LogStore::Level::warn);
    EXPECT_EQ(notice(), "Ignored 4 other files · only .stl files can be loaded");
    EXPECT_TRUE(waitUntil([this] { return !app.parameters.loadingFileName(); }));
    EXPECT_FALSE(app.parameters.mesh());
}

TEST_F(ViewportModelTest, ADropWithoutRestTellsNothing) {
    const auto before = app.logStore.lines().size();
    drop({"/d/a.stl"});
    drop({});
    EXPECT_EQ(app.logStore.lines().size(), before);
    EXPECT_EQ(notice(), "");
    EXPECT_TRUE(timers.pending().empty());
    EXPECT_TRUE(waitUntil([this] { return !app.parameters.loadingFileName(); }));
}

TEST_F(ViewportModelTest, ANoticeStandsForThreeSeconds) {
    drop({"/d/b.png"});
    EXPECT_EQ(notice(), "Ignored b.png · only .stl files can be loaded");
    EXPECT_EQ(model.noticeSymbol().toStdString(), "exclamationmark.circle");
    EXPECT_EQ(timers.pending(), std::vector<double>{3});
    pass(2.99);
    EXPECT_NE(notice(), "");
    pass(0.02);
    EXPECT_EQ(notice(), "");
}

TEST_F(ViewportModelTest, ANewNoticeBeginsItsOwnTime) {
    drop({"/d/b.png"});
    pass(2);
    drop({"/d/c.png"});
    pass(1.5);
    EXPECT_EQ(notice(), "Ignored c.png · only .stl files can be loaded");
    pass(1.6);
    EXPECT_EQ(notice(), "");
}

TEST_F(ViewportModelTest, TheSameTextAgainIsAnotherNotice) {
    drop({"/d/b.png"});
    pass(2.5);
    drop({"/d/b.png"});
    pass(2.5);
    EXPECT_NE(notice(), "");
}

TEST_F(ViewportModelTest, MenusShowAViewOnlyOfAScene) {
    app.notifications.post(Notifications::viewPresetRequested, std::string("front"));
    EXPECT_EQ(viewRequests, 0);
    placeModel();
    app.notifications.post(Notifications::viewPresetRequested, std::string("front"));
    EXPECT_EQ(viewRequests, 1);
    EXPECT_EQ(app.renderSettings.viewPreset(), ViewPreset::front);
    app.notifications.post(Notifications::viewPresetRequested, std::string("bottom"));
    app.notifications.post(Notifications::viewPresetRequested, 3);
    app.notifications.post(Notifications::viewPresetRequested);
    EXPECT_EQ(viewRequests, 1);
}

TEST_F(ViewportModelTest, MenusFit) {
    app.notifications.post(Notifications::fitToViewRequested);
    EXPECT_EQ(fits, 1);
    const QUuid first = app.renderSettings.reframeRequestID();
    app.notifications.post(Notifications::fitToViewRequested);
    EXPECT_NE(app.renderSettings.reframeRequestID(), first);
}

TEST_F(ViewportModelTest, TheViewControlsViews) {
    EXPECT_EQ(column(model.views(), "name"), (Texts{"Iso", "Front", "Side", "Top"}));
    EXPECT_EQ(
        column(model.views(), "label"), (Texts{"Iso view", "Front view", "Side view", "Top view"}));
    EXPECT_EQ(column(model.views(), "help")[3], "Top view · Ctrl+Alt+4");
    EXPECT_EQ(string(model.tools(), "views"), "Standard views");
    model.requestView(2);
    EXPECT_EQ(app.renderSettings.viewPreset(), ViewPreset::side);
    EXPECT_EQ(model.currentView(), 2);
    app.renderSettings.setViewPresetIsCurrent(false);
    EXPECT_EQ(model.currentView(), -1);
    model.requestView(-1);
    model.requestView(4);
    EXPECT_EQ(viewRequests, 1);
}

TEST_F(ViewportModelTest, TheViewControlsTools) {
    const auto tool = [this](const char* name, const char* part) {
        return string(model.tools().value(QString::fromLatin1(name)), part);
    };
    EXPECT_EQ(tool("fit", "label"), "Fit to view");
    EXPECT_EQ(tool("fit", "symbol"), "arrow.up.left.and.arrow.down.right");
    EXPECT_EQ(tool("fit", "help"), "Fit to view · Ctrl+Alt+0");
    EXPECT_EQ(tool("orient", "symbol"), "rotate.3d");
    EXPECT_EQ(tool("orient", "help"), "Orient model");
    EXPECT_EQ(tool("animate", "help"), "Turn on Streams to animate the flow");
    EXPECT_EQ(tool("saveImage", "label"), "Save image");
    EXPECT_EQ(tool("saveImage", "help"), "Save Image…");
    model.toggleAnimation();
    EXPECT_TRUE(app.renderSettings.flowAnimation());
    app.parameters.setLastRunResult(result());
    app.renderSettings.setStreamlinesEnabled(true);
    EXPECT_EQ(tool("animate", "help"), "Stop the flow animation");
    model.toggleAnimation();
    EXPECT_FALSE(app.renderSettings.flowAnimation());
    EXPECT_EQ(tool("animate", "help"), "Animate the flow along the streamlines");
    model.saveImage();
    EXPECT_EQ(savedImages, 1);
}

TEST_F(ViewportModelTest, OrientModeNeedsAModelAtRest) {
    model.toggleOrientMode();
    EXPECT_FALSE(app.renderSettings.orientMode());
    placeModel();
    model.toggleOrientMode();
    EXPECT_TRUE(model.showsOrientCard());
    Probe::setPhase(app.simulation, RunPhase::meshing());
    EXPECT_FALSE(model.showsOrientCard());
    Probe::setPhase(app.simulation, RunPhase::idle());
    app.parameters.setLoadingFileName("x.stl");
    EXPECT_FALSE(model.canOrient());
    EXPECT_FALSE(model.showsOrientCard());
    model.exitOrientMode();
    EXPECT_FALSE(app.renderSettings.orientMode());
    int changes = 0;
    QObject::connect(
        &app.renderSettings, &RenderSettings::orientModeChanged, [&changes] { ++changes; });
    model.exitOrientMode();
    EXPECT_EQ(changes, 0);
}

TEST_F(ViewportModelTest, WelcomeOnlyWhereThereIsNothingElse) {
    EXPECT_TRUE(model.showsWelcome());
    EXPECT_FALSE(model.showsViewControl());
    Probe::setPhase(app.simulation, RunPhase::solving());
    EXPECT_FALSE(model.showsWelcome());
    Probe::setPhase(app.simulation, RunPhase::cancelled());
    app.parameters.setLoadingFileName("wing.stl");
    EXPECT_FALSE(model.showsWelcome());
    EXPECT_EQ(model.loadingText().toStdString(), "Loading wing.stl…");
    app.parameters.setLoadingFileName(std::nullopt);
    EXPECT_TRUE(model.loadingText().isEmpty());
    app.parameters.setLastRunResult(result());
    EXPECT_FALSE(model.showsWelcome());
    EXPECT_TRUE(model.showsViewControl());
    EXPECT_FALSE(model.canOrient());
}

TEST_F(ViewportModelTest, TellsOfManyChangesOnceATurn) {
    turn();
    int changes = 0;
    QObject::connect(&model, &ViewportModel::changed, [&changes] { ++changes; });
    for (int i = 0; i < 20; ++i) {
        app.parameters.setRotationX(i);
        app.renderSettings.setOrientMode(i % 2 == 0);
    }
    EXPECT_EQ(changes, 0);
    turn();
    EXPECT_EQ(changes, 1);
}

TEST_F(ViewportModelTest, TheLegendFollowsTheLayers) {
    app.parameters.setLastRunResult(result());
    turn();
    EXPECT_FALSE(model.legend()->isShown());
    app.renderSettings.setStreamlinesEnabled(true);
    turn();
    EXPECT_EQ(model.legend()->label().toStdString(), "|V|");
    app.renderSettings.setColormapEnabled(true);
    turn();
    EXPECT_EQ(model.legend()->label().toStdString(), "Cp");
    app.parameters.setLastRunResult(std::nullopt);
    turn();
    EXPECT_FALSE(model.legend()->isShown());
}

} // namespace
} // namespace ostrella::test
