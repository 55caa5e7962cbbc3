#include "Batch/BatchOptions.h"

#include "Platform/AppBundle.h"

#include <gmock/gmock.h>

namespace ostrella {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::variant<BatchOptions, BatchReply> parse(std::vector<std::string> words) {
    words.insert(words.begin(), "ostrella-batch");
    return parseBatchOptions(words);
}

BatchOptions options(std::vector<std::string> words) {
    const auto parsed = parse(std::move(words));
    if (const auto* reply = std::get_if<BatchReply>(&parsed)) {
        ADD_FAILURE() << reply->text;
        return {};
    }
    return std::get<BatchOptions>(parsed);
}

/// The text of a command line that is refused with status 2.
std::string refusal(std::vector<std::string> words) {
    const auto parsed = parse(std::move(words));
    const auto* reply = std::get_if<BatchReply>(&parsed);
    if (!reply) {
        ADD_FAILURE() << "the command line was taken";
        return {};
    }
    EXPECT_EQ(reply->status, 2);
    EXPECT_THAT(reply->text, HasSubstr("See ostrella-batch --help."));
    return reply->text.substr(0, reply->text.find('\n'));
}

TEST(BatchOptions, AModelAloneRunsWithTheSidebarsDefaults) {
    const BatchOptions read = options({"wing.stl"});
    EXPECT_EQ(read.model, "wing.stl");
    EXPECT_FALSE(read.sample);
    EXPECT_FALSE(read.demo);
    EXPECT_EQ(read.inputs, SimulationInputs());
    EXPECT_EQ(read.inputs.velocity, 50);
    EXPECT_EQ(read.inputs.maxIterations, 200);
    EXPECT_EQ(read.rotationX, 0);
    EXPECT_FALSE(read.exportFolder);
    EXPECT_FALSE(read.jsonFile);
    EXPECT_FALSE(read.prepareFolder);
    EXPECT_FALSE(read.keepRunDirectory);
    EXPECT_FALSE(read.quiet);
    EXPECT_FALSE(read.resultsFolder);
    EXPECT_FALSE(read.dimensions);
    EXPECT_FALSE(read.streamlinesFile);
    EXPECT_FALSE(read.vortexFile);
    EXPECT_FALSE(read.imageFile);
    EXPECT_FALSE(read.noRun);
    EXPECT_EQ(read.surface, SurfaceChoice::automatic);
    EXPECT_FALSE(read.surfaceFile);
    EXPECT_THAT(read.given, IsEmpty());
}

TEST(BatchOptions, EveryParameterHasAnOption) {
    const BatchOptions read = options({"--sample", "sphere", "--velocity", "60.5", "--alpha", "-5",
        "--beta=7", "--density", "1.1", "--regime", "compressible", "--turbulence", "sst",
        "--sa-rotation-correction", "--sa-transition", "--iterations", "75", "--inlet-offset",
        "0.25", "--wake-length", "4", "--seed-count", "30", "--rotate", "-90,12.5,180", "--export",
        "out", "--json=a=b.json", "--keep-run-directory", "--quiet"});
    EXPECT_EQ(read.sample, "sphere");
    EXPECT_EQ(read.inputs.velocity, 60.5);
    EXPECT_EQ(read.inputs.alpha, -5);
    EXPECT_EQ(read.inputs.beta, 7);
    EXPECT_EQ(read.inputs.density, 1.1);
    EXPECT_EQ(read.inputs.regime, FlowRegime::compressible);
    EXPECT_EQ(read.inputs.turbulenceModel, TurbulenceModel::sst);
    EXPECT_TRUE(read.inputs.saRotationCorrection);
    EXPECT_TRUE(read.inputs.saTransition);
    EXPECT_EQ(read.inputs.maxIterations, 75);
    EXPECT_EQ(read.inputs.streamlineUpstreamFactor, 0.25F);
    EXPECT_EQ(read.inputs.streamlineDownstreamFactor, 4);
    EXPECT_EQ(read.inputs.streamlineSeedCount, 30);
    EXPECT_EQ(read.rotationX, -90);
    EXPECT_EQ(read.rotationY, 12.5);
    EXPECT_EQ(read.rotationZ, 180);
    EXPECT_EQ(read.exportFolder, "out");
    EXPECT_EQ(read.jsonFile, "a=b.json");
    EXPECT_TRUE(read.keepRunDirectory);
    EXPECT_TRUE(read.quiet);
    EXPECT_EQ(options({"--demo", "--prepare", "case"}).prepareFolder, "case");
}

TEST(BatchOptions, TheLimitsBelongToTheRange) {
    EXPECT_EQ(options({"--demo", "--velocity", "0.01"}).inputs.velocity, 0.01);
    EXPECT_EQ(options({"--demo", "--velocity", "500"}).inputs.velocity, 500);
    EXPECT_EQ(options({"--demo", "--alpha", "-90"}).inputs.alpha, -90);
    EXPECT_EQ(options({"--demo", "--density", "10"}).inputs.density, 10);
    EXPECT_EQ(options({"--demo", "--iterations", "50"}).inputs.maxIterations, 50);
    EXPECT_EQ(options({"--demo", "--iterations", "50000"}).inputs.maxIterations, 50000);
    EXPECT_EQ(options({"--demo", "--rotate", "180,-180,0"}).rotationY, -180);
}

TEST(BatchOptions, WhatIsOutOfRangeIsNamedWithItsRangeAndUnit) {
    EXPECT_EQ(
        refusal({"--demo", "--velocity", "0"}), "--velocity 0 is out of range: 0.01 to 500 m/s.");
    EXPECT_EQ(refusal({"--demo", "--velocity", "500.1"}),
        "--velocity 500.1 is out of range: 0.01 to 500 m/s.");
    EXPECT_EQ(
        refusal({"--demo", "--alpha", "-90.5"}), "--alpha -90.5 is out of range: -90 to 90 °.");
    EXPECT_EQ(refusal({"--demo", "--beta", "91"}), "--beta 91 is out of range: -90 to 90 °.");
    EXPECT_EQ(
        refusal({"--demo", "--density", "0"}), "--density 0 is out of range: 0.01 to 10 kg/m³.");
    EXPECT_EQ(
        refusal({"--demo", "--iterations", "49"}), "--iterations 49 is out of range: 50 to 50000.");
    EXPECT_EQ(refusal({"--demo", "--inlet-offset", "0.05"}),
        "--inlet-offset 0.05 is out of range: 0.1 to 3 ×c.");
    EXPECT_EQ(refusal({"--demo", "--wake-length", "11"}),
        "--wake-length 11 is out of range: 0.5 to 10 ×c.");
    EXPECT_EQ(
        refusal({"--demo", "--seed-count", "501"}), "--seed-count 501 is out of range: 20 to 500.");
    EXPECT_EQ(refusal({"--sample", "sphere", "--rotate", "0,0,181"}),
        "--rotate 181 is out of range: -180 to 180 °.");
}

TEST(BatchOptions, ANumberIsAWholeFiniteWordWithAPoint) {
    EXPECT_EQ(options({"--demo", "--velocity", "+12.5"}).inputs.velocity, 12.5);
    EXPECT_EQ(options({"--demo", "--velocity", "1.5e2"}).inputs.velocity, 150);
    for (const char* word : {"x", "12,5", "12.5m", " 12", "1e", "nan", "inf", "1e999", "0x10",
             "+-5", "++5", "--5", "-"}) {
        const std::string argument = std::string("--velocity=") + word;
        EXPECT_EQ(refusal({"--demo", argument}),
            std::string("--velocity wants a number, not \"") + word + "\".");
    }
    EXPECT_EQ(refusal({"--demo", "--iterations", "60.5"}),
        "--iterations wants a whole number, not \"60.5\".");
    EXPECT_EQ(
        refusal({"--demo", "--rotate", "1,2"}), "--rotate wants three angles X,Y,Z, not \"1,2\".");
    EXPECT_EQ(refusal({"--demo", "--rotate", "1,,3"}), "--rotate wants a number, not \"\".");
}

TEST(BatchOptions, AChoiceNamesWhatThereIs) {
    EXPECT_EQ(refusal({"--demo", "--regime", "hypersonic"}),
        "--regime wants one of incompressible, compressible, not \"hypersonic\".");
    EXPECT_EQ(refusal({"--demo", "--turbulence", "SST"}),
        "--turbulence wants one of spalartAllmaras, sst, laminar, not \"SST\".");
    EXPECT_EQ(refusal({"--sample", "cube"}),
        "--sample wants one of sphere, rounded_box, simple_wing, not \"cube\".");
}

TEST(BatchOptions, TheSurfacesRoadAndFileAreTaken) {
    EXPECT_EQ(options({"a.stl", "--surface", "auto"}).surface, SurfaceChoice::automatic);
    EXPECT_EQ(options({"a.stl", "--surface", "as-is"}).surface, SurfaceChoice::asIs);
    EXPECT_EQ(options({"a.stl", "--surface=prepared"}).surface, SurfaceChoice::prepared);
    EXPECT_EQ(options({"a.stl", "--write-surface", "b.stl"}).surfaceFile, "b.stl");
    EXPECT_EQ(
        options({"a.stl", "--write-surface", "b.stl", "--prepare", "case"}).prepareFolder, "case");
    EXPECT_EQ(refusal({"a.stl", "--surface", "asis"}),
        "--surface wants one of auto, as-is, prepared, not \"asis\".");
    EXPECT_EQ(refusal({"a.stl", "--surface"}), "--surface wants a value: --surface NAME.");
    EXPECT_EQ(refusal({"a.stl", "--write-surface"}),
        "--write-surface wants a value: --write-surface FILE.stl.");
    EXPECT_EQ(refusal({"a.stl", "--image", "a.png", "--no-run", "--write-surface", "b.stl"}),
        "--no-run gives no results, so --write-surface has nothing to keep.");
}

TEST(BatchOptions, ExactlyOneBodyIsNamed) {
    EXPECT_EQ(refusal({}), "Name a model: an STL file, --sample NAME or --demo.");
    EXPECT_EQ(refusal({"--quiet"}), "Name a model: an STL file, --sample NAME or --demo.");
    EXPECT_EQ(refusal({"--demo", "--sample", "sphere"}),
        "Name one model only: an STL file, --sample NAME or --demo.");
    EXPECT_EQ(
        refusal({"a.stl", "--demo"}), "Name one model only: an STL file, --sample NAME or --demo.");
    EXPECT_EQ(refusal({"a.stl", "b.stl"}), "Name one model only, not \"a.stl\" and \"b.stl\".");
    EXPECT_EQ(refusal({""}), "The model's name is empty.");
}

TEST(BatchOptions, AnOptionThatIsNoneOrLacksItsValueIsNamed) {
    EXPECT_EQ(refusal({"--demo", "--speed", "5"}), "There is no option --speed.");
    EXPECT_EQ(refusal({"--demo", "--speed=5"}), "There is no option --speed.");
    EXPECT_EQ(refusal({"-q", "a.stl"}), "There is no option -q.");
    EXPECT_EQ(refusal({"--demo=yes"}), "--demo takes no value.");
    EXPECT_EQ(refusal({"--demo", "--json"}), "--json wants a value: --json FILE.");
    EXPECT_EQ(refusal({"--demo", "--json="}), "--json wants a value: --json FILE.");
    EXPECT_EQ(refusal({"--demo", "--export", ""}), "--export wants a value: --export DIR.");
    EXPECT_EQ(refusal({"--export", "--demo"}), "--export wants a value: --export DIR.");
    EXPECT_EQ(refusal({"--demo", "--prepare", "a", "--export", "b"}),
        "--prepare stops ahead of the results, so --export has nothing to copy.");
}

TEST(BatchOptions, AnEarlierRunNeedsNoBody) {
    const BatchOptions read = options({"--results", "run", "--dimensions", "2", "--velocity=50",
        "--write-streamlines", "lines.vtk", "--write-vortex=vortex.ply"});
    EXPECT_EQ(read.resultsFolder, "run");
    EXPECT_EQ(read.dimensions, 2);
    EXPECT_EQ(read.streamlinesFile, "lines.vtk");
    EXPECT_EQ(read.vortexFile, "vortex.ply");
    EXPECT_EQ(options({"--results", "run", "--dimensions", "3"}).dimensions, 3);
    EXPECT_TRUE(read.isGiven("velocity")) << "though it is the default";
    EXPECT_FALSE(read.isGiven("alpha"));
}

TEST(BatchOptions, AnEarlierRunTakesNoBodyAndNoPreparation) {
    const std::string noBody = "--results reads what a run left, so it takes no model, --sample, "
                               "--demo or --rotate.";
    EXPECT_EQ(refusal({"--results", "run", "wing.stl"}), noBody);
    EXPECT_EQ(refusal({"--results", "run", "--demo"}), noBody);
    EXPECT_EQ(refusal({"--sample", "sphere", "--results", "run"}), noBody);
    EXPECT_EQ(refusal({"--results", "run", "--rotate", "0,0,0"}), noBody);
    EXPECT_EQ(refusal({"--results", "run", "--prepare", "case"}),
        "--results solves nothing, so --prepare has no case to write.");
    EXPECT_EQ(refusal({"--results"}), "--results wants a value: --results DIR.");
}

TEST(BatchOptions, DimensionsAreTwoOrThreeAndOfAnEarlierRun) {
    EXPECT_EQ(refusal({"--demo", "--dimensions", "2"}), "--dimensions belongs to --results DIR.");
    for (const char* word : {"1", "4", "two", "2.0", "22"}) {
        EXPECT_EQ(refusal({"--results", "run", "--dimensions", word}),
            std::string("--dimensions wants one of 2, 3, not \"") + word + "\".");
    }
}

TEST(BatchOptions, APreparationHasNothingToWrite) {
    EXPECT_EQ(refusal({"--demo", "--prepare", "a", "--write-streamlines", "b.vtk"}),
        "--prepare stops ahead of the results, so --write-streamlines has nothing to write.");
    EXPECT_EQ(refusal({"--demo", "--prepare", "a", "--write-vortex", "b.ply"}),
        "--prepare stops ahead of the results, so --write-vortex has nothing to write.");
}

TEST(BatchOptions, APictureIsOfTheWindowsLayersUnlessOthersAreNamed) {
    const BatchOptions plain = options({"wing.stl", "--image", "a.png"});
    EXPECT_EQ(plain.imageFile, "a.png");
    EXPECT_EQ(plain.picture.width, 1200);
    EXPECT_EQ(plain.picture.height, 800);
    EXPECT_EQ(plain.picture.view, ViewPreset::iso);
    EXPECT_EQ(plain.picture.layers, (PictureOptions::Layers{true, true, true, true, false}));
    EXPECT_FALSE(plain.picture.shaded);
    EXPECT_EQ(plain.picture.samples, 4);
    const BatchOptions read =
        options({"wing.stl", "--image=a.png", "--size", "640x16384", "--view=top", "--layers",
            "wireframe,cp", "--look", "shaded", "--samples", "1", "--no-run"});
    EXPECT_EQ(read.picture.width, 640);
    EXPECT_EQ(read.picture.height, 16384);
    EXPECT_EQ(read.picture.view, ViewPreset::top);
    EXPECT_EQ(read.picture.layers, (PictureOptions::Layers{true, false, false, false, true}));
    EXPECT_TRUE(read.picture.shaded);
    EXPECT_FALSE(options({"a.stl", "--image", "a.png", "--look", "glass"}).picture.shaded);
    EXPECT_EQ(read.picture.samples, 1);
    EXPECT_TRUE(read.noRun);
    const auto layersOf = [](const char* names) {
        return options({"--demo", "--image", "a.png", "--layers", names}).picture.layers;
    };
    EXPECT_EQ(layersOf("none"), (PictureOptions::Layers{false, false, false, false, false}));
    EXPECT_EQ(
        layersOf("streams,vortex,grid"), (PictureOptions::Layers{false, true, true, true, false}));
}

TEST(BatchOptions, ASizeAViewOrALayerThatIsNoneIsNamed) {
    const auto refused = [](const char* option, const std::string& word) {
        return refusal({"a.stl", "--image", "a.png", std::string(option) + "=" + word});
    };
    for (const char* word :
        {"1200", "x", "1200x", "x800", "0x800", "1200x0", "-1x5", "+5x5", "1200X800", "1200x800x3",
            "12.5x5", " 5x5", "5x5 ", "16385x10", "10x16385", "99999999999x1"}) {
        EXPECT_EQ(refused("--size", word),
            std::string("--size wants WIDTHxHEIGHT in pixels, each from 1 to 16384, such as "
                        "1200x800, not \"") +
                word + "\".");
    }
    EXPECT_EQ(
        refused("--view", "back"), "--view wants one of iso, front, side, top, not \"back\".");
    EXPECT_EQ(refused("--look", "clay"), "--look wants one of glass, shaded, not \"clay\".");
    for (const char* word : {"0", "3", "16", "4x"}) {
        EXPECT_EQ(refused("--samples", word),
            std::string("--samples wants one of 1, 2, 4, 8, not \"") + word + "\".");
    }
    for (const char* word : {"Cp", "cp,", ",cp", "cp,,grid", "cp;grid", "none,cp", "cp, grid"}) {
        EXPECT_EQ(refused("--layers", word),
            std::string("--layers wants names of cp, streams, vortex, grid, wireframe with commas "
                        "between them, or none, not \"") +
                word + "\".");
    }
    EXPECT_EQ(refusal({"a.stl", "--image"}), "--image wants a value: --image FILE.png.");
}

TEST(BatchOptions, WhatAPictureGoesWithoutIsTold) {
    EXPECT_EQ(refusal({"a.stl", "--size", "5x5"}), "--size belongs to --image FILE.png.");
    EXPECT_EQ(refusal({"a.stl", "--view", "top"}), "--view belongs to --image FILE.png.");
    EXPECT_EQ(refusal({"a.stl", "--layers", "cp"}), "--layers belongs to --image FILE.png.");
    EXPECT_EQ(refusal({"a.stl", "--look", "shaded"}), "--look belongs to --image FILE.png.");
    EXPECT_EQ(refusal({"a.stl", "--samples", "1"}), "--samples belongs to --image FILE.png.");
    EXPECT_EQ(refusal({"a.stl", "--no-run"}), "--no-run belongs to --image FILE.png.");
    EXPECT_EQ(refusal({"a.stl", "--prepare", "case", "--image", "a.png"}),
        "--prepare stops ahead of the results, so --image has nothing to draw.");
    EXPECT_EQ(refusal({"--results", "run", "--image", "a.png", "--no-run"}),
        "--results solves nothing anyway, and --no-run draws a model.");
    EXPECT_EQ(refusal({"--demo", "--image", "a.png", "--no-run"}),
        "--demo has no model, so --no-run has nothing to draw.");
    EXPECT_EQ(refusal({"a.stl", "--image", "a.png", "--no-run", "--export", "out"}),
        "--no-run gives no results, so --export has nothing to keep.");
    EXPECT_EQ(refusal({"a.stl", "--image", "a.png", "--no-run", "--write-vortex", "v.ply"}),
        "--no-run gives no results, so --write-vortex has nothing to keep.");
}

TEST(BatchOptions, BehindTwoDashesEverythingIsAModel) {
    EXPECT_EQ(options({"--quiet", "--", "--odd.stl"}).model, "--odd.stl");
    EXPECT_EQ(options({"--", "--help"}).model, "--help");
    EXPECT_EQ(options({"--", "--"}).model, "--");
    EXPECT_EQ(options({"-"}).model, "-");
}

TEST(BatchOptions, HelpAndVersionWinOverEverythingElse) {
    for (const char* word : {"--help", "-h"}) {
        const auto parsed = parse({"--velocity", "0", "--none", word});
        const auto& reply = std::get<BatchReply>(parsed);
        EXPECT_EQ(reply.status, 0);
        EXPECT_THAT(reply.text, HasSubstr("Usage: ostrella-batch"));
    }
    const auto parsed = parse({"--version"});
    EXPECT_EQ(std::get<BatchReply>(parsed).status, 0);
    EXPECT_EQ(std::get<BatchReply>(parsed).text, "Ostrella " + AppBundle::version() + "\n");
}

TEST(BatchOptions, ValuesThatTheRunWillNotLookAtAreTold) {
    EXPECT_THAT(optionsWithoutEffect(options({"--demo", "--alpha", "5"})), IsEmpty());
    EXPECT_THAT(optionsWithoutEffect(
                    options({"--sample", "sphere", "--regime", "compressible", "--beta", "3"})),
        IsEmpty());
    EXPECT_THAT(optionsWithoutEffect(options(
                    {"--demo", "--regime", "compressible", "--beta", "3", "--rotate", "0,0,1"})),
        ElementsAre("--regime has no effect: the built-in case is incompressible.",
            "--beta has no effect: the built-in case is two-dimensional.",
            "--rotate has no effect: the built-in case has no model to turn."));
    EXPECT_THAT(optionsWithoutEffect(options({"a.stl", "--turbulence", "laminar",
                    "--sa-rotation-correction", "--sa-transition"})),
        ElementsAre("--sa-rotation-correction has no effect: the turbulence model is not "
                    "Spalart-Allmaras.",
            "--sa-transition has no effect: the turbulence model is not Spalart-Allmaras."));
    EXPECT_THAT(optionsWithoutEffect(options({"--demo", "--write-vortex", "vortex.ply"})),
        ElementsAre("--write-vortex has no effect: the built-in case is two-dimensional and has no "
                    "vortex surface."));
    EXPECT_THAT(optionsWithoutEffect(options({"--sample", "sphere", "--write-vortex", "v.ply",
                    "--write-streamlines", "s.vtk"})),
        IsEmpty());
    EXPECT_THAT(
        optionsWithoutEffect(options({"--demo", "--surface", "auto", "--write-surface", "s.stl"})),
        ElementsAre("--surface has no effect: the built-in case has no model.",
            "--write-surface has no effect: the built-in case has no model."));
    EXPECT_THAT(optionsWithoutEffect(
                    options({"--results", "run", "--surface", "as-is", "--write-surface", "s"})),
        ElementsAre("--surface has no effect: --results meshes nothing.",
            "--write-surface has no effect: --results meshes nothing."));
    EXPECT_THAT(optionsWithoutEffect(
                    options({"a.stl", "--image", "a.png", "--no-run", "--surface", "prepared"})),
        ElementsAre("--surface has no effect: --no-run meshes nothing."));
    EXPECT_THAT(optionsWithoutEffect(
                    options({"a.stl", "--surface", "prepared", "--write-surface", "s.stl"})),
        IsEmpty());
    EXPECT_THAT(optionsWithoutEffect(
                    options({"a.stl", "--image", "a.png", "--no-run", "--layers", "cp,grid"})),
        ElementsAre("Of --layers, cp, streams and vortex have no effect: --no-run gives no "
                    "results."));
    EXPECT_THAT(
        optionsWithoutEffect(options({"a.stl", "--image", "a.png", "--no-run"})), IsEmpty());
    EXPECT_THAT(optionsWithoutEffect(options({"--results", "run", "--keep-run-directory"})),
        ElementsAre("--keep-run-directory has no effect: --results makes none, and leaves its "
                    "folder as it is."));
    EXPECT_THAT(optionsWithoutEffect(
                    options({"--results", "run", "--turbulence", "sst", "--sa-transition"})),
        IsEmpty())
        << "they tell of a run that is over";
}

} // namespace
} // namespace ostrella
