#include "Models/SimulationParameters.h"

#include "Models/AppSettings.h"
#include "Models/PreferenceStore.h"

#include <gmock/gmock.h>

#include <vector>

namespace ostrella {
namespace {

using testing::ElementsAre;

TriangleMesh oneFacet() {
    return {{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}}};
}

TEST(TurbulenceModel, isListedAndNamed) {
    EXPECT_THAT(allTurbulenceModels, ElementsAre(TurbulenceModel::spalartAllmaras,
                                         TurbulenceModel::sst, TurbulenceModel::laminar));
    EXPECT_EQ(rawValue(TurbulenceModel::spalartAllmaras), "spalartAllmaras");
    EXPECT_EQ(rawValue(TurbulenceModel::sst), "sst");
    EXPECT_EQ(rawValue(TurbulenceModel::laminar), "laminar");
    EXPECT_EQ(turbulenceModelFromRawValue("sst"), TurbulenceModel::sst);
    EXPECT_EQ(turbulenceModelFromRawValue("SST"), std::nullopt);
    EXPECT_EQ(turbulenceModelFromRawValue(""), std::nullopt);
}

TEST(FlowRegime, isListedAndNamed) {
    EXPECT_THAT(allFlowRegimes, ElementsAre(FlowRegime::incompressible, FlowRegime::compressible));
    EXPECT_EQ(rawValue(FlowRegime::incompressible), "incompressible");
    EXPECT_EQ(rawValue(FlowRegime::compressible), "compressible");
    EXPECT_EQ(flowRegimeFromRawValue("compressible"), FlowRegime::compressible);
    EXPECT_EQ(flowRegimeFromRawValue("transonic"), std::nullopt);
}

TEST(SimulationParameters, beginEmptyWithTheDefaults) {
    const SimulationParameters parameters;
    EXPECT_FALSE(parameters.stlURL());
    EXPECT_FALSE(parameters.mesh());
    EXPECT_EQ(parameters.velocity(), 50.0);
    EXPECT_EQ(parameters.alpha(), 0.0);
    EXPECT_EQ(parameters.beta(), 0.0);
    EXPECT_EQ(parameters.density(), 1.225);
    EXPECT_EQ(parameters.turbulenceModel(), TurbulenceModel::spalartAllmaras);
    EXPECT_EQ(parameters.regime(), FlowRegime::incompressible);
    EXPECT_FALSE(parameters.saRotationCorrection());
    EXPECT_FALSE(parameters.saTransition());
    EXPECT_EQ(parameters.maxIterations(), 200);
    EXPECT_EQ(parameters.rotationX(), 0.0);
    EXPECT_EQ(parameters.rotationY(), 0.0);
    EXPECT_EQ(parameters.rotationZ(), 0.0);
    EXPECT_FALSE(parameters.loadingFileName());
    EXPECT_FALSE(parameters.openEdgeCount());
    EXPECT_FALSE(parameters.isRunning());
    EXPECT_FALSE(parameters.lastRunResult());
}

TEST(SimulationParameters, takeWhateverIsWritten) {
    SimulationParameters parameters;
    parameters.setVelocity(-900);
    parameters.setDensity(0);
    parameters.setAlpha(400);
    EXPECT_EQ(parameters.velocity(), -900.0);
    EXPECT_EQ(parameters.density(), 0.0);
    EXPECT_EQ(parameters.alpha(), 400.0);
}

TEST(SimulationParameters, narrowTheAnglesAheadOfTheArithmetic) {
    // Expected values by 32-bit arithmetic in another program.
    SimulationParameters parameters;
    parameters.setRotationX(90);
    parameters.setRotationY(30.1);
    parameters.setRotationZ(-180);
    EXPECT_EQ(parameters.rotationRadians(), Vec3(0x1.921fb4p+0F, 0x1.0cf9e6p-1F, -0x1.921fb4p+1F));
    parameters.setRotationX(12.3456789);
    EXPECT_EQ(parameters.rotationRadians().x, 0x1.b949c8p-3F);
}

TEST(Snapshot, takesTheIterationLimitAndTheStreamlinesFromTheSettings) {
    MemoryPreferences store;
    AppSettings settings(store);
    settings.setDefaultMaxIterations(321);
    settings.setStreamlineUpstreamFactor(0.3);
    settings.setStreamlineDownstreamFactor(4.1);
    settings.setStreamlineSeedCount(77);
    SimulationParameters parameters;
    parameters.setVelocity(12);
    parameters.setAlpha(3);
    parameters.setBeta(-4);
    parameters.setDensity(0.9);
    parameters.setTurbulenceModel(TurbulenceModel::sst);
    parameters.setRegime(FlowRegime::compressible);
    parameters.setSARotationCorrection(true);
    parameters.setSATransition(true);
    parameters.setMaxIterations(999);

    const SimulationInputs inputs = parameters.snapshot(&settings);
    const SimulationInputs expected{12, 3, -4, 0.9, 321, TurbulenceModel::sst,
        FlowRegime::compressible, true, true, 0.3F, 4.1F, 77};
    EXPECT_EQ(inputs, expected);
}

TEST(Snapshot, hasDefaultsForTheStreamlinesWithoutSettings) {
    SimulationParameters parameters;
    parameters.setMaxIterations(999);
    const SimulationInputs inputs = parameters.snapshot(nullptr);
    EXPECT_EQ(inputs.maxIterations, 999);
    EXPECT_EQ(inputs.streamlineUpstreamFactor, 0.5F);
    EXPECT_EQ(inputs.streamlineDownstreamFactor, 2.0F);
    EXPECT_EQ(inputs.streamlineSeedCount, 100);
}

TEST(Snapshot, isNotReachedByWhatIsTouchedAfterwards) {
    MemoryPreferences store;
    AppSettings settings(store);
    SimulationParameters parameters;
    const SimulationInputs inputs = parameters.snapshot(&settings);
    settings.setDefaultMaxIterations(5);
    parameters.setVelocity(1);
    EXPECT_EQ(inputs.maxIterations, 200);
    EXPECT_EQ(inputs.velocity, 50.0);
    EXPECT_EQ(parameters.snapshot(&settings).maxIterations, 5);
}

TEST(SettingTheMesh, endsTheResultAndThenTheOpenEdges) {
    SimulationParameters parameters;
    parameters.setMesh(oneFacet());
    parameters.setLastRunResult(SimulationResult());
    parameters.setOpenEdgeCount(3);
    std::vector<std::string> order;
    QObject::connect(&parameters, &SimulationParameters::lastRunResultChanged, [&] {
        order.emplace_back("result");
        EXPECT_TRUE(parameters.openEdgeCount());
    });
    QObject::connect(&parameters, &SimulationParameters::openEdgeCountChanged,
        [&order] { order.emplace_back("edges"); });
    // The same model once more.
    parameters.setMesh(oneFacet());
    EXPECT_FALSE(parameters.lastRunResult());
    EXPECT_FALSE(parameters.openEdgeCount());
    EXPECT_THAT(order, ElementsAre("result", "edges"));
    EXPECT_EQ(parameters.mesh()->facetCount(), 1U);
}

TEST(SettingTheMesh, endsTheResultDuringARunToo) {
    SimulationParameters parameters;
    parameters.setLastRunResult(SimulationResult());
    parameters.setIsRunning(true);
    parameters.setMesh(std::nullopt);
    EXPECT_FALSE(parameters.lastRunResult());
}

using Setter = void (SimulationParameters::*)(double);

class SettingARotation : public testing::TestWithParam<Setter> {};

TEST_P(SettingARotation, endsTheResultOfTheOldOrientation) {
    SimulationParameters parameters;
    parameters.setLastRunResult(SimulationResult());
    (parameters.*GetParam())(10);
    EXPECT_FALSE(parameters.lastRunResult());
}

TEST_P(SettingARotation, leavesTheResultAtTheSameValue) {
    SimulationParameters parameters;
    (parameters.*GetParam())(10);
    parameters.setLastRunResult(SimulationResult());
    (parameters.*GetParam())(10);
    EXPECT_TRUE(parameters.lastRunResult());
}

TEST_P(SettingARotation, leavesTheResultDuringARun) {
    SimulationParameters parameters;
    parameters.setLastRunResult(SimulationResult());
    parameters.setIsRunning(true);
    (parameters.*GetParam())(10);
    EXPECT_TRUE(parameters.lastRunResult());
}

INSTANTIATE_TEST_SUITE_P(EachAxis, SettingARotation,
    testing::Values(&SimulationParameters::setRotationX, &SimulationParameters::setRotationY,
        &SimulationParameters::setRotationZ));

TEST(SettingAFlowValue, leavesTheResultOnShow) {
    SimulationParameters parameters;
    parameters.setLastRunResult(SimulationResult());
    parameters.setOpenEdgeCount(0);
    parameters.setVelocity(1);
    parameters.setAlpha(2);
    parameters.setBeta(3);
    parameters.setDensity(4);
    parameters.setTurbulenceModel(TurbulenceModel::laminar);
    parameters.setRegime(FlowRegime::compressible);
    parameters.setSARotationCorrection(true);
    parameters.setSATransition(true);
    parameters.setMaxIterations(7);
    parameters.setLoadingFileName("a.stl");
    parameters.setSTLURL("a.stl");
    EXPECT_TRUE(parameters.lastRunResult());
    EXPECT_EQ(parameters.openEdgeCount(), 0);
}

TEST(SimulationParameters, notifyAtEverySet) {
    SimulationParameters parameters;
    int count = 0;
    const auto note = [&count] { ++count; };
    using P = SimulationParameters;
    for (const auto signal : {&P::stlURLChanged, &P::meshChanged, &P::velocityChanged,
             &P::alphaChanged, &P::betaChanged, &P::densityChanged, &P::turbulenceModelChanged,
             &P::regimeChanged, &P::saRotationCorrectionChanged, &P::saTransitionChanged,
             &P::maxIterationsChanged, &P::rotationXChanged, &P::rotationYChanged,
             &P::rotationZChanged, &P::loadingFileNameChanged, &P::isRunningChanged}) {
        QObject::connect(&parameters, signal, note);
    }
    parameters.setSTLURL(std::nullopt);
    parameters.setMesh(std::nullopt);
    parameters.setVelocity(50);
    parameters.setAlpha(0);
    parameters.setBeta(0);
    parameters.setDensity(1.225);
    parameters.setTurbulenceModel(TurbulenceModel::spalartAllmaras);
    parameters.setRegime(FlowRegime::incompressible);
    parameters.setSARotationCorrection(false);
    parameters.setSATransition(false);
    parameters.setMaxIterations(200);
    parameters.setRotationX(0);
    parameters.setRotationY(0);
    parameters.setRotationZ(0);
    parameters.setLoadingFileName(std::nullopt);
    parameters.setIsRunning(false);
    EXPECT_EQ(count, 16);
}

} // namespace
} // namespace ostrella
