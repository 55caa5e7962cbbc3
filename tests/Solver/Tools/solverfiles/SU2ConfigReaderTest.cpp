#include "Solver/Tools/SU2ConfigReader.h"
#include "Solver/Tools/SU2ConfigTemplate.h"

#include <fmt/format.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace ostrella {
namespace {

using SU2ConfigReader::inputsComment;
using SU2ConfigReader::parse;

constexpr const char* incompressibleTemplate = R"(% The flow.
SOLVER= {{SOLVER}}
KIND_TURB_MODEL= {{KIND_TURB_MODEL}}
{{SA_OPTIONS_LINE}}
INC_DENSITY_INIT= {{INC_DENSITY}}
INC_VELOCITY_INIT= ({{VX}}, {{VY}}, {{VZ}})
AOA= {{AOA_DEG}}
SIDESLIP_ANGLE= {{BETA_DEG}}
REF_AREA= 3.141593
ITER= {{ITER}}
MESH_FILENAME= {{MESH_FILENAME}}
)";

constexpr const char* compressibleTemplate = R"(SOLVER= {{SOLVER}}
KIND_TURB_MODEL= {{KIND_TURB_MODEL}}
{{SA_OPTIONS_LINE}}
MACH_NUMBER= {{MACH}}
AOA= {{AOA_DEG}}
SIDESLIP_ANGLE= {{BETA_DEG}}
FREESTREAM_PRESSURE= {{FREESTREAM_PRESSURE}}
FREESTREAM_TEMPERATURE= {{FREESTREAM_TEMPERATURE}}
ITER= {{ITER}}
MESH_FILENAME= {{MESH_FILENAME}}
)";

std::string rendered(const SimulationInputs& inputs, int dimensions = 3) {
    return inputs.regime == FlowRegime::compressible
               ? SU2ConfigTemplate::renderCompressible(compressibleTemplate, inputs, "mesh.su2")
               : SU2ConfigTemplate::renderIncompressible(
                     incompressibleTemplate, inputs, "mesh.su2", dimensions);
}

/// As a number field of the sidebar holds it: four decimals.
double fieldValue(std::mt19937& random, double low, double high) {
    const double value = std::uniform_real_distribution(low, high)(random);
    return std::stod(fmt::format("{:.4f}", value));
}

SimulationInputs sidebarInputs(std::mt19937& random, FlowRegime regime) {
    SimulationInputs inputs;
    inputs.velocity = fieldValue(random, 0.01, 500);
    inputs.alpha = fieldValue(random, -90, 90);
    inputs.beta = fieldValue(random, -90, 90);
    inputs.density = fieldValue(random, 0.01, 10);
    inputs.maxIterations = std::uniform_int_distribution(50, 50000)(random);
    inputs.turbulenceModel =
        allTurbulenceModels[static_cast<std::size_t>(inputs.maxIterations) % 3];
    inputs.regime = regime;
    inputs.saRotationCorrection = inputs.maxIterations % 2 == 0;
    inputs.saTransition = inputs.maxIterations % 5 == 0;
    inputs.streamlineUpstreamFactor =
        static_cast<float>(std::uniform_real_distribution(0.1, 3.0)(random));
    inputs.streamlineDownstreamFactor =
        static_cast<float>(std::uniform_real_distribution(0.5, 10.0)(random));
    inputs.streamlineSeedCount = std::uniform_int_distribution(20, 500)(random);
    return inputs;
}

void expectFlowOf(const ConfiguredInputs& read, const SimulationInputs& inputs) {
    EXPECT_EQ(read.velocity, inputs.velocity);
    EXPECT_EQ(read.alpha, inputs.alpha);
    EXPECT_EQ(read.beta, inputs.beta);
    EXPECT_EQ(read.density, inputs.density);
    EXPECT_EQ(read.maxIterations, inputs.maxIterations);
    EXPECT_EQ(read.turbulenceModel, inputs.turbulenceModel);
    EXPECT_EQ(read.regime, inputs.regime);
    const bool hasOptions = inputs.turbulenceModel == TurbulenceModel::spalartAllmaras;
    EXPECT_EQ(read.saRotationCorrection, hasOptions && inputs.saRotationCorrection);
    EXPECT_EQ(read.saTransition, hasOptions && inputs.saTransition);
    EXPECT_EQ(read.meshFilename, "mesh.su2");
}

