#include "ResultFields.h"

#include "Forces.h"

#include <fmt/format.h>

#include <cmath>

namespace ostrella::preview {

namespace {

class Collector {
public:
    Collector(const Config& config, const FreeStream& stream, const OutputScales& scales,
        const DualMesh& dual, const Boundaries& boundaries, const FlowFields& fields)
        : config_(config),
          stream_(stream),
          scales_(scales),
          dual_(dual),
          boundaries_(boundaries),
          fields_(fields),
          dimensions_(fields.dimensions) {
        if (config.viscous())
            collectWalls();
    }

    std::vector<PointField> all() {
        const bool solution = wants("SOLUTION");
        const bool primitive = wants("PRIMITIVE");
        if (fields_.compressible) {
            if (solution)
                addConserved();
            if (solution)
                addTurbulence();
            if (primitive)
                addGas();
        } else {
            if (solution) {
                addPressure();
                addVelocity();
                addTurbulence();
            }
            if (primitive) {
                addPressureCoefficient();
                add("Density", [&](std::size_t i) { return fields_.density[i] * scales_.density; });
            }
        }
        if (primitive && config_.viscous())
            addFriction();
        if (wants("VORTEX_IDENTIFICATION") && config_.viscous())
            addVortices();
        return std::move(result_);
    }

private:
    bool wants(const char* group) const {
        // Where nothing is asked for, these two groups are written.
        return config_.volumeOutput.empty() ? std::string_view(group) != "VORTEX_IDENTIFICATION"
                                            : config_.volumeOutput.contains(group);
    }

    void collectWalls() {
        shear_.assign(fields_.size() * 3, 0.0);
        yPlus_.assign(fields_.size(), 0.0);
        for (std::size_t b = 0; b < dual_.boundaries.size(); ++b) {
            if (boundaries_.kinds[b] != BoundaryKind::wall)
                continue;
            for (const auto& vertex : dual_.boundaries[b].vertices) {
                const auto friction = wallFriction(fields_, dual_, vertex);
                const auto i = static_cast<std::size_t>(vertex.point);
                for (int k = 0; k < 3; ++k)
                    shear_[i * 3 + static_cast<std::size_t>(k)] = 2 * friction.shear[k];
                yPlus_[i] = friction.yPlus;
            }
        }
    }

    template <class Value>
    void add(const char* name, Value value) {
        PointField field{name, 1, std::vector<double>(fields_.size())};
        for (std::size_t i = 0; i < fields_.size(); ++i)
            field.values[static_cast<std::size_t>(dual_.meshPoint[i])] = value(i);
        result_.push_back(std::move(field));
    }

    template <class Value>
    void addVector(const char* name, Value value) {
        const auto stride = static_cast<std::size_t>(dimensions_);
        PointField field{name, dimensions_, std::vector<double>(fields_.size() * stride)};
        for (std::size_t i = 0; i < fields_.size(); ++i)
            for (std::size_t k = 0; k < stride; ++k)
                field.values[static_cast<std::size_t>(dual_.meshPoint[i]) * stride + k] =
                    value(i, k);
        result_.push_back(std::move(field));
    }

    double temperature(std::size_t i) const { return fields_.at(i)[dimensions_ + 1]; }

    double squaredSpeed(std::size_t i) const {
        double sum = 0;
        for (int k = 1; k <= dimensions_; ++k)
            sum += fields_.at(i)[k] * fields_.at(i)[k];
        return sum;
    }

    void addPressure() {
        add("Pressure", [&](std::size_t i) { return fields_.at(i)[0] * scales_.pressure; });
    }

    void addVelocity() {
        addVector("Velocity",
            [&](std::size_t i, std::size_t k) { return fields_.at(i)[k + 1] * scales_.velocity; });
    }

    void addTurbulence() {
        if (config_.turbulent())
            add("Nu_Tilde", [&](std::size_t i) {
                return fields_.nuTilde[i] * scales_.viscosity() / scales_.density;
            });
    }

    void addPressureCoefficient() {
        const double still = fields_.compressible ? stream_.scaledPressure() : 0.0;
        add("Pressure_Coefficient", [&](std::size_t i) { return 2 * (fields_.at(i)[0] - still); });
    }

