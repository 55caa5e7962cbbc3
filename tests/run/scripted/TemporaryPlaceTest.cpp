// Temporary directories that cannot be written, or are full.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "run/support/ToolScripts.h"

#include <gmock/gmock.h>

#include <string>
#include <tuple>

#include <sys/resource.h>
#include <unistd.h>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;

class TemporaryPlaceTest : public testing::Test {
protected:
    TemporaryPlaceTest() { package_.scriptGoodTools(); }

    Package package_;
    BatchProcess batch_{package_.program()};
};

TEST_F(TemporaryPlaceTest, ThatMayNotBeWritten) {
    fs::permissions(batch_.temporary(), fs::perms(0555));
    fs::permissions(batch_.temporary().parent_path(), fs::perms(0755));
    if (geteuid() == 0) {
        // Permissions bind everybody but root.
        batch_.setPreparation([] {
            if (setuid(65534) != 0) {
                _exit(99);
            }
        });
    }
    EXPECT_EQ(batch_.run({"--sample", "sphere"}), 4);
    const std::string line = batch_.line("[ERR] ");
    EXPECT_THAT(line, HasSubstr("[ERR] Solver failed · Cannot "));
    EXPECT_THAT(line, HasSubstr(batch_.temporary().string()));
    EXPECT_THAT(line, HasSubstr("Permission denied"));
    EXPECT_THAT(line, HasSubstr("TMPDIR")) << "no way out is shown";
    EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
}

TEST_F(TemporaryPlaceTest, InWhichAFileGrowsBeyondTheUsersLimit) {
    batch_.setPreparation([] {
        const rlimit limit{100000, 100000}; // bytes; the sphere takes more
        setrlimit(RLIMIT_FSIZE, &limit);
    });
    EXPECT_EQ(batch_.run({"--sample", "sphere"}), 3) << batch_.output();
    EXPECT_THAT(batch_.line("[ERR] "), HasSubstr("[ERR] Mesh failed · Cannot write "));
    EXPECT_THAT(batch_.line("[ERR] "), HasSubstr("File too large"));
    EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
    EXPECT_EQ(batch_.run({"--demo"}), 4) << batch_.output();
    EXPECT_THAT(batch_.line("[ERR] "), HasSubstr("[ERR] Solver failed · Cannot write "));
    EXPECT_THAT(batch_.line("[ERR] "), HasSubstr("File too large"));
    EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
}

TEST_F(TemporaryPlaceTest, ThatIsFull) {
    BatchProcess shell("/bin/sh");
    const std::string mount =
        "mount -t tmpfs -o size=64k none '" + shell.temporary().string() + "'";
    if (shell.run({"-c", "unshare -rm sh -c \"" + mount + "\""}) != 0) {
        GTEST_SKIP() << "no file system of one's own can be mounted here: " << shell.errors();
    }
    for (const auto& [options, status, stage] :
        {std::tuple(" --sample sphere", 3, "Mesh"), std::tuple(" --demo", 4, "Solver")}) {
        const std::string run = "'" + package_.program().string() + "'" + options;
        EXPECT_EQ(shell.run({"-c", "unshare -rm sh -c \"" + mount + " && " + run + "\""}), status)
            << shell.output();
        const std::string line = shell.line("[ERR] ");
        EXPECT_THAT(line, HasSubstr(std::string("[ERR] ") + stage + " failed · Cannot write "));
        EXPECT_THAT(line, HasSubstr("No space left on device"));
        EXPECT_THAT(
            line, HasSubstr("Free some space there or set another temporary directory (TMPDIR)"));
    }
}

} // namespace
} // namespace ostrella::test
