// Bodies, results and sizes at the ends of what there is: each has its picture, with the body in it
// and no black.

#include "run/picture/Picture.h"
#include "run/support/BatchProcess.h"
#include "run/support/Package.h"
#include "support/FieldFiles.h"

#include <fmt/format.h>

#include <gmock/gmock.h>

#include <limits>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;

using Triangles = std::vector<std::array<Vec3, 3>>;

std::string stl(const Triangles& triangles) {
    std::string text = "solid body\n";
    for (const auto& triangle : triangles) {
        text += "facet normal 0 0 0\nouter loop\n";
        for (const Vec3& corner : triangle) {
            text += fmt::format("vertex {:.9g} {:.9g} {:.9g}\n", corner.x, corner.y, corner.z);
        }
        text += "endloop\nendfacet\n";
    }
    return text + "endsolid body\n";
}

/// Twelve triangles, wound outwards.
Triangles box(const Vec3& low, const Vec3& high) {
    const auto corner = [&](unsigned i) {
        return Vec3((i & 1U) != 0 ? high.x : low.x, (i & 2U) != 0 ? high.y : low.y,
            (i & 4U) != 0 ? high.z : low.z);
    };
    Triangles triangles;
    for (const auto& face :
        {std::array{0U, 2U, 3U, 1U}, std::array{4U, 5U, 7U, 6U}, std::array{0U, 1U, 5U, 4U},
            std::array{2U, 6U, 7U, 3U}, std::array{0U, 4U, 6U, 2U}, std::array{1U, 3U, 7U, 5U}}) {
        triangles.push_back({corner(face[0]), corner(face[1]), corner(face[2])});
        triangles.push_back({corner(face[0]), corner(face[2]), corner(face[3])});
    }
    return triangles;
}

class ExtremePictureTest : public testing::Test {
protected:
    ExtremePictureTest() { batch_.setVariable("DISPLAY", ""); }

    Picture picture(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--image", file_.string()});
        EXPECT_EQ(batch_.run(arguments), 0) << batch_.output() << batch_.errors();
        Picture drawn(file_);
        EXPECT_EQ(drawn.blackShare(), 0.0);
        return drawn;
    }
    Picture model(const Triangles& triangles, const std::string& size = "320x200",
        const std::string& layers = "none") {
        writeFile(directory_.path() / "body.stl", stl(triangles));
        return picture({"--no-run", "--size", size, "--layers", layers,
            (directory_.path() / "body.stl").string()});
    }
    void write(const std::string& name, const std::string& text) const {
        writeFile(results_ / name, text);
    }
    Picture results(const std::string& layers = "cp,streams,vortex") {
        return picture({"--results", results_.string(), "--size", "320x200", "--layers", layers});
    }

    const std::string surface_ = FieldFiles::box(Vec3(-0.5F), Vec3(0.5F));
    const std::string volume_ = FieldFiles::volume(
        {-2, -1.5F, -1.5F}, {4, 1.5F, 1.5F}, {25, 13, 13}, FieldFiles::vortexVelocity);

    TemporaryDirectory directory_;
    fs::path file_ = directory_.path() / "picture.png";
    fs::path results_ = directory_.path() / "results";
    Package package_;
    BatchProcess batch_{package_.program()};
};

TEST_F(ExtremePictureTest, BodiesOfCentimetresAndOfAThousandKilometresLookAlike) {
    const Picture ofAMetre = model(box({0, 0, 0}, {1, 0.4F, 0.3F}));
    EXPECT_GT(ofAMetre.coveredShare(), 0.03);
    for (const float size : {0.05F, 1e3F, 1e6F}) {
        const Picture other = model(box({0, 0, 0}, size * Vec3(1, 0.4F, 0.3F)));
        EXPECT_LT(ofAMetre.differingShare(other), 0.005) << size;
    }
}

TEST_F(ExtremePictureTest, BodiesFromAMicrometreUpAreInTheMiddle) {
    // What is framed is at least a sphere of a centimetre's radius, so that smaller bodies stay
    // small, and one of a micrometre is less than a pixel.
    double last = 0;
    for (const float size : {1e-6F, 1e-4F, 1e-3F, 5e-3F}) {
        const Picture small = model(box(Vec3(-size / 2), Vec3(size / 2)));
        EXPECT_GE(small.coveredShare(), last) << size;
        last = small.coveredShare();
        EXPECT_LT(last, 0.2);
        if (size >= 1e-3F) {
            EXPECT_FALSE(small.isGround(160, 100));
            EXPECT_TRUE(small.isGround(40, 100));
        }
    }
    EXPECT_GT(last, 0.01);
}

