#include "Update/Appcast.h"

#include "Update/UpdateRefusal.h"
#include "fuzz/AppcastBody.h"
#include "support/Wait.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace ostrella {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr auto machine = "linux-x86_64";

std::string feed(const std::string& items) {
    return R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><title>Ostrella</title><link>https://example.org/feed.xml</link>
)" + items +
           "</channel></rss>";
}

std::string item(const std::string& inside) {
    return "<item>" + inside + "</item>";
}

const std::string enclosure = R"(<enclosure url="https://example.org/a.tar.gz" length="10"
    type="application/octet-stream" sparkle:os="linux" sparkle:version="7"/>)";

std::vector<AppcastItem> read(const std::string& items, std::string_view present = {}) {
    return Appcast::items(feed(items), machine, present);
}

std::string refusal(std::string_view xml) {
    try {
        Appcast::items(xml, machine);
    } catch (const UpdateRefusal& refused) {
        return refused.what();
    }
    return {};
}

TEST(AppcastTest, AnItemInFull) {
    const auto items = read(R"(<item>
  <title>Version 1.2</title>
  <link>https://example.org/1.2</link>
  <sparkle:version>120</sparkle:version>
  <sparkle:shortVersionString>1.2</sparkle:shortVersionString>
  <sparkle:minimumSystemVersion>99.0</sparkle:minimumSystemVersion>
  <sparkle:releaseNotesLink>https://example.org/1.2/notes.html</sparkle:releaseNotesLink>
  <description><![CDATA[<ul><li>Faster &amp; calmer</li></ul>]]></description>
  <pubDate>Sat, 21 Nov 2026 16:00:00 +0000</pubDate>
  <enclosure url="https://example.org/1.2.tar.gz" length="123456789012" type="application/gzip"
      sparkle:os="linux-x86_64" sparkle:edSignature="c2lnbmVk"/>
</item>)");
    const AppcastItem expected{.version = "120",
        .displayVersionString = "1.2",
        .title = "Version 1.2",
        .notes = "<ul><li>Faster &amp; calmer</li></ul>",
        .notesAddress = "https://example.org/1.2/notes.html",
        .infoAddress = "https://example.org/1.2",
        .archiveAddress = "https://example.org/1.2.tar.gz",
        .archiveLength = 123456789012,
        .signature = "c2lnbmVk"};
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items[0], expected);
}

TEST(AppcastTest, VersionsMayStandInTheEnclosure) {
    const auto items = read(item(R"(<enclosure url="https://example.org/a" sparkle:os="linux"
        sparkle:version="120" sparkle:shortVersionString="1.2"/>)"));
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items[0].version, "120");
    EXPECT_EQ(items[0].displayVersionString, "1.2");
    EXPECT_EQ(items[0].archiveLength, 0);
    EXPECT_EQ(items[0].signature, "");
}

TEST(AppcastTest, WithoutAVersionToReadTheOtherOneIsShown) {
    const auto items = read(item(enclosure));
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items[0].displayVersionString, "7");
}

TEST(AppcastTest, TheOrderIsTheFeeds) {
    const auto of = [](const std::string& version) {
        return item("<sparkle:version>" + version + "</sparkle:version>" + enclosure);
    };
    std::vector<std::string> versions;
    for (const auto& found : read(of("3") + of("1") + of("2"))) {
        versions.push_back(found.version);
    }
    EXPECT_THAT(versions, ElementsAre("3", "1", "2"));
}

std::string enclosureFor(const std::string& system) {
    const auto os = system.empty() ? "" : " sparkle:os=\"" + system + "\"";
    return "<enclosure url=\"https://example.org/" + system + "\" sparkle:version=\"7\"" + os +
           "/>";
}

TEST(AppcastTest, OnlyWhatIsForThisMachine) {
    for (const char* other : {"", "macos", "windows", "linux-arm64", "linux-x86", "Linux"}) {
        EXPECT_THAT(read(item(enclosureFor(other))), IsEmpty()) << other;
    }
    EXPECT_THAT(Appcast::items(feed(item(enclosureFor("linux-arm64"))), "linux-arm64"), SizeIs(1));
    EXPECT_THAT(Appcast::items(feed(item(enclosureFor("linux"))), "linux-arm64"), SizeIs(1));
}

