#include "Models/HistoryStore.h"

#include <gmock/gmock.h>

#include <limits>
#include <thread>

namespace ostrella {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using Points = HistoryStore::Points;

TEST(SeriesName, isTheTextItWasMadeOf) {
    const std::string text = "rms";
    const SeriesName name = text;
    EXPECT_EQ(name.string(), "rms");
    EXPECT_EQ(std::string_view(name), "rms");
    EXPECT_EQ(SeriesName().string(), "");
}

TEST(SeriesName, isEqualWhereTheTextIs) {
    EXPECT_EQ(SeriesName("CL"), SeriesName(std::string("CL")));
    EXPECT_NE(SeriesName("CL"), SeriesName("cl"));
    EXPECT_EQ(SeriesName(), SeriesName(""));
}

TEST(SeriesName, isOneForAllThreads) {
    SeriesName other;
    std::thread([&other] { other = "a name of two threads"; }).join();
    EXPECT_EQ(other, SeriesName("a name of two threads"));
}

TEST(HistoryPoint, isIdentifiedByLabelAndIteration) {
    EXPECT_EQ((HistoryPoint{"CL", 12, 0.5}.id()), "CL#12");
    EXPECT_EQ((HistoryPoint{"P", 0, 0.5}.id()), "P#0");
}

TEST(HistoryPoint, isComparedByValue) {
    const HistoryPoint point{"CL", 1, 0.5};
    EXPECT_EQ(point, (HistoryPoint{"CL", 1, 0.5}));
    EXPECT_NE(point, (HistoryPoint{"CD", 1, 0.5}));
    EXPECT_NE(point, (HistoryPoint{"CL", 2, 0.5}));
    EXPECT_NE(point, (HistoryPoint{"CL", 1, 0.25}));
}

TEST(HistoryPoint, staysSmall) {
    EXPECT_LE(sizeof(HistoryPoint), 24U);
}

TEST(HistoryStore, beginsEmpty) {
    const HistoryStore store;
    EXPECT_THAT(store.residuals(), IsEmpty());
    EXPECT_THAT(store.coefficients(), IsEmpty());
    EXPECT_THAT(store.residualLabels(), IsEmpty());
    EXPECT_THAT(store.coefficientLabels(), IsEmpty());
    EXPECT_FALSE(store.hasData());
}

TEST(HistoryStore, keepsWhatIsSetAndNotifiesEachTime) {
    HistoryStore store;
    int count = 0;
    using S = HistoryStore;
    for (const auto signal : {&S::residualsChanged, &S::coefficientsChanged,
             &S::residualLabelsChanged, &S::coefficientLabelsChanged, &S::hasDataChanged}) {
        QObject::connect(&store, signal, [&count] { ++count; });
    }
    for (int round = 1; round <= 2; ++round) {
        store.setResiduals({{"P", 0, -1}});
        store.setCoefficients({{"CL", 0, 0.25}});
        store.setResidualLabels({"P"});
        store.setCoefficientLabels({"CL"});
        store.setHasData(true);
        EXPECT_EQ(count, 5 * round);
    }
    EXPECT_EQ(store.residuals(), (Points{{"P", 0, -1}}));
    EXPECT_EQ(store.coefficients(), (Points{{"CL", 0, 0.25}}));
    EXPECT_THAT(store.residualLabels(), ElementsAre("P"));
    EXPECT_THAT(store.coefficientLabels(), ElementsAre("CL"));
    EXPECT_TRUE(store.hasData());
}

TEST(HistoryStore, isEmptiedByAReset) {
    HistoryStore store;
    store.setResiduals({{"P", 0, -1}});
    store.setCoefficients({{"CL", 0, 0.25}});
    store.setResidualLabels({"P"});
    store.setCoefficientLabels({"CL"});
    store.setHasData(true);
    int count = 0;
    QObject::connect(&store, &HistoryStore::hasDataChanged, [&count] { ++count; });
    store.reset();
    EXPECT_THAT(store.residuals(), IsEmpty());
    EXPECT_THAT(store.coefficients(), IsEmpty());
    EXPECT_THAT(store.residualLabels(), IsEmpty());
    EXPECT_THAT(store.coefficientLabels(), IsEmpty());
    EXPECT_FALSE(store.hasData());
    EXPECT_EQ(count, 1);
}

TEST(LatestIteration, isAbsentWithoutPoints) {
    EXPECT_EQ(HistoryStore().latestIteration(), std::nullopt);
}

TEST(LatestIteration, isTheLargerOfTheLastPoints) {
    HistoryStore store;
    store.setResiduals({{"P", 90, -1}, {"P", 5, -1}});
    EXPECT_EQ(store.latestIteration(), 5);
    store.setCoefficients({{"CL", 3, 1}, {"CL", 7, 1}});
    EXPECT_EQ(store.latestIteration(), 7);
    store.setResiduals({{"P", 9, -1}});
    EXPECT_EQ(store.latestIteration(), 9);
    store.setResiduals({});
    EXPECT_EQ(store.latestIteration(), 7);
}

TEST(LatestIteration, mayBeNegative) {
    HistoryStore store;
    store.setCoefficients({{"CL", -4, 1}});
    EXPECT_EQ(store.latestIteration(), -4);
}

TEST(LatestCoefficients, areInTheOrderOfTheLabels) {
    HistoryStore store;
    store.setCoefficients({{"CL", 0, 0.1}, {"CD", 0, 0.2}, {"CL", 1, 0.3}, {"CD", 1, 0.4}});
    store.setCoefficientLabels({"CD", "CL"});
    EXPECT_THAT(store.latestCoefficients(), ElementsAre(Pair("CD", 0.4), Pair("CL", 0.3)));
}

TEST(LatestCoefficients, areAtTheGreatestIterationAndTheFirstOfEqualOnes) {
    HistoryStore store;
    store.setCoefficients({{"CL", 7, 0.1}, {"CL", 9, 0.2}, {"CL", 9, 0.3}, {"CL", 2, 0.4}});
    store.setCoefficientLabels({"CL"});
    EXPECT_THAT(store.latestCoefficients(), ElementsAre(Pair("CL", 0.2)));
}

TEST(LatestCoefficients, leaveOutLabelsWithoutPointsAndPointsWithoutLabels) {
    HistoryStore store;
    store.setCoefficients({{"CL", 0, 0.1}, {"CEff", 0, 3}});
    store.setCoefficientLabels({"CD", "CL"});
    EXPECT_THAT(store.latestCoefficients(), ElementsAre(Pair("CL", 0.1)));
}

TEST(LatestValue, isTheLastPointOfItsSeries) {
    HistoryStore store;
    store.setCoefficients({{"CL", 5, 0.1}, {"CD", 5, 0.2}, {"CL", 3, 0.3}, {"CD", 6, 0.4}});
    store.setCoefficientLabels({"CL", "CD"});
    EXPECT_EQ(store.latestValue("CL"), 0.3);
    EXPECT_EQ(store.latestValue("CD"), 0.4);
}

TEST(LatestValue, ofALabelThatIsNoCoefficientIsAResidual) {
    HistoryStore store;
    store.setResiduals({{"P", 0, -1}, {"U", 0, -2}, {"P", 1, -1.5}});
    store.setResidualLabels({"P", "U"});
    store.setCoefficients({{"CEff", 0, 9}});
    EXPECT_EQ(store.latestValue("P"), -1.5);
    EXPECT_EQ(store.latestValue("CEff"), std::nullopt) << "no label of a coefficient";
    EXPECT_EQ(store.latestValue("W"), std::nullopt);
}

TEST(LatestValue, ofACoefficientIsNotSoughtAmongTheResiduals) {
    HistoryStore store;
    store.setResiduals({{"CL", 0, -1}});
    store.setCoefficientLabels({"CL"});
    EXPECT_EQ(store.latestValue("CL"), std::nullopt);
}

} // namespace
} // namespace ostrella
