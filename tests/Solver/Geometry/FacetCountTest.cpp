#include "Solver/Geometry/FacetCount.h"

#include "Solver/Geometry/MeshOperations.h"
#include "Solver/Geometry/TestMeshes.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace ostrella {

namespace {

class FacetCount : public testing::Test {
protected:
    std::optional<std::int64_t> countIn(std::string_view contents) const {
        return readFacetCount(test::fileIn(folder_, "model.stl", contents));
    }
    std::optional<std::int64_t> countIn(const std::vector<std::byte>& bytes) const {
        return countIn(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    }

    test::TemporaryDirectory folder_;
};

TEST_F(FacetCount, OfABinaryFileIsInItsHeader) {
    EXPECT_EQ(countIn(test::binarySTL(7, 7)), 7);
    EXPECT_EQ(countIn(test::binarySTL(7, 7, "solid but binary")), 7);
    EXPECT_EQ(countIn(test::binarySTL(0, 0)), 0);
}

TEST_F(FacetCount, OfABinaryFileWithTrailingBytesIsNothing) {
    auto bytes = test::binarySTL(7, 7);
    bytes.push_back(std::byte{0});
    EXPECT_EQ(countIn(bytes), std::nullopt);
}

TEST_F(FacetCount, ABinaryFileOfAnotherSizeHeadedBySolidIsScannedAsText) {
    auto bytes = test::binarySTL(2, 9, "solid facet normal");
    EXPECT_EQ(countIn(bytes), 1);
    EXPECT_EQ(countIn(test::binarySTL(2, 9, "solid")), std::nullopt);
}

TEST_F(FacetCount, OfATextIsThatOfItsFacetLines) {
    std::string text = "solid cube\n";
    for (int i = 0; i < 12; ++i)
        text += "facet normal 0 0 1\n";
    EXPECT_EQ(countIn(text), 12);
    EXPECT_EQ(countIn("solid x\nFACET NORMAL\nFacet Normal"), 2);
    EXPECT_EQ(countIn("solid x\nfacet normal 0 0 1"), 1);
    EXPECT_EQ(countIn("solid \xFF\xFE facet normal"), 1);
}

TEST_F(FacetCount, APhraseAcrossTheFirst84BytesCounts) {
    EXPECT_EQ(countIn("solid" + std::string(74, ' ') + "facet normal 0 0 1"), 1);
}

TEST_F(FacetCount, WithoutFacetLinesOrTheKeywordIsNothing) {
    EXPECT_EQ(countIn("solid cube\nendsolid\n"), std::nullopt);
    EXPECT_EQ(countIn("facet normal 0 0 1"), std::nullopt);
    EXPECT_EQ(countIn("SOLID x\nfacet normal"), std::nullopt);
    EXPECT_EQ(countIn(""), std::nullopt);
}

TEST_F(FacetCount, OfWhatCannotBeReadIsNothing) {
    EXPECT_EQ(readFacetCount(folder_.path() / "missing.stl"), std::nullopt);
    EXPECT_EQ(readFacetCount(folder_.path()), std::nullopt);
    const auto pipe = folder_.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(readFacetCount(pipe), std::nullopt);
}

} // namespace

} // namespace ostrella
