#include "WholeWindow.h"

#include "Models/HistoryStore.h"

#include <algorithm>
#include <stdexcept>

namespace ostrella::test {
namespace {

class Panes : public WholeWindow {
protected:
    QQuickItem* shown(const char* type) const {
        for (QQuickItem* item : shownItems()) {
            if (isA(item, type)) {
                return item;
            }
        }
        throw std::runtime_error(std::string("there is no ") + type);
    }
    double widthAfterDrag(double to) {
        const QRectF sidebar = frame(shown("ParameterPanel"));
        user->drag({sidebar.right(), 300}, {to, 300});
        settle();
        return frame(shown("ParameterPanel")).width();
    }
    double panelHeightAfterDrag(double to) {
        const QRectF panel = frame(shown("BottomPanel"));
        user->drag({panel.center().x(), panel.top()}, {panel.center().x(), to});
        settle();
        return frame(shown("BottomPanel")).height();
    }
};

TEST_F(Panes, TheSidebarIsDraggedBetween280And400Points) {
    EXPECT_EQ(frame(shown("ParameterPanel")).width(), 320);
    EXPECT_EQ(widthAfterDrag(100), 280);
    EXPECT_EQ(widthAfterDrag(700), 400);
}

TEST_F(Panes, ThePanelIsDraggedBetween160And380Points) {
    window->resize(1200, 1000);
    settle();
    EXPECT_EQ(frame(shown("BottomPanel")).height(), 228);
    EXPECT_EQ(panelHeightAfterDrag(990), 160);
    EXPECT_EQ(panelHeightAfterDrag(100), 380);
}

TEST_F(Panes, TheViewportKeeps360PointsAndTheWelcomeItsDistance) {
    panelHeightAfterDrag(100);
    const QRectF viewport = frame(shown("ViewportView"));
    EXPECT_GE(viewport.height(), 360);
    const QRectF welcome = frame(shown("WelcomeCard"));
    EXPECT_GE(welcome.top() - viewport.top(), 24);
    EXPECT_GE(viewport.bottom() - welcome.bottom(), 24);
}

TEST_F(Panes, ThePanelGivesWayWhenTheWindowBecomesLower) {
    window->resize(1200, 1000);
    settle();
    ASSERT_EQ(panelHeightAfterDrag(100), 380);
    window->resize(1200, 800);
    settle();
    EXPECT_EQ(frame(shown("BottomPanel")).bottom(), frame(shown("StatusBar")).top());
    EXPECT_GE(frame(shown("ViewportView")).height(), 360);
}

TEST_F(Panes, ThePanelStaysAboveTheStatusBarWithLargeTextsOnASmallScreen) {
    for (const double scale : {1.5, 2.0, 3.0}) {
        Theme::shared().setTextScale(scale);
        window->setMinimumSize({1200, 800});
        window->resize(1200, 800);
        settle();
        ASSERT_EQ(window->height(), 800);
        EXPECT_LE(frame(shown("BottomPanel")).bottom(), frame(shown("StatusBar")).top()) << scale;
    }
}

TEST_F(Panes, TheChartsTitlesStayClearOfTheirNumbersWhenTheTextsGrow) {
    app.historyStore.setResiduals({{"rms[P]", 0, -1.0}, {"rms[P]", 1, -4.0}});
    app.historyStore.setResidualLabels({"rms[P]"});
    app.historyStore.setHasData(true);
    settle();
    Theme::shared().setTextScale(1.5);
    settle();
    const QQuickItem* chart = shown("ConvergenceChart");
    QRectF title;
    std::vector<QRectF> numbers;
    for (const QQuickItem* item : shownItems()) {
        if (!item->inherits("QQuickText") || !chart->isAncestorOf(item)) {
            continue;
        }
        bool isNumber = false;
        const QString text = item->property("text").toString();
        text.toDouble(&isNumber);
        if (isNumber) {
            numbers.push_back(frame(item));
        } else if (text == q("Residuals")) {
            title = frame(item);
        }
    }
    EXPECT_FALSE(title.isEmpty());
    EXPECT_GE(numbers.size(), 4U);
    for (const QRectF& number : numbers) {
        EXPECT_FALSE(number.intersects(title)) << number.top();
    }
}

TEST_F(Panes, TheLegendOfManySeriesStaysBelowItsChart) {
    const HistoryStore::Labels labels{"rms[Rho]", "rms[RhoU]", "rms[RhoV]", "rms[RhoW]",
        "rms[RhoE]", "rms[k]", "rms[w]", "rms[AD-Rho]"};
    HistoryStore::Points points;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        points.push_back({labels[i], 0, -1.0 - static_cast<double>(i)});
        points.push_back({labels[i], 1, -2.0 - static_cast<double>(i)});
    }
    app.historyStore.setResiduals(points);
    app.historyStore.setResidualLabels(labels);
    app.historyStore.setHasData(true);
    settle();
    widthAfterDrag(700);
    const QRectF chart = frame(shown("ConvergenceChart"));
    std::size_t found = 0;
    QRectF plot;
    for (const QQuickItem* item : shownItems()) {
        if (item->inherits("ostrella::ChartItem") && plot.isEmpty()) {
            plot = frame(item);
        }
        const std::string text = item->property("text").toString().toStdString();
        if (std::find(labels.begin(), labels.end(), text) != labels.end()) {
            ++found;
            EXPECT_TRUE(chart.contains(frame(item))) << text;
            EXPECT_GT(frame(item).top(), plot.bottom()) << text;
        }
    }
    EXPECT_EQ(found, labels.size());
    EXPECT_GT(plot.height(), 60);
}

class OrientationRow : public WholeWindow {
protected:
    void SetUp() override {
        placeModel();
        settle();
        app.parameters.setRotationX(30);
        app.parameters.setRotationZ(-45);
        settle();
    }
    QQuickItem* menuItem() const {
        for (QQuickItem* item : shownItems()) {
            if (isA(item, "BrandMenuItem") &&
                item->property("text") == QVariant(q("Reset Orientation"))) {
                return item;
            }
        }
        return nullptr;
    }
    void expectResetFromTheMenuAt(QPointF place) {
        user->click(place, {.button = Qt::RightButton});
        settle();
        ASSERT_TRUE(menuItem());
        user->click(frame(menuItem()).center());
        settle();
        EXPECT_EQ(app.parameters.rotationX(), 0);
        EXPECT_EQ(app.parameters.rotationZ(), 0);
        EXPECT_FALSE(menuItem());
    }
};

TEST_F(OrientationRow, HasAMenuThatPutsTheModelBack) {
    expectResetFromTheMenuAt(middleOf(q("X · Y · Z"), QAccessible::StaticText));
}

TEST_F(OrientationRow, HasTheMenuOnItsFieldsToo) {
    expectResetFromTheMenuAt(frame(field("Y rotation")).center());
}

TEST_F(OrientationRow, LosesItsResetOnceNothingIsTurned) {
    click(q("Reset orientation"));
    EXPECT_EQ(app.parameters.rotationX(), 0);
    EXPECT_FALSE(accessible(q("Reset orientation"), QAccessible::Button));
}

class Tools : public WholeWindow {
protected:
    QAccessible::State stateOf(const char* name) const {
        QAccessibleInterface* found = accessible(q(name), QAccessible::Button);
        if (!found) {
            found = accessible(q(name), QAccessible::CheckBox);
        }
        if (!found) {
            throw std::runtime_error(std::string("nothing is called ") + name);
        }
        return found->state();
    }
};

TEST_F(Tools, AreReadOutAsMarkedOnlyWhereTheyCanBe) {
    showAllCards();
    for (const char* name : {"Iso view", "Orient model", "Animate flow", "Face the flow with -X"}) {
        EXPECT_TRUE(stateOf(name).checkable) << name;
    }
    EXPECT_TRUE(stateOf("Orient model").checked);
    EXPECT_TRUE(stateOf("Face the flow with -X").checked);
    EXPECT_FALSE(stateOf("Face the flow with +X").checked);
    for (const char* name : {"Fit to view", "Save image", "Turn +90° about X"}) {
        EXPECT_FALSE(stateOf(name).checkable) << name;
    }
}

TEST_F(Tools, AMenuThatIsOpenClosesWithEscapeBeforeOrientingEnds) {
    placeModel();
    settle();
    app.renderSettings.setOrientMode(true);
    settle();
    click(q("Regime"), QAccessible::ComboBox);
    user->type(Qt::Key_Escape);
    settle();
    EXPECT_TRUE(app.renderSettings.orientMode());
    user->type(Qt::Key_Escape);
    EXPECT_FALSE(app.renderSettings.orientMode());
}

} // namespace
} // namespace ostrella::test