TEST(SU2ConfigReader, FindsEveryValueOfTheSidebarAgainInTheOptionsOfConstantDensity) {
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i) {
        const auto inputs = sidebarInputs(random, FlowRegime::incompressible);
        const auto read = parse(rendered(inputs));
        expectFlowOf(read, inputs);
        EXPECT_EQ(read.referenceArea, 3.141593);
        EXPECT_FALSE(read.streamlineUpstreamFactor || read.streamlineDownstreamFactor ||
                     read.streamlineSeedCount);
    }
}

TEST(SU2ConfigReader, FindsTheSpeedAgainInTwoDimensions) {
    std::mt19937 random(2);
    for (int i = 0; i < 2000; ++i) {
        const auto inputs = sidebarInputs(random, FlowRegime::incompressible);
        EXPECT_EQ(parse(rendered(inputs, 2)).velocity, inputs.velocity);
    }
}

TEST(SU2ConfigReader, FindsTheEndsOfTheRangesAgain) {
    for (const double speed : {0.01, 0.0101, 499.9999, 500.0}) {
        for (const double angle : {-90.0, 0.0, 45.0, 90.0}) {
            SimulationInputs inputs;
            inputs.velocity = speed;
            inputs.alpha = angle;
            inputs.beta = angle;
            EXPECT_EQ(parse(rendered(inputs)).velocity, speed);
        }
    }
}

TEST(SU2ConfigReader, FindsEveryValueAgainWithTheCommentOfTheApplication) {
    std::mt19937 random(3);
    for (int i = 0; i < 2000; ++i) {
        for (const FlowRegime regime : allFlowRegimes) {
            const auto inputs = sidebarInputs(random, regime);
            const auto read = parse(rendered(inputs) + inputsComment(inputs));
            EXPECT_EQ(read.velocity, inputs.velocity);
            EXPECT_EQ(read.streamlineUpstreamFactor, inputs.streamlineUpstreamFactor);
            EXPECT_EQ(read.streamlineDownstreamFactor, inputs.streamlineDownstreamFactor);
            EXPECT_EQ(read.streamlineSeedCount, inputs.streamlineSeedCount);
        }
    }
}

TEST(SU2ConfigReader, FindsAFineSpeedAgainThatNoNumberFieldHolds) {
    SimulationInputs inputs;
    for (const double speed : {50.123456789, 0.0123456789, 1.0 / 3, 499.99999999}) {
        inputs.velocity = speed;
        EXPECT_EQ(parse(rendered(inputs) + inputsComment(inputs)).velocity, speed);
    }
}

TEST(SU2ConfigReader, TakesTheRoundestSpeedOfAMachNumber) {
    SimulationInputs inputs;
    inputs.regime = FlowRegime::compressible;
    for (const double speed : {100.0, 170.0, 171.3, 250.5, 500.0}) {
        inputs.velocity = speed;
        EXPECT_EQ(parse(rendered(inputs)).velocity, speed);
    }
    inputs.velocity = 170.02;
    EXPECT_EQ(parse(rendered(inputs)).velocity, 170.0) << "it would be written so, too";
}

TEST(SU2ConfigReader, FindsDensityAndAnglesAgainOfACompressibleFlow) {
    std::mt19937 random(4);
    for (int i = 0; i < 2000; ++i) {
        const auto inputs = sidebarInputs(random, FlowRegime::compressible);
        auto read = parse(rendered(inputs));
        EXPECT_NEAR(*read.velocity, inputs.velocity, 0.0341) << "a ten-thousandth of sound";
        read.velocity = inputs.velocity;
        expectFlowOf(read, inputs);
    }
}

TEST(SU2ConfigReader, WritesTheCommentInTheWordsOfTheBatchProgram) {
    SimulationInputs inputs;
    inputs.velocity = 12.5;
    inputs.streamlineUpstreamFactor = 0.1F;
    EXPECT_EQ(inputsComment(inputs), "% For ostrella-batch --results: --velocity 12.5 "
                                     "--inlet-offset 0.1 --wake-length 2 --seed-count 100\n");
}

TEST(SU2ConfigReader, BelievesTheOptionsMoreThanACommentThatHasBeenLeftBehind) {
    SimulationInputs inputs;
    const std::string comment = inputsComment(inputs);
    inputs.velocity = 60;
    EXPECT_EQ(parse(rendered(inputs) + comment).velocity, 60.0);
    inputs.regime = FlowRegime::compressible;
    EXPECT_EQ(parse(rendered(inputs) + comment).velocity, 60.0);
}

