// The main road by hand: from the welcome card to a result, its files and its picture, and back.

#include "Views/Viewport/ViewportItem.h"
#include "ui/support/AppUnderTest.h"

#include <QImage>
#include <QUrl>

#include <cmath>
#include <numbers>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class MainRoad : public AppUnderTest {
protected:
    MetalRenderer& renderer() { return window->viewport().coordinator()->renderer(); }

    void loadSphere() {
        click("Load sample Sphere");
        waitForModel("sphere.stl");
    }
    /// The middle of what can be seen of the model, once it stands still.
    QPointF onModel() {
        QPointF place;
        do {
            place = middleOfModel();
            drawFrame();
            user->settle();
        } while (middleOfModel() != place);
        return place;
    }
    QPointF middleOfModel() {
        const QSizeF size = window->viewport().size();
        QPointF sum;
        int count = 0;
        for (double y = 0; y < size.height(); y += 10) {
            for (double x = 0; x < size.width(); x += 10) {
                if (renderer().modelHit(renderersPoint({x, y}))) {
                    sum += QPointF(x, y);
                    ++count;
                }
            }
        }
        if (count == 0) {
            throw std::runtime_error("the model is not in view");
        }
        return inViewport(sum / count);
    }
    Vec2 renderersPoint(QPointF p) const {
        return {static_cast<float>(p.x()), static_cast<float>(window->viewport().height() - p.y())};
    }
    /// A point of the viewport on the ring of the z axis, in the upper half, where no card lies.
    std::optional<QPointF> onZRing() {
        const QSizeF size = window->viewport().size();
        for (double y = 4; y < size.height() / 2; y += 3) {
            for (double x = size.width() * 0.4; x < size.width() * 0.6; x += 6) {
                if (renderer().ringHit(renderersPoint({x, y})) == OrientationAxis::z) {
                    return QPointF(x, y);
                }
            }
        }
        return std::nullopt;
    }
    /// Takes the ring of the z axis, goes around its centre by so much, counter-clockwise, and lets
    /// go.
    void dragZRing(double degrees, Qt::KeyboardModifiers modifiers) {
        std::optional<QPointF> start;
        ASSERT_TRUE(waitFor([&] {
            start = onZRing();
            drawFrame();
            user->settle();
            return start && onZRing() == start;
        })) << "the ring stands still";
        const auto drag = renderer().beginRingDrag(OrientationAxis::z, renderersPoint(*start));
        ASSERT_TRUE(drag);
        const auto* around = std::get_if<OrientationRings::Drag::Around>(&drag->mode);
        ASSERT_TRUE(around);
        const QPointF centre(around->centre.x, window->viewport().height() - around->centre.y);
        const QPointF arm = *start - centre;
        const double angle = -degrees * std::numbers::pi / 180; // y points down here
        const QPointF end(arm.x() * std::cos(angle) - arm.y() * std::sin(angle),
            arm.x() * std::sin(angle) + arm.y() * std::cos(angle));
        user->drag(inViewport(*start), inViewport(centre + end), {.modifiers = modifiers});
    }
    /// By a click on the model, a drag with shift held, which snaps, and the button.
    void turnByThirty() {
        user->click(onModel());
        ASSERT_TRUE(waitFor([this] { return find("Face the flow with +X") != nullptr; }))
            << "the card for orienting is up";
        ASSERT_NO_FATAL_FAILURE(dragZRing(33, Qt::ShiftModifier));
        EXPECT_NEAR(app->parameters.rotationZ(), 30, 1e-6);
        EXPECT_TRUE(waitFor([this] { return shows("X 0° · Y 0° · Z 30°"); }));
        click("Done");
        EXPECT_FALSE(app->renderSettings.orientMode());
        EXPECT_TRUE(waitFor([this] { return !find("Face the flow with +X"); }));
    }
    /// Answers the toolkit's own panel for files as its user does: by the path, typed in place of
    /// the folder's name, and the button.
    void goToInPanel(const fs::path& folder) {
        user->settle();
        user->type(Qt::Key_L, Qt::ControlModifier);
        user->type(Qt::Key_A, Qt::ControlModifier);
        type(folder.string());
        user->type(Qt::Key_Return);
    }
    std::string stateText() { return model().footer()->stateText().toStdString(); }
    void cancel() {
        click("Cancel simulation");
        ASSERT_TRUE(waitForPhase(RunPhase::Kind::cancelled));
        EXPECT_THAT(log(LogStore::Level::warn).back(),
            testing::MatchesRegex("Cancelled by user after [0-9]+ s"));
        EXPECT_TRUE(waitFor([this] { return stateText() == "Cancelled"; }));
        EXPECT_TRUE(waitFor([this] { return shows("Cancelled"); }));
        EXPECT_TRUE(waitFor([this] { return row("Facets").has_value(); }))
            << "the card of the model is back";
    }
    void runToTheResult();
    void hideAndShowLayers();
    void exportFiles();
    void saveImage();
    void turnResultAway();
    void cancelWhileMeshing();
    void cancelWhileSolving();

    TemporaryDirectory files;
};

