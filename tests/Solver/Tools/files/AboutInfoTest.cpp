#include "Solver/Tools/AboutInfo.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <span>
#include <vector>

namespace ostrella {
namespace {

using AboutInfo::Architecture;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t arm64 = 0x0100000C;
constexpr std::uint32_t x86_64 = 0x01000007;
constexpr std::uint32_t powerPC = 0x00000012;

/// A header, word by word.
struct Header {
    Header& big(std::uint32_t word) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            bytes.push_back(static_cast<std::byte>(word >> shift & 0xFF));
        }
        return *this;
    }
    Header& little(std::uint32_t word) {
        for (int shift = 0; shift <= 24; shift += 8) {
            bytes.push_back(static_cast<std::byte>(word >> shift & 0xFF));
        }
        return *this;
    }
    Header& zeros(std::size_t count) {
        bytes.resize(bytes.size() + count);
        return *this;
    }
    std::vector<Architecture> architectures() const { return AboutInfo::architectures(bytes); }

    std::vector<std::byte> bytes;
};

TEST(AboutInfo, readsUniversalHeaders) {
    EXPECT_THAT(
        Header().big(0xCAFEBABE).big(2).big(x86_64).zeros(16).big(arm64).zeros(16).architectures(),
        ElementsAre(Architecture::x86_64, Architecture::arm64));
    EXPECT_THAT(
        Header().big(0xCAFEBABF).big(2).big(arm64).zeros(28).big(x86_64).zeros(28).architectures(),
        ElementsAre(Architecture::arm64, Architecture::x86_64));
    EXPECT_THAT(
        Header().big(0xCAFEBABE).big(2).big(powerPC).zeros(16).big(arm64).zeros(16).architectures(),
        ElementsAre(Architecture::arm64));
    EXPECT_THAT(Header().big(0xCAFEBABE).big(0).big(arm64).zeros(16).architectures(), IsEmpty());
}

TEST(AboutInfo, stopsAtTheEndOfTheHeader) {
    EXPECT_THAT(Header().big(0xCAFEBABE).big(0xFFFFFFFF).big(arm64).zeros(16).architectures(),
        ElementsAre(Architecture::arm64));
    // An entry counts as soon as its first 12 bytes are there.
    EXPECT_THAT(Header().big(0xCAFEBABE).big(1).big(arm64).zeros(8).architectures(),
        ElementsAre(Architecture::arm64));
    EXPECT_THAT(Header().big(0xCAFEBABE).big(1).big(arm64).zeros(7).architectures(), IsEmpty());
    Header full;
    full.big(0xCAFEBABE).big(1000);
    while (full.bytes.size() < 4096) {
        full.big(x86_64).zeros(16);
    }
    full.bytes.resize(4096);
    // (4096 - 8) / 20 entries, the last of which has its 8 remaining bytes only.
    EXPECT_EQ(full.architectures().size(), 204U);
}

TEST(AboutInfo, readsThinHeaders) {
    EXPECT_THAT(Header().little(0xFEEDFACF).little(arm64).architectures(),
        ElementsAre(Architecture::arm64));
    EXPECT_THAT(Header().little(0xFEEDFACE).little(x86_64).architectures(),
        ElementsAre(Architecture::x86_64));
    EXPECT_THAT(Header().little(0xFEEDFACF).little(powerPC).architectures(), IsEmpty());
    EXPECT_THAT(Header().big(0xFEEDFACF).big(arm64).architectures(), IsEmpty());
}

TEST(AboutInfo, takesNothingFromOtherHeaders) {
    EXPECT_THAT(Header().architectures(), IsEmpty());
    EXPECT_THAT(Header().little(0xFEEDFACF).zeros(3).architectures(), IsEmpty()) << "7 bytes";
    EXPECT_THAT(Header().big(0x23212F62).big(0x696E2F73).architectures(), IsEmpty()) << "#!/bin/s";
}

