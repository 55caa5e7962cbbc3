// A surface of five million facets on its way to a mesh: to an end, within a stated memory, and
// given up at once when that is asked for.

#include "run/support/BatchProcess.h"
#include "run/support/Package.h"

#include "Models/Vector.h"

#include <glm/geometric.hpp>

#include <gmock/gmock.h>

#include <sys/resource.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <thread>

namespace ostrella::test {
namespace {

namespace fs = std::filesystem;
using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using namespace std::chrono_literals;

/// What ostrella-batch and each of its tools may occupy at most.
constexpr double mostMemoryGiB = 4;

/// What may lie between the wish for the end and the end.
constexpr std::chrono::duration<double> longestEnd = 3s;

/// Squares along the edge of a cube that, blown up to a ball, has 12 n² facets: 5 007 792.
constexpr int squares = 646;

/// Of so many facets one is left out: eight holes of a facet each, all over the ball.
constexpr std::uint32_t facetsToAHole = 625000;

/// Writes facets to a binary STL file as they come, so that this process stays a small one: what
/// its children occupied counts what it had itself when it started them.
class FacetStream {
public:
    explicit FacetStream(const fs::path& file) : stream_(file, std::ios::binary) {
        stream_.write(std::array<char, 84>{}.data(), 84);
    }
    void add(const Vec3& a, const Vec3& b, const Vec3& c) {
        if (++offered_ % facetsToAHole == 0) {
            return;
        }
        std::array<char, 50> facet{};
        for (const auto& [place, point] : {std::pair(12, a), std::pair(24, b), std::pair(36, c)}) {
            std::memcpy(facet.data() + place, &point, sizeof point);
        }
        stream_.write(facet.data(), facet.size());
        ++written_;
    }
    bool finish() {
        stream_.seekp(80);
        stream_.write(reinterpret_cast<const char*>(&written_), sizeof written_);
        return stream_.flush().good();
    }

private:
    std::ofstream stream_;
    std::uint32_t offered_ = 0;
    std::uint32_t written_ = 0;
};

/// A ball of radius 1 m, facets of about 2 mm, with eight holes.
void writeBall(const fs::path& file) {
    FacetStream facets(file);
    for (int side = 0; side < 6; ++side) {
        const auto corner = [side](int i, int j) {
            Vec3 point;
            point[side % 3] = side < 3 ? 1.0F : -1.0F;
            point[(side + 1) % 3] = 2.0F * float(i) / squares - 1;
            point[(side + 2) % 3] = 2.0F * float(j) / squares - 1;
            return glm::normalize(point);
        };
        for (int i = 0; i < squares; ++i) {
            for (int j = 0; j < squares; ++j) {
                // Counter-clockwise from outside on either side of the middle.
                const int right = side < 3 ? 1 : 0;
                const int left = 1 - right;
                const Vec3 a = corner(i, j);
                const Vec3 c = corner(i + 1, j + 1);
                facets.add(a, corner(i + right, j + left), c);
                facets.add(a, c, corner(i + left, j + right));
            }
        }
    }
    ASSERT_TRUE(facets.finish());
}

class LargeSurfaceTest : public testing::Test {
protected:
    void SetUp() override { writeBall(model_); }

    std::vector<std::string> arguments() const {
        return {"--surface", "auto", "--quiet", "--prepare", case_.string(), model_.string()};
    }

    /// Starts the run, asks for its end `later` than it wrote `text`, and gives the time to the
    /// end. Nothing is written amid a work, so that a moment there is one of the clock.
    std::chrono::duration<double> cancelled(
        const std::string& text, std::chrono::milliseconds later) {
        batch_.start(arguments());
        EXPECT_TRUE(batch_.waitForOutput(text)) << batch_.output();
        std::this_thread::sleep_for(later);
        const auto asked = std::chrono::steady_clock::now();
        batch_.signal(SIGINT);
        EXPECT_EQ(batch_.finish(), 130) << batch_.output();
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - asked;
        EXPECT_EQ(batch_.lines().back(), "[WARN] Cancelled by user before the case was complete");
        EXPECT_FALSE(fs::exists(case_));
        EXPECT_THAT(BatchProcess::contents(batch_.temporary()), IsEmpty());
        RecordProperty(
            "end_s_" + std::to_string(later.count()) + "_ms_in", std::to_string(taken.count()));
        return taken;
    }

    TemporaryDirectory directory_;
    fs::path model_ = directory_.path() / "ball.stl";
    fs::path case_ = directory_.path() / "case";
    BatchProcess batch_{stagedProgram()};
};

TEST_F(LargeSurfaceTest, EndsWithAMeshOrASentenceWithinItsMemory) {
    batch_.start(arguments());
    const int status = batch_.finish(600s);
    EXPECT_THAT(batch_.output(), HasSubstr("Loaded ball.stl · 5 007 784 facets"));
    if (status == 0) {
        EXPECT_THAT(batch_.line("[OK] Mesh built"), Not(IsEmpty())) << batch_.output();
    } else {
        EXPECT_THAT(status, AnyOf(2, 3)) << batch_.output() << batch_.errors();
        EXPECT_THAT(batch_.line("[ERR] "), Not(IsEmpty())) << batch_.output();
    }
    rusage usage{};
    ASSERT_EQ(getrusage(RUSAGE_CHILDREN, &usage), 0);
    const double memoryGiB = double(usage.ru_maxrss) / (1024.0 * 1024.0);
    EXPECT_GT(memoryGiB, 0.25) << "the file alone is as large";
    EXPECT_LT(memoryGiB, mostMemoryGiB);
    RecordProperty("memory_GiB", std::to_string(memoryGiB));
}

TEST_F(LargeSurfaceTest, IsGivenUpAtOnceWhileItIsJudged) {
    for (const auto later : {0ms, 1000ms, 2500ms}) {
        EXPECT_LT(cancelled("Geometry turned", later), longestEnd) << later.count() << " ms";
    }
}

TEST_F(LargeSurfaceTest, IsGivenUpAtOnceWhileItIsPrepared) {
    for (const auto later : {0ms, 500ms, 1500ms, 3000ms, 5000ms}) {
        EXPECT_LT(cancelled("Surface judged", later), longestEnd) << later.count() << " ms";
    }
}

} // namespace
} // namespace ostrella::test
