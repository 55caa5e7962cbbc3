#include "Views/Format/LogFilter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ostrella {
namespace {

using Level = LogStore::Level;

/// A line of each level, told apart by its level's name.
std::vector<LogStore::Line> lines() {
    std::vector<LogStore::Line> result;
    for (const Level level : {Level::su2, Level::info, Level::warn, Level::ok, Level::error}) {
        result.push_back({QUuid(), std::string(LogStore::Line::rawValue(level)), level, Date()});
    }
    return result;
}

std::string shown(LogFilter filter) {
    std::string texts;
    for (const auto& line : apply(filter, lines())) {
        texts += line.text + " ";
    }
    return texts;
}

TEST(LogFilter, KeepsTheLinesOfItsLevelsInTheirOrder) {
    EXPECT_EQ(shown(LogFilter::all), "su2 info warn ok error ");
    EXPECT_EQ(shown(LogFilter::info), "info ok ");
    EXPECT_EQ(shown(LogFilter::warn), "warn ");
    EXPECT_EQ(shown(LogFilter::err), "error ");
    EXPECT_EQ(shown(LogFilter::su2), "su2 ");
}

TEST(LogFilter, AllHandsBackWhatItIsGiven) {
    EXPECT_EQ(apply(LogFilter::all, lines()), lines());
    EXPECT_TRUE(apply(LogFilter::err, {}).empty());
}

TEST(LogFilter, HasNames) {
    for (const char* name : {"all", "info", "warn", "err", "su2"}) {
        const auto filter = logFilterFromRawValue(name);
        ASSERT_TRUE(filter) << name;
        EXPECT_EQ(rawValue(*filter), name);
    }
    EXPECT_EQ(logFilterFromRawValue("error"), std::nullopt);
    EXPECT_EQ(allLogFilters.size(), 5U);
}

TEST(LogFilter, OfALevel) {
    EXPECT_EQ(logFilterFor(Level::info), LogFilter::info);
    EXPECT_EQ(logFilterFor(Level::ok), LogFilter::info);
    EXPECT_EQ(logFilterFor(Level::warn), LogFilter::warn);
    EXPECT_EQ(logFilterFor(Level::error), LogFilter::err);
    EXPECT_EQ(logFilterFor(Level::su2), LogFilter::su2);
    EXPECT_EQ(logFilterFor(std::nullopt), LogFilter::all);
}

TEST(LogFilter, HelpOfTheChips) {
    EXPECT_EQ(logFilterHelp(LogFilter::all), "Show every line");
    EXPECT_EQ(logFilterHelp(LogFilter::info), "Show only info lines");
    EXPECT_EQ(logFilterHelp(LogFilter::warn), "Show only warn lines");
    EXPECT_EQ(logFilterHelp(LogFilter::err), "Show only err lines");
    EXPECT_EQ(logFilterHelp(LogFilter::su2), "Show only su2 lines");
}

} // namespace
} // namespace ostrella
