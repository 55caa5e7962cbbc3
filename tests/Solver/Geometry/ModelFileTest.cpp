#include "Solver/Geometry/ModelFile.h"

#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Geometry/STLParseError.h"
#include "Solver/Geometry/TestMeshes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace ostrella {

namespace {

namespace fs = std::filesystem;
using Reason = ModelLoadError::Reason;

class ModelFile : public testing::Test {
protected:
    void expectFailure(const std::function<void()>& load, Reason reason, const std::string& text) {
        try {
            load();
            FAIL() << "nothing was thrown";
        } catch (const ModelLoadError& error) {
            EXPECT_EQ(error.reason(), reason);
            EXPECT_EQ(std::string(error.what()), text);
        }
    }
    void expectFailure(const fs::path& path, Reason reason, const std::string& text) {
        expectFailure([&] { loadModelFile(path); }, reason, text);
    }

    test::TemporaryDirectory folder_;
};

TEST_F(ModelFile, ASoundFileIsLoaded) {
    writeBinarySTL(test::unitCube(), folder_.path() / "cube.stl");
    EXPECT_EQ(loadModelFile(folder_.path() / "cube.stl"), test::unitCube());
}

TEST_F(ModelFile, NamesMayHaveBlanksQuotesAndAnyLetters) {
    for (const std::string& name : {std::string("a b.stl"), std::string("it's \"so\".stl"),
             std::string("Flügel ✈.stl"), std::string(200, 'x')}) {
        writeBinarySTL(test::tetrahedron(), folder_.path() / name);
        EXPECT_EQ(loadModelFile(folder_.path() / name).facetCount(), 4U) << name;
    }
}

TEST_F(ModelFile, AllBytesAreReadAsTheyAre) {
    const std::string contents("a\0\r\n\xFF z", 7);
    const auto bytes = readModelFile(test::fileIn(folder_, "x", contents));
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()), contents);
}

TEST_F(ModelFile, AMissingFile) {
    const std::string text = "'wing.stl' does not exist. Check its name and folder, and try again.";
    expectFailure(folder_.path() / "wing.stl", Reason::missing, text);
    expectFailure(test::fileIn(folder_, "file", "") / "wing.stl", Reason::missing, text);
}

TEST_F(ModelFile, AFolder) {
    fs::create_directory(folder_.path() / "wing.stl");
    expectFailure(folder_.path() / "wing.stl", Reason::folder,
        "'wing.stl' is a folder. Choose the STL file of one model.");
}

TEST_F(ModelFile, ADevice) {
    expectFailure("/dev/zero", Reason::notAFile,
        "'zero' is a device, a pipe or a socket. Choose an STL file on disk.");
}

TEST_F(ModelFile, APipeIsNotWaitedFor) {
    const auto pipe = folder_.path() / "wing.stl";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    expectFailure(pipe, Reason::notAFile,
        "'wing.stl' is a device, a pipe or a socket. Choose an STL file on disk.");
}

TEST_F(ModelFile, AFileThatMayNotBeRead) {
    const auto path = test::fileIn(folder_, "wing.stl", "solid");
    fs::permissions(path, fs::perms::none);
    // Root may read every file, so it takes the part of somebody else meanwhile.
    const auto user = ::geteuid();
    constexpr uid_t nobody = 65534;
    if (user == 0) {
        ASSERT_EQ(::seteuid(nobody), 0);
    }
    expectFailure(path, Reason::notPermitted,
        "'wing.stl' may not be read. Change its permissions, or copy it to a folder of yours.");
    if (user == 0) {
        ASSERT_EQ(::seteuid(user), 0);
    }
}

TEST_F(ModelFile, ANameThatIsTooLong) {
    const std::string name(300, 'x');
    expectFailure(folder_.path() / name, Reason::unreadable,
        "'" + name +
            "' could not be read: File name too long. Copy it to another place, and try again.");
}

TEST_F(ModelFile, AFileBeyondTheLimitIsNotRead) {
    const auto path = test::fileIn(folder_, "wing.stl", "");
    fs::resize_file(path, 3000000000); // a hole: no such space is taken
    expectFailure(path, Reason::tooLarge,
        "'wing.stl' is too large: 3.0 GB, and at most 2.1 GB can be loaded. Export the model with "
        "fewer facets.");
    EXPECT_NO_THROW(readModelFile(test::fileIn(folder_, "five", "12345"), 5));
    EXPECT_THROW(readModelFile(test::fileIn(folder_, "six", "123456"), 5), ModelLoadError);
}

TEST_F(ModelFile, ParseErrorsPassAsTheyAre) {
    try {
        loadModelFile(test::fileIn(folder_, "empty.stl", ""));
        FAIL() << "nothing was thrown";
    } catch (const STLParseError& error) {
        EXPECT_STREQ(error.what(), "STL file is empty.");
    }
}

TEST_F(ModelFile, WhatIsLoadedIsScreened) {
    expectFailure(test::fileIn(folder_, "nan.stl", "vertex 0 0 0\nvertex nan 0 0\nvertex 0 1 0\n"),
        Reason::notFinite,
        "Facet 1 of 1 has a corner that is not a finite number. Export the model again, or repair "
        "it.");
}

} // namespace

} // namespace ostrella
