#include "Views/Viewport/ViewportSnapshot.h"

#include "Models/LogStore.h"
#include "Views/Viewport/ViewportBench.h"
#include "support/ManualClock.h"
#include "support/ManualTimers.h"
#include "support/Wait.h"

#include <QImage>
#include <QTimeZone>

#include <memory>
#include <vector>

namespace ostrella::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// 9 March 2026, 13:05:59 UTC.
const Date moment = Date(std::chrono::seconds(1'773'061'559));

std::string nameOf(const std::optional<std::string>& stlName) {
    return ViewportSnapshot::fileName(stlName, moment, QTimeZone::utc());
}

TEST(ViewportSnapshotFileName, holdsTheModelAndTheMoment) {
    EXPECT_EQ(nameOf("wing.stl"), "wing · 2026-03-09 13.05.png");
    EXPECT_EQ(ViewportSnapshot::fileName("wing.stl", moment, QTimeZone(-14 * 3600)),
        "wing · 2026-03-08 23.05.png");
}

TEST(ViewportSnapshotFileName, isTrimmedAndLosesItsExtensionInAnyCase) {
    EXPECT_THAT(nameOf(" wing.STL "), StartsWith("wing · 2026"));
    EXPECT_THAT(nameOf("\n\twing .sTl\r\n"), StartsWith("wing · 2026"));
    EXPECT_THAT(nameOf("wing.stl.stl"), StartsWith("wing.stl · "));
    EXPECT_THAT(nameOf("wing.stl2"), StartsWith("wing.stl2 · "));
    EXPECT_THAT(nameOf("wingstl"), StartsWith("wingstl · "));
}

TEST(ViewportSnapshotFileName, hasNoSeparatorsOfPaths) {
    EXPECT_THAT(nameOf("a/b:c.stl"), StartsWith("a-b-c · "));
}

TEST(ViewportSnapshotFileName, isTheApplicationsWhereThereIsNoName) {
    EXPECT_THAT(nameOf(std::nullopt), StartsWith("Ostrella · "));
    EXPECT_THAT(nameOf("  "), StartsWith("Ostrella · "));
    EXPECT_THAT(nameOf(" .STL"), StartsWith("Ostrella · "));
}

TEST(ViewportSnapshotPNG, comesBackAsItWas) {
    const TemporaryDirectory folder;
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(qRgb(10, 200, 77));
    image.setPixel(2, 1, qRgb(255, 0, 1));
    const auto place = folder.path() / "bild ü.png";
    ViewportSnapshot::writePNG(image, place);
    EXPECT_EQ(readFile(place).substr(1, 3), "PNG");
    const QImage read(QString::fromStdString(place.string()));
    EXPECT_EQ(read.convertToFormat(QImage::Format_RGB32), image);
}

TEST(ViewportSnapshotPNG, thatCannotBeWrittenIsAFailure) {
    const TemporaryDirectory folder;
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::black);
    try {
        ViewportSnapshot::writePNG(image, folder.path() / "no such folder" / "a.png");
        ADD_FAILURE() << "written";
    } catch (const ViewportSnapshot::Failure& failure) {
        EXPECT_EQ(failure.kind(), ViewportSnapshot::Failure::Kind::notWritten);
        EXPECT_STREQ(failure.what(), "the PNG could not be written");
    }
    writeFile(folder.path() / "kept.png", "earlier");
    EXPECT_THROW(ViewportSnapshot::writePNG(QImage(), folder.path() / "kept.png"),
        ViewportSnapshot::Failure);
    EXPECT_EQ(readFile(folder.path() / "kept.png"), "earlier");
}

class ViewportSnapshotTest : public ViewportBench {
protected:
    ViewportSnapshotTest() {
        turn();
        coordinator.capture = [this](int width, int height,
                                  ViewportCoordinator::SnapshotCompletion answer) {
            sizes.emplace_back(width, height);
            answers.push_back(std::move(answer));
        };
        picture.fill(qRgb(1, 2, 3));
        clock.advance(1'773'061'559);
    }

    void save(const std::string& name = "wing.stl") {
        ViewportSnapshot::save(
            settings, name, *log, ViewportSnapshot::patience,
            [this](const std::string& suggested, ViewportSnapshot::Chosen answer) {
                suggestions.push_back(suggested);
                answer(place);
            },
            timers, clock);
    }

    std::vector<std::pair<LogStore::Level, std::string>> lines() const {
        std::vector<std::pair<LogStore::Level, std::string>> all;
        for (const auto& line : log->lines())
            all.emplace_back(line.level, line.text);
        return all;
    }

    static constexpr std::pair<LogStore::Level, const char*> noImage{
        LogStore::Level::error, "Image could not be saved · the viewport did not return an image"};

    TemporaryDirectory folder;
    ManualTimers timers;
    ManualClock clock;
    std::unique_ptr<LogStore> log = std::make_unique<LogStore>();
    std::optional<std::filesystem::path> place = folder.path() / "saved.png";
    QImage picture{4, 3, QImage::Format_RGB32};
    std::vector<std::pair<int, int>> sizes;
    std::vector<ViewportCoordinator::SnapshotCompletion> answers;
    std::vector<std::string> suggestions;
};

TEST_F(ViewportSnapshotTest, isDrawnInTheViewsPixelsAndSavedWhereTheUserWants) {
    save();
    EXPECT_THAT(sizes, IsEmpty());
    turn();
    EXPECT_THAT(sizes, ElementsAre(std::pair(800, 600)));
    answers.at(0)(&picture);
    EXPECT_EQ(settings.snapshotRequestID(), std::nullopt);
    EXPECT_THAT(suggestions, ElementsAre(StartsWith("wing · 2026-03-")));
    EXPECT_EQ(QImage(QString::fromStdString(place->string())).size(), QSize(4, 3));
    EXPECT_THAT(lines(), ElementsAre(std::pair(LogStore::Level::ok, "Saved image saved.png")));
    timers.advance(10);
    turn();
    EXPECT_EQ(lines().size(), 1U) << "the timer finds nothing left to do";
}

TEST_F(ViewportSnapshotTest, theUserMayThinkBetterOfIt) {
    place.reset();
    save();
    turn();
    answers.at(0)(&picture);
    EXPECT_EQ(suggestions.size(), 1U);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(ViewportSnapshotTest, thatCannotBeWrittenIsTold) {
    place = folder.path() / "no such folder" / "saved.png";
    save();
    turn();
    answers.at(0)(&picture);
    EXPECT_THAT(lines(), ElementsAre(std::pair(LogStore::Level::error,
                             "Image could not be saved · the PNG could not be written")));
}

TEST_F(ViewportSnapshotTest, withoutAPictureIsTold) {
    save();
    turn();
    answers.at(0)(nullptr);
    EXPECT_THAT(lines(), ElementsAre(noImage));
    EXPECT_THAT(suggestions, IsEmpty());
}

TEST_F(ViewportSnapshotTest, aViewOfOnePixelHasNone) {
    renderer.drawableSizeWillChange({1, 600}, {0.5F, 300});
    save();
    coordinator.update();
    EXPECT_THAT(lines(), IsEmpty()) << "told in the turn after";
    turn();
    EXPECT_THAT(sizes, IsEmpty());
    EXPECT_THAT(lines(), ElementsAre(noImage));
}

TEST_F(ViewportSnapshotTest, aViewportThatDoesNotAnswerIsGivenUpAfterThreeSeconds) {
    save();
    turn();
    timers.advance(2.9);
    turn();
    EXPECT_THAT(lines(), IsEmpty());
    timers.advance(0.2);
    turn();
    EXPECT_THAT(lines(), ElementsAre(noImage));
    EXPECT_EQ(settings.snapshotRequestID(), std::nullopt);
    answers.at(0)(&picture);
    EXPECT_EQ(lines().size(), 1U) << "a late picture belongs to nobody";
}

TEST_F(ViewportSnapshotTest, withoutAViewportIsGivenUpAfterThreeSeconds) {
    RenderSettings alone;
    ViewportSnapshot::save(
        alone, std::nullopt, *log, ViewportSnapshot::patience,
        [](const std::string&, const ViewportSnapshot::Chosen&) {}, timers, clock);
    turn();
    EXPECT_THAT(lines(), IsEmpty());
    timers.advance(3);
    turn();
    EXPECT_THAT(lines(), ElementsAre(noImage));
}

TEST_F(ViewportSnapshotTest, aSecondRequestReplacesTheFirst) {
    save("first.stl");
    turn();
    timers.advance(2);
    save("second.stl");
    turn();
    ASSERT_EQ(answers.size(), 2U);
    answers[0](&picture);
    EXPECT_THAT(suggestions, IsEmpty()) << "a picture for a request that is gone";
    timers.advance(2);
    turn();
    EXPECT_THAT(lines(), IsEmpty()) << "the first one's time is up, and means nothing";
    answers[1](&picture);
    EXPECT_THAT(suggestions, ElementsAre(StartsWith("second · ")));
    EXPECT_EQ(lines().size(), 1U);
}

TEST_F(ViewportSnapshotTest, twoRequestsInOneTurnAreOneCapture) {
    save("first.stl");
    save("second.stl");
    turn();
    EXPECT_EQ(answers.size(), 1U);
    settings.setWireframe(true);
    turn();
    EXPECT_EQ(answers.size(), 1U) << "it has been acted on";
}

TEST_F(ViewportSnapshotTest, whatGoesMeanwhileIsNotTouched) {
    auto going = std::make_unique<RenderSettings>();
    ViewportSnapshot::save(
        *going, std::nullopt, *log, ViewportSnapshot::patience,
        [](const std::string&, const ViewportSnapshot::Chosen&) {}, timers, clock);
    going.reset();
    save();
    turn();
    log.reset();
    timers.advance(3);
    turn();
    EXPECT_EQ(settings.snapshotRequestID(), std::nullopt);
}

} // namespace
} // namespace ostrella::test
