#include "Models/LogStore.h"

#include "Models/PlatformWords.h"

#include <gmock/gmock.h>

#include <set>

namespace ostrella {
namespace {

using Level = LogStore::Level;
using testing::ElementsAre;

class StoppedClock final : public Clock {
public:
    Date now() const override { return date; }
    Date date = Date() + std::chrono::hours(5);
};

TEST(LogLevel, isNamed) {
    EXPECT_EQ(LogStore::Line::rawValue(Level::info), "info");
    EXPECT_EQ(LogStore::Line::rawValue(Level::ok), "ok");
    EXPECT_EQ(LogStore::Line::rawValue(Level::warn), "warn");
    EXPECT_EQ(LogStore::Line::rawValue(Level::error), "error");
    EXPECT_EQ(LogStore::Line::rawValue(Level::su2), "su2");
}

TEST(LogLevel, isFoundByItsName) {
    for (const Level level : {Level::info, Level::ok, Level::warn, Level::error, Level::su2}) {
        EXPECT_EQ(LogStore::Line::levelFromRawValue(LogStore::Line::rawValue(level)), level);
    }
    EXPECT_EQ(LogStore::Line::levelFromRawValue("fatal"), std::nullopt);
    EXPECT_EQ(LogStore::Line::levelFromRawValue("INFO"), std::nullopt);
}

TEST(LogStore, appendsAtTheEndWithTheDateOfTheMoment) {
    StoppedClock clock;
    LogStore log(clock);
    log.append("first", Level::warn);
    clock.date += std::chrono::seconds(3);
    log.append("second", Level::su2);
    ASSERT_EQ(log.count(), 2);
    EXPECT_EQ(log.lines()[0].text, "first");
    EXPECT_EQ(log.lines()[0].level, Level::warn);
    EXPECT_EQ(log.lines()[0].date, Date() + std::chrono::hours(5));
    EXPECT_EQ(log.lines()[1].text, "second");
    EXPECT_EQ(log.lines()[1].level, Level::su2);
    EXPECT_EQ(log.lines()[1].date, Date() + std::chrono::hours(5) + std::chrono::seconds(3));
}

TEST(LogStore, givesEachLineAnIdentityOfItsOwn) {
    LogStore log;
    std::set<QString> identities;
    for (int i = 0; i < 100; ++i) {
        log.append("the same", Level::info);
        identities.insert(log.lines().back().id.toString());
    }
    EXPECT_EQ(identities.size(), 100U);
    EXPECT_FALSE(log.lines().front().id.isNull());
}

TEST(LogStore, notifiesAfterEachAppend) {
    LogStore log;
    std::vector<qsizetype> counts;
    QObject::connect(&log, &LogStore::linesChanged, [&] { counts.push_back(log.count()); });
    log.append("a", Level::info);
    log.append("b", Level::info);
    EXPECT_THAT(counts, ElementsAre(1, 2));
}

TEST(LogStore, beginsWithTheLinesItIsGiven) {
    const auto boot =
        LogStore::bootLines({"1.2.3", 6, 1, "OpenGL"}, PlatformWords::freedesktop(), Date());
    const LogStore log(Clock::system(), boot);
    ASSERT_EQ(log.count(), 2);
    EXPECT_EQ(log.lines()[0], boot[0]);
    EXPECT_EQ(log.lines()[1], boot[1]);
}

TEST(LogLine, isComparedFieldByField) {
    const LogStore::Line line{QUuid::createUuid(), "text", Level::info, Date()};
    LogStore::Line other = line;
    EXPECT_EQ(line, other);
    other.id = QUuid::createUuid();
    EXPECT_NE(line, other);
    other = line;
    other.level = Level::ok;
    EXPECT_NE(line, other);
    other = line;
    other.date += std::chrono::seconds(1);
    EXPECT_NE(line, other);
    other = line;
    other.text = "texts";
    EXPECT_NE(line, other);
}

TEST(BootLines, tellTheVersionTheSystemAndItsGraphics) {
    const Date now = Date() + std::chrono::hours(1);
    const auto lines =
        LogStore::bootLines({"0.1.0", 6, 1, "OpenGL"}, PlatformWords::freedesktop(), now);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].text, "Ostrella 0.1.0 · Linux 6.1 · OpenGL");
    EXPECT_EQ(lines[1].text,
        "Awaiting geometry. Drop an STL onto the viewport, press Ctrl+O, or pick a sample.");
    for (const LogStore::Line& line : lines) {
        EXPECT_EQ(line.level, Level::info);
        EXPECT_EQ(line.date, now);
    }
    EXPECT_NE(lines[0].id, lines[1].id);
}

TEST(BootLines, areInTheWordsOfAMac) {
    const auto lines = LogStore::bootLines({"2.0", 14, 5, "Metal 3"}, PlatformWords::mac(), Date());
    EXPECT_EQ(lines[0].text, "Ostrella 2.0 · macOS 14.5 · Metal 3");
    EXPECT_EQ(lines[1].text,
        "Awaiting geometry. Drop an STL onto the viewport, press ⌘O, or pick a sample.");
}

TEST(BootLines, sayDevWithoutAVersion) {
    const auto lines =
        LogStore::bootLines({std::nullopt, 14, 0, "no Metal device"}, PlatformWords::mac(), Date());
    EXPECT_EQ(lines[0].text, "Ostrella dev · macOS 14.0 · no Metal device");
}

TEST(LogGrouped, joinsGroupsOfThreeWithAnOrdinarySpace) {
    EXPECT_EQ(LogStore::grouped(0), "0");
    EXPECT_EQ(LogStore::grouped(999), "999");
    EXPECT_EQ(LogStore::grouped(-1000), "-1 000");
    EXPECT_EQ(LogStore::grouped(100000), "100 000");
    EXPECT_EQ(LogStore::grouped(1234567), "1 234 567");
    EXPECT_EQ(LogStore::grouped(-999), "-999");
}

TEST(LoadedLine, tellsFacetsAndExtent) {
    EXPECT_EQ(LogStore::loadedLine("wing.stl", 19516, {2.0F, 0.125F, 1.005F}),
        "Loaded wing.stl · 19 516 facets · 2.00 × 0.12 × 1.00 m");
}

TEST(LoadedLine, staysInThePluralForOneFacet) {
    EXPECT_EQ(LogStore::loadedLine("a b.STL", 1, {1, 0, 0.5F}),
        "Loaded a b.STL · 1 facets · 1.00 × 0.00 × 0.50 m");
}

TEST(OpenEdgesLine, countsTheEdges) {
    EXPECT_EQ(LogStore::openEdgesLine(1), "STL is not water-tight · 1 open edge");
    EXPECT_EQ(LogStore::openEdgesLine(2), "STL is not water-tight · 2 open edges");
    EXPECT_EQ(LogStore::openEdgesLine(1000), "STL is not water-tight · 1 000 open edges");
}

} // namespace
} // namespace ostrella
