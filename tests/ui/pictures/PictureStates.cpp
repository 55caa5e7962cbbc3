#include "ui/pictures/PictureStates.h"

#include "Views/Format/ViewportDrop.h"

#include <QQuickItem>
#include <QUrl>

#include <stdexcept>

namespace ostrella::test {

namespace {

using Run = PictureStage::RecordedRun;

const Run& sphere() {
    static const Run run{"sphere_inc_sa", {StopReason::converged(), 23.7}, 45'259, 400};
    return run;
}

const Run& wing() {
    static const Run run{"wing_inc_sa_a5", {StopReason::iterationCap(300), 143.8}, 315'292, 300};
    return run;
}

QQuickItem& require(QQuickItem* item) {
    if (item == nullptr)
        throw std::runtime_error("the window lacks what is to be pointed at");
    return *item;
}

void hoverTile(PictureStage& stage) {
    stage.user().moveTo(
        PictureStage::centre(require(stage.item("SampleTile", QStringLiteral("Rounded Box")))));
}

void openMenu(PictureStage& stage, const QString& title) {
    stage.user().click(PictureStage::centre(require(stage.item("QQuickMenuBarItem", title))));
    stage.settle();
}

void orient(PictureStage& stage) {
    stage.load("rounded_box");
    stage.model().panel()->setVisible(false);
    stage.app.parameters.setRotationY(-24);
    stage.app.renderSettings.setOrientMode(true);
    stage.settle();
    if (!stage.hoverRing(OrientationAxis::y))
        throw std::runtime_error("no ring lies under the pointer");
}

void solve(PictureStage& stage) {
    stage.load("simple_wing");
    stage.app.parameters.setAlpha(5);
    stage.pretendRun(wing());
    stage.feedHistory(wing(), 118, 0.48);
}

void finishSphere(PictureStage& stage) {
    stage.load("sphere");
    stage.pretendRun(sphere());
    stage.feedHistory(sphere(), 401, 0.06);
    stage.finishRun(sphere());
    stage.app.renderSettings.setVortexEnabled(false);
    stage.model().panel()->chooseTab(static_cast<int>(BottomPanelModel::Tab::log));
    stage.settle();
}

void finishWing(PictureStage& stage) {
    stage.load("simple_wing");
    stage.app.parameters.setAlpha(5);
    stage.pretendRun(wing());
    stage.feedHistory(wing(), 301, 0.48);
    stage.finishRun(wing());
}

void fail(PictureStage& stage, const std::string& fileName, RunStage at, const std::string& text,
    std::int64_t openEdges) {
    stage.load("rounded_box", fileName);
    stage.app.parameters.setOpenEdgeCount(openEdges);
    stage.pretendRun(wing());
    stage.failRun(std::make_exception_ptr(
        RunStageError(at, std::make_exception_ptr(std::runtime_error(text)))));
    stage.app.notifications.post(Notifications::showLogRequested, LogStore::Level::error);
    stage.settle();
}

} // namespace

const std::vector<PictureState>& pictureStates() {
    static const std::vector<PictureState> states{
        {"welcome", [](PictureStage&) {}},
        {"welcome-tile", hoverTile},
        {"welcome-help",
            [](PictureStage& stage) {
                hoverTile(stage);
                stage.waitForHelp();
            }},
        {"geometry", [](PictureStage& stage) { stage.load("rounded_box"); }},
        {"orient", orient},
        {"loading",
            [](PictureStage& stage) {
                stage.app.parameters.setLoadingFileName("simple_wing.stl");
                stage.settle();
            }},
        {"meshing",
            [](PictureStage& stage) {
                stage.load("simple_wing");
                stage.pretendRun(wing());
            }},
        {"solving", solve},
        {"result", finishSphere},
        {"vortex",
            [](PictureStage& stage) {
                finishWing(stage);
                stage.model().viewport()->card()->setCollapsed(true);
                stage.settle();
            }},
        {"capped", finishWing},
        {"error",
            [](PictureStage& stage) {
                fail(stage, "rounded_box_open.stl", RunStage::mesh,
                    "gmsh produced a mesh with no volume cells", 212);
            }},
        {"error-long",
            [](PictureStage& stage) {
                fail(stage, "a body with a file name that is far longer than any column here.stl",
                    RunStage::solver,
                    "The flow solver ended before its time with a message that goes on and on, as "
                    "messages of programs do that were never meant to be read by anybody but "
                    "their authors, and that end only after two hundred characters.",
                    0);
            }},
        {"drop",
            [](PictureStage& stage) {
                const auto file =
                    AppBundle(OSTRELLA_STAGE_DIR).resource("sphere", "stl", "samples").value();
                stage.model().viewport()->drop()->dropEntered(
                    {QUrl::fromLocalFile(QString::fromStdString(file.string()))});
                stage.settle();
            }},
        {"drop-refused",
            [](PictureStage& stage) {
                stage.load("rounded_box");
                stage.model().viewport()->drop()->dropEntered(
                    {QUrl::fromLocalFile(QString::fromStdString("/somewhere/notes.txt"))});
                stage.settle();
            }},
        {"notice",
            [](PictureStage& stage) {
                stage.load("rounded_box");
                stage.model().viewport()->handleDrop(
                    ViewportFormat::DropOutcome({"/somewhere/notes.txt", "/somewhere/plan.pdf"}));
                stage.settle();
            }},
        {"menu",
            [](PictureStage& stage) {
                stage.load("rounded_box");
                openMenu(stage, QStringLiteral("View"));
            }},
        {"all-cards",
            [](PictureStage& stage) {
                finishSphere(stage);
                stage.app.renderSettings.setOrientMode(true);
                stage.settle();
            }},
    };
    return states;
}

} // namespace ostrella::test