TEST(SU2ConfigReader, PassesOverACommentThatMakesNoSense) {
    const std::string beginning = "% For ostrella-batch --results:";
    for (const char* rest : {"", " --seed-count", " --seed-count many", " --seed-count 19",
             " --seed-count 1e99", " --seed-count 20.5", " seed-count 30", " --wake-length nan",
             " --inlet-offset -1", " --velocity", "--", " - 1", " --alpha 5"}) {
        EXPECT_EQ(parse(beginning + rest), ConfiguredInputs()) << rest;
    }
    EXPECT_EQ(parse(beginning + " --seed-count 30").streamlineSeedCount, 30);
}

TEST(SU2ConfigReader, ReadsTheSolversLanguage) {
    const auto read = parse("% SOLVER= EULER\r\n"
                            "  SOLVER =  INC_RANS  % a comment\r\n"
                            "KIND_TURB_MODEL=SST\r\n"
                            "INC_VELOCITY_INIT= ( 3.0, \\\r\n"
                            "   +4.0, 0.0 )\r\n"
                            "INC_DENSITY_INIT= 998.2\r\n"
                            "ITER= 1000\r\n"
                            "ITER= 2000\r\n"
                            "MESH_FILENAME= ../ship hull.su2\r\n");
    EXPECT_EQ(read.regime, FlowRegime::incompressible);
    EXPECT_EQ(read.turbulenceModel, TurbulenceModel::sst);
    EXPECT_EQ(read.velocity, 5.0);
    EXPECT_EQ(read.density, 998.2);
    EXPECT_EQ(read.maxIterations, 1000);
    EXPECT_EQ(read.meshFilename, "../ship hull.su2");
    EXPECT_EQ(read.saTransition, false);
    EXPECT_FALSE(read.alpha || read.beta || read.referenceArea);
}

TEST(SU2ConfigReader, KnowsTheModelsByTheirFamily) {
    const auto model = [](const std::string& solver, const std::string& closure) {
        return parse("SOLVER= " + solver + "\nKIND_TURB_MODEL= " + closure + "\n").turbulenceModel;
    };
    EXPECT_EQ(model("RANS", "SA_NEG"), TurbulenceModel::spalartAllmaras);
    EXPECT_EQ(model("RANS", "SST_SUST"), TurbulenceModel::sst);
    EXPECT_EQ(model("RANS", "NONE"), TurbulenceModel::laminar);
    EXPECT_EQ(model("NAVIER_STOKES", "SA"), TurbulenceModel::laminar);
    EXPECT_EQ(model("INC_EULER", "SA"), TurbulenceModel::laminar);
    EXPECT_EQ(model("RANS", "KE"), std::nullopt);
}

TEST(SU2ConfigReader, MeasuresTheSpeedOfSoundInTheConfiguredAir) {
    const auto speed = [](const std::string& options) {
        return parse("SOLVER= RANS\nMACH_NUMBER= 0.5000000000\n" + options).velocity.value_or(0);
    };
    EXPECT_NEAR(speed(""), 170.14851438, 1e-7) << "standard air, 288.15 K";
    EXPECT_NEAR(speed("FREESTREAM_TEMPERATURE= 300\n"), 0.5 * std::sqrt(1.4 * 287.058 * 300), 1e-7);
    EXPECT_NEAR(speed("GAS_CONSTANT= 296.8\nGAMMA_VALUE= 1.3\n"),
        0.5 * std::sqrt(1.3 * 296.8 * 288.15), 1e-7);
}

TEST(SU2ConfigReader, KnowsNothingOfWhatIsNoNumber) {
    for (const char* velocity : {"", "()", "(fast, 0, 0)", "(1, 2, nan)", "(1e300, 0, 0)",
             "(inf, 0, 0)", "(0, 0, 0)", "{{VX}}"}) {
        EXPECT_EQ(
            parse(std::string("SOLVER= INC_RANS\nINC_VELOCITY_INIT= ") + velocity + "\n").velocity,
            std::nullopt)
            << velocity;
    }
    EXPECT_EQ(parse("SOLVER= RANS\nMACH_NUMBER= 0.0000\n").velocity, std::nullopt);
    EXPECT_EQ(parse("ITER= 1e12\n").maxIterations, std::nullopt);
    EXPECT_EQ(parse(""), ConfiguredInputs());
    EXPECT_EQ(parse(std::string("\0\xFF=\\\n=\n\\", 7)), ConfiguredInputs());
}

} // namespace
} // namespace ostrella
