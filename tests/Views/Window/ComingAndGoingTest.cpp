#include "WholeWindow.h"

#include "support/Wait.h"

#include <chrono>
#include <cmath>

namespace ostrella::test {
namespace {

/// With motion, as most users have it.
class ComingAndGoing : public WholeWindow {
protected:
    ComingAndGoing() { Theme::shared().setReducedMotion(false); }

    /// The one on the screen, however faint; null for none.
    QQuickItem* shown(const char* type) const {
        for (QQuickItem* item : shownItems()) {
            if (isA(item, type)) {
                return item;
            }
        }
        return nullptr;
    }
    /// Texts of a card from its first to its last.
    static std::vector<std::string> textsOf(const QQuickItem* card) {
        std::vector<std::string> texts;
        for (const QQuickItem* child : card->childItems()) {
            if (child->inherits("QQuickText") && child->isVisible()) {
                texts.push_back(child->property("text").toString().toStdString());
            }
            for (std::string& text : textsOf(child)) {
                texts.push_back(std::move(text));
            }
        }
        return texts;
    }
    /// What comes over the scene does so by this opacity.
    static QQuickItem* fading(QQuickItem* card) {
        while (!isA(card, "Fading")) {
            card = card->parentItem();
        }
        return card;
    }
    /// Seconds until the card has the opacity.
    static double secondsUntil(const QQuickItem* card, double opacity) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_TRUE(waitUntil([&] { return card->opacity() == opacity; }));
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
    void arrive(const char* type) {
        ASSERT_TRUE(waitUntil([&] { return shown(type) != nullptr; })) << type;
        secondsUntil(fading(shown(type)), 1);
    }
    /// The card stays as it was while it goes, and is gone then.
    void expectToGoAsItWas(const char* type, const std::function<void()>& away) {
        arrive(type);
        settle();
        QQuickItem* card = shown(type);
        const QSizeF size = card->size();
        const auto texts = textsOf(card);
        EXPECT_FALSE(texts.empty());
        away();
        ASSERT_TRUE(waitUntil([&] { return fading(card)->opacity() < 1; }));
        EXPECT_EQ(card->size(), size);
        EXPECT_EQ(textsOf(card), texts);
        EXPECT_TRUE(waitUntil([&] { return !fading(card)->isVisible(); }));
    }
    /// What is said under the title of a warning that is on the screen.
    std::optional<std::string> warning(const char* title) const {
        QAccessibleInterface* found = accessible(q(title), QAccessible::AlertMessage);
        return found ? std::optional(found->text(QAccessible::Description).toStdString())
                     : std::nullopt;
    }
    void setPhase(const RunPhase& phase) { Probe::setPhase(app.simulation, phase); }
};

TEST_F(ComingAndGoing, ANoticeTakesItsTimeToGo) {
    model->viewport()->handleDrop(ViewportFormat::DropOutcome({"/d/picture.png"}));
    ASSERT_TRUE(waitUntil([this] { return shown("NoticeCard") != nullptr; }));
    QQuickItem* slot = fading(shown("NoticeCard"));
    EXPECT_GE(secondsUntil(slot, 1), 0.15);
    const auto texts = textsOf(slot);
    ASSERT_TRUE(waitUntil([&] { return slot->opacity() < 1; })) << "after its three seconds";
    EXPECT_EQ(textsOf(slot), texts);
    EXPECT_GE(secondsUntil(slot, 0), 0.35);
}

TEST_F(ComingAndGoing, ACardGoesAsItWas) {
    placeModel();
    setPhase(RunPhase::solving());
    expectToGoAsItWas("InfoCard", [this] { setPhase(RunPhase::failed("mesh", "It broke.")); });
}

TEST_F(ComingAndGoing, AnErrorGoesAsItWas) {
    setPhase(RunPhase::failed("mesh", "It broke."));
    expectToGoAsItWas("ErrorCard", [this] { setPhase(RunPhase::meshing()); });
}

TEST_F(ComingAndGoing, WhatIsLoadedGoesAsItWas) {
    app.parameters.setLoadingFileName("wing.stl");
    expectToGoAsItWas("LoadingCard", [this] { app.parameters.setLoadingFileName(std::nullopt); });
}

TEST_F(ComingAndGoing, TheLegendGoesAsItWas) {
    showResult();
    expectToGoAsItWas("CpLegendView", [this] {
        app.renderSettings.setColormapEnabled(false);
        app.renderSettings.setStreamlinesEnabled(false);
    });
}

TEST_F(ComingAndGoing, TheProgressGrowsInItsTimeAndFollowsTheBarAtOnce) {
    Probe::setMaxIterations(app.simulation, 200);
    setPhase(RunPhase::solving());
    setLatestIteration(49);
    ASSERT_TRUE(waitUntil([this] { return shown("RunProgressBar") != nullptr; }));
    QQuickItem* bar = shown("RunProgressBar");
    const QQuickItem* fill = bar->childItems().constFirst();
    const auto isFilled = [&](double share) {
        return fill->width() == std::round(bar->width() * share);
    };
    ASSERT_TRUE(waitUntil([&] { return isFilled(0.25); }));
    setLatestIteration(149);
    turn();
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(waitUntil([&] { return isFilled(0.75); }));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    EXPECT_GE(took.count(), 0.2);
    bar->setWidth(200);
    EXPECT_EQ(fill->width(), 150);
}

TEST_F(ComingAndGoing, OneWarningComesAfterTheOther) {
    model->showAlert("Couldn't load STL", "STL file is empty.");
    model->showAlert("Couldn't load sample", "Unknown sample 'x'.");
    settle();
    EXPECT_EQ(warning("Couldn't load STL"), "STL file is empty.");
    EXPECT_EQ(warning("Couldn't load sample"), std::nullopt);
    user->type(Qt::Key_Return);
    settle();
    EXPECT_EQ(warning("Couldn't load STL"), std::nullopt);
    EXPECT_EQ(warning("Couldn't load sample"), "Unknown sample 'x'.");
    user->type(Qt::Key_Escape);
    settle();
    EXPECT_EQ(warning("Couldn't load sample"), std::nullopt);
    EXPECT_TRUE(model->alertTitle().isEmpty());
}

TEST_F(ComingAndGoing, NoCommandPassesAWarning) {
    placeModel();
    model->showAlert("Couldn't load STL", "STL file is empty.");
    settle();
    user->type(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(model->files()->kind(), FilePanels::Kind::None);
    user->type(Qt::Key_R, Qt::ControlModifier);
    EXPECT_FALSE(app.simulation.phase().isActive());
    user->type(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(calls.empty());
    user->click(middleOf(q("Wireframe"), QAccessible::CheckBox));
    EXPECT_FALSE(app.renderSettings.wireframe());
    click(q("OK"));
    EXPECT_TRUE(model->alertTitle().isEmpty());
    user->type(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(app.renderSettings.viewPreset(), ViewPreset::front);
    user->type(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(calls, std::vector<std::string>{"quit"});
}

} // namespace
} // namespace ostrella::test
