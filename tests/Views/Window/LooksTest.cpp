#include "WholeWindow.h"

#include <QColor>
#include <QFont>
#include <QVariant>

#include <cmath>

namespace ostrella::test {
namespace {

/// Colours, measures and spoken texts of what tells of a run: status bar, footer and cards.
class Looks : public WholeWindow {
protected:
    static std::vector<QQuickItem*> within(QQuickItem* parent, const char* type) {
        std::vector<QQuickItem*> found;
        for (QQuickItem* child : parent->childItems()) {
            if (!child->isVisible()) {
                continue;
            }
            if (isA(child, type)) {
                found.push_back(child);
            }
            for (QQuickItem* item : within(child, type)) {
                found.push_back(item);
            }
        }
        return found;
    }
    QQuickItem* shown(const char* type) const {
        const auto found = within(window->contentItem(), type);
        if (found.empty()) {
            throw std::runtime_error(std::string("there is no ") + type);
        }
        return found.front();
    }
    static QQuickItem* text(QQuickItem* pane, const QString& words) {
        for (QQuickItem* item : within(pane, "QQuickText")) {
            if (item->property("text").toString() == words) {
                return item;
            }
        }
        throw std::runtime_error("nobody says " + words.toStdString());
    }
    static QColor color(const QQuickItem* item) { return item->property("color").value<QColor>(); }
    static QColor dotOf(QQuickItem* pane) { return color(within(pane, "StatusDot").at(0)); }
    static Qt::TextElideMode elision(const QQuickItem* text) {
        return static_cast<Qt::TextElideMode>(text->property("elide").toInt());
    }
    static const Theme& theme() { return Theme::shared(); }

