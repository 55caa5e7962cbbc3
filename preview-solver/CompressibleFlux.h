#pragma once

#include "FaceGeometry.h"

#include <algorithm>
#include <cmath>

namespace ostrella::preview {

/// The equations of a perfect gas, in units of the free stream's density, speed and temperature.
/// State: pressure, D velocities, temperature. Residuals: mass, D momenta, energy.
///
/// The upwind flux is Roe's with Harten's entropy fix, in the form that needs two vectors only:
/// |A| dU = |u_n| dU + a (1, u, H) + b (0, n, u_n), see for instance Weiss & Smith, AIAA J. 33
/// (1995).
template <int D>
struct CompressibleFlux {
    static constexpr int vars = D + 2;
    static constexpr bool compressible = true;

    double gamma = 1.4;
    double gasConstant = 1;
    double viscosity = 0;
    /// Sutherland's constant over the free stream's temperature; below 0 the viscosity is constant.
    double sutherland = -1;
    double prandtl = 0.72;
    double prandtlTurbulent = 0.9;
    double entropyFix = 0.001;
    /// Whether the jump of the normal velocity is scaled with the Mach number (Rieper, J. Comput.
    /// Phys. 230, 2011).
    bool lowMach = false;

    [[nodiscard]] double density(const double* w) const { return w[0] / (gasConstant * w[D + 1]); }
    [[nodiscard]] double heatCapacity() const { return gamma / (gamma - 1) * gasConstant; }
    [[nodiscard]] double laminarViscosity(const double* w) const {
        const double t = w[D + 1];
        return sutherland < 0 ? viscosity
                              : viscosity * t * std::sqrt(t) * (1 + sutherland) / (t + sutherland);
    }
    [[nodiscard]] bool valid(const double* w) const { return w[0] > 0 && w[D + 1] > 0; }

    void flux(const double* l, const double* r, const FaceGeometry<D>& face, double* f) const {
        double ul[vars], ur[vars];
        conserved(l, ul);
        conserved(r, ur);
        const double nl = face.along(l + 1);
        const double nr = face.along(r + 1);
        const Mean mean(*this, l, r, ul, ur, face);
        const double dp = r[0] - l[0];
        double dn = nr - nl;
        if (lowMach)
            dn *= std::min(1.0, mean.speed / mean.sound);
        const double a = mean.first * dp / (mean.sound * mean.sound) +
                         mean.second * mean.density * dn / mean.sound;
        const double b = mean.first * mean.density * dn + mean.second * dp / mean.sound;
        const double half = 0.5 * face.area;
        f[0] = nl * ul[0] + nr * ur[0] - mean.along * (ur[0] - ul[0]) - a;
        for (int k = 0; k < D; ++k)
            f[k + 1] = nl * ul[k + 1] + nr * ur[k + 1] + (l[0] + r[0]) * face.n[k] -
                       mean.along * (ur[k + 1] - ul[k + 1]) - a * mean.velocity[k] - b * face.n[k];
        f[D + 1] = nl * (ul[D + 1] + l[0]) + nr * (ur[D + 1] + r[0]) -
                   mean.along * (ur[D + 1] - ul[D + 1]) - a * mean.enthalpy - b * mean.normal;
        for (int v = 0; v < vars; ++v)
            f[v] *= half;
    }

    void jacobian(const double* l, const double* r, const FaceGeometry<D>& face, double* dl,
        double* dr) const {
        double ul[vars], ur[vars];
        conserved(l, ul);
        conserved(r, ur);
        const Mean mean(*this, l, r, ul, ur, face);
        double state[vars];
        for (int v = 0; v < vars; ++v)
            state[v] = 0.5 * (l[v] + r[v]);
        double upwind[vars * vars];
        timeMatrix(state, upwind);
        for (int e = 0; e < vars * vars; ++e)
            upwind[e] *= mean.along;
        const double ap = mean.first / (mean.sound * mean.sound);
        const double an = mean.second * mean.density / mean.sound;
        const double bp = mean.second / mean.sound;
        const double bn = mean.first * mean.density;
        const auto add = [&](int column, double a, double b) {
            upwind[column] += a;
            for (int k = 0; k < D; ++k)
                upwind[(k + 1) * vars + column] += a * mean.velocity[k] + b * face.n[k];
            upwind[(D + 1) * vars + column] += a * mean.enthalpy + b * mean.normal;
        };
        add(0, ap, bp);
        for (int k = 0; k < D; ++k)
            add(k + 1, an * face.n[k], bn * face.n[k]);
        central(l, ul, face, dl);
        central(r, ur, face, dr);
        const double half = 0.5 * face.area;
        for (int e = 0; e < vars * vars; ++e) {
            dl[e] = half * (dl[e] + upwind[e]);
            dr[e] = half * (dr[e] - upwind[e]);
        }
    }

    void slipFlux(const double* w, const FaceGeometry<D>& face, double* f) const {
        const double rho = density(w);
        const double pressure = w[0] + std::sqrt(gamma * w[0] * rho) * face.along(w + 1);
        f[0] = f[D + 1] = 0;
        for (int k = 0; k < D; ++k)
            f[k + 1] = pressure * face.n[k] * face.area;
    }

    void slipJacobian(const double* w, const FaceGeometry<D>& face, double* d) const {
        std::fill_n(d, vars * vars, 0.0);
        const double impedance = std::sqrt(gamma * w[0] * density(w));
        for (int k = 0; k < D; ++k) {
            d[(k + 1) * vars] = face.n[k] * face.area;
            for (int c = 0; c < D; ++c)
                d[(k + 1) * vars + 1 + c] = impedance * face.n[k] * face.n[c] * face.area;
        }
    }

