#pragma once

#include "Config.h"

namespace ostrella::preview {

/// The undisturbed flow in SI units, and the numbers that the solver works with: units of its
/// density, speed and temperature, and of metres.
struct FreeStream {
    bool compressible = false;
    int dimensions = 3;
    double density = 1;
    double speed = 1;
    double temperature = 288.15;
    /// Absolute pressure; 0 where the density is constant, since only differences matter there.
    double pressure = 0;
    double viscosity = 0;
    double mach = 0;
    Vec3 direction{1.0, 0.0, 0.0};
    /// Angles of the wind axes in radians. For constant density they follow from the velocity by
    /// atan(Vz/Vx) and atan(Vy/Vx), in two dimensions by atan(Vy/Vx), as the real solver has it.
    double alpha = 0;
    double beta = 0;

    /// ½ρV², pascals.
    [[nodiscard]] double dynamicPressure() const { return 0.5 * density * speed * speed; }
    /// Dynamic viscosity in solver units: 1 over the Reynolds number of one metre.
    [[nodiscard]] double scaledViscosity() const { return viscosity / (density * speed); }
    /// Absolute pressure in solver units.
    [[nodiscard]] double scaledPressure() const { return pressure / (density * speed * speed); }

    /// What `config` tells of the flow. Throws Failure where it cannot be (no velocity in the
    /// plane).
    static FreeStream of(const Config& config, int dimensions);
};

/// Viscosity of a gas by Sutherland's law with the constants of `config`, Pa·s.
double sutherlandViscosity(const Config& config, double temperature);

} // namespace ostrella::preview
