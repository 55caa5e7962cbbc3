// What the maintainers' script packs and signs is what the updater takes.

#include "Update/Appcast.h"
#include "Update/UpdateArchive.h"
#include "Update/UpdateInstaller.h"
#include "Update/UpdateRefusal.h"
#include "Update/UpdateSignature.h"
#include "support/Wait.h"

#include <QProcess>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;

class ReleaseTest : public testing::Test {
protected:
    struct Outcome {
        int status = -1;
        std::string output;
        std::string errors;
    };

    ReleaseTest() {
        run("openssl", {"genpkey", "-algorithm", "ed25519", "-out", key().string()});
        publicKey = firstLine(script({"--public-key"}).output);
        pack();
    }

    static Outcome run(const std::string& program, const std::vector<std::string>& arguments) {
        QProcess process;
        QStringList list;
        for (const std::string& argument : arguments) {
            list << QString::fromStdString(argument);
        }
        process.start(QString::fromStdString(program), list);
        EXPECT_TRUE(process.waitForFinished()) << program;
        return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
    }

    Outcome script(std::vector<std::string> arguments) const {
        for (const char* fixed : {"--key", "--stage", "--to"}) {
            arguments.emplace_back(fixed);
            arguments.push_back((folder.path() / (fixed + 2)).string());
        }
        return run(OSTRELLA_SOURCE_DIR "/scripts/release", arguments);
    }
    Outcome release() const { return script({"--address", "https://ostrella.example/files/"}); }

    static std::string firstLine(const std::string& text) {
        return text.substr(0, text.find('\n'));
    }

    fs::path key() const { return folder.path() / "key"; }
    fs::path stage() const { return folder.path() / "stage"; }

    /// A small package, with a tool that is a link out of it and one that stays inside.
    void pack() const {
        writeFile(stage() / "bin/ostrella", "#!/bin/sh\necho Ostrella 1.2.0\n");
        fs::permissions(stage() / "bin/ostrella", fs::perms::owner_all);
        tellOfItself(publicKey);
        for (const char* tool : {"SU2", "gmsh"}) {
            writeFile(stage() / "share/ostrella/licenses" / tool / "text.txt", "A licence.");
        }
        writeFile(folder.path() / "gmsh", "#!/bin/sh\n");
        fs::create_directories(stage() / "libexec/ostrella");
        fs::create_symlink(folder.path() / "gmsh", stage() / "libexec/ostrella/gmsh");
        writeFile(stage() / "libexec/ostrella/ostrella-preview-solver", "#!/bin/sh\n");
        fs::create_symlink("ostrella-preview-solver", stage() / "libexec/ostrella/SU2_CFD");
    }

    void tellOfItself(const std::string& trusted,
        const std::string& feed = "https://ostrella.example/appcast.xml") const {
        writeFile(stage() / "share/ostrella/Info.json", fmt::format(R"({{
  "CFBundleShortVersionString" : "1.2.0",
  "CFBundleVersion" : "129",
  "SUFeedURL" : "{}",
  "SUPublicEDKey" : "{}"
}}
)",
                                                            feed, trusted));
    }

    /// An empty folder.
    fs::path unpacked() const {
        fs::create_directory(folder.path() / "unpacked");
        return folder.path() / "unpacked";
    }

    /// The first of the files of this kind that the script has made.
    fs::path made(const std::string& extension) const {
        for (const auto& entry : fs::directory_iterator(folder.path() / "to")) {
            if (entry.path().extension() == extension) {
                return entry.path();
            }
        }
        throw std::runtime_error("no " + extension + " was made");
    }

    AppcastItem item() const {
        const auto all = Appcast::items(
            R"(<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">)"
            "<channel>" +
                readFile(made(".xml")) + "</channel></rss>",
            Appcast::platform());
        return all.empty() ? AppcastItem() : all.front();
    }

    TemporaryDirectory folder;
    std::string publicKey;
};

TEST_F(ReleaseTest, MakesAnItemThatTheUpdaterReads) {
    const Outcome outcome = release();
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    const AppcastItem found = item();
    EXPECT_EQ(found.version, "129");
    EXPECT_EQ(found.displayVersionString, "1.2.0");
    EXPECT_EQ(found.title, "Ostrella 1.2.0");
    EXPECT_EQ(
        found.archiveAddress, "https://ostrella.example/files/" + made(".xz").filename().string());
    EXPECT_EQ(found.archiveLength, static_cast<std::int64_t>(fs::file_size(made(".xz"))));
    EXPECT_EQ(outcome.output, made(".xz").string() + "\n" + made(".xml").string() + "\n");
}

TEST_F(ReleaseTest, SignsTheArchiveWithTheKey) {
    ASSERT_EQ(release().status, 0);
    EXPECT_NO_THROW(UpdateSignature::verify(made(".xz"), item().signature, publicKey));
    std::ofstream(made(".xz"), std::ios::app) << "!";
    EXPECT_THROW(UpdateSignature::verify(made(".xz"), item().signature, publicKey), UpdateRefusal);
}

