#include "Models/PlatformWords.h"
#include "Views/About/AboutModel.h"
#include "Views/Format/AppLinks.h"
#include "Views/SideBench.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <QGuiApplication>

#include <filesystem>

namespace ostrella {
void useAboutModule();
} // namespace ostrella

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto button = QAccessible::Button;
constexpr auto text = QAccessible::StaticText;

class AboutWindow : public SideBench {
protected:
    AboutWindow() {
        useAboutModule();
        installScript("SU2_CFD", "exit 0");
        installScript("gmsh", "echo 4.15.2");
        writeFile(bundle.resourcesDirectory() / "Info.json",
            R"({"CFBundleShortVersionString": "1.0.0", "CFBundleVersion": "128"})");
    }
    ~AboutWindow() override { window.reset(); }

    void installScript(const std::string& name, const std::string& script) const {
        const fs::path file = bundle.toolsDirectory() / name;
        writeFile(file, "#!/bin/sh\n" + script + "\n");
        fs::permissions(file, fs::perms::owner_all);
    }

    void show(UpdateController* given) {
        model = std::make_unique<AboutModel>(AboutModel::Surroundings{.bundle = bundle,
            .words = PlatformWords::freedesktop(),
            .renderer = "OpenGL",
            .openAddress = [this](const std::string& address) { opened.push_back(address); },
            .updates = given});
        open("About/AboutView.qml", model.get());
        ASSERT_TRUE(waitUntil([&] { return model->mesher() != QStringLiteral("·"); }));
        settle();
    }
    void show() { show(updates.get()); }

    /// The acknowledgements, when they are on the screen.
    static QQuickWindow* sheet() {
        for (QWindow* other : QGuiApplication::topLevelWindows()) {
            if (other->title() == QStringLiteral("Acknowledgements") && other->isExposed()) {
                return qobject_cast<QQuickWindow*>(other);
            }
        }
        return nullptr;
    }
    /// Opens the acknowledgements and gives the user to them.
    void openSheet() {
        click("Acknowledgements", button);
        ASSERT_TRUE(waitUntil([&] { return sheet() != nullptr; }));
        reader = std::make_unique<RealInput>(*sheet());
    }

    static bool isInSight(const QQuickWindow& in, const QRectF& place) {
        return QRectF(QPointF(), in.size()).contains(place);
    }
    /// The keys lead to both ends of what is scrolled, in steps and at once, and to no place
    /// beyond them.
    static void expectScrollingByKeys(const QQuickItem& body, RealInput& by) {
        const auto top = [&body] { return body.property("contentY").toReal(); };
        const qreal lowest = body.property("contentHeight").toReal() - body.height();
        by.type(Qt::Key_Home);
        EXPECT_EQ(top(), 0);
        by.type(Qt::Key_Up);
        EXPECT_EQ(top(), 0);
        by.type(Qt::Key_Down);
        const qreal step = top();
        EXPECT_GT(step, 0);
        EXPECT_LT(step, body.height());
        by.type(Qt::Key_PageDown);
        EXPECT_GT(top(), step);
        EXPECT_LT(top() - step, body.height()) << "a line stays in sight";
        by.type(Qt::Key_End);
        EXPECT_EQ(top(), lowest);
        by.type(Qt::Key_Down);
        by.type(Qt::Key_PageDown);
        EXPECT_EQ(top(), lowest);
        by.type(Qt::Key_Up);
        EXPECT_EQ(top(), std::max(0.0, lowest - step));
        by.type(Qt::Key_PageUp);
        EXPECT_LT(top(), std::max(1.0, lowest - step));
    }

    const TemporaryDirectory directory;
    const AppBundle bundle{directory.path()};
    std::vector<std::string> opened;
    std::unique_ptr<AboutModel> model;
    std::unique_ptr<RealInput> reader;
};

TEST_F(AboutWindow, tellsVersionAndTools) {
    show();
    EXPECT_EQ(window->title(), QStringLiteral("About Ostrella"));
    for (const char* line :
        {"Ostrella", "Native CFD for external aerodynamics on Linux", "Version 1.0.0 (128)",
            "Solver", "SU2 8.5.0 (LGPL)", "Mesher", "gmsh 4.15.2 (GPL)", "Renderer", "OpenGL"}) {
        EXPECT_TRUE(shown(line)) << line;
    }
    EXPECT_TRUE(AppLinks::rights.empty() || shown(std::string(AppLinks::rights).c_str()));
    EXPECT_THAT(cutTexts(), IsEmpty());
}

