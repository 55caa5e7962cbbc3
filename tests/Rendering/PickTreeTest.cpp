#include "Rendering/PickTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace ostrella {
namespace {

using ViewportPicking::Ray;

struct Body {
    std::vector<Vec3> positions;
    std::vector<std::uint32_t> indices;

    void add(const Vec3& a, const Vec3& b, const Vec3& c) {
        for (const Vec3& corner : {a, b, c}) {
            indices.push_back(static_cast<std::uint32_t>(positions.size()));
            positions.push_back(corner);
        }
    }
};

class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}
    float between(float least, float most) {
        return std::uniform_real_distribution<float>(least, most)(engine_);
    }
    Vec3 point(float reach) {
        return {between(-reach, reach), between(-reach, reach), between(-reach, reach)};
    }
    std::size_t below(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(engine_);
    }
    std::mt19937& engine() { return engine_; }

private:
    std::mt19937 engine_;
};

/// A wavy ball in strips, every quad two facets with corners in common.
Body ball(int rings, int sectors, const Vec3& centre, const Vec3& radii) {
    Body body;
    for (int ring = 0; ring <= rings; ++ring)
        for (int sector = 0; sector < sectors; ++sector) {
            const float polar = 3.1415925F * static_cast<float>(ring) / static_cast<float>(rings);
            const float turn = 6.283185F * static_cast<float>(sector) / static_cast<float>(sectors);
            const float wave = 1.0F + 0.05F * std::sin(5.0F * polar) * std::cos(3.0F * turn);
            body.positions.push_back(
                centre + wave * radii *
                             Vec3(std::sin(polar) * std::cos(turn), std::cos(polar),
                                 std::sin(polar) * std::sin(turn)));
        }
    const auto at = [&](int ring, int sector) {
        return static_cast<std::uint32_t>(ring * sectors + sector % sectors);
    };
    for (int ring = 0; ring < rings; ++ring)
        for (int sector = 0; sector < sectors; ++sector)
            body.indices.insert(body.indices.end(),
                {at(ring, sector), at(ring, sector + 1), at(ring + 1, sector), at(ring, sector + 1),
                    at(ring + 1, sector + 1), at(ring + 1, sector)});
    return body;
}

std::optional<float> byWalk(const Body& body, const Ray& ray) {
    return ViewportPicking::nearestHit(ray, body.positions, 1, body.indices);
}

/// Compares tree and walk for rays; gives how many of them hit.
int expectSameAnswers(const Body& body, const std::vector<Ray>& rays) {
    const PickTree tree(body.positions, 1, body.indices);
    int hits = 0;
    for (const Ray& ray : rays) {
        const std::optional<float> expected = byWalk(body, ray);
        EXPECT_EQ(tree.nearestHit(ray), expected)
            << ray.origin.x << ' ' << ray.origin.y << ' ' << ray.origin.z << " towards "
            << ray.direction.x << ' ' << ray.direction.y << ' ' << ray.direction.z;
        hits += expected ? 1 : 0;
    }
    return hits;
}

/// From around a body towards places in and beside it.
std::vector<Ray> raysAround(const Vec3& centre, float size, int count, unsigned seed) {
    Random random(seed);
    std::vector<Ray> rays;
    for (int i = 0; i < count; ++i) {
        const Vec3 from = centre + random.point(4.0F * size);
        const Vec3 way = centre + random.point(1.2F * size) - from;
        rays.push_back({from, way / std::sqrt(squaredLength(way))});
    }
    return rays;
}

TEST(PickTree, agreesWithTheWalkOnAClosedBody) {
    const Body body = ball(60, 90, {1, 2, 3}, {1, 0.6F, 0.8F});
    const int hits = expectSameAnswers(body, raysAround({1, 2, 3}, 1, 3000, 1));
    EXPECT_GT(hits, 500);
    EXPECT_LT(hits, 2500);
}

TEST(PickTree, agreesFromWithinAndWithLongDirections) {
    const Body body = ball(40, 60, {0, 0, 0}, {1, 1, 1});
    Random random(2);
    std::vector<Ray> rays;
    for (int i = 0; i < 1000; ++i)
        rays.push_back({random.point(0.3F), random.point(100.0F)});
    EXPECT_EQ(expectSameAnswers(body, rays), 1000);
}