void MainRoad::runToTheResult() {
    const auto linesBefore = app->logStore.count();
    click("Run Simulation");
    EXPECT_EQ(phase(), RunPhase::Kind::meshing);
    EXPECT_TRUE(waitFor([this] { return find("Cancel simulation") && shows("Meshing…"); }));
    EXPECT_FALSE(find("Run Simulation", QAccessible::Button));
    EXPECT_TRUE(model().panel()->showsLog());
    EXPECT_FALSE(item("Velocity").isEnabled()) << "nothing is edited during a run";

    EXPECT_TRUE(waitFor([this] { return find("Residuals") != nullptr; }))
        << "the charts come forward by themselves";
    EXPECT_GT(app->logStore.count(), linesBefore + 10) << "and the log has grown before";
    EXPECT_TRUE(waitFor([this] { return showsLike("Iter [0-9]+ / 60"); }));
    EXPECT_TRUE(waitFor([this] { return showsLike("[0-9]+ s elapsed · ~[0-9]+ s remaining"); }));
    EXPECT_TRUE(waitFor([this] { return showsLike("Solving · iter [0-9]+ / 60"); }))
        << "the status bar";
    EXPECT_TRUE(waitFor([this] { return showsLike("[0-9]+ iter · solving"); }))
        << "the panel's header";

    ASSERT_TRUE(waitForPhase(RunPhase::Kind::finished)) << testing::PrintToString(log());
    user->settle();
    EXPECT_TRUE(waitFor([this] { return find("Run Simulation", QAccessible::Button) != nullptr; }));
    EXPECT_TRUE(
        waitFor([this] { return showsLike("Stopped at iteration cap · 60 iter · [0-9.]+ s"); }));
    EXPECT_THAT(log(LogStore::Level::warn).back(),
        testing::StartsWith("Iteration cap reached · 60 / 60 iter · not converged · CL "));
    EXPECT_TRUE(waitFor([this] { return cardKind() == "result" && row("Streams").has_value(); }));
    EXPECT_EQ(row("File"), "sphere.stl");
    for (const char* label : {"Cells", "Solve", "CL", "CD", "Cp", "Streams"}) {
        EXPECT_TRUE(row(label)) << label;
    }
    EXPECT_EQ(row("Streams"), "100");
}

void MainRoad::hideAndShowLayers() {
    for (const char* layer : {"Cp", "Streams", "Vortex"}) {
        EXPECT_TRUE(waitFor([&] { return isChecked(layer); })) << layer;
    }
    LegendModel& legend = *model().viewport()->legend();
    EXPECT_TRUE(find(legend.name().toStdString(), QAccessible::Graphic));
    click("Vortex");
    EXPECT_FALSE(app->renderSettings.vortexEnabled());
    click("Streams");
    EXPECT_FALSE(app->renderSettings.streamlinesEnabled());
    EXPECT_TRUE(waitFor([this] { return !isEnabled("Animate flow"); }));
    EXPECT_TRUE(legend.isShown()) << "of the surface";
    click("Cp");
    EXPECT_FALSE(app->renderSettings.colormapEnabled());
    EXPECT_TRUE(waitFor([&] { return !legend.isShown(); }));
    for (const char* layer : {"Cp", "Streams", "Vortex"}) {
        click(layer);
        EXPECT_TRUE(waitFor([&] { return isChecked(layer); })) << layer;
    }
    EXPECT_TRUE(waitFor([&] { return legend.isShown(); }));
}

void MainRoad::exportFiles() {
    const fs::path folder = files.path() / "results";
    fs::create_directory(folder);
    click("Export Results");
    goToInPanel(files.path());
    click("results");
    click("Export");
    ASSERT_TRUE(waitFor([&] {
        return logs("Exported 4 files to " + folder.string(), LogStore::Level::ok);
    })) << testing::PrintToString(log(LogStore::Level::error));
    for (const char* name : {"flow.vtk", "history.csv", "run.cfg", "surface_flow.vtk"}) {
        EXPECT_GT(fs::file_size(folder / name), 0U) << name;
    }
}