std::optional<Architecture> ofELF(int data, std::vector<int> machine, std::size_t size = 64) {
    std::vector<std::byte> header(size);
    const int start[] = {0x7F, 'E', 'L', 'F', 2, data};
    for (std::size_t i = 0; i < std::size(start) && i < size; ++i) {
        header[i] = static_cast<std::byte>(start[i]);
    }
    for (std::size_t i = 0; i < machine.size() && 18 + i < size; ++i) {
        header[18 + i] = static_cast<std::byte>(machine[i]);
    }
    return AboutInfo::elfArchitecture(header);
}

TEST(AboutInfo, readsELFHeaders) {
    EXPECT_EQ(ofELF(1, {62, 0}), Architecture::x86_64);
    EXPECT_EQ(ofELF(1, {183, 0}), Architecture::arm64);
    EXPECT_EQ(ofELF(2, {0, 183}), Architecture::arm64);
    EXPECT_EQ(ofELF(1, {0, 62}), std::nullopt);
    EXPECT_EQ(ofELF(1, {243, 0}), std::nullopt) << "RISC-V";
    EXPECT_EQ(ofELF(1, {62, 0}, 19), std::nullopt);
    EXPECT_EQ(AboutInfo::elfArchitecture({}), std::nullopt);
    EXPECT_EQ(AboutInfo::elfArchitecture(std::vector<std::byte>(64)), std::nullopt);
}

TEST(AboutInfo, namesTheSolver) {
    const PlatformWords& mac = PlatformWords::mac();
    const PlatformWords& linux = PlatformWords::freedesktop();
    const std::vector<Architecture> intel{Architecture::x86_64};
    const std::vector<Architecture> arm{Architecture::arm64};
    const std::vector<Architecture> both{
        Architecture::x86_64, Architecture::arm64, Architecture::x86_64};
    EXPECT_EQ(AboutInfo::su2Line(std::nullopt, mac), "SU2 8.5.0 (LGPL) · not found");
    EXPECT_EQ(AboutInfo::su2Line(arm, mac), "SU2 8.5.0 (arm64, LGPL)");
    EXPECT_EQ(AboutInfo::su2Line(intel, mac), "SU2 8.5.0 (x86_64 via Rosetta, LGPL)");
    EXPECT_EQ(AboutInfo::su2Line(intel, linux), "SU2 8.5.0 (x86_64, LGPL)");
    EXPECT_EQ(AboutInfo::su2Line(both, mac), "SU2 8.5.0 (universal, LGPL)");
    EXPECT_EQ(AboutInfo::su2Line(std::vector<Architecture>(), mac), "SU2 8.5.0 (LGPL)");
    EXPECT_EQ(AboutInfo::su2Line(intel, linux, "8.3.0"), "SU2 8.3.0 (x86_64, LGPL)");
    EXPECT_EQ(AboutInfo::su2Line(std::nullopt, linux, "8.3.0"), "SU2 8.3.0 (LGPL) · not found");
}

TEST(AboutInfo, findsTheVersionOfGmsh) {
    struct Case {
        const char* output;
        std::optional<std::string> version;
    };
    const Case cases[] = {
        {"4.15.2", "4.15.2"},
        {"4.15.2\n", "4.15.2"},
        {"4.8.4-git-abc\n", "4.8.4"},
        {"Version 4.15 of gmsh", "4.15"},
        {"\t\r\n  4.1\v5.2", "4.1"},
        {"4. .5 1..2 6.7", "6.7"},
        // Bytes that are no text, and a blank that is none of ASCII's.
        {"Warnung: f\xFCr X \xFE\xFF\n4.15.2", "4.15.2"},
        {"4.15.2\u00A0beta", "4.15.2"},
        {"gmsh\u00A04.15.2", std::nullopt},
        {"gmsh", std::nullopt},
        {"4", std::nullopt},
        {"v4.15.2", std::nullopt},
        {".", std::nullopt},
        {"", std::nullopt},
        {" \n", std::nullopt},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(AboutInfo::parseGMSHVersion(one.output), one.version) << one.output;
    }
}

} // namespace
} // namespace ostrella
