#include "ui/pictures/PictureStates.h"

#include "Views/Format/ViewportDrop.h"

#include <QQuickItem>
#include <QUrl>

#include <cmath>
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

const Run& aerofoil() {
    static const Run run{
        "naca_inc_sa_a5", {StopReason::iterationCap(2500), 331.4}, 229'376, 2500, 2};
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

void finishDemo(PictureStage& stage) {
    stage.app.parameters.setAlpha(5);
    stage.pretendRun(aerofoil());
    stage.feedHistory(aerofoil(), 2500, 0.13);
    stage.finishRun(aerofoil());
}

/// The layers of the result that are on.
void showLayers(PictureStage& stage, bool cp, bool streams, bool vortex) {
    stage.app.renderSettings.setColormapEnabled(cp);
    stage.app.renderSettings.setStreamlinesEnabled(streams);
    stage.app.renderSettings.setVortexEnabled(vortex);
    stage.settle();
}

void filterLog(PictureStage& stage) {
    solve(stage);
    stage.feedSolverLines(wing(), 118);
    stage.model().panel()->chooseTab(static_cast<int>(BottomPanelModel::Tab::log));
    stage.model().panel()->setFilter(LogFilter::su2);
    stage.settle();
}

void warnOfTheWall(PictureStage& stage) {
    finishSphere(stage);
    stage.model().panel()->setFilter(LogFilter::warn);
    stage.settle();
}

void showWires(PictureStage& stage) {
    stage.load("simple_wing");
    stage.app.renderSettings.setWireframe(true);
    stage.settle();
}

void showAllCards(PictureStage& stage) {
    finishSphere(stage);
    stage.app.renderSettings.setOrientMode(true);
    stage.model().viewport()->handleDrop(
        ViewportFormat::DropOutcome({"/somewhere/notes.txt", "/somewhere/plan.pdf"}));
    stage.settle();
}

/// A body of a name and a number of facets that no column was made for.
void showLongName(PictureStage& stage) {
    stage.load("simple_wing",
        "Wing of the second study, revision 14, with the new tip and without the fairing, "
        "as measured on Tuesday.stl");
    const TriangleMesh mesh = *stage.app.parameters.mesh();
    // Facets of no area, which show in the count alone.
    std::vector<Vec3> points(mesh.positions().begin(), mesh.positions().end());
    std::vector<Vec3> normals(mesh.normals().begin(), mesh.normals().end());
    points.resize(3 * 1'234'567, points.front());
    normals.resize(points.size(), normals.front());
    stage.app.parameters.setMesh(TriangleMesh(std::move(points), std::move(normals)));
    stage.app.parameters.setOpenEdgeCount(0);
    stage.settle();
}

/// Charts of a run far longer than any plot is wide: eight series that settle and tremble.
void chartLongRun(PictureStage& stage) {
    stage.load("simple_wing");
    stage.pretendRun(wing());
    std::vector<HistoryPoint> residuals;
    const std::vector<std::string> labels{"P", "U", "V", "W", "nu", "k", "omega", "T"};
    for (std::int64_t i = 0; i < 50'000; ++i) {
        for (std::size_t s = 0; s < labels.size(); ++s) {
            const double t = static_cast<double>(i);
            const double offset = 0.7 * static_cast<double>(s);
            residuals.push_back({labels[s], i,
                -1 - offset - 4 * (1 - std::exp(-t / 9000)) + 0.3 * std::sin(t * (0.7 + offset))});
        }
    }
    stage.app.historyStore.setResiduals(residuals);
    stage.app.historyStore.setResidualLabels(labels);
    std::vector<HistoryPoint> coefficients;
    for (std::int64_t i = 0; i < 50'000; ++i) {
        const double t = static_cast<double>(i);
        coefficients.push_back({"CL", i, 0.45 - 0.2 * std::exp(-t / 4000) + 0.01 * std::sin(t)});
        coefficients.push_back({"CD", i, 0.03 + 0.1 * std::exp(-t / 3000)});
    }
    stage.app.historyStore.setCoefficients(coefficients);
    stage.app.historyStore.setCoefficientLabels({"CL", "CD"});
    stage.app.historyStore.setHasData(true);
    stage.settle();
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
        {"wireframe", showWires},
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
                openMenu(stage, QStringLiteral("&View"));
            }},
        {"all-cards", showAllCards, QSize(1200, 800)},
        {"cp",
            [](PictureStage& stage) {
                finishWing(stage);
                showLayers(stage, true, false, false);
            }},
        {"streams",
            [](PictureStage& stage) {
                finishWing(stage);
                showLayers(stage, false, true, false);
            }},
        {"demo", finishDemo},
        {"log", filterLog},
        {"wall", warnOfTheWall},
        {"small", finishSphere, QSize(1200, 800)},
        {"long-name", showLongName},
        {"long-run", chartLongRun},
        {"large-text", solve, {}, 1.5},
        {"large-text-small", finishSphere, QSize(1200, 800), 1.5},
        {"large-text-orient", orient, {}, 1.5},
        {"large-text-cards", showAllCards, QSize(1200, 800), 1.5},
        {"settings-solver",
            [](PictureStage& stage) { stage.showSettings(QStringLiteral("solver")); }},
        {"settings-streamlines",
            [](PictureStage& stage) { stage.showSettings(QStringLiteral("streamlines")); }},
        {"about", [](PictureStage& stage) { stage.showAbout(); }},
        {"acknowledgements", [](PictureStage& stage) { stage.showAcknowledgements(); }},
        {"large-text-settings",
            [](PictureStage& stage) { stage.showSettings(QStringLiteral("solver")); }, {}, 1.5},
        {"large-text-streamlines",
            [](PictureStage& stage) { stage.showSettings(QStringLiteral("streamlines")); }, {},
            1.5},
        {"large-text-about", [](PictureStage& stage) { stage.showAbout(); }, {}, 1.5},
        {"large-text-acknowledgements", [](PictureStage& stage) { stage.showAcknowledgements(); },
            {}, 1.5},
        {"large-screen", showAllCards, QSize(2560, 1440)},
        {"focus",
            [](PictureStage& stage) {
                stage.load("rounded_box");
                for (int i = 0; i < 4; ++i)
                    stage.user().type(Qt::Key_Tab);
                stage.settle();
            }},
    };
    return states;
}

} // namespace ostrella::test
