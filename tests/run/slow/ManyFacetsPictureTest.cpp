// The picture of a body of five million facets.

#include "run/picture/Picture.h"
#include "run/support/BatchProcess.h"
#include "run/support/Package.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>
#include <vector>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::StartsWith;

/// A ball of 4 n (n - 1) facets as binary STL; radius 1 m.
std::string ball(int rows) {
    std::string text(84, '\0');
    std::uint32_t count = 0;
    const auto corner = [&](int row, int column) {
        const double down = std::numbers::pi * row / rows;
        const double round = std::numbers::pi * (column % (2 * rows)) / rows;
        return Vec3(
            std::sin(down) * std::cos(round), std::cos(down), -std::sin(down) * std::sin(round));
    };
    const auto add = [&](const Vec3& a, const Vec3& b, const Vec3& c) {
        char facet[50] = {};
        for (const auto& [place, point] : {std::pair(12, a), std::pair(24, b), std::pair(36, c)}) {
            std::memcpy(facet + place, &point, sizeof point);
        }
        text.append(facet, sizeof facet);
        ++count;
    };
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < 2 * rows; ++column) {
            if (row > 0) {
                add(corner(row, column), corner(row + 1, column), corner(row, column + 1));
            }
            if (row < rows - 1) {
                add(corner(row + 1, column), corner(row + 1, column + 1), corner(row, column + 1));
            }
        }
    }
    std::memcpy(text.data() + 80, &count, sizeof count);
    return text;
}

TEST(ManyFacetsPicture, FiveMillionFacetsLookAsFewerDo) {
    const TemporaryDirectory directory;
    const Package package;
    BatchProcess batch(package.program());
    batch.setVariable("DISPLAY", "");
    const auto picture = [&](int rows, const std::string& layers) {
        const fs::path model = directory.path() / "ball.stl";
        const fs::path file = directory.path() / "picture.png";
        writeFile(model, ball(rows));
        EXPECT_EQ(batch.run({"--no-run", "--size", "600x400", "--layers", layers, "--image",
                      file.string(), model.string()}),
            0)
            << batch.output();
        return Picture(file);
    };
    const Picture few = picture(200, "none");
    const Picture many = picture(1119, "none");
    EXPECT_THAT(batch.lines(), Contains(StartsWith("[INFO] Loaded ball.stl · 5 004 168 facets")));
    EXPECT_EQ(many.blackShare(), 0.0);
    EXPECT_LT(many.differingShare(few), 0.01);
    EXPECT_NEAR(picture(1119, "wireframe").coveredShare(), many.coveredShare(), 0.01);
}

} // namespace
} // namespace ostrella::test