TEST(PickTree, agreesOnRaysThroughCornersAndAlongEdges) {
    const Body body = ball(30, 40, {0, 0, 0}, {1, 1, 1});
    Random random(3);
    std::vector<Ray> rays;
    for (int i = 0; i < 1500; ++i) {
        const Vec3 from = random.point(3.0F);
        const Vec3 a = body.positions[random.below(body.positions.size())];
        const Vec3 b = body.positions[random.below(body.positions.size())];
        rays.push_back({from, a - from});
        rays.push_back({a - 3.0F * (b - a), b - a});
    }
    EXPECT_GT(expectSameAnswers(body, rays), 1000);
}

TEST(PickTree, agreesOnRaysInThePlanesOfABoxesFaces) {
    // A block of small boxes, looked at along the axes from in and beside its planes, where most of
    // what could be met is seen on edge.
    Body body;
    for (int x = 0; x < 6; ++x)
        for (int y = 0; y < 6; ++y)
            for (int z = 0; z < 6; ++z) {
                const Vec3 low = Vec3(x, y, z) * 0.1F;
                const Vec3 e[3] = {{0.1F, 0, 0}, {0, 0.1F, 0}, {0, 0, 0.1F}};
                for (int i = 0; i < 3; ++i) {
                    const Vec3 u = e[(i + 1) % 3];
                    const Vec3 v = e[(i + 2) % 3];
                    body.add(low, low + u, low + u + v);
                    body.add(low, low + u + v, low + v);
                }
            }
    std::vector<Ray> rays;
    for (int axis = 0; axis < 3; ++axis)
        for (int i = -1; i <= 14; ++i)
            for (int j = -1; j <= 14; ++j)
                for (const float side : {-2.0F, 2.0F}) {
                    Ray ray;
                    ray.origin[axis] = side;
                    ray.origin[(axis + 1) % 3] = static_cast<float>(i) * 0.05F;
                    ray.origin[(axis + 2) % 3] = static_cast<float>(j) * 0.05F;
                    ray.direction[axis] = -side;
                    rays.push_back(ray);
                }
    EXPECT_GT(expectSameAnswers(body, rays), 500);
}

TEST(PickTree, agreesOnScatteredAndOverlappingTriangles) {
    Random random(4);
    Body body;
    for (int i = 0; i < 2000; ++i) {
        const Vec3 middle = random.point(1.0F);
        const float size = std::pow(10.0F, random.between(-4.0F, 0.0F));
        body.add(
            middle + random.point(size), middle + random.point(size), middle + random.point(size));
    }
    EXPECT_GT(expectSameAnswers(body, raysAround(Vec3(0), 1, 1500, 5)), 1000);
}

TEST(PickTree, agreesOnSlivers) {
    Random random(6);
    Body body;
    for (int i = 0; i < 3000; ++i) {
        const Vec3 from = random.point(1.0F);
        const Vec3 along = random.point(1.0F);
        body.add(from, from + along, from + 0.5F * along + random.point(1e-5F));
    }
    std::vector<Ray> rays = raysAround(Vec3(0), 1, 1000, 7);
    for (std::size_t i = 0; i < 1000; ++i) { // and at them
        const Vec3 at = body.positions[3 * i + 2];
        const Vec3 eye = random.point(5.0F);
        rays.push_back({eye, at - eye});
    }
    EXPECT_GT(expectSameAnswers(body, rays), 200);
}

TEST(PickTree, agreesAtAnySizeAndPlace) {
    for (const float size : {1e-6F, 1.0F, 1e6F})
        for (const float place : {0.0F, 100.0F}) {
            const Vec3 centre(place * size, -place * size, 0);
            const Body body = ball(20, 30, centre, Vec3(size));
            EXPECT_GT(expectSameAnswers(body, raysAround(centre, size, 500, 8)), 100) << size;
        }
    // Seen from very far, and very far from the origin itself.
    const Body body = ball(20, 30, {1000, 0, 0}, Vec3(1));
    std::vector<Ray> rays;
    Random random(9);
    for (int i = 0; i < 500; ++i)
        rays.push_back({Vec3(1000, 0, 8000), Vec3(0, 0, -8000) + random.point(1.0F)});
    EXPECT_GT(expectSameAnswers(body, rays), 200);
}

