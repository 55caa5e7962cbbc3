#include "Config.h"
#include "Failure.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace ostrella::preview;

namespace {

bool warnsOf(const Config& config, const std::string& word) {
    return std::any_of(config.warnings.begin(), config.warnings.end(),
        [&](const auto& line) { return line.find(word) != std::string::npos; });
}

std::string reasonFor(const std::string& text) {
    try {
        Config::parse(text);
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "accepted";
}

} // namespace

TEST(PreviewConfig, readsOptionsInAnyOrderWithCommentsAndBlanks) {
    const Config c =
        Config::parse("% a comment\n  mu_constant=1.5e-5 % air\r\n\n"
                      "INC_VELOCITY_INIT= ( 30.0, 4 ,\\\n 5 )\nSOLVER= INC_RANS\n"
                      "KIND_TURB_MODEL= SA\nCFL_ADAPT= YES\n"
                      "CFL_ADAPT_PARAM= ( 0.5, 1.5, 5, 400, 0.01, 3 )\n"
                      "MARKER_HEATFLUX= ( body, 0.0, flap, 0 )\nMARKER_FAR= ( farfield )\n");
    EXPECT_EQ(c.regime, Regime::incompressible);
    EXPECT_TRUE(c.turbulent());
    EXPECT_DOUBLE_EQ(c.muConstant, 1.5e-5);
    EXPECT_DOUBLE_EQ(c.incVelocity.x, 30);
    EXPECT_DOUBLE_EQ(c.incVelocity.y, 4);
    EXPECT_DOUBLE_EQ(c.incVelocity.z, 5);
    EXPECT_TRUE(c.cflAdapt);
    EXPECT_DOUBLE_EQ(c.cflUp, 1.5);
    EXPECT_DOUBLE_EQ(c.cflMax, 400);
    EXPECT_EQ(c.cflStart, 3);
    EXPECT_EQ(c.wallMarkers, (std::set<std::string>{"body", "flap"}));
    EXPECT_EQ(c.farMarkers, (std::set<std::string>{"farfield"}));
    EXPECT_TRUE(c.warnings.empty());
}

TEST(PreviewConfig, namesUnknownOptionsAndGoesOn) {
    const Config c = Config::parse("SOLVER= INC_NAVIER_STOKES\nWARP_FACTOR= 9\nITER= 7\n");
    ASSERT_EQ(c.warnings.size(), 1u);
    EXPECT_EQ(
        c.warnings[0], "option WARP_FACTOR is not known to the preview solver and is ignored.");
    EXPECT_EQ(c.iterations, 7);
}

TEST(PreviewConfig, replacesAMissingClosureAndSaysSo) {
    const Config c = Config::parse("SOLVER= INC_RANS\nKIND_TURB_MODEL= SST\n");
    EXPECT_TRUE(c.turbulent());
    EXPECT_TRUE(warnsOf(c, "KIND_TURB_MODEL= SST is not available, Spalart-Allmaras (SA) is used"));
}

TEST(PreviewConfig, readsTheModelsOptions) {
    const Config c =
        Config::parse("SOLVER= RANS\nMACH_NUMBER= 0.3\nINIT_OPTION= TD_CONDITIONS\n"
                      "KIND_TURB_MODEL= SA\nSA_OPTIONS= (ROTATION, BCM)\nMARKER_SYM= ( half )\n"
                      "MARKER_EULER= ( tunnel )\n");
    EXPECT_TRUE(c.saRotation);
    EXPECT_TRUE(c.saTransition);
    EXPECT_EQ(c.slipMarkers, (std::set<std::string>{"half", "tunnel"}));
    EXPECT_EQ(c.convergenceFields, std::vector<std::string>{"RMS_DENSITY"});
}

TEST(PreviewConfig, refusesWhatItCannotHonour) {
    EXPECT_EQ(reasonFor("ITER= 5\n"), "The configuration names no SOLVER.");
    EXPECT_NE(
        reasonFor("SOLVER= HEAT_EQUATION\n").find("beyond the preview solver"), std::string::npos);
    EXPECT_NE(reasonFor("SOLVER= INC_EULER\nITER= many\n").find("ITER= many"), std::string::npos);
    EXPECT_NE(reasonFor("SOLVER= INC_EULER\nREF_AREA= 0\n").find("above 0"), std::string::npos);
    EXPECT_NE(reasonFor("SOLVER= INC_EULER\nREF_AREA= nan\n").find("finite"), std::string::npos);
    EXPECT_NE(
        reasonFor("SOLVER= INC_EULER\nRESTART_SOL= YES\n").find("only do NO"), std::string::npos);
    EXPECT_NE(reasonFor("SOLVER= INC_EULER\nMARKER_INLET= ( in, 1, 2, 3 )\n").find("MARKER_INLET"),
        std::string::npos);
    EXPECT_NE(
        reasonFor("SOLVER= INC_NAVIER_STOKES\nMARKER_HEATFLUX= ( w, 20 )\n").find("adiabatic"),
        std::string::npos);
    EXPECT_EQ(reasonFor("SOLVER= NAVIER_STOKES\n"), "MACH_NUMBER must be above 0.");
    EXPECT_EQ(reasonFor("SOLVER= INC_EULER\nITER= 5\nITER= 6\n"),
        "ITER appears twice in the configuration.");
    EXPECT_NE(reasonFor("SOLVER= INC_EULER\nrubbish\n").find("Line 2"), std::string::npos);
    EXPECT_THROW(Config::read("no/such/file.cfg"), Failure);
}
