#include "Models/LogFormatting.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

namespace ostrella {
namespace {

/// Puts the machine into a time zone for the length of a test.
class TimeZone {
public:
    explicit TimeZone(const char* name) {
        if (const char* before = std::getenv("TZ")) {
            before_ = before;
            wasSet_ = true;
        }
        setenv("TZ", name, 1);
        tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone() {
        if (wasSet_) {
            setenv("TZ", before_.c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }

private:
    std::string before_;
    bool wasSet_ = false;
};

// 1 January 1970, 09:05:07 in Greenwich.
const Date morning = Date() + std::chrono::seconds(9 * 3600 + 5 * 60 + 7);

TEST(LogFormatting, tagsEachLevel) {
    EXPECT_EQ(LogFormatting::tag(LogStore::Level::info), "[INFO]");
    EXPECT_EQ(LogFormatting::tag(LogStore::Level::ok), "[OK]");
    EXPECT_EQ(LogFormatting::tag(LogStore::Level::warn), "[WARN]");
    EXPECT_EQ(LogFormatting::tag(LogStore::Level::error), "[ERR]");
    EXPECT_EQ(LogFormatting::tag(LogStore::Level::su2), "[SU2]");
}

TEST(LogFormatting, tellsTheTimeOfTheMachinesZone) {
    {
        const TimeZone greenwich("UTC0");
        EXPECT_EQ(LogFormatting::time(morning), "09:05:07");
    }
    const TimeZone fiveAndAHalfHoursAhead("IST-5:30");
    EXPECT_EQ(LogFormatting::time(morning), "14:35:07");
    EXPECT_EQ(LogFormatting::time(morning + std::chrono::milliseconds(999)), "14:35:07");
}

TEST(LogFormatting, joinsTimeTagAndText) {
    const TimeZone greenwich("UTC0");
    const LogStore::Line line{
        QUuid::createUuid(), "Mesh built · 12 cells", LogStore::Level::ok, morning};
    EXPECT_EQ(LogFormatting::line(line), "09:05:07 [OK] Mesh built · 12 cells");
}

TEST(LogFormatting, HeaderTellsTheLinesOnShow) {
    EXPECT_EQ(LogFormatting::headerText(1, false), "1 line");
    EXPECT_EQ(LogFormatting::headerText(0, false), "0 lines");
    EXPECT_EQ(LogFormatting::headerText(1234, true), "1\u00A0234 lines · auto-scroll");
    EXPECT_EQ(LogFormatting::headerText(1, true), "1 line · auto-scroll");
}

} // namespace
} // namespace ostrella