TEST(AppcastTest, OfSeveralArchivesTheClosest) {
    const auto items = read(item(enclosureFor("macos") + enclosureFor("linux") +
                                 enclosureFor("linux-x86_64") + enclosureFor("linux-arm64")));
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items[0].archiveAddress, "https://example.org/linux-x86_64");
}

TEST(AppcastTest, OfEquallyCloseArchivesTheFirst) {
    const auto items = read(item(R"(<enclosure url="" sparkle:os="linux" sparkle:version="6"/>
        <enclosure url="https://example.org/1" sparkle:os="linux" sparkle:version="7"/>
        <enclosure url="https://example.org/2" sparkle:os="linux" sparkle:version="8"/>)"));
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items[0].archiveAddress, "https://example.org/1");
    EXPECT_EQ(items[0].version, "7");
}

TEST(AppcastTest, ThisMachineHasAName) {
    EXPECT_THAT(Appcast::platform(), StartsWith("linux-"));
    EXPECT_THAT(Appcast::items(feed(item(enclosureFor(Appcast::platform()))), Appcast::platform()),
        SizeIs(1));
}

TEST(AppcastTest, BetaVersionsAreForOthers) {
    EXPECT_THAT(read(item("<sparkle:channel>beta</sparkle:channel>" + enclosure)), IsEmpty());
    EXPECT_THAT(read(item("<sparkle:channel> </sparkle:channel>" + enclosure)), SizeIs(1));
}

TEST(AppcastTest, DeltasAreNoArchives) {
    const auto items = read(item("<sparkle:deltas>" + enclosureFor("linux-x86_64") +
                                 "</sparkle:deltas>" + enclosureFor("linux")));
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items[0].archiveAddress, "https://example.org/linux");
}

TEST(AppcastTest, AReleaseMayOnlyBeToldOf) {
    const std::string link = "<link>https://example.org/new</link>";
    const auto items =
        read(item("<sparkle:version>8</sparkle:version><sparkle:informationalUpdate/>" + link +
                  enclosure) +
             item("<sparkle:version>9</sparkle:version>" + link) +
             item("<sparkle:version>10</sparkle:version>")); // of which there is nothing to be told
    ASSERT_THAT(items, SizeIs(2));
    for (const auto& found : items) {
        EXPECT_EQ(found.archiveAddress, "");
        EXPECT_EQ(found.infoAddress, "https://example.org/new");
    }
}

TEST(AppcastTest, OnlyCertainVersionsMayBeToldOf) {
    const auto text = item("<sparkle:informationalUpdate><sparkle:version>3</sparkle:version>"
                           "<sparkle:belowVersion>2</sparkle:belowVersion>"
                           "</sparkle:informationalUpdate>" +
                           enclosure);
    const auto isToldOnly = [&](const char* present) {
        return read(text, present).at(0).archiveAddress.empty();
    };
    EXPECT_TRUE(isToldOnly("1.9"));
    EXPECT_FALSE(isToldOnly("2"));
    EXPECT_TRUE(isToldOnly("3.0"));
    EXPECT_FALSE(isToldOnly("4"));
}

TEST(AppcastTest, NotesInThisProgramsLanguage) {
    const auto items = read(item(R"(<description xml:lang="de">Neu</description>
        <description xml:lang="en">New</description><description xml:lang="fr">Neuf</description>
        <sparkle:releaseNotesLink xml:lang="de">https://example.org/de</sparkle:releaseNotesLink>
        <sparkle:releaseNotesLink>https://example.org/en</sparkle:releaseNotesLink>)" +
                                 enclosure));
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items[0].notes, "New");
    EXPECT_EQ(items[0].notesAddress, "https://example.org/en");
}

TEST(AppcastTest, ForeignNotesAreBetterThanNone) {
    const auto items = read(item("<description xml:lang=\"de\">Neu</description>" + enclosure));
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items[0].notes, "Neu");
}

TEST(AppcastTest, OnlyPagesOfTheWebAreShown) {
    for (const char* address :
        {"file:///etc/passwd", "javascript:alert(1)", "/relative", "https://", "ssh://host/", ""}) {
        const auto items =
            read(item("<link>" + std::string(address) + "</link><sparkle:releaseNotesLink>" +
                      address + "</sparkle:releaseNotesLink>" + enclosure));
        ASSERT_THAT(items, SizeIs(1)) << address;
        EXPECT_EQ(items[0].infoAddress, "");
        EXPECT_EQ(items[0].notesAddress, "");
    }
}