TEST_F(ReleaseTest, TheArchiveIsInstalled) {
    ASSERT_EQ(release().status, 0);
    const fs::path root = folder.path() / "installed/Ostrella";
    writeFile(root / "bin/ostrella", "#!/bin/sh\n");
    writeFile(root / "share/ostrella/Info.json", R"({"CFBundleVersion": "128"})");
    UpdateInstaller installer(root);
    ASSERT_NO_THROW(installer.stage(made(".xz"), item(), "128"));
    installer.exchange();
    EXPECT_EQ(UpdateInstaller::version(root), "129");
    EXPECT_EQ(readFile(root / "libexec/ostrella/gmsh"), "#!/bin/sh\n");
    EXPECT_FALSE(fs::is_symlink(root / "libexec/ostrella/gmsh")) << "it comes along";
    EXPECT_TRUE(fs::is_symlink(root / "libexec/ostrella/SU2_CFD")) << "it stays a link";
}

TEST_F(ReleaseTest, TellsWhatIsNewWhateverSignsItHas) {
    writeFile(folder.path() / "new", "<p>a &lt; b</p> ]]> & \"c\"");
    ASSERT_EQ(
        script({"--address", "https://ostrella.example", "--notes",
                   (folder.path() / "new").string(), "--page", "https://ostrella.example/?a=1&b=2"})
            .status,
        0);
    EXPECT_EQ(item().notes, "<p>a &lt; b</p> ]]> & \"c\"");
    EXPECT_EQ(item().infoAddress, "https://ostrella.example/?a=1&b=2");
}

TEST_F(ReleaseTest, TheSamePackageGivesTheSameArchive) {
    ASSERT_EQ(release().status, 0);
    const std::string first = item().signature;
    fs::remove_all(folder.path() / "to");
    ASSERT_EQ(release().status, 0);
    EXPECT_EQ(item().signature, first);
}

TEST_F(ReleaseTest, RefusesAKeyThatThePackageDoesNotTrust) {
    tellOfItself("AAAA");
    const Outcome outcome = release();
    EXPECT_NE(outcome.status, 0);
    EXPECT_NE(outcome.errors.find("OSTRELLA_UPDATE_KEY=" + publicKey), std::string::npos)
        << outcome.errors;
    EXPECT_FALSE(fs::exists(folder.path() / "to"));
}

TEST_F(ReleaseTest, RefusesWhatIsNoKey) {
    writeFile(key(), "not a key");
    EXPECT_NE(release().status, 0);
    EXPECT_NE(script({"--public-key"}).status, 0);
}

TEST_F(ReleaseTest, RefusesAPackageWithoutLicences) {
    fs::remove_all(stage() / "share/ostrella/licenses/SU2");
    const Outcome outcome = release();
    EXPECT_NE(outcome.status, 0);
    EXPECT_NE(outcome.errors.find("licence of SU2"), std::string::npos) << outcome.errors;
}

TEST_F(ReleaseTest, RefusesAnAddressThatTheUpdaterWould) {
    EXPECT_NE(script({"--address", "http://ostrella.example"}).status, 0);
    EXPECT_NE(script({}).status, 0);
}

TEST_F(ReleaseTest, PacksForMachinesWithoutANetwork) {
    tellOfItself(publicKey, "file:///srv/ostrella/appcast.xml");
    ASSERT_EQ(script({"--address", "file:///srv/ostrella"}).status, 0);
    EXPECT_EQ(item().archiveAddress, "file:///srv/ostrella/" + made(".xz").filename().string());
}

TEST_F(ReleaseTest, RefusesAnArchiveThatItsFeedMayNotName) {
    EXPECT_NE(script({"--address", "file:///srv/ostrella"}).status, 0);
    tellOfItself(publicKey, "file:///srv/ostrella/appcast.xml");
    EXPECT_NE(script({"--address", "https://ostrella.example"}).status, 0);
}

TEST_F(ReleaseTest, TakesAlongWhatALinkLeadsToOutsideOfThePackage) {
    fs::remove(stage() / "libexec/ostrella/gmsh");
    fs::create_symlink("../../../gmsh", stage() / "libexec/ostrella/gmsh");
    ASSERT_EQ(release().status, 0);
    UpdateArchive::unpack(made(".xz"), unpacked());
    const auto tool = fs::directory_iterator(unpacked())->path() / "libexec/ostrella/gmsh";
    EXPECT_FALSE(fs::is_symlink(tool));
    EXPECT_EQ(readFile(tool), "#!/bin/sh\n");
}

TEST_F(ReleaseTest, RefusesALinkToNothing) {
    fs::remove(folder.path() / "gmsh");
    EXPECT_NE(release().status, 0);
}

} // namespace
} // namespace ostrella::test
