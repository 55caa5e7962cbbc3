// Models that cannot be loaded, and good ones under odd names.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "run/support/ToolScripts.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>

#include <cstring>
#include <limits>

#include <sys/stat.h>
#include <unistd.h>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A binary STL whose header counts `count` facets; `floats` are what follows, twelve a facet.
std::string binarySTL(std::uint32_t count, const std::vector<std::array<float, 12>>& facets) {
    std::string text(80, ' ');
    text.append(reinterpret_cast<const char*>(&count), sizeof count);
    for (const auto& facet : facets) {
        text.append(reinterpret_cast<const char*>(facet.data()), sizeof facet);
        text.append(2, '\0');
    }
    return text;
}

class ModelFileTest : public testing::Test {
protected:
    ModelFileTest() { package_.scriptGoodTools(); }

    /// The line that tells why `model` was refused.
    std::string refusal(const fs::path& model) {
        const fs::path json = directory_.path() / "run.json";
        EXPECT_EQ(batch_.run({model.string(), "--json", json.string()}), 2);
        EXPECT_EQ(batch_.errors(), "");
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        const auto report = nlohmann::json::parse(readFile(json));
        EXPECT_EQ(report["phase"], "failed");
        EXPECT_EQ(report["failure"]["stage"], "model");
        const std::string line = batch_.line("[ERR] ");
        const std::string head = "[ERR] Couldn't load STL · ";
        EXPECT_THAT(line, StartsWith(head));
        EXPECT_EQ(line.substr(head.size()), report["failure"]["message"]);
        return line.substr(std::min(line.size(), head.size()));
    }
    std::string refusalOf(const std::string& content) {
        const fs::path model = directory_.path() / "model.stl";
        writeFile(model, content);
        const std::string text = refusal(model);
        EXPECT_EQ(readFile(model), content) << "the user's file was changed";
        return text;
    }

    TemporaryDirectory directory_;
    Package package_;
    BatchProcess batch_{package_.program()};
};

TEST_F(ModelFileTest, AMissingFileAFolderAndADeviceAreRefused) {
    EXPECT_EQ(refusal(directory_.path() / "none.stl"),
        "'none.stl' does not exist. Check its name and folder, and try again.");
    fs::create_directory(directory_.path() / "folder.stl");
    EXPECT_EQ(refusal(directory_.path() / "folder.stl"),
        "'folder.stl' is a folder. Choose the STL file of one model.");
    EXPECT_EQ(refusal("/dev/zero"),
        "'zero' is a device, a pipe or a socket. Choose an STL file on disk.");
    const fs::path pipe = directory_.path() / "pipe.stl";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(
        refusal(pipe), "'pipe.stl' is a device, a pipe or a socket. Choose an STL file on disk.");
}

TEST_F(ModelFileTest, AFileThatMayNotBeReadIsRefused) {
    const fs::path model = directory_.path() / "secret.stl";
    fs::copy_file(package_.sample("sphere"), model);
    fs::permissions(model, fs::perms::none);
    fs::permissions(directory_.path(), fs::perms(0777));
    if (geteuid() == 0) {
        // Permissions bind everybody but root.
        fs::permissions(batch_.temporary().parent_path(), fs::perms(0755));
        batch_.setPreparation([] {
            if (setuid(65534) != 0) {
                _exit(99);
            }
        });
    }
    EXPECT_EQ(refusal(model), "'secret.stl' may not be read. Change its permissions, or copy it to "
                              "a folder of yours.");
}

TEST_F(ModelFileTest, EmptyAndTruncatedFilesAreRefused) {
    const std::string notText = "Invalid ASCII STL: file is not ASCII/UTF-8 decodable";
    const std::string noVertices = "Invalid ASCII STL: no vertices found";
    EXPECT_EQ(refusalOf(""), "STL file is empty.");
    EXPECT_EQ(refusalOf(std::string(83, ' ')), noVertices);
    EXPECT_EQ(refusalOf("no model at all"), noVertices);
    EXPECT_EQ(refusalOf("solid x\nfacet normal 0 0 1\nouter loop\nvertex 0 0\n"), noVertices);
    EXPECT_EQ(refusalOf(binarySTL(2, {{{0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0}}})), notText);
    EXPECT_EQ(refusalOf(binarySTL(std::numeric_limits<std::uint32_t>::max(), {})), notText);
    EXPECT_EQ(refusalOf(binarySTL(0, {})),
        "The model has no facets. Export it again as a triangulated surface.");
}

TEST_F(ModelFileTest, CoordinatesThatAreNoNumbersAreRefused) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (const float bad : {nan, infinity, -infinity}) {
        EXPECT_THAT(refusalOf(binarySTL(1, {{{0, 0, 1, 0, 0, 0, 1, bad, 0, 0, 1, 0}}})),
            testing::Not(IsEmpty()));
    }
}

TEST_F(ModelFileTest, OddNamesAreTaken) {
    const std::vector<std::string> names{"with blanks .stl", "quote's \"and\" `tick`.stl",
        "größe · 模型.stl", "$HOME;ls *.stl", std::string(196, 'n') + ".stl", "-dash.stl",
        "line\nbreak.STL", "no-extension"};
    for (const std::string& name : names) {
        const fs::path model = directory_.path() / name;
        fs::copy_file(package_.sample("sphere"), model);
        EXPECT_EQ(batch_.run({model.string()}), 0) << name;
        EXPECT_THAT(batch_.output(), HasSubstr("[INFO] Loaded " + name + " · "));
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        EXPECT_EQ(readFile(model), readFile(package_.sample("sphere")));
    }
    batch_.setWorkingDirectory(directory_.path());
    EXPECT_EQ(batch_.run({"--", "-dash.stl"}), 0);
}

TEST_F(ModelFileTest, ANameOfBytesThatAreNoTextIsTaken) {
    const fs::path model = directory_.path() / "bytes\xFF.stl";
    std::error_code error;
    fs::copy_file(package_.sample("sphere"), model, error);
    if (error) {
        GTEST_SKIP() << "this file system takes UTF-8 names only";
    }
    // QProcess cannot say such a name, but a shell can.
    BatchProcess shell("/bin/sh");
    EXPECT_EQ(shell.run({"-c", "cd '" + directory_.path().string() + "' && exec '" +
                                   package_.program().string() + "' *.stl --json run.json"}),
        0);
    EXPECT_THAT(shell.output(), HasSubstr("Converged at iter 3"));
    const auto report = nlohmann::json::parse(readFile(directory_.path() / "run.json"));
    EXPECT_EQ(report["inputs"]["model"], "bytes\uFFFD.stl");
}

TEST_F(ModelFileTest, APackageAndATemporaryDirectoryMayHaveOddNamesToo) {
    const Package odd("ein \"Paket\" · größe's");
    odd.scriptGoodTools();
    BatchProcess batch(odd.program());
    const fs::path temporary = directory_.path() / "tmp · 'with' blanks";
    fs::create_directory(temporary);
    batch.setVariable("TMPDIR", temporary.string());
    EXPECT_EQ(batch.run({"--sample", "sphere"}), 0) << batch.output();
    EXPECT_THAT(BatchProcess::contents(temporary), IsEmpty());
}

} // namespace
} // namespace ostrella::test