TEST_F(ExtremePictureTest, BodiesFarFromTheOriginAreAsNear) {
    const Vec3 far(1e5F, -1e5F, 1e5F);
    const Vec3 size(2000, 800, 600);
    EXPECT_LT(model(box(Vec3(0), size)).differingShare(model(box(far, far + size))), 0.02);
}

TEST_F(ExtremePictureTest, BodiesWithoutExtentInOneAxisAreSeen) {
    for (int axis = 0; axis < 3; ++axis) {
        Vec3 high(2.0F);
        high[axis] = 0;
        EXPECT_GT(model(box(Vec3(0), high)).coveredShare(), 0.03) << axis;
        EXPECT_GT(model(box(Vec3(0), high), "320x200", "wireframe").coveredShare(), 0.005) << axis;
    }
}

TEST_F(ExtremePictureTest, BodiesWithoutExtentInTwoAxesAndInAllLeaveTheGrid) {
    const Triangles line{{Vec3(0), Vec3(1, 0, 0), Vec3(2, 0, 0)}};
    EXPECT_GT(model(line, "320x200", "grid").coveredShare(), 0.01);
    const Triangles point(4, {Vec3(1), Vec3(1), Vec3(1)});
    EXPECT_GT(model(point, "320x200", "grid").coveredShare(), 0.0005);
    EXPECT_EQ(model(point).coveredShare(), 0.0);
}

TEST_F(ExtremePictureTest, OneFacetIsSeenFromBothOfItsSides) {
    const std::array<Vec3, 3> facet{Vec3(0, 0, 0), Vec3(2, 0, 0), Vec3(0, 2, 1)};
    const double front = model({facet}).coveredShare();
    EXPECT_GT(front, 0.01);
    EXPECT_NEAR(model({{facet[0], facet[2], facet[1]}}).coveredShare(), front, 0.001);
}

TEST_F(ExtremePictureTest, PicturesOfManyMillionPixelsAndOfOneRowAreWhole) {
    const Triangles body = box({-1, -1, -1}, {1, 1, 1});
    const Picture large = model(body, "8000x5000");
    EXPECT_EQ(large.width(), 8000);
    EXPECT_EQ(large.height(), 5000);
    EXPECT_FALSE(large.isGround(4000, 2500));
    EXPECT_TRUE(large.isGround(0, 0));
    EXPECT_TRUE(large.isGround(7999, 4999));
    for (const auto& [width, height] :
        {std::pair(16384, 1), std::pair(1, 16384), std::pair(2, 1)}) {
        const Picture thin = model(body, fmt::format("{}x{}", width, height));
        EXPECT_EQ(thin.width(), width);
        EXPECT_EQ(thin.height(), height);
        EXPECT_FALSE(thin.isGround(width / 2, height / 2)) << width;
    }
    EXPECT_EQ(batch_.run({"--no-run", "--sample", "sphere", "--size", "16385x1", "--image",
                  file_.string()}),
        2);
}

TEST_F(ExtremePictureTest, AResultWithoutASurfaceOrWithoutAVolumeShowsTheRest) {
    write("surface_flow.vtk", surface_);
    EXPECT_GT(results().colorfulShare(), 0.02);
    EXPECT_THAT(batch_.lines(),
        Contains("[WARN] Layer streams left out of the picture · flow.vtk gave no volume"));
    fs::remove(results_ / "surface_flow.vtk");
    write("flow.vtk", volume_);
    EXPECT_GT(results().coveredShare(), 0.01);
    EXPECT_THAT(batch_.lines(),
        Contains("[WARN] Layer cp left out of the picture · surface_flow.vtk gave no surface"));
    fs::remove(results_ / "flow.vtk");
    EXPECT_EQ(batch_.run({"--results", results_.string(), "--image", file_.string()}), 5);
}

TEST_F(ExtremePictureTest, ValuesThatAreNoNumbersAreGreyAndNothingElseIs) {
    const auto pressures = [&](const std::vector<float>& values) {
        write("surface_flow.vtk", surface_.substr(0, surface_.find("POINT_DATA")) +
                                      FieldFiles::pointData(8) +
                                      FieldFiles::scalars("Pressure_Coefficient", values));
        return results("cp");
    };
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    const Picture whole = pressures({1, 0, 1, 0, 1, 0, 1, 0});
    const Picture partly = pressures({1, 0, 1, 0, 1, 0, 1, nan});
    EXPECT_NEAR(partly.coveredShare(), whole.coveredShare(), 0.001);
    EXPECT_LT(partly.colorfulShare(), whole.colorfulShare());
    EXPECT_GT(partly.colorfulShare(), 0.3 * whole.colorfulShare());
    const Picture grey = pressures(std::vector(8, nan));
    EXPECT_NEAR(grey.coveredShare(), whole.coveredShare(), 0.001);
    EXPECT_EQ(grey.colorfulShare(), 0.0);
}

} // namespace
} // namespace ostrella::test
