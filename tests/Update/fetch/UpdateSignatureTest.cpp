#include "Update/UpdateSignature.h"

#include "Update/UpdateRefusal.h"
#include "support/SigningKey.h"
#include "support/Wait.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include <sys/stat.h>

namespace ostrella {
namespace {

using test::SigningKey;

class UpdateSignatureTest : public testing::Test {
protected:
    UpdateSignatureTest() { test::writeFile(archive, contents); }

    /// The line for the log, or nothing if the signature holds.
    static std::string refusal(
        const std::filesystem::path& file, const std::string& signature, const std::string& key) {
        try {
            UpdateSignature::verify(file, signature, key);
        } catch (const UpdateRefusal& refused) {
            return refused.what();
        }
        return {};
    }

    const test::TemporaryDirectory folder;
    const std::filesystem::path archive = folder.path() / "a.tar.gz";
    const std::string contents =
        std::string("an archive\0 of bytes", 20) + std::string(70'000, 'x');
    const SigningKey key;
    const std::string signature = key.sign(contents);
};

TEST_F(UpdateSignatureTest, TheMakersSignatureHolds) {
    EXPECT_EQ(refusal(archive, signature, key.publicKey()), "");
}

/// A pair of RFC 8032, section 7.1, test 3: the signature of the bytes af 82.
TEST_F(UpdateSignatureTest, KeysOfOtherToolsAreRead) {
    test::writeFile(archive, "\xaf\x82");
    EXPECT_EQ(refusal(archive,
                  "YpHWV97sJAJIJ+acOr4BowzlSKKEdDpEXjaA19taw6wY"
                  "/5tTjRbykK5n92CYTcZZSnwV6XFu0o3AJ77O6h7ECg==",
                  "/FHNjmIYoaONpH7QAjDwWAgW7RO6MwOsXeuRFUiQgCU="),
        "");
}

TEST_F(UpdateSignatureTest, ASignatureFromAFileMayEndItsLine) {
    EXPECT_EQ(refusal(archive, signature + "\n", key.publicKey() + "\n"), "");
}

TEST_F(UpdateSignatureTest, OfAnEmptyFile) {
    test::writeFile(archive, "");
    EXPECT_EQ(refusal(archive, key.sign(""), key.publicKey()), "");
    EXPECT_EQ(refusal(archive, signature, key.publicKey()),
        "Update refused · The signature of the update archive is wrong.");
}

TEST_F(UpdateSignatureTest, OneChangedByteBreaksIt) {
    for (const std::size_t at : {std::size_t{0}, contents.size() / 2, contents.size() - 1}) {
        auto changed = contents;
        changed[at] ^= 1;
        test::writeFile(archive, changed);
        EXPECT_EQ(refusal(archive, signature, key.publicKey()),
            "Update refused · The signature of the update archive is wrong.");
    }
}

TEST_F(UpdateSignatureTest, OneByteMoreOrLessBreaksIt) {
    for (const auto& changed : {contents + "x", contents.substr(0, contents.size() - 1)}) {
        test::writeFile(archive, changed);
        EXPECT_EQ(refusal(archive, signature, key.publicKey()),
            "Update refused · The signature of the update archive is wrong.");
    }
}

TEST_F(UpdateSignatureTest, AnotherMakersSignatureIsWrong) {
    EXPECT_EQ(refusal(archive, SigningKey().sign(contents), key.publicKey()),
        "Update refused · The signature of the update archive is wrong.");
}

/// The neutral point of the curve as key would make every signature right.
TEST_F(UpdateSignatureTest, AKeyOfSmallOrderIsNoKey) {
    const std::string neutral = "AQ" + std::string(41, 'A') + "=";
    const std::string forged = "AQ" + std::string(84, 'A') + "==";
    EXPECT_EQ(refusal(archive, forged, neutral),
        "Update refused · The signature of the update archive is wrong.");
}

TEST_F(UpdateSignatureTest, NoSignature) {
    EXPECT_EQ(refusal(archive, "", key.publicKey()),
        "Update refused · The update archive bears no signature.");
}

TEST_F(UpdateSignatureTest, ASignatureOfTheWrongLength) {
    // 63 and 65 bytes, and the 66 that come of one more group of base64.
    for (const auto& wrong : {std::string(84, 'A'), std::string(86, 'A') + "A=",
             std::string(88, 'A'), std::string("A"), std::string(1 << 20, 'A'), std::string(" ")}) {
        EXPECT_EQ(refusal(archive, wrong, key.publicKey()),
            "Update refused · The signature of the update archive is not 64 bytes in base64.");
    }
}

TEST_F(UpdateSignatureTest, ASignatureThatIsNoBase64) {
    for (const auto& wrong : {"!" + signature, signature + "!",
             signature.substr(0, 40) + "\x01" + signature.substr(41), std::string("sign here")}) {
        EXPECT_EQ(refusal(archive, wrong, key.publicKey()),
            "Update refused · The signature of the update archive is not 64 bytes in base64.");
    }
}

TEST_F(UpdateSignatureTest, AKeyOfTheWrongLength) {
    for (const auto& wrong : {std::string(40, 'A'), std::string(44, 'A'), std::string("not a key"),
             key.publicKey() + key.publicKey()}) {
        EXPECT_EQ(refusal(archive, signature, wrong),
            "Update refused · The key to check signatures with is not 32 bytes in base64.");
    }
}

TEST_F(UpdateSignatureTest, WithoutAKeyNothingIsTaken) {
    EXPECT_EQ(refusal(archive, signature, ""),
        "Update refused · This copy of Ostrella has no key to check signatures with.");
}

TEST_F(UpdateSignatureTest, WhatIsNoFileIsNotWaitedFor) {
    EXPECT_EQ(refusal(folder.path() / "gone", signature, key.publicKey()),
        "Update refused · The update archive cannot be read: No such file or directory.");
    EXPECT_EQ(refusal(folder.path(), signature, key.publicKey()),
        "Update refused · The update archive cannot be read: Is a directory.");
    const auto pipe = folder.path() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(refusal(pipe, signature, key.publicKey()),
        "Update refused · The update archive cannot be read: Operation not supported.");
}

} // namespace
} // namespace ostrella
