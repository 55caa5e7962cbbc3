#include "ConfigOptions.h"

#include <fmt/format.h>

#include <functional>
#include <map>

namespace ostrella::preview {

namespace {

using Apply = std::function<void(Config&, const ConfigValue&)>;

Apply setNumber(double Config::*member) {
    return [member](Config& c, const ConfigValue& v) { c.*member = v.number(); };
}

Apply setPositive(double Config::*member) {
    return [member](Config& c, const ConfigValue& v) { c.*member = v.positive(); };
}

Apply setInteger(int Config::*member, int least) {
    return [member, least](Config& c, const ConfigValue& v) { c.*member = v.integer(least); };
}

Apply setText(std::string Config::*member) {
    return [member](Config& c, const ConfigValue& v) { c.*member = v.word(); };
}

Apply setFlag(bool Config::*member) {
    return [member](Config& c, const ConfigValue& v) { c.*member = v.flag(); };
}

Apply setOrigin(int axis) {
    return [axis](Config& c, const ConfigValue& v) { c.refOrigin[axis] = v.number(); };
}

Apply setKeywords(std::set<std::string> Config::*member) {
    return [member](Config& c, const ConfigValue& v) {
        const auto words = v.keywords();
        c.*member = {words.begin(), words.end()};
    };
}

/// Marker names, without numbers between them; NONE stands for an empty list.
Apply setMarkers(std::set<std::string> Config::*member) {
    return [member](Config& c, const ConfigValue& v) {
        const auto& words = v.words();
        if (words.size() == 1 && upper(words.front()) == "NONE")
            return;
        (c.*member).insert(words.begin(), words.end());
    };
}

/// Known, and only one value of it can be honoured.
Apply only(std::string wanted) {
    return [wanted](Config&, const ConfigValue& v) {
        if (v.keyword() != wanted)
            v.refuse(fmt::format("the preview solver can only do {}.", wanted));
    };
}

/// Known; any other value than `used` is replaced by it, and that is said.
Apply replaced(std::set<std::string> used, std::string instead) {
    return [used, instead](Config& c, const ConfigValue& v) {
        if (!used.contains(v.keyword()))
            c.warnings.push_back(fmt::format(
                "{}= {} is not available, {} is used instead.", v.name(), v.word(), instead));
    };
}

/// Known, and nothing here depends on it.
void accepted(Config&, const ConfigValue&) {}

void setSolver(Config& c, const ConfigValue& v) {
    static const std::map<std::string, std::pair<Regime, Friction>> solvers{
        {"INC_EULER", {Regime::incompressible, Friction::inviscid}},
        {"INC_NAVIER_STOKES", {Regime::incompressible, Friction::laminar}},
        {"INC_RANS", {Regime::incompressible, Friction::turbulent}},
        {"EULER", {Regime::compressible, Friction::inviscid}},
        {"NAVIER_STOKES", {Regime::compressible, Friction::laminar}},
        {"RANS", {Regime::compressible, Friction::turbulent}}};
    const auto found = solvers.find(v.keyword());
    if (found == solvers.end())
        v.refuse("this kind of problem is beyond the preview solver.");
    std::tie(c.regime, c.friction) = found->second;
}

void setTurbulence(Config& c, const ConfigValue& v) {
    c.turbulenceModel = v.keyword();
    if (c.turbulenceModel != "SA" && c.turbulenceModel != "SST" && c.turbulenceModel != "NONE")
        v.refuse("no such turbulence model.");
}

void setSaOptions(Config& c, const ConfigValue& v) {
    for (const auto& word : v.keywords()) {
        if (word == "ROTATION")
            c.saRotation = true;
        else if (word == "BCM")
            c.saTransition = true;
        else if (word != "NONE" && word != "NEGATIVE")
            c.warnings.push_back(
                fmt::format("SA_OPTIONS: {} is not available, the plain model is used.", word));
    }
}

void setVelocity(Config& c, const ConfigValue& v) {
    const auto numbers = v.numbers();
    if (numbers.size() < 2 || numbers.size() > 3)
        v.refuse("three velocity components are expected.");
    c.incVelocity = {numbers[0], numbers[1], numbers.size() > 2 ? numbers[2] : 0.0};
}

void setHeatFlux(Config& c, const ConfigValue& v) {
    const auto& words = v.words();
    if (words.size() == 1 && upper(words.front()) == "NONE")
        return;
    if (words.empty() || words.size() % 2 != 0)
        v.refuse("pairs of a marker and a heat flux are expected.");
    for (std::size_t i = 0; i < words.size(); i += 2) {
        double flux = 0;
        if (!readNumber(words[i + 1], flux))
            v.refuse("pairs of a marker and a heat flux are expected.");
        if (flux != 0)
            v.refuse("the preview solver's walls are adiabatic, the heat flux must be 0.");
        c.wallMarkers.insert(words[i]);
    }
}

void setGradients(Config& c, const ConfigValue& v) {
    const std::string word = v.keyword();
    if (word == "GREEN_GAUSS")
        c.gradients = GradientMethod::greenGauss;
    else
        replaced({"WEIGHTED_LEAST_SQUARES"}, "WEIGHTED_LEAST_SQUARES")(c, v);
}

void setLimiter(Config& c, const ConfigValue& v) {
    const std::string word = v.keyword();
    if (word == "NONE")
        c.limiter = Limiter::none;
    else if (word == "VENKATAKRISHNAN_WANG")
        c.limiter = Limiter::venkatakrishnanWang;
    else
        replaced({"VENKATAKRISHNAN"}, "VENKATAKRISHNAN")(c, v);
}

void setScheme(Config& c, const ConfigValue& v) {
    const std::string word = v.keyword();
    if (word == "L2ROE" || word == "LMROE" || word == "SLAU" || word == "SLAU2")
        c.scheme = InviscidScheme::lowMachRoe;
    if (word == "SLAU" || word == "SLAU2")
        c.warnings.push_back(fmt::format(
            "{}= {} is not available, a Roe flux for low speeds is used instead.", v.name(), word));
    else if (word != "L2ROE" && word != "LMROE")
        replaced({"ROE", "FDS"}, "an upwind flux of Roe's kind")(c, v);
}

void setCflAdaption(Config& c, const ConfigValue& v) {
    const auto numbers = v.numbers();
    if (numbers.size() < 4)
        v.refuse("at least the factors down and up, the least and the greatest are expected.");
    if (!(numbers[0] > 0 && numbers[1] > 0 && numbers[2] > 0 && numbers[3] >= numbers[2]))
        v.refuse("the numbers must be above 0, and the greatest not below the least.");
    c.cflDown = numbers[0];
    c.cflUp = numbers[1];
    c.cflMin = numbers[2];
    c.cflMax = numbers[3];
    if (numbers.size() > 4)
        c.cflLinearResidual = numbers[4];
    if (numbers.size() > 5)
        c.cflStart = static_cast<int>(numbers[5]);
    if (c.cflDown > 1 || c.cflUp < 1)
        c.warnings.push_back("CFL_ADAPT_PARAM: the first number lowers and the second raises, "
                             "these do the opposite.");
}

void setUnits(Config& c, const ConfigValue& v) {
    static const std::map<std::string, OutputUnits> units{{"DIMENSIONAL", OutputUnits::dimensional},
        {"INITIAL_VALUES", OutputUnits::incompressibleInitial},
        {"FREESTREAM_PRESS_EQ_ONE", OutputUnits::pressureOne},
        {"FREESTREAM_VEL_EQ_MACH", OutputUnits::velocityMach},
        {"FREESTREAM_VEL_EQ_ONE", OutputUnits::velocityOne}};
    const auto found = units.find(v.keyword());
    if (found == units.end())
        v.refuse("this choice of reference values is not available.");
    const bool incompressibleOption = v.name() == "INC_NONDIM";
    if (incompressibleOption == (c.regime == Regime::incompressible))
        c.units = found->second;
}

void setOutputFiles(Config& c, const ConfigValue& v) {
    for (const auto& word : v.keywords()) {
        if (word == "PARAVIEW_ASCII")
            c.writeVolume = true;
        else if (word == "SURFACE_PARAVIEW_ASCII")
            c.writeSurface = true;
        else if (word != "NONE")
            c.warnings.push_back(fmt::format("OUTPUT_FILES: {} is not written.", word));
    }
}

void setConvergenceFields(Config& c, const ConfigValue& v) {
    c.convergenceFields = v.keywords();
}

void setViscosityModel(Config& c, const ConfigValue& v) {
    const std::string word = v.keyword();
    if (word != "SUTHERLAND" && word != "CONSTANT_VISCOSITY")
        v.refuse("this viscosity model is not available.");
    c.sutherland = word == "SUTHERLAND";
}

void setInitOption(Config& c, const ConfigValue& v) {
    const std::string word = v.keyword();
    if (word != "REYNOLDS" && word != "TD_CONDITIONS")
        v.refuse("REYNOLDS or TD_CONDITIONS is expected.");
    c.initFromReynolds = word == "REYNOLDS";
}

void setFreestreamOption(Config& c, const ConfigValue& v) {
    const std::string word = v.keyword();
    if (word != "TEMPERATURE_FS" && word != "DENSITY_FS")
        v.refuse("TEMPERATURE_FS or DENSITY_FS is expected.");
    c.freestreamFromDensity = word == "DENSITY_FS";
}

void refuseMarker(Config&, const ConfigValue& v) {
    if (v.words().size() != 1 || upper(v.words().front()) != "NONE")
        v.refuse("this boundary condition is not available in the preview solver.");
}

void setMultigrid(Config& c, const ConfigValue& v) {
    if (v.integer(0) != 0)
        c.warnings.push_back("MGLEVEL: there is no multigrid, one level is used.");
}

const std::map<std::string, Apply>& table() {
    static const std::map<std::string, Apply> entries{
        {"SOLVER", setSolver},
        {"KIND_TURB_MODEL", setTurbulence},
        {"SA_OPTIONS", setSaOptions},
        {"SST_OPTIONS", accepted},
        {"MATH_PROBLEM", only("DIRECT")},
        {"RESTART_SOL", only("NO")},
        {"TIME_DOMAIN", only("NO")},
        {"TIME_MARCHING", only("NO")},
        {"SYSTEM_MEASUREMENTS", only("SI")},
        {"AXISYMMETRIC", only("NO")},
        {"WEAKLY_COUPLED_HEAT_EQUATION", only("NO")},
        {"GRAVITY_FORCE", only("NO")},
        {"MESH_FORMAT", only("SU2")},
        {"TABULAR_FORMAT", only("CSV")},
        {"INC_DENSITY_MODEL", only("CONSTANT")},
        {"INC_ENERGY_EQUATION", only("NO")},
        {"INC_DENSITY_INIT", setPositive(&Config::incDensity)},
        {"INC_VELOCITY_INIT", setVelocity},
        {"INC_TEMPERATURE_INIT", accepted},
        {"INC_NONDIM", setUnits},
        {"REF_DIMENSIONALIZATION", setUnits},
        {"FLUID_MODEL",
            replaced({"CONSTANT_DENSITY", "STANDARD_AIR", "IDEAL_GAS"}, "a perfect gas")},
        {"VISCOSITY_MODEL", setViscosityModel},
        {"CONDUCTIVITY_MODEL", only("CONSTANT_PRANDTL")},
        {"TURBULENT_CONDUCTIVITY_MODEL", accepted},
        {"MU_CONSTANT", setPositive(&Config::muConstant)},
        {"MU_REF", setPositive(&Config::muRef)},
        {"MU_T_REF", setPositive(&Config::muTRef)},
        {"SUTHERLAND_CONSTANT", setNumber(&Config::sutherlandConstant)},
        {"PRANDTL_LAM", setPositive(&Config::prandtlLaminar)},
        {"PRANDTL_TURB", setPositive(&Config::prandtlTurbulent)},
        {"GAMMA_VALUE", setPositive(&Config::gamma)},
        {"GAS_CONSTANT", setPositive(&Config::gasConstant)},
        {"SPECIFIC_HEAT_CP", accepted},
        {"MACH_NUMBER", setNumber(&Config::machNumber)},
        {"AOA", setNumber(&Config::aoa)},
        {"SIDESLIP_ANGLE", setNumber(&Config::sideslip)},
        {"INIT_OPTION", setInitOption},
        {"FREESTREAM_OPTION", setFreestreamOption},
        {"FREESTREAM_PRESSURE", setPositive(&Config::freestreamPressure)},
        {"FREESTREAM_TEMPERATURE", setPositive(&Config::freestreamTemperature)},
        {"FREESTREAM_DENSITY", setPositive(&Config::freestreamDensity)},
        {"FREESTREAM_NU_FACTOR", setPositive(&Config::nuFactor)},
        {"FREESTREAM_TURBULENCEINTENSITY", setPositive(&Config::turbulenceIntensity)},
        {"FREESTREAM_TURB2LAMVISCRATIO", accepted},
        {"REYNOLDS_NUMBER", setPositive(&Config::reynoldsNumber)},
        {"REYNOLDS_LENGTH", setPositive(&Config::reynoldsLength)},
        {"REF_AREA", setPositive(&Config::refArea)},
        {"REF_LENGTH", setPositive(&Config::refLength)},
        {"REF_ORIGIN_MOMENT_X", setOrigin(0)},
        {"REF_ORIGIN_MOMENT_Y", setOrigin(1)},
        {"REF_ORIGIN_MOMENT_Z", setOrigin(2)},
        {"MARKER_HEATFLUX", setHeatFlux},
        {"MARKER_EULER", setMarkers(&Config::slipMarkers)},
        {"MARKER_FAR", setMarkers(&Config::farMarkers)},
        {"MARKER_SYM", setMarkers(&Config::slipMarkers)},
        {"MARKER_PLOTTING", setMarkers(&Config::plottingMarkers)},
        {"MARKER_MONITORING", setMarkers(&Config::monitoringMarkers)},
        {"MARKER_DESIGNING", accepted},
        {"MARKER_ANALYZE", accepted},
        {"MARKER_INLET", refuseMarker},
        {"MARKER_OUTLET", refuseMarker},
        {"MARKER_ISOTHERMAL", refuseMarker},
        {"MARKER_PERIODIC", refuseMarker},
        {"MARKER_SUPERSONIC_INLET", refuseMarker},
        {"MARKER_SUPERSONIC_OUTLET", refuseMarker},
        {"NUM_METHOD_GRAD", setGradients},
        {"NUM_METHOD_GRAD_RECON", accepted},
        {"CONV_NUM_METHOD_FLOW", setScheme},
        {"MUSCL_FLOW", setFlag(&Config::muscl)},
        {"SLOPE_LIMITER_FLOW", setLimiter},
        {"VENKAT_LIMITER_COEFF", setPositive(&Config::limiterCoefficient)},
        {"REF_ELEM_LENGTH", setPositive(&Config::limiterLength)},
        {"LIMITER_ITER", setInteger(&Config::limiterIterations, 0)},
        {"BETA_FACTOR", setPositive(&Config::betaFactor)},
        {"ENTROPY_FIX_COEFF", setNumber(&Config::entropyFix)},
        {"LOW_MACH_CORR", accepted},
        {"TIME_DISCRE_FLOW", replaced({"EULER_IMPLICIT"}, "EULER_IMPLICIT")},
        {"TIME_DISCRE_TURB", replaced({"EULER_IMPLICIT"}, "EULER_IMPLICIT")},
        {"CONV_NUM_METHOD_TURB", replaced({"SCALAR_UPWIND", "BOUNDED_SCALAR"}, "SCALAR_UPWIND")},
        {"MUSCL_TURB", setFlag(&Config::musclTurbulence)},
        {"SLOPE_LIMITER_TURB", accepted},
        {"CFL_NUMBER", setPositive(&Config::cfl)},
        {"CFL_ADAPT", setFlag(&Config::cflAdapt)},
        {"CFL_ADAPT_PARAM", setCflAdaption},
        {"CFL_REDUCTION_TURB", setPositive(&Config::cflReductionTurbulence)},
        {"LINEAR_SOLVER", replaced({"FGMRES"}, "FGMRES")},
        {"LINEAR_SOLVER_PREC", replaced({"ILU"}, "ILU")},
        {"LINEAR_SOLVER_ILU_FILL_IN", accepted},
        {"LINEAR_SOLVER_ERROR", setPositive(&Config::linearError)},
        {"LINEAR_SOLVER_ITER", setInteger(&Config::linearIterations, 1)},
        {"MGLEVEL", setMultigrid},
        {"ITER", setInteger(&Config::iterations, 1)},
        {"INNER_ITER", setInteger(&Config::iterations, 1)},
        {"CONV_FIELD", setConvergenceFields},
        {"CONV_RESIDUAL_MINVAL", setNumber(&Config::residualMinimum)},
        {"CONV_STARTITER", setInteger(&Config::convergenceStart, 0)},
        {"CONV_CAUCHY_ELEMS", setInteger(&Config::cauchyElements, 1)},
        {"CONV_CAUCHY_EPS", setPositive(&Config::cauchyEpsilon)},
        {"MESH_FILENAME", setText(&Config::meshFile)},
        {"CONV_FILENAME", setText(&Config::historyFile)},
        {"VOLUME_FILENAME", setText(&Config::volumeFile)},
        {"SURFACE_FILENAME", setText(&Config::surfaceFile)},
        {"RESTART_FILENAME", accepted},
        {"SOLUTION_FILENAME", accepted},
        {"OUTPUT_FILES", setOutputFiles},
        {"OUTPUT_WRT_FREQ", setInteger(&Config::writeFrequency, 1)},
        {"OUTPUT_PRECISION", accepted},
        {"VOLUME_OUTPUT", setKeywords(&Config::volumeOutput)},
        {"HISTORY_OUTPUT", setKeywords(&Config::historyOutput)},
        {"SCREEN_OUTPUT", accepted},
        {"SCREEN_WRT_FREQ_INNER", accepted},
        {"HISTORY_WRT_FREQ_INNER", accepted},
        {"WRT_FORCES_BREAKDOWN", accepted},
    };
    return entries;
}

} // namespace

void applyOption(Config& config, const ConfigValue& value) {
    const auto found = table().find(value.name());
    if (found == table().end())
        config.warnings.push_back(fmt::format(
            "option {} is not known to the preview solver and is ignored.", value.name()));
    else
        found->second(config, value);
}

} // namespace ostrella::preview