    void viscousFlux(const double* w, const double* gradient, double mu, double muTurbulent,
        const FaceGeometry<D>& face, double* f) const {
        double stress[D];
        stressOn(face, gradient + D, mu + muTurbulent, stress);
        f[0] = 0;
        double power = conductivity(mu, muTurbulent) * face.along(gradient + (D + 1) * D);
        for (int k = 0; k < D; ++k) {
            f[k + 1] = stress[k] * face.area;
            power += stress[k] * w[k + 1];
        }
        f[D + 1] = power * face.area;
    }

    void addViscousJacobian(const double* w, double mu, double muTurbulent, double spacing,
        const FaceGeometry<D>& face, double* d) const {
        const double factor = (mu + muTurbulent) * spacing;
        for (int k = 0; k < D; ++k) {
            for (int c = 0; c < D; ++c)
                d[(k + 1) * vars + 1 + c] += factor * face.n[k] * face.n[c] / 3;
            d[(k + 1) * vars + 1 + k] += factor;
            d[(D + 1) * vars + 1 + k] += factor * w[k + 1];
        }
        d[(D + 1) * vars + D + 1] += conductivity(mu, muTurbulent) * spacing;
    }

    /// Derivative of the conserved quantities by the state.
    void timeMatrix(const double* w, double* t) const {
        std::fill_n(t, vars * vars, 0.0);
        const double rho = density(w);
        const double byPressure = 1 / (gasConstant * w[D + 1]);
        const double byTemperature = -rho / w[D + 1];
        double square = 0;
        t[0] = byPressure;
        t[D + 1] = byTemperature;
        for (int k = 0; k < D; ++k) {
            const double u = w[k + 1];
            square += u * u;
            t[(k + 1) * vars] = u * byPressure;
            t[(k + 1) * vars + 1 + k] = rho;
            t[(k + 1) * vars + D + 1] = u * byTemperature;
            t[(D + 1) * vars + 1 + k] = rho * u;
        }
        t[(D + 1) * vars] = 1 / (gamma - 1) + 0.5 * square * byPressure;
        t[(D + 1) * vars + D + 1] = 0.5 * square * byTemperature;
    }

    [[nodiscard]] double waveSpeed(const double* w, const FaceGeometry<D>& face) const {
        return std::abs(face.along(w + 1)) + std::sqrt(gamma * gasConstant * w[D + 1]);
    }

    /// Density, momenta and energy per volume of a state.
    void conserved(const double* w, double* u) const {
        u[0] = density(w);
        double square = 0;
        for (int k = 0; k < D; ++k) {
            u[k + 1] = u[0] * w[k + 1];
            square += w[k + 1] * w[k + 1];
        }
        u[D + 1] = w[0] / (gamma - 1) + 0.5 * u[0] * square;
    }

private:
    /// Roe's mean of two states, and the speeds of its waves.
    struct Mean {
        Mean(const CompressibleFlux& gas, const double* l, const double* r, const double* ul,
            const double* ur, const FaceGeometry<D>& face) {
            const double ratio = std::sqrt(ur[0] / ul[0]);
            const double right = ratio / (1 + ratio);
            density = ratio * ul[0];
            double square = 0;
            for (int k = 0; k < D; ++k) {
                velocity[k] = (1 - right) * l[k + 1] + right * r[k + 1];
                square += velocity[k] * velocity[k];
            }
            enthalpy =
                (1 - right) * (ul[D + 1] + l[0]) / ul[0] + right * (ur[D + 1] + r[0]) / ur[0];
            const double sound2 = (gas.gamma - 1) * (enthalpy - 0.5 * square);
            sound = std::sqrt(std::max(sound2, 1e-12));
            speed = std::sqrt(square);
            normal = face.along(velocity);
            const double least = gas.entropyFix * (std::abs(normal) + sound);
            const auto smooth = [least](double x) {
                const double size = std::abs(x);
                return size < least ? 0.5 * (size * size / least + least) : size;
            };
            along = smooth(normal);
            const double plus = smooth(normal + sound);
            const double minus = smooth(normal - sound);
            first = 0.5 * (plus + minus) - along;
            second = 0.5 * (plus - minus);
        }
        double density;
        double velocity[D];
        double enthalpy;
        double sound;
        double speed;
        double normal;
        double along;
        double first;
        double second;
    };

    [[nodiscard]] double conductivity(double mu, double muTurbulent) const {
        return heatCapacity() * (mu / prandtl + muTurbulent / prandtlTurbulent);
    }

    void central(const double* w, const double* u, const FaceGeometry<D>& face, double* a) const {
        const double un = face.along(w + 1);
        const double byPressure = 1 / (gasConstant * w[D + 1]);
        const double byTemperature = -u[0] / w[D + 1];
        double square = 0;
        for (int k = 0; k < D; ++k)
            square += w[k + 1] * w[k + 1];
        a[0] = un * byPressure;
        a[D + 1] = un * byTemperature;
        for (int c = 0; c < D; ++c) {
            a[c + 1] = u[0] * face.n[c];
            a[(D + 1) * vars + c + 1] = (u[D + 1] + w[0]) * face.n[c] + un * u[0] * w[c + 1];
        }
        for (int k = 0; k < D; ++k) {
            double* row = a + (k + 1) * vars;
            row[0] = un * w[k + 1] * byPressure + face.n[k];
            row[D + 1] = un * w[k + 1] * byTemperature;
            for (int c = 0; c < D; ++c)
                row[c + 1] = u[0] * w[k + 1] * face.n[c];
            row[k + 1] += u[0] * un;
        }
        a[(D + 1) * vars] = un * (gamma / (gamma - 1) + 0.5 * square * byPressure);
        a[(D + 1) * vars + D + 1] = un * 0.5 * square * byTemperature;
    }
};

} // namespace ostrella::preview
