#include "Batch/EarlierRun.h"

#include <gtest/gtest.h>

namespace ostrella {
namespace {

/// What `words` make of a configuration.
ConfiguredInputs merged(std::vector<std::string> words, const ConfiguredInputs& configured) {
    words.insert(words.begin(), {"ostrella-batch", "--results", "run"});
    return EarlierRun::merged(std::get<BatchOptions>(parseBatchOptions(words)), configured);
}

TEST(EarlierRun, TakesWhatTheConfigurationTells) {
    ConfiguredInputs configured;
    configured.velocity = 60;
    configured.alpha = 3;
    configured.turbulenceModel = TurbulenceModel::sst;
    configured.streamlineUpstreamFactor = 1;
    configured.streamlineDownstreamFactor = 4;
    configured.streamlineSeedCount = 30;
    configured.saTransition = true;
    EXPECT_EQ(merged({}, configured), configured);
}

TEST(EarlierRun, BelievesTheUserMore) {
    ConfiguredInputs configured;
    configured.velocity = 60;
    configured.alpha = 3;
    configured.streamlineSeedCount = 30;
    configured.saTransition = false;
    const auto result =
        merged({"--velocity", "50", "--alpha", "0", "--beta", "2", "--density", "1.225",
                   "--iterations", "200", "--turbulence", "laminar", "--regime", "compressible",
                   "--sa-rotation-correction", "--sa-transition", "--inlet-offset", "1",
                   "--wake-length", "3", "--seed-count", "100"},
            configured);
    ConfiguredInputs expected;
    expected.velocity = 50;
    expected.alpha = 0;
    expected.beta = 2;
    expected.density = 1.225;
    expected.maxIterations = 200;
    expected.turbulenceModel = TurbulenceModel::laminar;
    expected.regime = FlowRegime::compressible;
    expected.saRotationCorrection = true;
    expected.saTransition = true;
    expected.streamlineUpstreamFactor = 1.0F;
    expected.streamlineDownstreamFactor = 3.0F;
    expected.streamlineSeedCount = 100;
    EXPECT_EQ(result, expected);
}

TEST(EarlierRun, WhatNobodySaysIsTheDefaultWhereItIsNeededAndUnknownElsewhere) {
    ConfiguredInputs expected;
    expected.velocity = 50;
    expected.turbulenceModel = TurbulenceModel::spalartAllmaras;
    expected.streamlineUpstreamFactor = 0.5F;
    expected.streamlineDownstreamFactor = 2.0F;
    expected.streamlineSeedCount = 100;
    EXPECT_EQ(merged({}, {}), expected);
}

} // namespace
} // namespace ostrella
