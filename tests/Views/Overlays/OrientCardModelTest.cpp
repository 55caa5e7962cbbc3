#include "Views/Viewport/OrientCardModel.h"

#include "OverlayBench.h"

namespace ostrella::test {
namespace {

class OrientCardModelTest : public OverlayBench {
protected:
    OrientCardModelTest() { placeModel(); }
    std::vector<double> rotation() const {
        return {app.parameters.rotationX(), app.parameters.rotationY(), app.parameters.rotationZ()};
    }

    OrientCardModel card{shared()};
};

using Angles = std::vector<double>;

TEST_F(OrientCardModelTest, Texts) {
    const QVariantMap texts = card.texts();
    EXPECT_EQ(string(texts, "title"), "Orient model");
    EXPECT_EQ(string(texts, "rotation"), "Rotation ");
    EXPECT_EQ(string(texts, "reset"), "Reset");
    EXPECT_EQ(string(texts, "resetHelp"), "Reset orientation to 0 · 0 · 0");
    EXPECT_EQ(string(texts, "resetName"), "Reset orientation");
    EXPECT_EQ(string(texts, "done"), "Done");
    EXPECT_EQ(string(texts, "doneKey"), "↩");
    EXPECT_EQ(string(texts, "doneHelp"), "Finish orienting · Return");
    EXPECT_EQ(string(texts, "close"), "Close");
    EXPECT_EQ(string(texts, "turnGroup"), "Turn 90°");
    EXPECT_EQ(string(texts, "facingGroup"), "Face the flow");
    EXPECT_EQ(string(texts, "clearsResult"), "Rotating clears the current result.");
}

TEST_F(OrientCardModelTest, AxesWithTheirTurns) {
    const QVariantList axes = card.axes();
    EXPECT_EQ(column(axes, "name"), (test::Texts{"X", "Y", "Z"}));
    const QVariantList turns = axes[1].toMap().value(QStringLiteral("turns")).toList();
    EXPECT_EQ(column(turns, "help"), (test::Texts{"Turn +90° about Y", "Turn -90° about Y"}));
    EXPECT_EQ(column(turns, "symbol"), (test::Texts{"arrow.counterclockwise", "arrow.clockwise"}));
}

TEST_F(OrientCardModelTest, Facings) {
    EXPECT_EQ(column(card.facings(), "label"), (test::Texts{"+X", "-X", "+Y", "-Y", "+Z", "-Z"}));
    EXPECT_EQ(column(card.facings(), "help")[2], "Point the model's +Y axis into the flow");
    EXPECT_EQ(column(card.facings(), "name")[5], "Face the flow with -Z");
}

TEST_F(OrientCardModelTest, AQuarterTurnIsAboutTheWorldsAxis) {
    card.turn(2, 1);
    EXPECT_EQ(rotation(), (Angles{0, 0, 90}));
    card.turn(2, 1);
    card.turn(2, 1);
    EXPECT_EQ(rotation(), (Angles{0, 0, -90}));
    EXPECT_EQ(card.angles().toStdString(), "X 0° · Y 0° · Z -90°");
    card.turn(2, 1);
    card.turn(0, -1);
    EXPECT_EQ(rotation(), (Angles{-90, 0, 0}));
}

TEST_F(OrientCardModelTest, EachFacingIsTakenAndMarked) {
    const std::vector<Angles> expected{
        {0, 180, 0}, {0, 0, 0}, {0, 0, 90}, {0, 0, -90}, {0, -90, 0}, {0, 90, 0}};
    for (int i = 0; i < 6; ++i) {
        card.face(i);
        EXPECT_EQ(rotation(), expected[static_cast<std::size_t>(i)]) << i;
        EXPECT_EQ(card.facing(), i);
    }
    app.parameters.setRotationY(45);
    EXPECT_EQ(card.facing(), -1);
}

TEST_F(OrientCardModelTest, WhatIsNoAxisTurnsNothing) {
    for (const int bad : {-1, 3, 99}) {
        card.turn(bad, 1);
    }
    for (const int bad : {-1, 6, 99}) {
        card.face(bad);
    }
    EXPECT_EQ(rotation(), (Angles{0, 0, 0}));
}

TEST_F(OrientCardModelTest, ResetAndFinish) {
    app.renderSettings.setOrientMode(true);
    card.turn(0, 1);
    card.reset();
    EXPECT_EQ(rotation(), (Angles{0, 0, 0}));
    EXPECT_TRUE(app.renderSettings.orientMode());
    card.finish();
    EXPECT_FALSE(app.renderSettings.orientMode());
    int changes = 0;
    QObject::connect(
        &app.renderSettings, &RenderSettings::orientModeChanged, [&changes] { ++changes; });
    card.finish();
    EXPECT_EQ(changes, 0);
}

TEST_F(OrientCardModelTest, TellsThatATurnEndsTheResult) {
    EXPECT_FALSE(card.clearsResult());
    app.parameters.setLastRunResult(result());
    EXPECT_TRUE(card.clearsResult());
    card.turn(0, 1);
    EXPECT_FALSE(card.clearsResult());
}

} // namespace
} // namespace ostrella::test