TEST(PickTree, agreesWhereOutliersStretchTheModel) {
    // Each a thousand times farther out than the one before.
    Body body = ball(30, 40, {0, 0, 0}, Vec3(1));
    for (float far = 1e3F; far < 1e16F; far *= 1e3F)
        body.add({far, far, 0}, {far, far, 1}, {far, far + far * 0.01F, 0});
    const int hits = expectSameAnswers(body, raysAround(Vec3(0), 1, 1000, 10));
    EXPECT_GT(hits, 200);
}

TEST(PickTree, agreesOnTrianglesInOnePlace) {
    Body body;
    for (int i = 0; i < 1000; ++i)
        body.add({0, 0, 0}, {1, 0, 0}, {0, 1, 0});
    EXPECT_GT(expectSameAnswers(body, raysAround(Vec3(0.5F, 0.2F, 0), 0.5F, 300, 11)), 20);
}

TEST(PickTree, agreesOnFlatBodies) {
    for (int flat = 0; flat < 3; ++flat) {
        Vec3 radii(1);
        radii[flat] = 0;
        const Body body = ball(20, 30, {0, 0, 0}, radii);
        std::vector<Ray> rays = raysAround(Vec3(0), 1, 500, 12);
        for (Ray& ray : raysAround(Vec3(0), 1, 100, 13)) { // within its plane
            ray.origin[flat] = 0;
            ray.direction[flat] = 0;
            rays.push_back(ray);
        }
        EXPECT_GT(expectSameAnswers(body, rays), 50);
    }
}

TEST(PickTree, passesOverWhatTheWalkPassesOver) {
    Body body = ball(20, 30, {0, 0, 0}, Vec3(1));
    Random random(14);
    const float infinity = std::numeric_limits<float>::infinity();
    for (int i = 0; i < 60; ++i) {
        body.positions[random.below(body.positions.size())][i % 3] =
            i % 2 == 0 ? std::numeric_limits<float>::quiet_NaN() : infinity;
        body.indices[random.below(body.indices.size())] =
            i % 2 == 0 ? static_cast<std::uint32_t>(body.positions.size()) : 4294967295U;
    }
    body.indices.resize(body.indices.size() - 1);
    const int hits = expectSameAnswers(body, raysAround(Vec3(0), 1, 1000, 15));
    EXPECT_GT(hits, 200);
}

TEST(PickTree, readsEveryPositionAtItsStride) {
    const Body body = ball(20, 30, {0, 0, 0}, Vec3(1));
    std::vector<Vec3> vertices;
    for (const Vec3& position : body.positions) {
        vertices.push_back(position);
        vertices.emplace_back(9.0F);
    }
    vertices.pop_back();
    const PickTree tree(vertices, 2, body.indices);
    for (const Ray& ray : raysAround(Vec3(0), 1, 300, 16))
        EXPECT_EQ(tree.nearestHit(ray), byWalk(body, ray));
}

TEST(PickTree, holdsWithTheFewestTriangles) {
    const Ray ray{{0.25F, 0.25F, 3}, {0, 0, -1}};
    EXPECT_EQ(PickTree().nearestHit(ray), std::nullopt);
    EXPECT_EQ(PickTree({}, 1, {}).nearestHit(ray), std::nullopt);
    Body body;
    body.add({0, 0, 0}, {1, 0, 0}, {0, 1, 0});
    EXPECT_EQ(PickTree(body.positions, 1, body.indices).nearestHit(ray), 3.0F);
    body.positions[0].x = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(PickTree(body.positions, 1, body.indices).nearestHit(ray), std::nullopt);
}

TEST(PickTree, isMissedByRaysThatAreNone) {
    const Body body = ball(20, 30, {0, 0, 0}, Vec3(1));
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(expectSameAnswers(body,
                  {{{0, 0, 5}, {0, 0, 0}}, {{0, 0, 5}, {0, 0, nan}}, {{nan, 0, 5}, {0, 0, -1}},
                      {{0, 0, 5}, {0, 0, -infinity}}, {{0, infinity, 5}, {0, 0, -1}}}),
        0);
}

TEST(PickTree, staysWithinTwentyFourBytesATriangle) {
    const Body body = ball(200, 300, {0, 0, 0}, Vec3(1));
    const PickTree tree(body.positions, 1, body.indices);
    EXPECT_LT(tree.byteCount(), 24 * body.indices.size() / 3);
}

} // namespace
} // namespace ostrella