void MainRoad::saveImage() {
    click("Save image");
    ASSERT_TRUE(waitFor([this] { return model().files()->kind() == FilePanels::Kind::Picture; }));
    const std::string name = model().files()->suggestedName().toStdString();
    EXPECT_THAT(name,
        testing::MatchesRegex("sphere · [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}\\.[0-9]{2}\\.png"));
    goToInPanel(files.path() / "results");
    click("Save");
    ASSERT_TRUE(waitFor([&] { return logs("Saved image " + name, LogStore::Level::ok); }))
        << testing::PrintToString(log(LogStore::Level::error));
    const QImage picture(QString::fromStdString((files.path() / "results" / name).string()));
    EXPECT_EQ(picture.size(), window->viewport().size().toSize());
}

void MainRoad::turnResultAway() {
    user->click(onModel());
    EXPECT_TRUE(waitFor([this] { return shows("Rotating clears the current result."); }));
    ASSERT_NO_FATAL_FAILURE(dragZRing(20, Qt::NoModifier));
    EXPECT_NEAR(app->parameters.rotationZ(), 50, 1);
    EXPECT_FALSE(app->parameters.lastRunResult());
    EXPECT_TRUE(waitFor([this] { return !row("Streams"); }));
    EXPECT_TRUE(waitFor([this] { return !model().viewport()->legend()->isShown(); }));
    EXPECT_TRUE(waitFor([this] { return !isEnabled("Export Results") && !isEnabled("Cp"); }));
    EXPECT_TRUE(showsLike(".*60 iter.*")) << "the figures of the last run stay";
    user->type(Qt::Key_Return);
    EXPECT_FALSE(app->renderSettings.orientMode());
}

void MainRoad::cancelWhileMeshing() {
    click("Run Simulation");
    ASSERT_EQ(phase(), RunPhase::Kind::meshing);
    EXPECT_TRUE(waitFor([this] { return shows("Meshing…") && cardKind() == "solver"; }));
    cancel();
}

void MainRoad::cancelWhileSolving() {
    app->appSettings.setDefaultMaxIterations(20000);
    click("Run Simulation");
    ASSERT_TRUE(waitFor([this] { return showsLike("Iter [0-9]+ / 20000"); }));
    ASSERT_EQ(phase(), RunPhase::Kind::solving);
    EXPECT_TRUE(waitFor([this] { return row("CD").has_value(); })) << "the solver's card";
    cancel();
}

TEST_F(MainRoad, fromTheWelcomeToAResultItsFilesAndBack) {
    EXPECT_TRUE(waitFor([this] { return shows("Try a sample"); }));
    EXPECT_TRUE(waitFor([this] { return shows("Load an STL to enable Run."); }));
    EXPECT_FALSE(isEnabled("Run Simulation"));
    loadSphere();
    EXPECT_TRUE(waitFor([this] { return !shows("Try a sample"); }));
    EXPECT_TRUE(waitFor([this] { return row("File") == "sphere.stl"; }));
    EXPECT_TRUE(waitFor([this] { return shows("Ready · 5\u00A0120 facets"); }));
    ASSERT_NO_FATAL_FAILURE(turnByThirty());
    fill("Velocity", "42.5");
    EXPECT_EQ(app->parameters.velocity(), 42.5);
    fill("Angle of attack", "-3");
    EXPECT_EQ(app->parameters.alpha(), -3);

    ASSERT_NO_FATAL_FAILURE(runToTheResult());
    EXPECT_THAT(log(LogStore::Level::info),
        testing::Contains("V=42.50 m/s, α=-3.00°, β=0.00°, ρ=1.225 kg/m³, ITER=60"));
    ASSERT_NO_FATAL_FAILURE(hideAndShowLayers());
    ASSERT_NO_FATAL_FAILURE(exportFiles());
    ASSERT_NO_FATAL_FAILURE(saveImage());
    ASSERT_NO_FATAL_FAILURE(turnResultAway());
    ASSERT_NO_FATAL_FAILURE(cancelWhileMeshing());
    ASSERT_NO_FATAL_FAILURE(cancelWhileSolving());
}

} // namespace
} // namespace ostrella::test
