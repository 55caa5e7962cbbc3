#pragma once

#include "FaceGeometry.h"

#include <algorithm>
#include <cmath>

namespace ostrella::preview {

/// The equations of constant density with artificial compressibility, in units of the free stream's
/// density and speed. State: gauge pressure and D velocities. Residuals: mass, D momenta.
///
/// The pseudo-time term is G · dw/dt with G = [[1/β², 0], [u/β², 1]] (Turkel's choice of a
/// preconditioner in conservation form), so that along a unit normal
///   p_t + β² u_n,x = 0,  u_t + u_n u,x + n p,x = 0,
/// with the speeds u_n and (u_n ± sqrt(u_n² + 4β²))/2. The upwind flux is that of this system:
/// F = (F_l + F_r)/2 − G |G⁻¹A| (w_r − w_l)/2.
template <int D>
struct IncompressibleFlux {
    static constexpr int vars = D + 1;
    static constexpr bool compressible = false;

    double beta2 = 4.1;
    double viscosity = 0;

    [[nodiscard]] double density(const double*) const { return 1; }
    [[nodiscard]] double laminarViscosity(const double*) const { return viscosity; }
    [[nodiscard]] bool valid(const double*) const { return true; }

    void flux(const double* l, const double* r, const FaceGeometry<D>& face, double* f) const {
        const double ul = face.along(l + 1);
        const double ur = face.along(r + 1);
        const double un = 0.5 * (ul + ur);
        const Waves waves(un, beta2);
        const double dp = r[0] - l[0];
        const double du = ur - ul;
        const double pressure = waves.mean * dp + waves.slope * beta2 * du;
        const double normal = waves.mean * du + waves.slope * (dp + un * du);
        const double along = std::abs(un);
        const double half = 0.5 * face.area;
        f[0] = half * (ul + ur - pressure / beta2);
        for (int k = 0; k < D; ++k) {
            const double mean = 0.5 * (l[k + 1] + r[k + 1]);
            const double tangent = r[k + 1] - l[k + 1] - du * face.n[k];
            f[k + 1] = half * (ul * l[k + 1] + ur * r[k + 1] + (l[0] + r[0]) * face.n[k] -
                                  mean * pressure / beta2 - normal * face.n[k] - along * tangent);
        }
    }

    /// Derivatives of the flux with respect to both states, the upwind matrix held fast.
    void jacobian(const double* l, const double* r, const FaceGeometry<D>& face, double* dl,
        double* dr) const {
        double mean[D];
        for (int k = 0; k < D; ++k)
            mean[k] = 0.5 * (l[k + 1] + r[k + 1]);
        const double un = face.along(mean);
        const Waves waves(un, beta2);
        const double along = std::abs(un);
        const double half = 0.5 * face.area;
        double upwind[vars * vars];
        // Columns of G |G⁻¹A|: pressure, then velocities.
        const double pp = waves.mean;
        const double pu = waves.slope * beta2;
        const double up = waves.slope;
        const double uu = waves.mean + waves.slope * un - along;
        upwind[0] = pp / beta2;
        for (int c = 0; c < D; ++c)
            upwind[1 + c] = pu * face.n[c] / beta2;
        for (int k = 0; k < D; ++k) {
            double* row = upwind + (k + 1) * vars;
            row[0] = mean[k] * pp / beta2 + up * face.n[k];
            for (int c = 0; c < D; ++c)
                row[1 + c] = (mean[k] * pu / beta2 + uu * face.n[k]) * face.n[c];
            row[1 + k] += along;
        }
        central(l, face, dl);
        central(r, face, dr);
        for (int e = 0; e < vars * vars; ++e) {
            dl[e] = half * (dl[e] + upwind[e]);
            dr[e] = half * (dr[e] - upwind[e]);
        }
    }

    /// No mass through the face; what the upwind flux makes of a mirrored state.
    void slipFlux(const double* w, const FaceGeometry<D>& face, double* f) const {
        const double pressure = w[0] + std::sqrt(beta2) * face.along(w + 1);
        f[0] = 0;
        for (int k = 0; k < D; ++k)
            f[k + 1] = pressure * face.n[k] * face.area;
    }

    void slipJacobian(const double*, const FaceGeometry<D>& face, double* d) const {
        std::fill_n(d, vars * vars, 0.0);
        for (int k = 0; k < D; ++k) {
            d[(k + 1) * vars] = face.n[k] * face.area;
            for (int c = 0; c < D; ++c)
                d[(k + 1) * vars + 1 + c] = std::sqrt(beta2) * face.n[k] * face.n[c] * face.area;
        }
    }

    /// Viscous flux for a gradient of the state (vars rows of D) on the face.
    void viscousFlux(const double*, const double* gradient, double mu, double muTurbulent,
        const FaceGeometry<D>& face, double* f) const {
        double stress[D];
        stressOn(face, gradient + D, mu + muTurbulent, stress);
        f[0] = 0;
        for (int k = 0; k < D; ++k)
            f[k + 1] = stress[k] * face.area;
    }

    /// Adds to `d` the derivative of minus the viscous flux by the state on the inner side, for the
    /// thin-layer gradient `spacing` = (area vector · distance)/distance².
    void addViscousJacobian(const double*, double mu, double muTurbulent, double spacing,
        const FaceGeometry<D>& face, double* d) const {
        const double factor = (mu + muTurbulent) * spacing;
        for (int k = 0; k < D; ++k) {
            for (int c = 0; c < D; ++c)
                d[(k + 1) * vars + 1 + c] += factor * face.n[k] * face.n[c] / 3;
            d[(k + 1) * vars + 1 + k] += factor;
        }
    }

    /// The matrix before the pseudo-time derivative of the state.
    void timeMatrix(const double* w, double* t) const {
        std::fill_n(t, vars * vars, 0.0);
        t[0] = 1 / beta2;
        for (int k = 0; k < D; ++k) {
            t[(k + 1) * vars] = w[k + 1] / beta2;
            t[(k + 1) * vars + 1 + k] = 1;
        }
    }

    /// The greatest speed across a unit normal.
    [[nodiscard]] double waveSpeed(const double* w, const FaceGeometry<D>& face) const {
        const double un = std::abs(face.along(w + 1));
        return 0.5 * (un + std::sqrt(un * un + 4 * beta2));
    }

private:
    /// |M| = mean · I + slope · M for the acoustic pair M = [[0, β²], [1, u_n]].
    struct Waves {
        Waves(double un, double beta2) {
            const double root = std::sqrt(un * un + 4 * beta2);
            mean = 2 * beta2 / root;
            slope = un / root;
        }
        double mean;
        double slope;
    };

    static void central(const double* w, const FaceGeometry<D>& face, double* a) {
        const double un = face.along(w + 1);
        a[0] = 0;
        for (int c = 0; c < D; ++c)
            a[1 + c] = face.n[c];
        for (int k = 0; k < D; ++k) {
            double* row = a + (k + 1) * vars;
            row[0] = face.n[k];
            for (int c = 0; c < D; ++c)
                row[1 + c] = w[k + 1] * face.n[c];
            row[1 + k] += un;
        }
    }
};

} // namespace ostrella::preview