TEST_F(AboutWindow, isAsWideAsItsLongestRow) {
    show();
    EXPECT_EQ(window->width(), 336);
    user.reset();
    window.reset();
    fs::remove(bundle.toolsDirectory() / "SU2_CFD");
    installScript("ostrella-preview-solver", "exit 0");
    fs::create_symlink("ostrella-preview-solver", bundle.toolsDirectory() / "SU2_CFD");
    show();
    EXPECT_TRUE(shown("Built-in preview solver · SU2 not packaged"));
    EXPECT_GT(window->width(), 336);
    EXPECT_THAT(cutTexts(), IsEmpty());
}

TEST_F(AboutWindow, cutsNothingWithLargeTexts) {
    for (const double scale : {1.5, 0.8}) {
        theme.setTextScale(scale);
        show();
        EXPECT_THAT(cutTexts(), IsEmpty()) << scale;
        user.reset();
        window.reset();
    }
}

TEST_F(AboutWindow, scrollsByKeysWhereThereIsLittleRoom) {
    theme.setTextScale(3);
    show();
    const QQuickItem& body = *items("ScrolledBody").at(0);
    ASSERT_GT(body.property("contentHeight").toReal(), body.height());
    EXPECT_THAT(cutTexts(), IsEmpty());
    for (const std::string& name : tabOrder()) {
        settle();
        EXPECT_TRUE(isInSight(*window, frame(window->activeFocusItem()))) << name;
    }
    expectScrollingByKeys(body, *user);
    // The bar comes where the pointer looks for it.
    user->moveTo({window->width() - 4.0, window->height() / 2.0});
    EXPECT_TRUE(waitUntil([&] { return items("BrandScrollBar").size() == 1; }));
}

TEST_F(AboutWindow, looksAtTheToolsAgainWhenItAppearsAgain) {
    show();
    window->close();
    installScript("gmsh", "echo 4.16.0");
    window->show();
    EXPECT_TRUE(waitUntil([&] { return model->mesher() == QStringLiteral("gmsh 4.16.0 (GPL)"); }));
}

TEST_F(AboutWindow, leadsToTheSite) {
    show();
    click("Website", button);
    EXPECT_THAT(opened, ElementsAre(std::string(AppLinks::site)));
}

TEST_F(AboutWindow, checksForUpdatesWhenThatCanBe) {
    show();
    click("Check for Updates…", button);
    EXPECT_EQ(updater->starts, 1);
    updater->setCanCheck(false);
    EXPECT_TRUE(
        waitUntil([&] { return accessible("Check for Updates…", button)->state().disabled; }));
}

TEST_F(AboutWindow, disablesTheCheckWithoutAnUpdater) {
    show(nullptr);
    EXPECT_TRUE(accessible("Check for Updates…", button)->state().disabled);
}

TEST_F(AboutWindow, isReadAndUsedByKeys) {
    show();
    EXPECT_TRUE(accessible("Ostrella", QAccessible::Heading));
    for (const char* line : {"Native CFD for external aerodynamics on Linux", "Version 1.0.0 (128)",
             "Solver", "SU2 8.5.0 (LGPL)", "gmsh 4.15.2 (GPL)", "OpenGL"}) {
        EXPECT_TRUE(accessible(line, text)) << line;
    }
    EXPECT_THAT(tabOrder(), ElementsAre("Website", "Check for Updates…", "Acknowledgements"));
    user->type(Qt::Key_Space);
    EXPECT_EQ(opened.size(), 1U);
    keyToClose(*window, Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return !window->isVisible(); }));
}

