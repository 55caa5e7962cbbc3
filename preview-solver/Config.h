#pragma once

#include "Vec3.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ostrella::preview {

enum class Regime { incompressible, compressible };
enum class Friction { inviscid, laminar, turbulent };
enum class GradientMethod { leastSquares, greenGauss };
enum class Limiter { none, venkatakrishnan, venkatakrishnanWang };
enum class InviscidScheme { roe, lowMachRoe };
/// What the output is divided by: nothing (SI units), or reference values of the free stream.
enum class OutputUnits {
    dimensional,
    pressureOne,
    velocityMach,
    velocityOne,
    incompressibleInitial
};

/// A run's settings as its configuration file tells them. Angles in degrees, everything else in SI
/// units; defaults are those of the file format.
struct Config {
    Regime regime = Regime::incompressible;
    Friction friction = Friction::laminar;
    /// The closure's name as written, for the output; "NONE" where there is none.
    std::string turbulenceModel = "NONE";
    bool saRotation = false;
    bool saTransition = false;

    double incDensity = 1.2886;
    Vec3 incVelocity{1.0, 0.0, 0.0};
    double muConstant = 1.716e-5;

    double machNumber = 0.0;
    double aoa = 0.0;
    double sideslip = 0.0;
    bool initFromReynolds = true;
    double reynoldsNumber = 0.0;
    double reynoldsLength = 1.0;
    double freestreamPressure = 101325.0;
    double freestreamTemperature = 288.15;
    bool freestreamFromDensity = false;
    double freestreamDensity = 1.2886;
    double gasConstant = 287.058;
    double gamma = 1.4;
    bool sutherland = true;
    double muRef = 1.716e-5;
    double muTRef = 273.15;
    double sutherlandConstant = 110.4;
    double prandtlLaminar = 0.72;
    double prandtlTurbulent = 0.90;
    double nuFactor = 3.0;
    double turbulenceIntensity = 0.05;

    double refArea = 1.0;
    double refLength = 1.0;
    Vec3 refOrigin{0.0, 0.0, 0.0};
    OutputUnits units = OutputUnits::dimensional;

    std::set<std::string> wallMarkers;
    std::set<std::string> slipMarkers;
    std::set<std::string> farMarkers;
    std::set<std::string> plottingMarkers;
    std::set<std::string> monitoringMarkers;

    GradientMethod gradients = GradientMethod::leastSquares;
    bool muscl = true;
    bool musclTurbulence = false;
    Limiter limiter = Limiter::venkatakrishnan;
    double limiterCoefficient = 0.05;
    double limiterLength = 1.0;
    /// The limiter stays as it is after this many iterations, so that the residual can fall on.
    int limiterIterations = 999999;
    InviscidScheme scheme = InviscidScheme::roe;
    double entropyFix = 0.001;
    double betaFactor = 4.1;

    double cfl = 1.25;
    bool cflAdapt = false;
    double cflDown = 0.1;
    double cflUp = 1.2;
    double cflMin = 10.0;
    double cflMax = 100.0;
    double cflLinearResidual = 0.001;
    int cflStart = 0;
    double cflReductionTurbulence = 1.0;
    double linearError = 1e-6;
    int linearIterations = 5;
    int iterations = 1000;

    std::vector<std::string> convergenceFields;
    double residualMinimum = -14.0;
    int convergenceStart = 5;
    int cauchyElements = 100;
    double cauchyEpsilon = 1e-10;

    std::string meshFile = "mesh.su2";
    std::string historyFile = "history";
    std::string volumeFile = "vol_solution";
    std::string surfaceFile = "surface";
    bool writeVolume = false;
    bool writeSurface = false;
    int writeFrequency = 250;
    std::set<std::string> volumeOutput;
    std::set<std::string> historyOutput;

    /// One line each, for the output: options that are unknown, replaced or without effect.
    std::vector<std::string> warnings;

    [[nodiscard]] bool viscous() const { return friction != Friction::inviscid; }
    [[nodiscard]] bool turbulent() const { return friction == Friction::turbulent; }

    /// Reads a configuration's text. Throws Failure for a value that cannot be read or honoured.
    static Config parse(std::string_view text);
    /// Reads the file at `path`. Throws Failure also where the file cannot be read.
    static Config read(const std::string& path);
};

} // namespace ostrella::preview
