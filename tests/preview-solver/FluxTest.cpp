#include "CompressibleFlux.h"
#include "IncompressibleFlux.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace ostrella::preview;

namespace {

const Vec3 someNormal(0.3, -0.8, 0.45);

template <class Flux>
std::vector<double> fluxOf(const Flux& flux, const double* l, const double* r, const Vec3& normal) {
    std::vector<double> f(Flux::vars);
    flux.flux(l, r, FaceGeometry<3>(normal), f.data());
    return f;
}

CompressibleFlux<3> gas() {
    CompressibleFlux<3> flux;
    flux.gasConstant = 1 / (1.4 * 0.5 * 0.5);
    return flux;
}

/// The Jacobian of the exact flux against differences, for two equal states: the upwind parts
/// cancel in the sum of both derivatives.
template <class Flux>
void expectConsistentJacobian(const Flux& flux, const std::vector<double>& w) {
    constexpr int n = Flux::vars;
    std::vector<double> dl(n * n), dr(n * n);
    flux.jacobian(w.data(), w.data(), FaceGeometry<3>(someNormal), dl.data(), dr.data());
    for (int c = 0; c < n; ++c) {
        const double h = 1e-6;
        auto up = w, down = w;
        up[static_cast<std::size_t>(c)] += h;
        down[static_cast<std::size_t>(c)] -= h;
        const auto fu = fluxOf(flux, up.data(), up.data(), someNormal);
        const auto fd = fluxOf(flux, down.data(), down.data(), someNormal);
        for (int r = 0; r < n; ++r) {
            const auto k = static_cast<std::size_t>(r * n + c);
            EXPECT_NEAR(dl[k] + dr[k],
                (fu[static_cast<std::size_t>(r)] - fd[static_cast<std::size_t>(r)]) / (2 * h), 1e-7)
                << r << ' ' << c;
        }
    }
}

/// At two nearly equal states the frozen upwind matrix is the derivative itself.
template <class Flux>
void expectUpwindJacobian(const Flux& flux, const std::vector<double>& w) {
    constexpr int n = Flux::vars;
    std::vector<double> dl(n * n), dr(n * n);
    flux.jacobian(w.data(), w.data(), FaceGeometry<3>(someNormal), dl.data(), dr.data());
    for (int c = 0; c < n; ++c) {
        const double h = 1e-6;
        auto up = w, down = w;
        up[static_cast<std::size_t>(c)] += h;
        down[static_cast<std::size_t>(c)] -= h;
        const auto fu = fluxOf(flux, w.data(), up.data(), someNormal);
        const auto fd = fluxOf(flux, w.data(), down.data(), someNormal);
        for (int r = 0; r < n; ++r)
            EXPECT_NEAR(dr[static_cast<std::size_t>(r * n + c)],
                (fu[static_cast<std::size_t>(r)] - fd[static_cast<std::size_t>(r)]) / (2 * h), 1e-6)
                << r << ' ' << c;
    }
}

} // namespace

TEST(IncompressibleFlux, ofEqualStatesIsTheExactFlux) {
    const double w[4] = {0.2, 0.9, -0.3, 0.4};
    const auto f = fluxOf(IncompressibleFlux<3>{}, w, w, someNormal);
    const double flow = 0.9 * 0.3 + 0.3 * 0.8 + 0.4 * 0.45;
    EXPECT_NEAR(f[0], flow, 1e-15);
    EXPECT_NEAR(f[1], flow * 0.9 + 0.2 * 0.3, 1e-15);
    EXPECT_NEAR(f[2], flow * -0.3 + 0.2 * -0.8, 1e-15);
    EXPECT_NEAR(f[3], flow * 0.4 + 0.2 * 0.45, 1e-15);
}

TEST(IncompressibleFlux, changesSignWithTheFace) {
    const double l[4] = {0.2, 0.9, -0.3, 0.4};
    const double r[4] = {-0.1, 1.1, 0.2, 0.1};
    const auto there = fluxOf(IncompressibleFlux<3>{}, l, r, someNormal);
    const auto back = fluxOf(IncompressibleFlux<3>{}, r, l, -someNormal);
    for (std::size_t v = 0; v < 4; ++v)
        EXPECT_NEAR(there[v], -back[v], 1e-15);
}

