#include "Views/Viewport/STLDropDelegate.h"

#include "OverlayBench.h"

namespace ostrella::test {
namespace {

class STLDropDelegateTest : public testing::Test {
protected:
    using Outcome = ViewportFormat::DropOutcome;

    static QList<QUrl> files(const std::vector<const char*>& names) {
        QList<QUrl> urls;
        for (const char* name : names) {
            urls.append(QUrl::fromLocalFile(QStringLiteral("/d/") + QString::fromUtf8(name)));
        }
        return urls;
    }
    static void turn() { QCoreApplication::processEvents(); }
    std::string text() const { return drop.text().toStdString(); }

    std::vector<Outcome> outcomes;
    STLDropDelegate drop{[this](const Outcome& outcome) { outcomes.push_back(outcome); }};
};

TEST_F(STLDropDelegateTest, AModelIsAnnouncedOnceItsPlaceIsKnown) {
    drop.dropEntered(files({"wing.STL"}));
    EXPECT_TRUE(drop.isTargeted());
    EXPECT_EQ(text(), "Drop an STL to load");
    EXPECT_EQ(drop.symbol().toStdString(), "arrow.down.doc");
    turn();
    EXPECT_EQ(text(), "Drop to load wing.STL");
    EXPECT_TRUE(drop.dropUpdated());
}

TEST_F(STLDropDelegateTest, OtherFilesAreRefusedAtOnce) {
    drop.dropEntered(files({"b.png"}));
    EXPECT_EQ(text(), "Only .stl files can be loaded");
    EXPECT_EQ(drop.symbol().toStdString(), "nosign");
    EXPECT_FALSE(drop.dropUpdated());
    turn();
    EXPECT_FALSE(drop.performDrop(files({"b.png"})));
    turn();
    EXPECT_TRUE(outcomes.empty());
    EXPECT_FALSE(drop.isTargeted());
    EXPECT_EQ(drop.preview().kind, ViewportFormat::DropPreview::Kind::pending);
}

TEST_F(STLDropDelegateTest, NothingAtAllIsRefused) {
    drop.dropEntered({});
    EXPECT_TRUE(drop.refuses());
}

TEST_F(STLDropDelegateTest, WhatHasNoKnownKindWaitsForItsPlace) {
    drop.dropEntered(files({"folder"}));
    EXPECT_FALSE(drop.refuses());
    EXPECT_EQ(text(), "Drop an STL to load");
    turn();
    EXPECT_TRUE(drop.refuses());
}

TEST_F(STLDropDelegateTest, TakesTheFirstModelAndKeepsTheOrder) {
    const auto items = files({"b.png", "a.stl", "c.stl"});
    drop.dropEntered(items);
    turn();
    EXPECT_EQ(text(), "Drop to load a.stl");
    EXPECT_TRUE(drop.performDrop(items));
    EXPECT_FALSE(drop.isTargeted());
    EXPECT_TRUE(outcomes.empty());
    turn();
    ASSERT_EQ(outcomes.size(), 1U);
    EXPECT_EQ(outcomes[0].stl, "/d/a.stl");
    EXPECT_EQ(outcomes[0].ignored, (std::vector<std::filesystem::path>{"/d/b.png", "/d/c.stl"}));
}

TEST_F(STLDropDelegateTest, ADropBeforeThePlaceIsKnownIsTaken) {
    drop.dropEntered(files({"a.stl"}));
    EXPECT_TRUE(drop.performDrop(files({"a.stl"})));
    turn();
    EXPECT_EQ(outcomes.size(), 1U);
    EXPECT_EQ(drop.preview().kind, ViewportFormat::DropPreview::Kind::pending);
}

TEST_F(STLDropDelegateTest, LeavingPutsEverythingBack) {
    drop.dropEntered(files({"a.stl"}));
    drop.dropExited();
    EXPECT_FALSE(drop.isTargeted());
    turn();
    EXPECT_EQ(text(), "Drop an STL to load");
    EXPECT_FALSE(drop.isTargeted());
}

TEST_F(STLDropDelegateTest, TheAnswerToAnOlderDragNoLongerCounts) {
    drop.dropEntered(files({"a.stl"}));
    drop.dropExited();
    drop.dropEntered({QUrl(QStringLiteral("https://example.org/model"))});
    turn();
    EXPECT_EQ(text(), "Drop an STL to load");
}

TEST_F(STLDropDelegateTest, WhatIsNoFileOfThisMachineHasNoPlace) {
    const QList<QUrl> items{QUrl(QStringLiteral("https://example.org/a.stl"))};
    drop.dropEntered(items);
    EXPECT_FALSE(drop.refuses());
    turn();
    EXPECT_TRUE(drop.performDrop(items));
    turn();
    ASSERT_EQ(outcomes.size(), 1U);
    EXPECT_FALSE(outcomes[0].stl);
    EXPECT_TRUE(outcomes[0].ignored.empty());
}

TEST_F(STLDropDelegateTest, AFolderHasItsNameWithOrWithoutASlash) {
    const QList<QUrl> items{QUrl(QStringLiteral("file:///d/a.stl")),
        QUrl(QStringLiteral("file:///d/models/")), QUrl(QStringLiteral("file:///d/other"))};
    EXPECT_TRUE(drop.performDrop(items));
    turn();
    ASSERT_EQ(outcomes.size(), 1U);
    EXPECT_EQ(outcomes[0].ignored, (std::vector<std::filesystem::path>{"/d/models", "/d/other"}));
}

TEST_F(STLDropDelegateTest, FiveHundredFilesAreOneDrop) {
    QList<QUrl> items;
    for (int i = 0; i < 500; ++i) {
        items.append(QUrl::fromLocalFile(QStringLiteral("/d/%1.stl").arg(i)));
    }
    drop.dropEntered(items);
    EXPECT_TRUE(drop.performDrop(items));
    turn();
    ASSERT_EQ(outcomes.size(), 1U);
    EXPECT_EQ(outcomes[0].stl, "/d/0.stl");
    EXPECT_EQ(outcomes[0].ignored.size(), 499U);
}

TEST_F(STLDropDelegateTest, GoesWithAnAnswerUnderWay) {
    {
        STLDropDelegate gone([this](const Outcome& outcome) { outcomes.push_back(outcome); });
        gone.performDrop(files({"a.stl"}));
    }
    turn();
    EXPECT_TRUE(outcomes.empty());
}

} // namespace
} // namespace ostrella::test