    void addConserved() {
        add("Density", [&](std::size_t i) { return fields_.density[i] * scales_.density; });
        addVector("Momentum", [&](std::size_t i, std::size_t k) {
            return fields_.density[i] * fields_.at(i)[k + 1] * scales_.density * scales_.velocity;
        });
        add("Energy", [&](std::size_t i) {
            return (fields_.at(i)[0] / (config_.gamma - 1) +
                       0.5 * fields_.density[i] * squaredSpeed(i)) *
                   scales_.pressure;
        });
    }

    void addGas() {
        addPressure();
        add("Temperature", [&](std::size_t i) { return temperature(i) * scales_.temperature; });
        add("Mach", [&](std::size_t i) {
            return std::sqrt(squaredSpeed(i) / temperature(i)) * stream_.mach;
        });
        addPressureCoefficient();
        addVelocity();
    }

    void addFriction() {
        add("Laminar_Viscosity",
            [&](std::size_t i) { return fields_.laminarViscosity[i] * scales_.viscosity(); });
        if (!fields_.compressible) {
            // Air's constants of the real solver; nothing here depends on the temperature.
            constexpr double heatCapacity = 1004.703;
            add("Heat_Capacity", [&](std::size_t) { return heatCapacity; });
            add("Thermal_Conductivity", [&](std::size_t i) {
                return heatCapacity * scales_.viscosity() *
                       (fields_.laminarViscosity[i] / config_.prandtlLaminar +
                           (config_.turbulent()
                                   ? fields_.eddyViscosity[i] / config_.prandtlTurbulent
                                   : 0.0));
            });
        }
        addVector("Skin_Friction_Coefficient",
            [&](std::size_t i, std::size_t k) { return shear_[i * 3 + k]; });
        add("Heat_Flux", [](std::size_t) { return 0.0; });
        add("Y_Plus", [&](std::size_t i) { return yPlus_[i]; });
        if (config_.turbulent())
            add("Eddy_Viscosity",
                [&](std::size_t i) { return fields_.eddyViscosity[i] * scales_.viscosity(); });
    }

    /// Row `a` and column `b` of the velocity's gradient, output units a metre.
    double slope(std::size_t i, int a, int b) const {
        return fields_.velocityGradient(i)[a * dimensions_ + b] * scales_.velocity;
    }

    void addVortices() {
        if (dimensions_ == 2) {
            add("Vorticity", [&](std::size_t i) { return slope(i, 1, 0) - slope(i, 0, 1); });
        } else {
            addVector("Vorticity", [&](std::size_t i, std::size_t k) {
                const int a = (static_cast<int>(k) + 1) % 3;
                const int b = (static_cast<int>(k) + 2) % 3;
                return slope(i, b, a) - slope(i, a, b);
            });
        }
        add("Q_Criterion", [&](std::size_t i) {
            double sum = 0;
            for (int a = 0; a < dimensions_; ++a) {
                for (int b = 0; b < dimensions_; ++b) {
                    const double turn = 0.5 * (slope(i, a, b) - slope(i, b, a));
                    const double strain = 0.5 * (slope(i, a, b) + slope(i, b, a));
                    sum += turn * turn - strain * strain;
                }
            }
            return 0.5 * sum;
        });
    }

    const Config& config_;
    const FreeStream& stream_;
    const OutputScales& scales_;
    const DualMesh& dual_;
    const Boundaries& boundaries_;
    const FlowFields& fields_;
    int dimensions_;
    std::vector<double> shear_;
    std::vector<double> yPlus_;
    std::vector<PointField> result_;
};

} // namespace

std::vector<PointField> resultFields(const Config& config, const FreeStream& stream,
    const OutputScales& scales, const DualMesh& dual, const Boundaries& boundaries,
    const FlowFields& fields) {
    return Collector(config, stream, scales, dual, boundaries, fields).all();
}

std::vector<std::string> unknownGroups(const Config& config) {
    std::vector<std::string> lines;
    for (const auto& group : config.volumeOutput)
        if (group != "COORDINATES" && group != "SOLUTION" && group != "PRIMITIVE" &&
            group != "VORTEX_IDENTIFICATION")
            lines.push_back(fmt::format("VOLUME_OUTPUT: {} is not written.", group));
    return lines;
}

} // namespace ostrella::preview
