#include "Views/Format/StatusLine.h"

#include "Views/Format/SystemInfo.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace ostrella {
namespace {

using Inputs = StatusLine::Inputs;

std::string repeated(std::string_view text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

RunSummary summary(std::optional<double> cl, std::optional<double> cd) {
    RunSummary figures;
    figures.elapsedSeconds = 95.44;
    figures.iterations = 1200;
    figures.cl = cl;
    figures.cd = cd;
    return figures;
}

TEST(StatusLine, IdleWithAndWithoutAModel) {
    EXPECT_EQ(StatusLine::make({RunPhase::idle()}), (StatusLine{"Idle", ChromeTone::idle, {}}));
    // The count of facets is in the text and not among the counters.
    EXPECT_EQ(StatusLine::make({RunPhase::idle(), 1234567}),
        (StatusLine{"Ready · 1\u00A0234\u00A0567 facets", ChromeTone::ok, {}}));
    EXPECT_EQ(StatusLine::make({RunPhase::idle(), 0}),
        (StatusLine{"Ready · 0 facets", ChromeTone::ok, {}}));
}

TEST(StatusLine, Meshing) {
    EXPECT_EQ(StatusLine::make({RunPhase::meshing(), 19516}),
        (StatusLine{"Meshing…", ChromeTone::run, {{"19\u00A0516 facets", false}}}));
}

TEST(StatusLine, SolvingWithTheCellsInPlaceOfTheFacets) {
    EXPECT_EQ(StatusLine::make({RunPhase::solving(), 19516, 315292, 1118, 50000}),
        (StatusLine{"Solving · iter 1\u00A0118 / 50\u00A0000", ChromeTone::run,
            {{"315\u00A0292 cells", false}}}));
    EXPECT_EQ(
        StatusLine::make({RunPhase::solving()}), (StatusLine{"Solving…", ChromeTone::run, {}}));
}

TEST(StatusLine, PostProcessingAndCancelled) {
    EXPECT_EQ(StatusLine::make({RunPhase::postProcessing(), 12, 999}),
        (StatusLine{"Processing results…", ChromeTone::run, {{"999 cells", false}}}));
    EXPECT_EQ(StatusLine::make({RunPhase::cancelled(), 12}),
        (StatusLine{"Cancelled", ChromeTone::idle, {{"12 facets", false}}}));
}

TEST(StatusLine, AFailureTellsItsMessageAndNotItsStage) {
    EXPECT_EQ(StatusLine::make({RunPhase::failed("solver", "It broke.\nDetails"), 12}),
        (StatusLine{"Failed · It broke", ChromeTone::err, {{"12 facets", false}}}));
    EXPECT_EQ(StatusLine::make({RunPhase::failed("solver", " ... ")}),
        (StatusLine{"Failed", ChromeTone::err, {}}));
    EXPECT_EQ(StatusLine::make({RunPhase::failed("mesh", repeated("a", 61))}).text,
        "Failed · " + repeated("a", 60) + "…");
}

TEST(StatusLine, AFinishedRunTellsItsFigures) {
    Inputs inputs{RunPhase::finished(true), 12, 315292, 1200, 2000, summary(0.16872, 0.0388)};
    EXPECT_EQ(StatusLine::make(inputs),
        (StatusLine{"Converged · 1\u00A0200 iter · 95.4 s", ChromeTone::ok,
            {{"315\u00A0292 cells", false}, {"CL 0.1687", true}, {"CD 0.0388", true},
                {"CL/CD 4.35", true}}}));
    inputs.phase = RunPhase::finished(false);
    inputs.summary->iterations.reset();
    inputs.cells.reset();
    EXPECT_EQ(StatusLine::make(inputs), (StatusLine{"Not converged · 95.4 s", ChromeTone::warn,
                                            {{"12 facets", false}, {"CL 0.1687", true},
                                                {"CD 0.0388", true}, {"CL/CD 4.35", true}}}));
}

TEST(StatusLine, AFinishedRunWithoutFigures) {
    EXPECT_EQ(StatusLine::make({RunPhase::finished(true)}),
        (StatusLine{"Converged", ChromeTone::ok, {}}));
    EXPECT_EQ(StatusLine::make({RunPhase::finished(false), {}, 5}),
        (StatusLine{"Not converged", ChromeTone::warn, {{"5 cells", false}}}));
}

std::vector<StatusCounter> counters(std::optional<double> cl, std::optional<double> cd) {
    return StatusLine::make({RunPhase::finished(true), {}, {}, {}, 0, summary(cl, cd)}).counters;
}

TEST(StatusLine, CoefficientsAsFarAsTheyAreKnown) {
    using Counters = std::vector<StatusCounter>;
    EXPECT_EQ(counters({}, {}), Counters{});
    EXPECT_EQ(counters(0.5, {}), (Counters{{"CL 0.5000", true}}));
    EXPECT_EQ(counters({}, 0.5), (Counters{{"CD 0.5000", true}}));
    EXPECT_EQ(counters(0.5, 0.0), (Counters{{"CL 0.5000", true}, {"CD 0.0000", true}}));
    EXPECT_EQ(counters(-1e-9, 1.0).front().text, "CL 0.0000");
}

TEST(StatusLine, TheRatioHasOneDecimalFromTenOn) {
    EXPECT_EQ(counters(9.994, 1.0).back().text, "CL/CD 9.99");
    EXPECT_EQ(counters(10.0, 1.0).back().text, "CL/CD 10.0");
    EXPECT_EQ(counters(-12.34, 1.0).back().text, "CL/CD -12.3");
    EXPECT_EQ(counters(-9.5, 1.0).back().text, "CL/CD -9.50");
}

TEST(StatusLine, TonesHaveNames) {
    EXPECT_EQ(rawValue(ChromeTone::idle), "idle");
    EXPECT_EQ(rawValue(ChromeTone::ok), "ok");
    EXPECT_EQ(rawValue(ChromeTone::run), "run");
    EXPECT_EQ(rawValue(ChromeTone::warn), "warn");
    EXPECT_EQ(rawValue(ChromeTone::err), "err");
}

TEST(ShortMessage, IsTheFirstSentenceOfTheFirstLine) {
    EXPECT_EQ(StatusLine::shortMessage("", 60), "");
    EXPECT_EQ(StatusLine::shortMessage("Bad mesh.\nDetails follow", 60), "Bad mesh");
    EXPECT_EQ(StatusLine::shortMessage("First sentence. Second sentence", 60), "First sentence");
    EXPECT_EQ(StatusLine::shortMessage("Version 1.2.3 is bad", 60), "Version 1.2.3 is bad");
    EXPECT_EQ(StatusLine::shortMessage("Stopped...", 60), "Stopped");
}

TEST(ShortMessage, PassesOverEmptyLinesAndTrimsBlanks) {
    EXPECT_EQ(StatusLine::shortMessage("  \n \t\u00A0Bad mesh", 60), "");
    EXPECT_EQ(StatusLine::shortMessage("\n\r\n\v\f\t\u00A0Bad mesh\t \n", 60), "Bad mesh");
}

TEST(ShortMessage, KnowsEveryNewline) {
    for (const char* newline : {"\n", "\v", "\f", "\r", "\u0085", "\u2028", "\u2029", "\r\n"}) {
        EXPECT_EQ(StatusLine::shortMessage(std::string("One") + newline + "Two", 60), "One");
    }
}

TEST(ShortMessage, IsCutAtABlankWithoutWhatStandsThere) {
    EXPECT_EQ(StatusLine::shortMessage("one word, another", 12), "one word…");
    EXPECT_EQ(StatusLine::shortMessage("one two · three", 11), "one two…");
    EXPECT_EQ(StatusLine::shortMessage("one two", 7), "one two");
    EXPECT_EQ(StatusLine::shortMessage(repeated("x", 61), 60), repeated("x", 60) + "…");
    EXPECT_EQ(StatusLine::shortMessage(repeated("x", 60), 60), repeated("x", 60));
}

TEST(ShortMessage, CountsWhatAReaderCallsCharacters) {
    // e with a combining accent, and a family of four joined up: each is one.
    const std::string accented = repeated("e\u0301", 60);
    EXPECT_EQ(StatusLine::shortMessage(accented, 60), accented);
    EXPECT_EQ(StatusLine::shortMessage(accented + "x", 60), accented + "…");
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466";
    EXPECT_EQ(StatusLine::shortMessage(family + "ab", 2), family + "a…");
}

TEST(ShortMessage, OfBytesThatAreNoText) {
    EXPECT_EQ(StatusLine::shortMessage("bad \xFF byte", 60), "bad \uFFFD byte");
}

TEST(SystemInfo, TellsWhatIsKnown) {
    EXPECT_EQ(SystemInfo::summary(412600000000, "A Processor"), "412.6 GB free · A Processor");
    EXPECT_EQ(SystemInfo::summary(999, std::nullopt), "999 bytes free");
    EXPECT_EQ(SystemInfo::summary(std::nullopt, "A Processor"), "A Processor");
    EXPECT_EQ(SystemInfo::summary(0, ""), "0 bytes free");
    EXPECT_EQ(SystemInfo::summary(std::nullopt, std::nullopt), "");
}

} // namespace
} // namespace ostrella
