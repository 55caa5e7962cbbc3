#include "WholeWindow.h"

#include <QFontMetricsF>

#include <algorithm>

namespace ostrella::test {
namespace {

std::string told(const QRectF& rect) {
    return std::to_string(rect.x()) + ", " + std::to_string(rect.y()) + ", " +
           std::to_string(rect.width()) + " x " + std::to_string(rect.height());
}

class Layout : public WholeWindow {
protected:
    std::vector<QQuickItem*> cards() const {
        std::vector<QQuickItem*> cards;
        for (QQuickItem* item : shownItems()) {
            if (isA(item, "FloatingCard")) {
                cards.push_back(item);
            }
        }
        return cards;
    }

    QRectF viewport() const {
        for (QQuickItem* item : shownItems()) {
            if (isA(item, "ViewportView")) {
                return frame(item);
            }
        }
        return {};
    }

    /// So many cards, none of which covers another or leaves the viewport.
    void expectCards(std::size_t count) {
        const auto all = cards();
        EXPECT_EQ(all.size(), count);
        const QRectF room = viewport();
        EXPECT_GE(room.height(), 360);
        for (std::size_t i = 0; i < all.size(); ++i) {
            EXPECT_TRUE(room.contains(frame(all[i])))
                << all[i]->metaObject()->className() << " at " << told(frame(all[i])) << " in "
                << told(room);
            for (std::size_t j = i + 1; j < all.size(); ++j) {
                EXPECT_FALSE(frame(all[i]).intersects(frame(all[j])))
                    << all[i]->metaObject()->className() << " at " << told(frame(all[i])) << " and "
                    << all[j]->metaObject()->className() << " at " << told(frame(all[j]));
            }
        }
    }

    /// No text reaches beyond the card or the pane that it stands in.
    void expectTextsWithinTheirPanes() {
        for (QQuickItem* item : shownItems()) {
            const QVariant text = item->property("text");
            if (!item->inherits("QQuickText") || text.toString().isEmpty()) {
                continue;
            }
            const QQuickItem* pane = item->parentItem();
            while (pane && !isPane(pane)) {
                pane = pane->parentItem();
            }
            if (!pane) {
                continue;
            }
            QRectF drawn = frame(item);
            drawn.setWidth(std::max(drawn.width(), item->property("contentWidth").toReal()));
            const QRectF room = frame(pane);
            EXPECT_GE(drawn.left(), room.left() - 0.5) << text.toString().toStdString();
            EXPECT_LE(drawn.right(), room.right() + 0.5)
                << text.toString().toStdString() << " in " << pane->metaObject()->className();
        }
    }

    /// All of the toolbar's items are to be seen whole, with their labels or without.
    void expectWholeToolbar(bool hasLabels) {
        std::vector<QQuickItem*> clusters;
        int items = 0;
        for (QQuickItem* item : shownItems()) {
            if (isA(item, "ToolbarCluster")) {
                clusters.push_back(item);
            }
            if (isA(item, "ToolbarButton")) {
                ++items;
                EXPECT_NE(item->property("help").toString(), QString());
            }
        }
        EXPECT_EQ(items, 11);
        ASSERT_EQ(clusters.size(), 4U);
        for (std::size_t i = 1; i < clusters.size(); ++i) {
            EXPECT_GE(frame(clusters[i]).left(), frame(clusters[i - 1]).right() + 12) << i;
        }
        EXPECT_GE(frame(clusters.front()).left(), viewport().left() + 16);
        EXPECT_LE(frame(clusters.back()).right(), viewport().right() - 16);
        for (const char* label : {"Open STL", "Export Results", "Wireframe"}) {
            bool isShown = false;
            for (const QQuickItem* item : shownItems()) {
                isShown = isShown || (item->inherits("QQuickText") &&
                                         item->property("text").toString() == q(label));
            }
            EXPECT_EQ(isShown, hasLabels) << label;
        }
    }

    static bool isPane(const QQuickItem* item) {
        for (const char* type : {"FloatingCard", "ParameterPanel", "StatusBar", "MainToolbar",
                 "BottomPanel", "ToolbarCluster", "BrandButton", "HeroButton"}) {
            if (isA(item, type)) {
                return true;
            }
        }
        return false;
    }

