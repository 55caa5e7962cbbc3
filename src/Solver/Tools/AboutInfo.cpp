#include "Solver/Tools/AboutInfo.h"

#include "Models/UpdatePolicy.h"
#include "Platform/ChildProcess.h"
#include "Platform/FileDescriptor.h"
#include "Platform/PipeReader.h"
#include "Solver/Tools/BundledTool.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <memory>
#include <system_error>
#include <utility>

namespace ostrella::AboutInfo {

namespace {

constexpr std::string_view standInLine = "Built-in preview solver · SU2 not packaged";
/// As much as is looked at of a program and of what it prints.
constexpr std::size_t headSize = 4096;

constexpr std::uint32_t universalMagic = 0xCAFEBABE;
constexpr std::uint32_t universal64Magic = 0xCAFEBABF;
/// The little-endian magic numbers of thin programs, of 64 and 32 bits, as a big-endian word.
constexpr std::uint32_t thin64Magic = 0xCFFAEDFE;
constexpr std::uint32_t thinMagic = 0xCEFAEDFE;
constexpr std::uint32_t machARM64 = 0x0100000C;
constexpr std::uint32_t machX86_64 = 0x01000007;

constexpr std::array elfMagic{std::byte{0x7F}, std::byte{'E'}, std::byte{'L'}, std::byte{'F'}};
constexpr std::size_t elfDataOffset = 5;
constexpr std::size_t elfMachineOffset = 18;
constexpr std::uint32_t elfX86_64 = 62;
constexpr std::uint32_t elfAArch64 = 183;

std::uint32_t bigEndian(std::span<const std::byte> bytes, std::size_t offset, std::size_t count) {
    std::uint32_t word = 0;
    for (const std::byte byte : bytes.subspan(offset, count)) {
        word = word << 8 | std::to_integer<std::uint32_t>(byte);
    }
    return word;
}

std::uint32_t littleEndian(
    std::span<const std::byte> bytes, std::size_t offset, std::size_t count) {
    std::uint32_t word = 0;
    for (std::size_t i = count; i-- > 0;) {
        word = word << 8 | std::to_integer<std::uint32_t>(bytes[offset + i]);
    }
    return word;
}

void appendMachArchitecture(std::vector<Architecture>& list, std::uint32_t processor) {
    if (processor == machARM64) {
        list.push_back(Architecture::arm64);
    } else if (processor == machX86_64) {
        list.push_back(Architecture::x86_64);
    }
}

std::optional<std::vector<std::byte>> readHeader(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        return std::nullopt;
    }
    std::vector<std::byte> header(headSize);
    stream.read(reinterpret_cast<char*>(header.data()), static_cast<std::streamsize>(headSize));
    if (stream.bad()) {
        return std::nullopt;
    }
    header.resize(static_cast<std::size_t>(stream.gcount()));
    return header;
}

/// A gmsh that hangs is terminated, and killed if it is deaf to that, so that no probe stays for
/// ever.
constexpr std::chrono::seconds patience{3};
constexpr std::chrono::seconds lastPatience{6};

/// The first bytes of what the program prints with "--version" on either stream; gmsh uses the
/// error stream. Throws std::system_error if it cannot be started.
std::string versionOutput(const std::filesystem::path& program, TimerService& timers) {
    Pipe pipe = Pipe::make();
    const auto reader = std::make_shared<PipeReader>(std::move(pipe.readEnd));
    const auto child = std::make_shared<ChildProcess>();
    child->start({.executable = program,
                     .arguments = {"--version"},
                     .directory = std::nullopt,
                     .nullInput = true},
        pipe.writeEnd.get());
    pipe.writeEnd.close();
    const Timer politeEnd = timers.after(patience, [child, reader] {
        child->terminate();
        // A descendant may hold the pipe open.
        reader->stop();
    });
    const Timer hardEnd = timers.after(lastPatience, [child] { child->kill(); });

    std::string output;
    reader->read([&output](std::span<const std::byte> bytes) {
        const auto taken = bytes.first(std::min(bytes.size(), headSize - output.size()));
        output.append(reinterpret_cast<const char*>(taken.data()), taken.size());
    });
    child->wait();
    return output;
}

} // namespace

std::string versionLine(const std::optional<InformationDictionary>& info) {
    return "Version " + UpdatePolicy::versionText(info);
}