TEST_F(AboutWindow, drawsItsIconAndColoursInBothAppearances) {
    for (const bool dark : {true, false}) {
        theme.setDark(dark);
        show();
        expectNear(colorAt({6, 6}), theme.surfaceBase());
        const QRectF icon = frame(items("ostrella::AppIcon").at(0));
        EXPECT_EQ(icon.size(), QSizeF(96, 96));
        // The tile is the same in both, and its section pale.
        EXPECT_LT(colorAt(icon.center() + QPointF(0, 20)).lightness(), 40);
        EXPECT_GT(colorAt(icon.topLeft() + QPointF(30, 49)).lightness(), 150);
        const QRectF rows = frame(items("BrandGroup").at(0));
        EXPECT_EQ(rows.height(), 102);
        expectNear(colorAt(rows.topLeft() + QPointF(6, 17)), theme.surfaceRaised());
        user.reset();
        window.reset();
    }
}

TEST_F(AboutWindow, showsTheAcknowledgementsOverItself) {
    show();
    openSheet();
    EXPECT_EQ(sheet()->modality(), Qt::WindowModal);
    EXPECT_EQ(sheet()->transientParent(), window.get());
    // The window below is not to be used meanwhile.
    click("Website", button);
    EXPECT_THAT(opened, IsEmpty());
    const auto texts = itemsOf(*sheet(), "QQuickText");
    const auto says = [&](const char* part) {
        return std::any_of(texts.begin(), texts.end(), [&](const QQuickItem* item) {
            return item->property("text").toString().contains(QString::fromUtf8(part));
        });
    };
    EXPECT_TRUE(says("SU2 8.5.0 as a separate program"));
    EXPECT_TRUE(says("gmsh 4.15.2 as a separate program"));
    EXPECT_TRUE(says("share/ostrella/licenses/SU2"));
    EXPECT_TRUE(says("share/ostrella/licenses/gmsh"));
    reader = std::make_unique<RealInput>(*sheet());
    keyToClose(*sheet(), Qt::Key_Return);
    EXPECT_TRUE(waitUntil([&] { return sheet() == nullptr; }));
    EXPECT_FALSE(model->showAcknowledgements());
}

TEST_F(AboutWindow, closesTheAcknowledgementsByEscapeAndShowsThemAgain) {
    show();
    for (int i = 0; i < 2; ++i) {
        openSheet();
        keyToClose(*sheet(), Qt::Key_Escape);
        ASSERT_TRUE(waitUntil([&] { return sheet() == nullptr; }));
        EXPECT_TRUE(window->isVisible());
        reader.reset();
        user = std::make_unique<RealInput>(*window);
    }
}

TEST_F(AboutWindow, theAcknowledgementsScrollByKeysWhereThereIsLittleRoom) {
    theme.setTextScale(3);
    show();
    model->setShowAcknowledgements(true);
    ASSERT_TRUE(waitUntil([&] { return sheet() != nullptr; }));
    // Less than the screen has, which is enough for them at one pixel a point.
    const QSize little(sheet()->width(), sheet()->height() / 2);
    sheet()->setMinimumSize(little);
    sheet()->resize(little);
    ASSERT_TRUE(waitUntil([&] { return sheet()->size() == little; }));
    reader = std::make_unique<RealInput>(*sheet());
    const QQuickItem& body = *itemsOf(*sheet(), "ScrolledBody").at(0);
    ASSERT_GT(body.property("contentHeight").toReal(), body.height());
    EXPECT_THAT(cutTexts(*sheet()), IsEmpty());
    for (const QQuickItem* done : itemsOf(*sheet(), "BrandButton")) {
        EXPECT_TRUE(isInSight(*sheet(), frame(done)));
        EXPECT_TRUE(done->hasActiveFocus());
    }
    expectScrollingByKeys(body, *reader);
}

TEST_F(AboutWindow, takesTheAcknowledgementsWithIt) {
    show();
    openSheet();
    window->close();
    EXPECT_TRUE(waitUntil([&] { return sheet() == nullptr; }));
    EXPECT_FALSE(model->showAcknowledgements());
}

TEST_F(AboutWindow, theAcknowledgementsAreWholeWithLargeTexts) {
    for (const double scale : {1.0, 1.5}) {
        theme.setTextScale(scale);
        show();
        openSheet();
        EXPECT_THAT(cutTexts(*sheet()), IsEmpty()) << scale;
        reader.reset();
        user.reset();
        window.reset();
    }
}

} // namespace
} // namespace ostrella::test
