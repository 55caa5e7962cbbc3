#include "Models/AppSettings.h"

#include "Models/PreferenceStore.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

using Stored = std::optional<PreferenceValue>;

TEST(AppSettings, areTheDefaultsWithoutStoredValues) {
    MemoryPreferences store;
    const AppSettings settings(store);
    EXPECT_EQ(settings.defaultMaxIterations(), 200);
    EXPECT_EQ(settings.streamlineUpstreamFactor(), 0.5);
    EXPECT_EQ(settings.streamlineDownstreamFactor(), 2.0);
    EXPECT_EQ(settings.streamlineSeedCount(), 100);
}

TEST(AppSettings, writeNothingBackAtStart) {
    MemoryPreferences store;
    const AppSettings settings(store);
    EXPECT_EQ(store.value("Ostrella.defaultMaxIterations"), std::nullopt);
    EXPECT_EQ(store.value("Ostrella.streamlineUpstreamFactor"), std::nullopt);
    EXPECT_EQ(store.value("Ostrella.streamlineDownstreamFactor"), std::nullopt);
    EXPECT_EQ(store.value("Ostrella.streamlineSeedCount"), std::nullopt);
}

TEST(AppSettings, readTheStoredValues) {
    MemoryPreferences store;
    store.set("Ostrella.defaultMaxIterations", std::int64_t{750});
    store.set("Ostrella.streamlineUpstreamFactor", 1.25);
    store.set("Ostrella.streamlineDownstreamFactor", 4.5);
    store.set("Ostrella.streamlineSeedCount", std::int64_t{40});
    const AppSettings settings(store);
    EXPECT_EQ(settings.defaultMaxIterations(), 750);
    EXPECT_EQ(settings.streamlineUpstreamFactor(), 1.25);
    EXPECT_EQ(settings.streamlineDownstreamFactor(), 4.5);
    EXPECT_EQ(settings.streamlineSeedCount(), 40);
}

TEST(AppSettings, writeEachSetThroughUnderItsKey) {
    MemoryPreferences store;
    AppSettings settings(store);
    settings.setDefaultMaxIterations(300);
    settings.setStreamlineUpstreamFactor(0.75);
    settings.setStreamlineDownstreamFactor(3.0);
    settings.setStreamlineSeedCount(60);
    EXPECT_EQ(store.value("Ostrella.defaultMaxIterations"), Stored(std::int64_t{300}));
    EXPECT_EQ(store.value("Ostrella.streamlineUpstreamFactor"), Stored(0.75));
    EXPECT_EQ(store.value("Ostrella.streamlineDownstreamFactor"), Stored(3.0));
    EXPECT_EQ(store.value("Ostrella.streamlineSeedCount"), Stored(std::int64_t{60}));
}

TEST(AppSettings, notifyAtEverySet) {
    MemoryPreferences store;
    AppSettings settings(store);
    int count = 0;
    const auto note = [&count] { ++count; };
    QObject::connect(&settings, &AppSettings::defaultMaxIterationsChanged, note);
    QObject::connect(&settings, &AppSettings::streamlineUpstreamFactorChanged, note);
    QObject::connect(&settings, &AppSettings::streamlineDownstreamFactorChanged, note);
    QObject::connect(&settings, &AppSettings::streamlineSeedCountChanged, note);
    settings.setDefaultMaxIterations(settings.defaultMaxIterations());
    settings.setStreamlineUpstreamFactor(1.0);
    settings.setStreamlineDownstreamFactor(1.0);
    settings.setStreamlineSeedCount(30);
    EXPECT_EQ(count, 4);
}

TEST(AppSettings, takeTheDefaultForAValueOfTheWrongTypeAndLeaveItStored) {
    MemoryPreferences store;
    store.set("Ostrella.streamlineSeedCount", std::string("many"));
    store.set("Ostrella.defaultMaxIterations", 250.5);
    store.set("Ostrella.streamlineUpstreamFactor", std::string("far"));
    AppSettings settings(store);
    EXPECT_EQ(settings.streamlineSeedCount(), 100);
    EXPECT_EQ(settings.defaultMaxIterations(), 200);
    EXPECT_EQ(settings.streamlineUpstreamFactor(), 0.5);
    EXPECT_EQ(store.value("Ostrella.streamlineSeedCount"), Stored(std::string("many")));
    settings.setStreamlineSeedCount(20);
    EXPECT_EQ(store.value("Ostrella.streamlineSeedCount"), Stored(std::int64_t{20}));
}

TEST(AppSettings, takeAWholeNumberForARealOneAndTheOtherWayRound) {
    MemoryPreferences store;
    store.set("Ostrella.streamlineDownstreamFactor", std::int64_t{3});
    store.set("Ostrella.streamlineSeedCount", 80.0);
    const AppSettings settings(store);
    EXPECT_EQ(settings.streamlineDownstreamFactor(), 3.0);
    EXPECT_EQ(settings.streamlineSeedCount(), 80);
}

TEST(AppSettings, holdNoValueToARange) {
    MemoryPreferences store;
    store.set("Ostrella.streamlineSeedCount", std::int64_t{0});
    store.set("Ostrella.defaultMaxIterations", std::int64_t{-4});
    store.set("Ostrella.streamlineDownstreamFactor", 1000.0);
    const AppSettings settings(store);
    EXPECT_EQ(settings.streamlineSeedCount(), 0);
    EXPECT_EQ(settings.defaultMaxIterations(), -4);
    EXPECT_EQ(settings.streamlineDownstreamFactor(), 1000.0);
}

TEST(AppSettings, restoreTheSolversDefaultAlone) {
    MemoryPreferences store;
    AppSettings settings(store);
    settings.setDefaultMaxIterations(5000);
    settings.setStreamlineSeedCount(30);
    settings.restoreSolverDefaults();
    EXPECT_EQ(settings.defaultMaxIterations(), 200);
    EXPECT_EQ(settings.streamlineSeedCount(), 30);
    EXPECT_EQ(store.value("Ostrella.defaultMaxIterations"), Stored(std::int64_t{200}));
}

TEST(AppSettings, restoreTheStreamlinesDefaultsAlone) {
    MemoryPreferences store;
    AppSettings settings(store);
    settings.setDefaultMaxIterations(5000);
    settings.setStreamlineUpstreamFactor(3);
    settings.setStreamlineDownstreamFactor(3);
    settings.setStreamlineSeedCount(30);
    settings.restoreStreamlineDefaults();
    EXPECT_EQ(settings.defaultMaxIterations(), 5000);
    EXPECT_EQ(store.value("Ostrella.streamlineUpstreamFactor"), Stored(0.5));
    EXPECT_EQ(store.value("Ostrella.streamlineDownstreamFactor"), Stored(2.0));
    EXPECT_EQ(store.value("Ostrella.streamlineSeedCount"), Stored(std::int64_t{100}));
}

} // namespace
} // namespace ostrella