std::vector<Architecture> architectures(std::span<const std::byte> machOHeader) {
    std::vector<Architecture> list;
    if (machOHeader.size() < 8) {
        return list;
    }
    const std::uint32_t magic = bigEndian(machOHeader, 0, 4);
    if (magic == universalMagic || magic == universal64Magic) {
        const std::size_t entrySize = magic == universalMagic ? 20 : 32;
        const std::uint32_t count = bigEndian(machOHeader, 4, 4);
        std::size_t offset = 8;
        for (std::uint32_t i = 0; i < count && offset + 12 <= machOHeader.size(); ++i) {
            appendMachArchitecture(list, bigEndian(machOHeader, offset, 4));
            offset += entrySize;
        }
    } else if (magic == thin64Magic || magic == thinMagic) {
        appendMachArchitecture(list, littleEndian(machOHeader, 4, 4));
    }
    return list;
}

std::optional<Architecture> elfArchitecture(std::span<const std::byte> header) {
    if (header.size() < elfMachineOffset + 2 ||
        !std::equal(elfMagic.begin(), elfMagic.end(), header.begin())) {
        return std::nullopt;
    }
    const bool isBigEndian = header[elfDataOffset] == std::byte{2};
    const std::uint32_t machine = isBigEndian ? bigEndian(header, elfMachineOffset, 2)
                                              : littleEndian(header, elfMachineOffset, 2);
    if (machine == elfAArch64) {
        return Architecture::arm64;
    }
    if (machine == elfX86_64) {
        return Architecture::x86_64;
    }
    return std::nullopt;
}

std::string su2Line(const std::optional<std::vector<Architecture>>& architectures,
    const PlatformWords& words, const std::optional<std::string>& release) {
    const std::string version = release.value_or(std::string(packagedRelease));
    if (!architectures) {
        return fmt::format("SU2 {} (LGPL) · not found", version);
    }
    const auto has = [&architectures](Architecture one) {
        return std::find(architectures->begin(), architectures->end(), one) != architectures->end();
    };
    std::string_view processors;
    if (has(Architecture::arm64) && has(Architecture::x86_64)) {
        processors = "universal, ";
    } else if (has(Architecture::arm64)) {
        processors = "arm64, ";
    } else if (has(Architecture::x86_64)) {
        processors = words.translatedArchitecture;
    }
    return fmt::format("SU2 {} ({}LGPL)", version, processors);
}

std::string probeSU2(const AppBundle& bundle, const PlatformWords& words) {
    const auto solver = BundledTools::locate(BundledTool::su2, bundle);
    const auto header = solver ? readHeader(*solver) : std::nullopt;
    if (!header) {
        return su2Line(std::nullopt, words, bundle.solverRelease());
    }
    if (bundle.solverIsStandIn()) {
        return std::string(standInLine);
    }
    std::vector<Architecture> list = architectures(*header);
    if (const auto architecture = elfArchitecture(*header)) {
        list.push_back(*architecture);
    }
    return su2Line(list, words, bundle.solverRelease());
}

std::optional<std::string> parseGMSHVersion(std::string_view output) {
    constexpr std::string_view whitespace = " \t\n\v\f\r";
    constexpr std::string_view versionCharacters = "0123456789.";
    while (true) {
        const std::size_t start = output.find_first_not_of(whitespace);
        if (start == std::string_view::npos) {
            return std::nullopt;
        }
        output.remove_prefix(start);
        const std::string_view piece = output.substr(0, output.find_first_of(whitespace));
        output.remove_prefix(piece.size());
        const std::string_view run = piece.substr(0, piece.find_first_not_of(versionCharacters));
        if (run.find('.') != std::string_view::npos && !run.starts_with('.') &&
            !run.ends_with('.') && run.find("..") == std::string_view::npos) {
            return std::string(run);
        }
    }
}

std::string probeGMSH(const AppBundle& bundle, TimerService& timers) {
    const auto gmsh = BundledTools::locate(BundledTool::gmsh, bundle);
    if (!gmsh) {
        return "gmsh missing · reinstall Ostrella";
    }
    try {
        if (const auto version = parseGMSHVersion(versionOutput(*gmsh, timers))) {
            return "gmsh " + *version + " (GPL)";
        }
    } catch (const std::system_error&) {
        return "gmsh (GPL)";
    }
    return "gmsh (GPL)";
}

} // namespace ostrella::AboutInfo