TEST(IncompressibleFlux, hasTheDerivativesThatItTells) {
    expectConsistentJacobian(IncompressibleFlux<3>{}, {0.2, 0.9, -0.3, 0.4});
    expectUpwindJacobian(IncompressibleFlux<3>{}, {0.2, 0.9, -0.3, 0.4});
}

TEST(IncompressibleFlux, stressesCarryEddyViscosity) {
    // u = y: the stress on a face across y is the sum of both viscosities along x.
    IncompressibleFlux<3> flux;
    double gradient[4 * 3] = {};
    gradient[1 * 3 + 1] = 1;
    const double w[4] = {};
    double f[4];
    flux.viscousFlux(w, gradient, 0.01, 0.5, FaceGeometry<3>(Vec3(0, 2, 0)), f);
    EXPECT_NEAR(f[1], 1.02, 1e-15);
    EXPECT_EQ(f[0], 0);
    EXPECT_EQ(f[2], 0);
}

TEST(CompressibleFlux, ofEqualStatesIsTheExactFlux) {
    const auto flux = gas();
    const double w[5] = {2.8, 0.9, -0.3, 0.4, 1.05};
    const auto f = fluxOf(flux, w, w, someNormal);
    const double rho = 2.8 / (flux.gasConstant * 1.05);
    const double flow = 0.9 * 0.3 + 0.3 * 0.8 + 0.4 * 0.45;
    const double energy = 2.8 / 0.4 + 0.5 * rho * (0.81 + 0.09 + 0.16);
    EXPECT_NEAR(f[0], rho * flow, 1e-14);
    EXPECT_NEAR(f[1], rho * flow * 0.9 + 2.8 * 0.3, 1e-14);
    EXPECT_NEAR(f[4], (energy + 2.8) * flow, 1e-13);
}

TEST(CompressibleFlux, changesSignWithTheFace) {
    const double l[5] = {2.8, 0.9, -0.3, 0.4, 1.05};
    const double r[5] = {2.5, 1.1, 0.2, 0.1, 0.95};
    const auto there = fluxOf(gas(), l, r, someNormal);
    const auto back = fluxOf(gas(), r, l, -someNormal);
    for (std::size_t v = 0; v < 5; ++v)
        EXPECT_NEAR(there[v], -back[v], 1e-13);
}

TEST(CompressibleFlux, hasTheDerivativesThatItTells) {
    expectConsistentJacobian(gas(), {2.8, 0.9, -0.3, 0.4, 1.05});
    expectUpwindJacobian(gas(), {2.8, 0.9, -0.3, 0.4, 1.05});
}

TEST(CompressibleFlux, isThatOfTheUpwindSideInSupersonicFlow) {
    const double l[5] = {2.8, 6.0, 0, 0, 1.0};
    const double r[5] = {2.6, 6.1, 0.1, 0, 1.02};
    const Vec3 normal(1, 0, 0);
    const auto f = fluxOf(gas(), l, r, normal);
    const auto exact = fluxOf(gas(), l, l, normal);
    for (std::size_t v = 0; v < 5; ++v)
        EXPECT_NEAR(f[v], exact[v], 1e-12 * std::abs(exact[v]) + 1e-12);
}

TEST(CompressibleFlux, followsSutherlandsLaw) {
    CompressibleFlux<3> flux = gas();
    flux.viscosity = 0.001;
    flux.sutherland = 110.4 / 288.15;
    const double cold[5] = {2.8, 0, 0, 0, 1};
    EXPECT_DOUBLE_EQ(flux.laminarViscosity(cold), 0.001);
    const double hot[5] = {2.8, 0, 0, 0, 2};
    // 2^1.5 · (288.15 + 110.4)/(576.3 + 110.4)
    EXPECT_NEAR(flux.laminarViscosity(hot), 0.001 * 2.8284271 * 398.55 / 686.7, 1e-10);
}
