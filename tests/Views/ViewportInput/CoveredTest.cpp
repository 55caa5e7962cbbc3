#include "Views/ViewportInput/ViewportWindow.h"

#include <QQmlComponent>
#include <QQmlEngine>

namespace ostrella::test {
namespace {

using DragMode = ArcBallMTKView::DragMode;

/// Cards above the viewport. The card covers the model's left half and more: x from 50 to 190, y
/// from 50 to 250.
class Covered : public ViewportWindow {
protected:
    ~Covered() override { card.reset(); }

    /// Lays `type { … members }` above the viewport.
    void cover(const char* type, const char* members) {
        QQmlComponent component(&engine);
        component.setData(QStringLiteral("import QtQuick\n%1 { x: 50; y: 50; width: 140; height: "
                                         "200\n%2 }")
                              .arg(QString::fromUtf8(type), QString::fromUtf8(members))
                              .toUtf8(),
            QUrl());
        card.reset(qobject_cast<QQuickItem*>(component.create()));
        ASSERT_TRUE(card) << component.errorString().toStdString();
        card->setParentItem(window->contentItem());
    }
    /// A card that keeps what the pointer does for itself, and counts it.
    void coverWithACard() {
        cover("Rectangle", R"(
            property int clicks: 0
            property int notches: 0
            MouseArea {
                anchors.fill: parent
                acceptedButtons: Qt.AllButtons
                hoverEnabled: true
                cursorShape: Qt.IBeamCursor
                onClicked: parent.clicks += 1
                onWheel: (wheel) => { parent.notches += 1; wheel.accepted = true }
            })");
    }

    QQmlEngine engine;
    std::unique_ptr<QQuickItem> card;
    static constexpr QPointF onCard{170, 150}; ///< and over the model
    static constexpr QPointF besideCard{230, 150};
};

TEST_F(Covered, theCardGetsTheClicks) {
    coverWithACard();
    for (const auto button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton})
        user->click(onCard, {.button = button});
    EXPECT_EQ(card->property("clicks").toInt(), 3);
    EXPECT_FALSE(settings->orientMode());
    user->click(besideCard);
    EXPECT_TRUE(settings->orientMode());
    EXPECT_EQ(card->property("clicks").toInt(), 3);
}

TEST_F(Covered, aDoubleClickOnTheCardFramesNothing) {
    coverWithACard();
    user->drag({300, 20}, {340, 20});
    noteCamera();
    user->doubleClick(onCard);
    EXPECT_FALSE(cameraMoved());
}

TEST_F(Covered, theCardGetsTheWheel) {
    coverWithACard();
    user->moveTo(onCard);
    user->wheel(2);
    user->wheel(1, Qt::ShiftModifier);
    EXPECT_EQ(card->property("notches").toInt(), 3);
    user->scroll({0, 8});
    EXPECT_FALSE(cameraMoved());
    user->moveTo(besideCard);
    user->wheel(1);
    EXPECT_NEAR(zoomed(), 0.86070798F, 1e-5);
}

TEST_F(Covered, aPinchOnTheCardIsNotForTheViewport) {
    coverWithACard();
    user->moveTo(onCard);
    user->pinch(0.1);
    EXPECT_FALSE(cameraMoved());
    user->moveTo(besideCard);
    user->pinch(0.1);
    EXPECT_NEAR(zoomed(), 0.90483742F, 1e-5);
    // Where the item is elsewhere in its window, as well.
    item->setPosition({200, 0});
    card->setX(250);
    user->moveTo(onCard);
    user->pinch(0.1);
    user->moveTo(onCard + QPointF(200, 0));
    user->pinch(0.1);
    EXPECT_NEAR(zoomed(), 0.90483742F, 1e-5);
}

TEST_F(Covered, theCardKeepsItsOwnCursor) {
    coverWithACard();
    user->moveTo(besideCard);
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    user->moveTo(onCard, 4);
    EXPECT_EQ(cursor(), Qt::IBeamCursor);
    user->moveTo(besideCard, 4);
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    user->moveTo({300, 20}, 4);
    EXPECT_EQ(cursor(), Qt::ArrowCursor);
}

TEST_F(Covered, aMoveOverACardThatTakesNothingChangesNoCursor) {
    cover("Rectangle", "");
    user->moveTo(QPointF(20, 150));
    ASSERT_EQ(cursor(), Qt::ArrowCursor);
    user->moveTo(onCard, 5);
    EXPECT_EQ(cursor(), Qt::ArrowCursor) << "the model below it is not what is pointed at";
    user->moveTo(besideCard);
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
}

TEST_F(Covered, aRingUnderACardIsNotHovered) {
    enterOrientMode();
    coverWithACard();
    // 225° from x to y, at (152.1, 181.5), where no other ring comes near.
    user->moveTo({152, 181});
    EXPECT_EQ(renderer().hoveredRing, std::nullopt);
    card->setVisible(false);
    user->moveTo({152, 182});
    EXPECT_EQ(renderer().hoveredRing, OrientationAxis::z);
    card->setVisible(true);
    user->moveTo({152, 181});
    user->moveTo({151, 181});
    EXPECT_EQ(renderer().hoveredRing, std::nullopt) << "the pointer has gone to the card";
}

TEST_F(Covered, aPressOnTheCardAndADragFromItMoveNothing) {
    coverWithACard();
    user->drag(onCard, {300, 20});
    EXPECT_FALSE(cameraMoved());
    EXPECT_EQ(view().dragMode(), DragMode::none);
}

TEST_F(Covered, aDragThatComesUnderTheCardGoesOn) {
    coverWithACard();
    user->moveTo({300, 150});
    user->press();
    user->moveTo(onCard, 4);
    EXPECT_NEAR(azimuthMoved(), 1.3F, 1e-5);
    user->release();
    EXPECT_EQ(card->property("clicks").toInt(), 0);
    EXPECT_EQ(view().dragMode(), DragMode::none);
}

TEST_F(Covered, aTransparentOrHiddenCardIsNotThere) {
    cover("Rectangle", "visible: false");
    user->moveTo(onCard);
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    user->click(onCard);
    EXPECT_TRUE(settings->orientMode());
}

TEST_F(Covered, aPlaceThatOnlyHoldsCardsLetsThePointerThrough) {
    cover("Item", "Rectangle { x: 0; y: 0; width: 20; height: 20 }");
    user->moveTo(onCard);
    EXPECT_EQ(cursor(), Qt::PointingHandCursor);
    user->wheel(1);
    EXPECT_NEAR(zoomed(), 0.86070798F, 1e-5);
}

} // namespace
} // namespace ostrella::test
