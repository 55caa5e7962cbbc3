#include "Batch/HelpText.h"
#include "Batch/OptionTable.h"

#include "support/Wait.h"

#include <QString>

#include <gmock/gmock.h>

#include <regex>
#include <set>
#include <sstream>

namespace ostrella {
namespace {

using testing::HasSubstr;

/// The help of one option with its lines joined.
std::string helpOf(const std::string& option) {
    const std::string help = batchHelp();
    const auto start = help.find("  --" + option + " ");
    if (start == std::string::npos) {
        return {};
    }
    const auto end = std::min(help.find("\n  --", start + 1), help.find("\n\n", start));
    return std::regex_replace(help.substr(start, end - start), std::regex("\\s+"), " ");
}

TEST(HelpText, EveryParameterHasItsUnitRangeAndDefault) {
    EXPECT_THAT(helpOf("velocity"), HasSubstr("0.01 to 500 m/s, default 50."));
    EXPECT_THAT(helpOf("alpha"), HasSubstr("-90 to 90 °, default 0."));
    EXPECT_THAT(helpOf("beta"), HasSubstr("-90 to 90 °, default 0."));
    EXPECT_THAT(helpOf("density"), HasSubstr("0.01 to 10 kg/m³, default 1.225."));
    EXPECT_THAT(helpOf("rotate"), HasSubstr("-180 to 180 ° each."));
    EXPECT_THAT(helpOf("iterations"), HasSubstr("50 to 50000, default 200."));
    EXPECT_THAT(helpOf("inlet-offset"), HasSubstr("0.1 to 3 ×c, default 0.5."));
    EXPECT_THAT(helpOf("wake-length"), HasSubstr("0.5 to 10 ×c, default 2."));
    EXPECT_THAT(helpOf("seed-count"), HasSubstr("20 to 500, default 100."));
    EXPECT_THAT(
        helpOf("regime"), HasSubstr("incompressible, compressible. Default incompressible."));
    EXPECT_THAT(
        helpOf("turbulence"), HasSubstr("spalartAllmaras, sst, laminar. Default spalartAllmaras."));
    EXPECT_THAT(helpOf("sample"), HasSubstr("sphere, rounded_box, simple_wing"));
}

TEST(HelpText, TellsHowAnEarlierRunIsRead) {
    EXPECT_THAT(batchHelp(), HasSubstr("\n       ostrella-batch [OPTION…] --results DIR\n"));
    for (const char* words : {"Solve nothing", "an exported one",
             "surface_flow.vtk, flow.vtk, "
             "history.csv and run.cfg",
             "the folder is only read", "tells nothing of the streamlines' options"}) {
        EXPECT_THAT(helpOf("results"), HasSubstr(words));
    }
    EXPECT_THAT(helpOf("dimensions"), HasSubstr("2 or 3. Default: what its mesh file says"));
    EXPECT_THAT(helpOf("write-streamlines"), HasSubstr("FILE.vtk"));
    EXPECT_THAT(helpOf("write-vortex"), HasSubstr("FILE.ply"));
}

TEST(HelpText, TellsTheExitStatuses) {
    for (const char* status : {"0 finished", "2 wrong usage", "3 the mesh failed",
             "4 the solver failed", "5 the results failed", "130 cancelled"}) {
        EXPECT_THAT(batchHelp(), HasSubstr(status));
    }
}

TEST(HelpText, FitsATerminalOfEightyColumns) {
    std::istringstream help(batchHelp());
    for (std::string line; std::getline(help, line);) {
        EXPECT_LE(QString::fromStdString(line).size(), 80) << line;
    }
}

TEST(HelpText, EveryOptionOfTheReadmeExists) {
    std::set<std::string> known{"help", "version"};
    for (const auto& group : batchOptionGroups()) {
        for (const auto& option : group.options) {
            known.insert(option.name);
        }
    }
    const std::string readme = test::readFile(OSTRELLA_SOURCE_DIR "/README.md");
    const std::regex option("--([a-z][a-z-]*)");
    int count = 0;
    for (std::sregex_iterator match(readme.begin(), readme.end(), option), end; match != end;
         ++match, ++count) {
        EXPECT_TRUE(known.contains((*match)[1])) << match->str();
    }
    EXPECT_GT(count, 5);
}

TEST(HelpText, EveryExampleOfTheReadmeIsACommandLineThatIsTaken) {
    std::istringstream readme(test::readFile(OSTRELLA_SOURCE_DIR "/README.md"));
    int count = 0;
    for (std::string line; std::getline(readme, line);) {
        const auto command = line.find("scripts/run ");
        const bool isExample =
            command == 0 || (command != std::string::npos && line.find("=") < command);
        if (!isExample) {
            continue;
        }
        std::istringstream words(line.substr(command, line.find('#') - command));
        const std::vector<std::string> arguments{std::istream_iterator<std::string>(words), {}};
        if (arguments.size() > 1) {
            const auto parsed = parseBatchOptions(arguments);
            EXPECT_TRUE(std::holds_alternative<BatchOptions>(parsed)) << line;
            ++count;
        }
    }
    EXPECT_GE(count, 4);
}

} // namespace
} // namespace ostrella