TEST(AppcastTest, VersionsThatAreNoneAreLeftOut) {
    for (const auto& version : {std::string(), std::string(" "), std::string("../../x"),
             std::string("1&#x202e;2"), std::string("1;rm"), std::string(65, '1')}) {
        EXPECT_THAT(read(item("<sparkle:version>" + version + "</sparkle:version>" +
                              "<enclosure url=\"https://example.org/a\" sparkle:os=\"linux\"/>")),
            IsEmpty())
            << version;
    }
}

TEST(AppcastTest, ATitleIsOneLineThatCanBeShown) {
    const auto items = read(item("<title>\n A\t&#x202e;&#x9b;title \xF0\x9F\x8C\xAA of <b>x</b>" +
                                 std::string(10'000, 'y') + "</title>" + enclosure));
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_THAT(items[0].title, StartsWith("A title \xF0\x9F\x8C\xAA of yyy"));
    EXPECT_EQ(items[0].title.size(), 256u + 3u);
}

TEST(AppcastTest, LengthsThatAreNoneAre0) {
    for (const char* length : {"-1", "1e3", "12 MB", "99999999999999999999", "0x10", ""}) {
        const auto items =
            read(item("<enclosure url=\"https://example.org/a\" sparkle:os=\"linux\" "
                      "sparkle:version=\"7\" length=\"" +
                      std::string(length) + "\"/>"));
        ASSERT_THAT(items, SizeIs(1)) << length;
        EXPECT_EQ(items[0].archiveLength, 0) << length;
    }
}

TEST(AppcastTest, AFeedWithoutReleases) {
    EXPECT_THAT(read(""), IsEmpty());
    EXPECT_EQ(refusal("<rss><channel/></rss>"), "");
}

TEST(AppcastTest, NothingIsNoFeed) {
    EXPECT_EQ(refusal(""), "Update refused · The update feed is empty.");
    EXPECT_EQ(refusal(" \r\n\t "), "Update refused · The update feed is empty.");
}

TEST(AppcastTest, RubbishIsNoFeed) {
    EXPECT_EQ(refusal("\x89PNG\r\n\x1a\n\xff\xff"),
        "Update refused · The update feed is not a text in UTF-8.");
    EXPECT_EQ(refusal(std::string_view("<rss>\0</rss>", 12)),
        "Update refused · The update feed is not a text in UTF-8.");
    EXPECT_THAT(refusal("404 not found"),
        StartsWith("Update refused · The update feed is not well-formed, line 1: "));
    EXPECT_THAT(refusal("<rss><channel><item>"),
        StartsWith("Update refused · The update feed is not well-formed, line 1: "));
    EXPECT_THAT(refusal(feed(item(enclosure)) + "<rss/>"),
        StartsWith("Update refused · The update feed is not well-formed, line 5: "));
    EXPECT_EQ(refusal("<html><body>Please sign in</body></html>"),
        "Update refused · The update feed is not an appcast.");
    EXPECT_EQ(refusal("<rss><item/></rss>"), "Update refused · The update feed is not an appcast.");
}

TEST(AppcastTest, WhatIsCutOffIsNotReadByHalves) {
    const auto whole = feed(item(enclosure) + item(enclosure));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_NE(refusal(whole.substr(0, length)), "") << length;
    }
}

TEST(AppcastTest, EntitiesAreRefused) {
    std::string bomb = "<!DOCTYPE rss [<!ENTITY a0 \"ha\">";
    for (int i = 1; i < 30; ++i) {
        const auto last = "&a" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY a" + std::to_string(i) + " \"" + last + last + "\">";
    }
    bomb += "]><rss><channel><item><title>&a29;</title></item></channel></rss>";
    constexpr auto text =
        "Update refused · The update feed has a document type, which no feed needs.";
    EXPECT_EQ(refusal(bomb), text);
    EXPECT_EQ(refusal("<!DOCTYPE rss [<!ENTITY x SYSTEM \"file:///etc/passwd\">]>"
                      "<rss><channel><title>&x;</title></channel></rss>"),
        text);
    EXPECT_EQ(
        refusal("<?xml version=\"1.0\"?><!-- > --><!DOCTYPE rss><rss><channel/></rss>"), text);
    EXPECT_THAT(refusal("<rss><channel>&unknown;</channel></rss>"),
        StartsWith("Update refused · The update feed is not well-formed"));
}

TEST(AppcastTest, WhatOnlyLooksLikeADocumentTypeIsText) {
    EXPECT_EQ(refusal("<rss><!-- <!DOCTYPE a> --><channel><title><![CDATA[<!DOCTYPE a>]]></title>"
                      "<?x <!DOCTYPE a> ?></channel></rss>"),
        "");
}

TEST(AppcastTest, NoFeedIsSoDeep) {
    const auto nested = [](int levels) {
        std::string text = "<rss><channel>";
        for (int i = 2; i < levels; ++i) {
            text += "<a><b/><c></c>";
        }
        for (int i = 2; i < levels; ++i) {
            text += "</a>";
        }
        return text + "</channel></rss>";
    };
    EXPECT_EQ(refusal(nested(31)), "");
    EXPECT_EQ(refusal(nested(40)),
        "Update refused · The update feed has more than 32 elements within one another.");
}

TEST(AppcastTest, NotesWithoutEndAreCutOff) {
    // Each of them is two of the parser's characters.
    std::string notes = "a";
    for (int i = 0; i < 40'000; ++i) {
        notes += "🙂";
    }
    const auto items = read(item("<description>" + notes + "</description>" + enclosure));
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items.front().notes, notes.substr(0, 1 + 4 * 32'767));
}

/// Megabytes of whatever a parser might stumble over are done with at once.
TEST(AppcastTest, HugeFeedsAreDoneWithAtOnce) {
    const auto filled = [](const std::string& start, const std::string& piece) {
        std::string text = start;
        while (text.size() + piece.size() <= Appcast::mostBytes) {
            text += piece;
        }
        return text;
    };
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(refusal(std::string(Appcast::mostBytes + 1, ' ')),
        "Update refused · The update feed is larger than 4 MiB.");
    std::string attributes = "<rss";
    for (int i = 0; i < 65; ++i) {
        attributes += " a" + std::to_string(i) + "=''";
    }
    EXPECT_EQ(refusal(attributes + "/>"),
        "Update refused · The update feed has an element of more than 64 attributes.");
    EXPECT_EQ(refusal(filled("<rss ", "a='' ")),
        "Update refused · The update feed has an element of more than 64 KiB.");
    EXPECT_EQ(refusal(filled("<rss a='", "x")),
        "Update refused · The update feed has an element of more than 64 KiB.");
    for (const char* piece : {"<a>", "<a/>", "<", "x", "<!--", "&lt;", "<![CDATA[", "<?", "\"",
             "]]>", "<x:a xmlns:b='c'>", "<rss a='' b='' c='' d=''>", "<x:y xmlns:x='z'>"}) {
        EXPECT_NE(refusal(filled("<rss><channel>", piece)), "") << piece;
    }
    std::string releases;
    for (int i = 0; i < 10'000; ++i) {
        releases += item(enclosure);
    }
    EXPECT_THAT(read(releases), SizeIs(10'000));
    const auto seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(seconds, 20); // about one, with sanitizers and on a busy machine more
}

TEST(AppcastTest, FeedsOfTheCorpus) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(
             std::filesystem::path(OSTRELLA_TEST_DATA) / "appcast")) {
        const auto name = entry.path().filename().string();
        if (!entry.is_regular_file() || entry.path().extension() != ".xml") {
            continue;
        }
        const auto text = test::readFile(entry.path());
        EXPECT_EQ(refusal(text).empty(), name.starts_with("good_"))
            << name << ": " << refusal(text);
        ++count;
    }
    EXPECT_GE(count, 10);
}

/// Ends the process, and so the test, at what the fuzz target would call a finding.
TEST(AppcastTest, NothingIsFoundInTheCorpus) {
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(
             std::filesystem::path(OSTRELLA_TEST_DATA) / "appcast")) {
        if (entry.is_regular_file()) {
            const auto text = test::readFile(entry.path());
            fuzz::appcast({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
            ++count;
        }
    }
    EXPECT_GE(count, 10);
}

} // namespace
} // namespace ostrella
