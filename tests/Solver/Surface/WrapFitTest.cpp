#include "Solver/Surface/WrapFit.h"

#include "Solver/Surface/Deviation.h"
#include "Solver/Surface/WrapLattice.h"
#include "SurfaceBodies.h"
#include "SurfaceChecks.h"

#include <gtest/gtest.h>

#include <glm/geometric.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace ostrella {

namespace {

constexpr double spacing = 0.1;
constexpr double offset = 0.11;

std::vector<DVec3> normalsOf(const IndexedSurface& surface) {
    std::vector<DVec3> normals;
    for (const Triangle& t : surface.triangles) {
        const DVec3& a = surface.vertices[t[0]];
        normals.push_back(
            glm::normalize(glm::cross(surface.vertices[t[1]] - a, surface.vertices[t[2]] - a)));
    }
    return normals;
}

/// A wrap around a surface, fitted to it and pulled in.
struct Fitted {
    Fitted(const IndexedSurface& model, bool isOpen, double thickness)
        : tree(model),
          normals(normalsOf(model)),
          open(model.triangles.size(), isOpen),
          low(model.vertices.front()),
          high(model.vertices.front()) {
        for (const DVec3& p : model.vertices) {
            low = glm::min(low, p);
            high = glm::max(high, p);
        }
        wrap = wrapped(tree, low, high, {.spacing = spacing, .offset = offset}, {});
        targets = fitWrap(wrap, {tree, normals, open, thickness}, offset, spacing, {});
    }

    TriangleTree tree;
    std::vector<DVec3> normals;
    std::vector<bool> open;
    DVec3 low;
    DVec3 high;
    IndexedSurface wrap;
    WrapTargets targets;
};

EmbeddedMesh meshOf(const Fitted& fitted) {
    return {fitted.wrap, 3 * spacing, {.distance = 1e-4, .angleCosine = 0.9994}};
}

TEST(WrapFit, AWrapIsPulledOntoABox) {
    const IndexedSurface box = test::unshared(test::placed(test::unitBox(), 2, {-1, -1, -1}));
    const Fitted fitted(box, false, 0);
    // A fiftieth of a cell above it.
    for (const DVec3& p : fitted.targets.points) {
        EXPECT_LT(fitted.tree.nearest(p)->distance, 0.021 * spacing);
    }
    EXPECT_EQ(std::ranges::count(fitted.targets.isOnSheet, 1), 0);
    EmbeddedMesh mesh = meshOf(fitted);
    ASSERT_FALSE(test::hasContacts(mesh));
    pullIn(mesh, fitted.targets, {});
    EXPECT_FALSE(test::hasContacts(mesh));
    EXPECT_NEAR(signedVolume(mesh.surface()), 8, 0.1);
}

TEST(WrapFit, ConcaveEdgesAreMet) {
    // An L: the wrap keeps away from the inner edge along y at (1, ·, 1).
    const IndexedSurface body =
        test::unshared(test::Facets().box({0, 0, 0}, {2, 1, 1}).box({0, 0, 0}, {1, 1, 2}).mesh());
    const Fitted fitted(body, false, 0);
    EmbeddedMesh mesh = meshOf(fitted);
    pullIn(mesh, fitted.targets, {});
    const TriangleTree result(mesh.surface());
    // Without meeting it, a bevel of 0.7 times the offset would remain.
    EXPECT_LT(result.nearest({1, 0.5, 1})->distance, 0.4 * offset);
    EXPECT_FALSE(test::hasContacts(mesh));
}

TEST(WrapFit, BothSidesOfASheetLieHalfItsThicknessOff) {
    const IndexedSurface sheet =
        test::unshared(test::Facets().quad({0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}).mesh());
    const Fitted fitted(sheet, true, 0.06);
    std::size_t lifted = 0;
    for (std::size_t i = 0; i < fitted.targets.points.size(); ++i) {
        const DVec3& p = fitted.targets.points[i];
        // The border stays where it is, and the sheet thins out towards it.
        if (std::max(std::abs(p.x - 1), std::abs(p.y - 1)) < 1 - 0.5 * spacing) {
            EXPECT_EQ(fitted.targets.isOnSheet[i], 1);
            EXPECT_NEAR(std::abs(p.z), 0.03, 1e-9);
            ++lifted;
        }
        EXPECT_LE(fitted.tree.nearest(p)->distance, 0.03 + 1e-9);
    }
    EXPECT_GT(lifted, fitted.targets.points.size() / 2);
}

TEST(WrapFit, AnOpenShellThatIsThickIsNoSheet) {
    // A box without its bottom, whose opening is closed by another shell.
    test::Facets facets;
    facets.box({0, 0, 0}, {2, 2, 2});
    const Fitted fitted(test::unshared(facets.mesh()), true, 0.06);
    EXPECT_EQ(std::ranges::count(fitted.targets.isOnSheet, 1), 0);
}

TEST(WrapFit, WhereThereIsNoRoomTheWrapLetsGo) {
    // Two sides of a plate thinner than what neighbouring parts keep from each other.
    const IndexedSurface plate =
        test::unshared(test::Facets().box({0, 0, 0}, {2, 2, 2e-5F}).mesh());
    const Fitted fitted(plate, false, 0);
    EmbeddedMesh mesh(fitted.wrap, 3 * spacing, {.distance = 0.02, .angleCosine = 0.9994});
    ASSERT_FALSE(test::hasContacts(mesh));
    pullIn(mesh, fitted.targets, {});
    EXPECT_FALSE(test::hasContacts(mesh));
    EXPECT_GT(signedVolume(mesh.surface()), 4 * 0.02);
    EXPECT_LT(signedVolume(mesh.surface()), 4 * 2 * 0.2);
}

} // namespace

} // namespace ostrella