    void resize(int width, int height) {
        window->resize(width, height);
        settle();
        ASSERT_EQ(window->size(), QSize(width, height));
    }
    /// The window is as large as it asks to be then where the screen has the room.
    void enlargeTexts() {
        Theme::shared().setTextScale(1.5);
        turn();
        window->resize(1800, 1200);
        settle();
    }
    void expectWhole(std::size_t count) {
        expectCards(count);
        expectTextsWithinTheirPanes();
    }
};

constexpr std::size_t allCards = 5;

TEST_F(Layout, HasALeastSize) {
    EXPECT_EQ(window->minimumSize(), QSize(1200, 800));
}

TEST_F(Layout, TheWelcomeAlone) {
    expectWhole(1);
}

TEST_F(Layout, AllCardsInTheLeastWindow) {
    showAllCards();
    expectWhole(allCards);
}

TEST_F(Layout, AllCardsInALargeWindow) {
    resize(2560, 1440);
    showAllCards();
    expectWhole(allCards);
}

TEST_F(Layout, AllCardsWithLargeTexts) {
    enlargeTexts();
    showAllCards();
    expectWhole(allCards);
}

TEST_F(Layout, AllCardsWithLargeTextsOnASmallScreen) {
    enlargeTexts();
    window->setMinimumSize({1200, 800});
    resize(1200, 800);
    showAllCards();
    expectCards(allCards);
}

TEST_F(Layout, TheToolbarsLabelsStandWhereTheyHaveTheRoom) {
    expectWholeToolbar(true);
    resize(2560, 1440);
    enlargeTexts();
    window->resize(2560, 1440);
    settle();
    expectWholeToolbar(true);
}

TEST_F(Layout, TheToolbarGivesWayToLargeTextsOnASmallScreen) {
    enlargeTexts();
    window->setMinimumSize({1200, 800});
    resize(1200, 800);
    expectWholeToolbar(false);
    resize(2560, 1440);
    expectWholeToolbar(true);
}

TEST_F(Layout, ThePanelsHeaderDropsWhatMattersLeast) {
    enlargeTexts();
    window->setMinimumSize({1200, 800});
    resize(1200, 800);
    for (int i = 0; i < 1234; ++i) {
        app.logStore.append("A line", LogStore::Level::info);
    }
    settle();
    const QAccessibleInterface* header = accessible(model->panel()->rightText());
    ASSERT_TRUE(header) << "a reader of the screen is told all of it";
    const auto* text = qobject_cast<QQuickItem*>(header->object());
    ASSERT_TRUE(text);
    const QString shorter = model->panel()->rightText().section(q(" · "), 0, 0);
    const qreal whole = QFontMetricsF(Theme::shared().monoSmall()).horizontalAdvance(shorter);
    EXPECT_NEAR(text->property("contentWidth").toReal(), whole, 1.5) << "nothing is cut";
    EXPECT_LE(whole, text->width());
}

TEST_F(Layout, AllCardsWhileTheLogIsAway) {
    model->panel()->setVisible(false);
    showAllCards();
    expectWhole(allCards);
}

TEST_F(Layout, CollapsedCardsWithLargeTexts) {
    enlargeTexts();
    showAllCards();
    model->viewport()->card()->setCollapsed(true);
    settle();
    expectWhole(allCards);
}

TEST_F(Layout, ALongNameAndManyFacets) {
    const std::string name(240, 'w');
    app.parameters.setSTLURL("/models/" + name + ".stl");
    std::vector<Vec3> points(3 * 1234567, Vec3(0));
    points[1] = Vec3(1000, 0, 0);
    points[2] = Vec3(0, 2000, 0);
    app.parameters.setMesh(TriangleMesh(points, std::vector<Vec3>(points.size(), Vec3(0, 0, 1))));
    app.parameters.setOpenEdgeCount(1234567);
    settle();
    expectWhole(2);
    EXPECT_TRUE(accessible(q("Facets 1 234 567")));
    app.parameters.setLoadingFileName(name + ".stl");
    settle();
    expectWhole(3);
    enlargeTexts();
    expectWhole(3);
}

TEST_F(Layout, ALongNameOfAQuantity) {
    showAllCards();
    SimulationResult result = *app.parameters.lastRunResult();
    result.surfaceField->scalarName = std::string(150, 'q');
    app.parameters.setLastRunResult(result);
    settle();
    expectWhole(allCards);
}

TEST_F(Layout, ALongErrorInEachPlaceThatTellsIt) {
    placeModel();
    for (const std::string& message :
        {std::string("It went wrong because ") + std::string(200, 'x'), std::string(2000, 'y')}) {
        Probe::setPhase(app.simulation, RunPhase::failed("Solver", message));
        settle();
        expectWhole(2);
    }
    enlargeTexts();
    expectWhole(2);
    EXPECT_TRUE(accessible(q("Show in log"), QAccessible::Button));
}

TEST_F(Layout, ALongRun) {
    placeModel();
    Probe::setMaxIterations(app.simulation, 50000);
    setLatestIteration(49998);
    Probe::setPhase(app.simulation, RunPhase::solving());
    settle();
    expectWhole(2);
    enlargeTexts();
    expectWhole(2);
}

} // namespace
} // namespace ostrella::test
