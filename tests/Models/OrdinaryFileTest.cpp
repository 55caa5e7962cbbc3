#include "Models/OrdinaryFile.h"

#include "Models/FileError.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <span>
#include <string>
#include <system_error>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace ostrella {

namespace {

namespace fs = std::filesystem;

class OrdinaryFileTest : public testing::Test {
protected:
    fs::path holding(const std::string& contents) {
        const fs::path path = folder_.path() / "file";
        std::ofstream(path, std::ios::binary) << contents;
        return path;
    }

    static void expectRefusal(const fs::path& path, std::errc reason, const std::string& words,
        std::uint64_t limit = std::numeric_limits<std::uint64_t>::max()) {
        try {
            const OrdinaryFile file(path, limit);
            FAIL() << "nothing was thrown";
        } catch (const FileError& error) {
            EXPECT_EQ(error.code(), reason);
            EXPECT_EQ(error.what(), "Cannot read " + path.string() + ": " + words);
        }
    }

    static std::string read(const OrdinaryFile& file, std::size_t most) {
        std::string text(most, '?');
        text.resize(file.read(std::as_writable_bytes(std::span(text.data(), text.size()))));
        return text;
    }

    test::TemporaryDirectory folder_;
};

TEST_F(OrdinaryFileTest, GivesItsBytesAsTheyAre) {
    const std::string contents("a\0\r\n\xFF z", 7);
    const OrdinaryFile file(holding(contents));
    EXPECT_EQ(file.size(), 7U);
    EXPECT_EQ(read(file, 7), contents);
}

TEST_F(OrdinaryFileTest, ReadsOnWhereItEnded) {
    const OrdinaryFile file(holding("12345"));
    EXPECT_EQ(read(file, 2), "12");
    EXPECT_EQ(read(file, 100), "345");
    EXPECT_EQ(read(file, 100), "");
}

TEST_F(OrdinaryFileTest, AnEmptyFile) {
    const OrdinaryFile file(holding(""));
    EXPECT_EQ(file.size(), 0U);
    EXPECT_EQ(read(file, 0), "");
}

TEST_F(OrdinaryFileTest, TheLimitIsTheLastSizeThatIsRead) {
    EXPECT_EQ(OrdinaryFile(holding("12345"), 5).size(), 5U);
    expectRefusal(holding("123456"), std::errc::file_too_large, "File too large", 5);
}

TEST_F(OrdinaryFileTest, WhatIsNotThere) {
    expectRefusal(folder_.path() / "nothing", std::errc::no_such_file_or_directory,
        "No such file or directory");
}

TEST_F(OrdinaryFileTest, AFolder) {
    expectRefusal(folder_.path(), std::errc::is_a_directory, "Is a directory");
}

TEST_F(OrdinaryFileTest, ADevice) {
    expectRefusal("/dev/zero", std::errc::not_supported, "Operation not supported");
}

TEST_F(OrdinaryFileTest, APipeIsNotWaitedFor) {
    const fs::path pipe = folder_.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    expectRefusal(pipe, std::errc::not_supported, "Operation not supported");
}

TEST_F(OrdinaryFileTest, ASocket) {
    const fs::path path = folder_.path() / "socket";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.string().size(), sizeof address.sun_path);
    path.string().copy(address.sun_path, sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    expectRefusal(path, std::errc::not_supported, "Operation not supported");
    ::close(socket);
}

TEST_F(OrdinaryFileTest, NoDescriptorIsLeftOpen) {
    const auto path = holding("12345");
    const int before = ::dup(0);
    ::close(before);
    for (int i = 0; i < 3; ++i) {
        const OrdinaryFile file(path);
        EXPECT_THROW(OrdinaryFile(path, 4), FileError);
        EXPECT_THROW(const OrdinaryFile folder(folder_.path()), FileError);
    }
    const int after = ::dup(0);
    ::close(after);
    EXPECT_EQ(after, before);
}

} // namespace

} // namespace ostrella