    void setPhase(const RunPhase& phase) {
        Probe::setPhase(app.simulation, phase);
        settle();
    }
    QQuickItem* statusBar() const { return shown("StatusBar"); }
    QQuickItem* footer() const { return shown("SidebarRunFooter"); }
};

TEST_F(Looks, TheStatusBarsDotHasTheColourOfItsTone) {
    EXPECT_EQ(statusBar()->height(), 26);
    EXPECT_EQ(dotOf(statusBar()), theme().textTertiary());
    placeModel();
    settle();
    EXPECT_EQ(dotOf(statusBar()), theme().statusSuccess());
    setPhase(RunPhase::solving());
    EXPECT_EQ(dotOf(statusBar()), theme().accentPrimary());
    setPhase(RunPhase::finished(false));
    EXPECT_EQ(dotOf(statusBar()), theme().statusWarning());
    setPhase(RunPhase::failed("mesh", "It broke."));
    EXPECT_EQ(dotOf(statusBar()), theme().statusError());
}

TEST_F(Looks, TheStatusBarIsReadAsOneAndItsFiguresApart) {
    placeModel();
    showResult();
    setPhase(RunPhase::finished(true));
    const QString line = q("Converged · 50\u00A0000 iter · 123.4 s");
    EXPECT_TRUE(accessible(line, QAccessible::StatusBar));
    EXPECT_FALSE(accessible(line, QAccessible::StaticText));
    QQuickItem* words = text(statusBar(), line);
    EXPECT_EQ(elision(words), Qt::ElideRight);
    for (const char* counter : {"1\u00A0234\u00A0567 cells", "CL 0.4321", "CD 0.0123"}) {
        QQuickItem* figure = text(statusBar(), q(counter));
        EXPECT_EQ(figure->width(), figure->implicitWidth()) << counter << " is never cut";
        EXPECT_GT(frame(figure).left(), frame(words).right());
    }
    EXPECT_EQ(text(statusBar(), q("CL/CD 35.1"))->property("font").value<QFont>().family(),
        theme().mono().family());
    ASSERT_TRUE(waitUntil([this] { return !model->statusBar()->machine().isEmpty(); }));
    settle();
    EXPECT_EQ(color(text(statusBar(), model->statusBar()->machine())), theme().textTertiary());
}

TEST_F(Looks, TheFootersDotHasTheColourOfItsTone) {
    placeModel();
    showResult();
    setPhase(RunPhase::finished(true));
    EXPECT_EQ(dotOf(footer()), theme().statusSuccess());
    setPhase(RunPhase::finished(false));
    EXPECT_EQ(dotOf(footer()), theme().statusWarning());
    setPhase(RunPhase::failed("mesh", "It broke."));
    EXPECT_EQ(dotOf(footer()), theme().statusError());
    setPhase(RunPhase::cancelled());
    EXPECT_EQ(dotOf(footer()), theme().textTertiary());
}

TEST_F(Looks, TheProgressBarIsReadWithItsShareAndItsTime) {
    Probe::setMaxIterations(app.simulation, 200);
    Probe::setStartedAt(app.simulation, Clock::system().now());
    setPhase(RunPhase::solving());
    setLatestIteration(83);
    settle();
    QQuickItem* bar = shown("RunProgressBar");
    EXPECT_EQ(bar->height(), 44);
    EXPECT_EQ(bar->property("radius").toReal(), 10);
    QAccessibleInterface* read = accessible(q("Iter 84 / 200"), QAccessible::ProgressBar);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->text(QAccessible::Description).indexOf(q("42 percent, ")), 0);
    EXPECT_TRUE(read->text(QAccessible::Description).endsWith(q(" elapsed")));
    EXPECT_EQ(read->childCount(), 0);
    const auto cancel = within(footer(), "BrandButton");
    ASSERT_EQ(cancel.size(), 1U);
    EXPECT_EQ(cancel[0]->property("text").toString(), q("Cancel simulation"));
    EXPECT_EQ(cancel[0]->property("help").toString(), q("Stop meshing or the solver"));
    EXPECT_EQ(cancel[0]->width(), bar->width());
}

TEST_F(Looks, TheFooterTellsWhatIsMissingAndWhatIsLoaded) {
    QQuickItem* run = shown("HeroButton");
    EXPECT_FALSE(run->isEnabled());
    EXPECT_EQ(run->property("help").toString(), q("Run the simulation (Ctrl+R)"));
    EXPECT_EQ(run->property("symbol").toString(), q("play.fill"));
    EXPECT_TRUE(text(footer(), q("Load an STL to enable Run.")));
    EXPECT_TRUE(within(footer(), "Spinner").empty());
    placeModel();
    settle();
    EXPECT_TRUE(run->isEnabled());
    const std::string name = std::string(120, 'w') + ".stl";
    app.parameters.setLoadingFileName(name);
    settle();
    EXPECT_FALSE(run->isEnabled());
    EXPECT_EQ(within(footer(), "Spinner").size(), 1U);
    QQuickItem* hint = text(footer(), q(("Loading " + name + "…").c_str()));
    EXPECT_EQ(elision(hint), Qt::ElideMiddle) << "so that the name's end is to be read";
    EXPECT_TRUE(hint->property("truncated").toBool());
}

TEST_F(Looks, TheSolversCardHasALiveLine) {
    setPhase(RunPhase::meshing());
    QQuickItem* card = shown("InfoCard");
    EXPECT_EQ(card->width(), 240);
    EXPECT_EQ(dotOf(card), theme().accentPrimary());
    EXPECT_EQ(within(card, "StatusDot").at(0)->width(), 7);
    QQuickItem* line = text(card, q("Meshing…"));
    EXPECT_EQ(color(line), theme().textPrimary());
    EXPECT_LT(frame(line).top(), frame(text(card, q("rms[P]"))).top());
}

TEST_F(Looks, RowsOfACardHaveTheColourOfTheirTone) {
    placeModel();
    app.parameters.setOpenEdgeCount(0);
    settle();
    QQuickItem* card = shown("InfoCard");
    EXPECT_EQ(card->width(), 320);
    EXPECT_EQ(color(text(card, q("✓"))), theme().statusSuccess());
    EXPECT_EQ(color(text(card, q("Facets"))), theme().textTertiary());
    EXPECT_EQ(color(text(card, q("1"))), theme().textPrimary());
    EXPECT_EQ(elision(text(card, q("wing.stl"))), Qt::ElideMiddle);
    app.parameters.setOpenEdgeCount(3);
    settle();
    EXPECT_EQ(color(text(card, q("3 open edges"))), theme().statusWarning());
}

TEST_F(Looks, ACollapsedCardIsItsHeadWithItsFigures) {
    placeModel();
    showResult();
    settle();
    QQuickItem* card = shown("InfoCard");
    EXPECT_EQ(card->width(), 280);
    click(q("Result"));
    EXPECT_EQ(card->height(), theme().cardHeadHeight());
    QQuickItem* summary = text(card, q("CL 0.4321 · CD 0.0123"));
    EXPECT_EQ(color(summary), theme().textSecondary());
    EXPECT_EQ(
        within(card, "ostrella::Symbol").at(0)->property("name").toString(), q("chevron.down"));
    app.parameters.setLastRunResult(std::nullopt);
    settle();
    EXPECT_TRUE(text(card, q("File wing.stl"))) << "all cards collapse as one";
    EXPECT_EQ(card->height(), theme().cardHeadHeight());
}

TEST_F(Looks, TheErrorCardIsReadWholeAndLeadsToTheLog) {
    setPhase(RunPhase::failed("mesh", "gmsh found no closed surface."));
    QQuickItem* card = shown("ErrorCard");
    EXPECT_EQ(color(text(card, q("MESH FAILED"))), theme().statusError());
    QAccessibleInterface* read = accessible(q("MESH FAILED"), QAccessible::AlertMessage);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->text(QAccessible::Description), q("gmsh found no closed surface."));
    const auto buttons = within(card, "BrandButton");
    ASSERT_EQ(buttons.size(), 1U);
    EXPECT_EQ(buttons[0]->property("help").toString(), q("Open the log filtered to errors"));
}

