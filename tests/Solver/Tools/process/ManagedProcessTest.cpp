#include "ProcessRun.h"
#include "support/Wait.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrella {
namespace {

namespace fs = std::filesystem;
using test::exists;
using test::program;
using test::texts;
using test::waitForLine;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

bool isError(const std::string& line) {
    return line.starts_with("Error");
}

class ManagedProcessTest : public testing::Test {
protected:
    /// Runs a program of the tests to its end.
    ManagedProcess::Outcome run(
        const std::string& name, const std::vector<std::string>& arguments = {}) {
        test::ProcessRun run(log, timers, program(name), arguments, {}, isError);
        return run.finish();
    }

    LogStore log;
    test::ManualTimers timers;
};

TEST_F(ManagedProcessTest, showsBothStreamsInTheOrderOfWriting) {
    const auto outcome = run("say", {"one\\n", "--stderr", "two\\n", "--stdout", "three\\n"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(texts(log), ElementsAre("one", "two", "three"));
}

TEST_F(ManagedProcessTest, returnsTheStatusAndTheKeptLines) {
    const auto outcome =
        run("say", {"Error : no volume\\n", "more\\n", "Error : again", "--exit", "3"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_THAT(outcome.keptLines, ElementsAre("Error : no volume", "Error : again"));
    EXPECT_THAT(texts(log), SizeIs(3));
}

TEST_F(ManagedProcessTest, reportsDeathByASignalByItsNumber) {
    EXPECT_EQ(run("crash", {"segv"}).status, SIGSEGV);
    EXPECT_EQ(run("crash", {"abort"}).status, SIGABRT);
    EXPECT_THAT(texts(log), ElementsAre("a whole line", "half a li", "a whole line", "half a li"));
}

TEST_F(ManagedProcessTest, reportsAKillFromOutsideAsAnyDeath) {
    test::ProcessRun run(log, timers, program("slow"));
    ASSERT_EQ(::kill(std::stoi(waitForLine(log, "ready ")), SIGKILL), 0);
    EXPECT_EQ(run.finish().status, SIGKILL);
}

TEST_F(ManagedProcessTest, deliversALastLineWithoutLineFeed) {
    run("say", {"abc\\r\\n", "\\t \\n", "  indented\\n", "10 %\\r", "20 %\\r", "the end"});
    EXPECT_THAT(texts(log), ElementsAre("abc", "  indented", "10 %\r20 %\rthe end"));
}

TEST_F(ManagedProcessTest, decodesCharactersThatAreSplitAcrossWrites) {
    run("say", {"5 \\xC2", "\\xB7 10\\xE2", "\\x81", "\\xBB\\n"});
    EXPECT_THAT(texts(log), ElementsAre("5 · 10⁻"));
}

TEST_F(ManagedProcessTest, replacesInvalidBytes) {
    run("say", {"binary \\xFF\\xFE rubbish\\n"});
    EXPECT_THAT(texts(log), ElementsAre("binary \uFFFD\uFFFD rubbish"));
}

TEST_F(ManagedProcessTest, takesAProgramThatSaysNothing) {
    const auto outcome = run("say");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.keptLines, IsEmpty());
    EXPECT_THAT(texts(log), IsEmpty());
}

TEST_F(ManagedProcessTest, losesNothingOfAFlood) {
    constexpr std::size_t count = 1'000'000;
    EXPECT_EQ(run("flood", {std::to_string(count)}).status, 0);
    ASSERT_THAT(log.lines(), SizeIs(count));
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_EQ(log.lines()[i].text,
            "line " + std::to_string(i) + " of a solver that has very much to tell");
    }
}

TEST_F(ManagedProcessTest, endsTwoSecondsAfterAChildWhoseDescendantHoldsThePipe) {
    test::ProcessRun run(log, timers, program("daemon"));
    const pid_t descendant = std::stoi(waitForLine(log, "descendant "));
    ASSERT_TRUE(test::waitUntil([&] { return !timers.pending().empty(); }));
    EXPECT_THAT(timers.pending(), ElementsAre(2.0));
    timers.advance(1.999);
    EXPECT_FALSE(run.isDone());
    timers.advance(0.001);
    EXPECT_EQ(run.finish().status, 0);
    EXPECT_EQ(log.lines().back().text, "half a li");
    EXPECT_TRUE(exists(descendant)) << "only the child itself is ever signalled";
    ::kill(descendant, SIGKILL);
}

TEST_F(ManagedProcessTest, startsTheProgramInTheDirectoryWithItsArgumentsAndTheEnvironment) {
    ::setenv("OSTRELLA_TEST_VARIABLE", "some value · ü", 1);
    run("surroundings", {"mesh.geo", "", "with blank", "\"quoted\"", "$HOME", "Größe"});
    ::unsetenv("OSTRELLA_TEST_VARIABLE");
    struct stat input {};
    ASSERT_EQ(::fstat(STDIN_FILENO, &input), 0);
    EXPECT_THAT(texts(log),
        ElementsAre("directory " + fs::canonical(fs::temp_directory_path()).string(),
            "argument mesh.geo", "argument ", "argument with blank", "argument \"quoted\"",
            "argument $HOME", "argument Größe", "variable some value · ü",
            "input " + std::to_string(input.st_dev) + ":" + std::to_string(input.st_ino)));
}

TEST_F(ManagedProcessTest, givesTheChildNoDescriptorAndNoSignalSettingOfItsOwn) {
    const int inheritable = ::open("/dev/null", O_RDONLY);
    ASSERT_GE(inheritable, 0);
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto handler = std::signal(SIGINT, SIG_IGN);
    run("surroundings");
    std::signal(SIGINT, handler);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ::close(inheritable);
    EXPECT_THAT(texts(log), Not(Contains(StartsWith("descriptor "))));
    EXPECT_THAT(texts(log), Not(Contains(StartsWith("blocked "))));
    EXPECT_THAT(texts(log), Not(Contains(StartsWith("ignored "))));
}

TEST_F(ManagedProcessTest, knowsTheStatusAlsoWhereChildrenAreIgnored) {
    const auto handler = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(run("say", {"--exit", "7"}).status, 7);
    std::signal(SIGCHLD, handler);
}

/// What a program that cannot be started ends with.
struct Refusal {
    std::errc code;
    std::string text;
};

Refusal refusal(LogStore& log, TimerService& timers, const fs::path& executable) {
    try {
        test::ProcessRun(log, timers, executable).finish();
    } catch (const std::system_error& error) {
        return {static_cast<std::errc>(error.code().value()), error.what()};
    }
    ADD_FAILURE() << executable << " was started";
    return {};
}

TEST_F(ManagedProcessTest, saysWhyAProgramCannotBeStarted) {
    const test::TemporaryDirectory directory;
    const Refusal missing = refusal(log, timers, directory.path() / "gmsh");
    EXPECT_EQ(missing.code, std::errc::no_such_file_or_directory);
    EXPECT_EQ(missing.text,
        "Cannot start " + (directory.path() / "gmsh").string() + ": No such file or directory");

    test::writeFile(directory.path() / "plain", "no program");
    const Refusal plain = refusal(log, timers, directory.path() / "plain");
    EXPECT_EQ(plain.code, std::errc::permission_denied);

    fs::permissions(directory.path() / "plain", fs::perms::owner_all);
    const Refusal rubbish = refusal(log, timers, directory.path() / "plain");
    EXPECT_EQ(rubbish.code, std::errc::executable_format_error);

    EXPECT_EQ(refusal(log, timers, directory.path()).code, std::errc::permission_denied);
    EXPECT_THAT(texts(log), IsEmpty());
    EXPECT_THAT(timers.pending(), IsEmpty());
}

TEST_F(ManagedProcessTest, saysThatTheWorkingDirectoryIsMissing) {
    const test::TemporaryDirectory directory;
    test::onWorker([&] {
        LineForwarder forwarder(log, LogStore::Level::su2, isError);
        try {
            ManagedProcess::run(
                program("say"), {"x\\n"}, directory.path() / "gone", forwarder, {}, timers);
            ADD_FAILURE() << "started";
        } catch (const std::system_error& error) {
            EXPECT_EQ(error.what(), "Cannot start say in " + (directory.path() / "gone").string() +
                                        ": No such file or directory");
        }
        // The forwarder is closed: this reaches nobody.
        forwarder.ingest(std::as_bytes(std::span("late\n", 5)));
    });
    EXPECT_THAT(texts(log), IsEmpty());
}

TEST_F(ManagedProcessTest, startsAProgramNamedRelativeToTheParentsDirectory) {
    const fs::path relative = fs::relative(program("say"));
    ASSERT_TRUE(relative.is_relative());
    EXPECT_EQ(test::ProcessRun(log, timers, relative, {"here\\n"}).finish().status, 0);
    EXPECT_THAT(texts(log), ElementsAre("here"));
}

} // namespace
} // namespace ostrella
