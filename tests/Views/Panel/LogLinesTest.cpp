#include "Views/Panel/LogLines.h"

#include "support/Wait.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace ostrella {
namespace {

using Level = LogStore::Level;
using testing::ElementsAre;

class LogLinesOf : public testing::Test {
protected:
    LogLinesOf() {
        for (const Level level :
            {Level::info, Level::ok, Level::warn, Level::error, Level::su2, Level::ok}) {
            log.append(std::string(LogStore::Line::rawValue(level)), level);
        }
        lines.takeIn();
        QObject::connect(&lines, &LogLines::changed, &lines, [this] { ++notifications; });
    }

    std::vector<std::string> texts() const {
        std::vector<std::string> result;
        for (std::size_t row = 0; row < lines.size(); ++row) {
            result.push_back(lines[row].text);
        }
        return result;
    }
    std::vector<std::string> texts(LogFilter filter) {
        lines.setFilter(filter);
        return texts();
    }

    LogStore log;
    LogLines lines{log};
    int notifications = 0;
};

TEST_F(LogLinesOf, areTheLinesThatTheFilterLetsThrough) {
    EXPECT_THAT(texts(LogFilter::all), ElementsAre("info", "ok", "warn", "error", "su2", "ok"));
    EXPECT_THAT(texts(LogFilter::info), ElementsAre("info", "ok", "ok"));
    EXPECT_THAT(texts(LogFilter::warn), ElementsAre("warn"));
    EXPECT_THAT(texts(LogFilter::err), ElementsAre("error"));
    EXPECT_THAT(texts(LogFilter::su2), ElementsAre("su2"));
    EXPECT_EQ(log.count(), 6) << "the log itself stays as it is";
}

TEST_F(LogLinesOf, areNamedByTheirPlaceInTheWholeLog) {
    lines.setFilter(LogFilter::info);
    EXPECT_EQ(lines.number(0), 0U);
    EXPECT_EQ(lines.number(2), 5U);
    EXPECT_EQ(lines.rowAtOrAfter(1), 1U);
    EXPECT_EQ(lines.rowAtOrAfter(2), 2U);
    EXPECT_EQ(lines.rowAtOrAfter(6), 3U);
    lines.setFilter(LogFilter::all);
    EXPECT_EQ(lines.rowAtOrAfter(4), 4U);
    EXPECT_EQ(lines.rowAtOrAfter(60), 6U);
}

TEST_F(LogLinesOf, growByWhatIsNewAndTellOfItOnceForManyLines) {
    lines.setFilter(LogFilter::warn);
    notifications = 0;
    for (int i = 0; i < 1000; ++i) {
        log.append("more", i % 10 == 0 ? Level::warn : Level::su2);
    }
    EXPECT_EQ(lines.count(), 1) << "not before the frame";
    ASSERT_TRUE(test::waitUntil([this] { return notifications > 0; }));
    EXPECT_EQ(lines.count(), 101);
    EXPECT_EQ(notifications, 1);
    EXPECT_EQ(lines[100].level, Level::warn);
}

TEST_F(LogLinesOf, tellNothingOfLinesThatTheFilterHoldsBack) {
    lines.setFilter(LogFilter::err);
    notifications = 0;
    log.append("quiet", Level::su2);
    lines.takeIn();
    EXPECT_EQ(notifications, 0);
    log.append("loud", Level::error);
    lines.takeIn();
    EXPECT_EQ(notifications, 1);
    EXPECT_EQ(lines.count(), 2);
}

TEST_F(LogLinesOf, takeInWhatIsNewWithAChangeOfFilter) {
    log.append("late", Level::error);
    EXPECT_THAT(texts(LogFilter::err), ElementsAre("error", "late"));
    log.append("later", Level::error);
    EXPECT_THAT(texts(LogFilter::err), ElementsAre("error", "late", "later"));
}

} // namespace
} // namespace ostrella