TEST_F(Looks, TheLegendRunsFromItsGreatestValueToItsLeast) {
    showResult();
    settle();
    QQuickItem* legend = shown("CpLegendView");
    EXPECT_EQ(color(text(legend, q("Cp"))), theme().textPrimary());
    double above = 0;
    for (const char* tick : {"+1.00", "+0.38", "-0.25", "-0.88", "-1.50"}) {
        const double middle = frame(text(legend, q(tick))).center().y();
        EXPECT_GT(middle, above) << tick;
        above = middle;
    }
    QQuickItem* bar = nullptr;
    for (QQuickItem* box : within(legend, "QQuickRectangle")) {
        if (box->width() == 14) {
            bar = box;
        }
    }
    ASSERT_TRUE(bar);
    EXPECT_EQ(bar->height(), model->viewport()->legend()->barHeight());
    EXPECT_EQ(bar->property("radius").toReal(), 4);
    // The middle of each half is drawn as the scale has it there.
    const QImage picture = window->grabWindow();
    const double ratio = picture.devicePixelRatio();
    const auto drawn = [&](double share) {
        const QRectF place = frame(bar);
        return picture.pixelColor(
            (QPointF(place.center().x(), place.top() + share * place.height()) * ratio).toPoint());
    };
    // 0.25 is a third of the way from the second stop to the third, 0.65 the fifth stop itself.
    EXPECT_NEAR(drawn(0.25).redF(), 0.906, 0.03);
    EXPECT_NEAR(drawn(0.25).greenF(), 0.372, 0.03);
    EXPECT_NEAR(drawn(0.65).greenF(), 0.882, 0.03);
    EXPECT_NEAR(drawn(0.65).blueF(), 0.388, 0.03);
    app.renderSettings.setColormapEnabled(false);
    settle();
    EXPECT_TRUE(text(legend, q("|V|")));
    EXPECT_EQ(color(text(legend, q("m/s"))), theme().textTertiary());
    QAccessibleInterface* read = accessible(q("|V| legend"), QAccessible::Graphic);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->text(QAccessible::Description), q("[10.00, 30.00] m/s"));
}

TEST_F(Looks, ANoticeHasAMarkAndIsReadOut) {
    model->viewport()->handleDrop(ViewportFormat::DropOutcome({"/d/picture.png"}));
    settle();
    QQuickItem* notice = shown("NoticeCard");
    QQuickItem* mark = within(notice, "ostrella::Symbol").at(0);
    EXPECT_EQ(mark->property("name").toString(), q("exclamationmark.circle"));
    EXPECT_EQ(color(mark), theme().statusWarning());
    EXPECT_TRUE(accessible(
        q("Ignored picture.png · only .stl files can be loaded"), QAccessible::AlertMessage));
}

TEST_F(Looks, TheCardOfALoadCutsALongNameInTheMiddle) {
    const std::string name = std::string(120, 'w') + ".stl";
    app.parameters.setLoadingFileName(name);
    settle();
    QQuickItem* card = shown("LoadingCard");
    QQuickItem* words = text(card, q(("Loading " + name + "…").c_str()));
    EXPECT_EQ(elision(words), Qt::ElideMiddle);
    EXPECT_TRUE(words->property("truncated").toBool());
    EXPECT_EQ(within(card, "Spinner").size(), 1U);
}

} // namespace
} // namespace ostrella::test
