#pragma once

#include <cstddef>
#include <vector>

namespace ostrella::preview {

/// The state of the flow at the points of the dual mesh, in solver units (see FreeStream).
struct FlowFields {
    int dimensions = 3;
    bool compressible = false;
    /// Numbers a point: gauge or absolute pressure, the velocity's components, and the temperature
    /// where the density varies.
    int vars = 4;
    std::vector<double> state;
    /// `vars` rows of `dimensions` a point.
    std::vector<double> gradient;
    std::vector<double> density;
    std::vector<double> laminarViscosity;
    std::vector<double> eddyViscosity;
    /// From the nearest no-slip wall, metres; empty without friction.
    std::vector<double> wallDistance;
    /// The turbulence model's own variable; empty without one.
    std::vector<double> nuTilde;

    [[nodiscard]] std::size_t size() const { return density.size(); }
    [[nodiscard]] const double* at(std::size_t point) const {
        return state.data() + point * static_cast<std::size_t>(vars);
    }
    [[nodiscard]] const double* velocityGradient(std::size_t point) const {
        return gradient.data() +
               (point * static_cast<std::size_t>(vars) + 1) * static_cast<std::size_t>(dimensions);
    }
};

} // namespace ostrella::preview
