// The example bodies: how one is loaded, and how its facets are counted for its tile.

#include "RunFixture.h"
#include "Solver/Geometry/FacetCount.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

namespace ostrella::test {
namespace {

using testing::IsEmpty;

/// A binary STL whose header begins so, with `facets` in its count and `records` records.
std::string binarySTL(const std::string& header, unsigned char facets, std::size_t records) {
    std::string bytes = header;
    bytes.resize(80, ' ');
    bytes += std::string{static_cast<char>(facets), 0, 0, 0};
    return bytes + std::string(50 * records, '\0');
}

std::string textSTL(int facets) {
    std::string text = "solid body\n";
    for (int i = 0; i < facets; ++i) {
        text += "facet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n"
                "endloop\nendfacet\n";
    }
    return text + "endsolid\n";
}

class Samples : public RunTest {
protected:
    const SampleLoader::Sample& sphere() const { return SampleLoader::samples[0]; }
    std::filesystem::path sphereFile() const { return package_.resource("samples/sphere.stl"); }
    std::optional<std::int64_t> countIn(const std::string& content) {
        const auto file = directory_.path() / "counted.stl";
        writeFile(file, content);
        return readFacetCount(file);
    }
};

TEST_F(Samples, areThree) {
    const auto& all = SampleLoader::samples;
    EXPECT_EQ(all[0].id, "sphere");
    EXPECT_EQ(all[0].displayName, "Sphere");
    EXPECT_EQ(all[0].summary, "1 m radius sphere · simplest bluff-body benchmark.");
    EXPECT_EQ(all[1].id, "rounded_box");
    EXPECT_EQ(all[1].displayName, "Rounded Box");
    EXPECT_EQ(all[1].summary, "2×1×1 m box with 0.12 m fillets · vehicle/fuselage analog.");
    EXPECT_EQ(all[2].id, "simple_wing");
    EXPECT_EQ(all[2].displayName, "Simple Wing");
    EXPECT_EQ(all[2].summary, "Chord 1 m × span 2 m, elliptic 12 %-thickness profile.");
}

TEST_F(Samples, loadAsAChosenFileDoes) {
    writeFile(sphereFile(), textSTL(2));
    app_->samples.load("sphere", app_->parameters);
    EXPECT_EQ(app_->parameters.loadingFileName(), "sphere.stl");
    ASSERT_TRUE(waitUntil([this] { return app_->parameters.openEdgeCount().has_value(); }));
    EXPECT_EQ(app_->parameters.stlURL(), sphereFile());
    EXPECT_EQ(app_->parameters.mesh()->facetCount(), 2U);
    EXPECT_THAT(alerts_, IsEmpty());
}

TEST_F(Samples, thatAreUnknownRaiseAnAlert) {
    app_->samples.load("cube", app_->parameters);
    EXPECT_THAT(alerts_, ElementsAre(std::pair("Couldn't load sample", "Unknown sample 'cube'.")));
    EXPECT_FALSE(app_->parameters.loadingFileName());
}

TEST_F(Samples, thatAreMissingRaiseAnAlert) {
    app_->samples.load("simple_wing", app_->parameters);
    EXPECT_THAT(alerts_, ElementsAre(std::pair("Couldn't load sample",
                             "Sample 'simple_wing' is missing from the app bundle.")));
    EXPECT_FALSE(app_->parameters.loadingFileName());
}

TEST_F(Samples, thatDoNotParseRaiseTheImportersAlert) {
    writeFile(sphereFile(), "solid\n");
    app_->samples.load(sphere(), app_->parameters);
    ASSERT_TRUE(waitUntil([this] { return !alerts_.empty(); }));
    EXPECT_THAT(alerts_,
        ElementsAre(std::pair("Couldn't load STL", "Invalid ASCII STL: no vertices found")));
}

TEST_F(Samples, haveNoFacetCountWhileTheyAreMissing) {
    EXPECT_EQ(app_->samples.facetCount(sphere()), std::nullopt);
    writeFile(sphereFile(), textSTL(1));
    EXPECT_EQ(app_->samples.facetCount(sphere()), 1);
}

TEST_F(Samples, areCountedOnce) {
    writeFile(sphereFile(), textSTL(5));
    EXPECT_EQ(app_->samples.facetCount(sphere()), 5);
    writeFile(sphereFile(), textSTL(6));
    EXPECT_EQ(app_->samples.facetCount(sphere()), 5);
}

TEST_F(Samples, areCountedOnAnyThread) {
    writeFile(sphereFile(), textSTL(40));
    std::array<std::optional<std::int64_t>, 4> counts;
    std::vector<std::thread> threads;
    for (auto& count : counts) {
        threads.emplace_back([&] { count = app_->samples.facetCount(sphere()); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(counts, testing::Each(std::optional<std::int64_t>(40)));
}

using FacetCount = Samples;

TEST_F(FacetCount, ofABinaryFileIsThatOfItsHeader) {
    EXPECT_EQ(countIn(binarySTL("binary", 3, 3)), 3);
    EXPECT_EQ(countIn(binarySTL("solid by name only", 3, 3)), 3);
}

TEST_F(FacetCount, ofABinaryFileWithTrailingBytesIsNotKnown) {
    EXPECT_EQ(countIn(binarySTL("binary", 3, 3) + "more"), std::nullopt);
}

TEST_F(FacetCount, ofASolidHeadedFileOfAnotherSizeIsThatOfItsText) {
    EXPECT_EQ(countIn(binarySTL("solid", 3, 2)), std::nullopt);
    EXPECT_EQ(countIn(binarySTL("solid", 3, 2) + "facet normal, facet normal"), 2);
}

TEST_F(FacetCount, ofATextIsThatOfItsFacetLines) {
    EXPECT_EQ(countIn(textSTL(12)), 12);
    EXPECT_EQ(countIn("solid\nFACET NORMAL 0 0 1\n"), 1) << "capitals count for a label";
}

TEST_F(FacetCount, ofATextWithoutFacetsIsNotKnown) {
    EXPECT_EQ(countIn(textSTL(0)), std::nullopt);
    EXPECT_EQ(countIn(textSTL(0) + std::string(100, ' ')), std::nullopt);
}

TEST_F(FacetCount, ofATextThatIsNotHeadedSolidIsNotKnown) {
    EXPECT_EQ(countIn("body\nfacet normal 0 0 1\n" + std::string(100, ' ')), std::nullopt);
}

TEST_F(FacetCount, ofAShortTextIsFound) {
    const std::string text = "solid\nfacet normal 0 0 1\n";
    ASSERT_LT(text.size(), 84U);
    EXPECT_EQ(countIn(text), 1);
}

} // namespace
} // namespace ostrella::test
