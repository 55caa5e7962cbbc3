#include "Forces.h"

#include "FaceGeometry.h"

#include <cmath>

namespace ostrella::preview {

namespace {

template <int D>
Vec3 traction(const FlowFields& fields, std::size_t point, const Vec3& normal) {
    const FaceGeometry<D> face(normal);
    double stress[D];
    stressOn(face, fields.velocityGradient(point), fields.laminarViscosity[point], stress);
    Vec3 result{0.0};
    // The stress acts on the fluid along its outward normal, on the body the other way.
    for (int k = 0; k < D; ++k)
        result[k] = -stress[k];
    return result;
}

} // namespace

Coefficients Coefficients::of(const Vec3& force, const Vec3& moment, const FreeStream& stream) {
    Coefficients c;
    const double ca = std::cos(stream.alpha);
    const double sa = std::sin(stream.alpha);
    const double cb = std::cos(stream.beta);
    const double sb = std::sin(stream.beta);
    c.cfx = force.x;
    c.cfy = force.y;
    c.cfz = force.z;
    c.cmx = moment.x;
    c.cmy = moment.y;
    c.cmz = moment.z;
    if (stream.dimensions == 2) {
        c.cd = force.x * ca + force.y * sa;
        c.cl = -force.x * sa + force.y * ca;
    } else {
        c.cd = force.x * ca * cb + force.y * sb + force.z * sa * cb;
        c.cl = -force.x * sa + force.z * ca;
        c.csf = -force.x * sb * ca + force.y * cb - force.z * sb * sa;
    }
    c.efficiency = c.cl / (c.cd + 1e-16);
    return c;
}

Vec3 wallTraction(const FlowFields& fields, std::size_t point, const Vec3& normal) {
    return fields.dimensions == 2 ? traction<2>(fields, point, normal)
                                  : traction<3>(fields, point, normal);
}

WallFriction wallFriction(
    const FlowFields& fields, const DualMesh& dual, const DualMesh::Vertex& vertex) {
    const auto point = static_cast<std::size_t>(vertex.point);
    const Vec3 n = glm::normalize(vertex.normal);
    const Vec3 stress = wallTraction(fields, point, vertex.normal);
    WallFriction result;
    result.shear = stress - glm::dot(stress, n) * n;
    // The nearest point of the flow that is not on the wall, as the real solver measures.
    double distance = 0;
    for (const auto& neighbour : dual.around(point)) {
        const auto other = static_cast<std::size_t>(neighbour.point);
        const double off = fields.wallDistance[other];
        const bool inside = off > 1e-9 * glm::distance(dual.points[point], dual.points[other]);
        if (inside && (distance == 0 || off < distance))
            distance = off;
    }
    const double density = fields.density[point];
    const double speed = std::sqrt(glm::length(result.shear) / density);
    result.yPlus = distance * speed * density / fields.laminarViscosity[point];
    return result;
}

Coefficients forces(const Config& config, const FreeStream& stream, const DualMesh& dual,
    const Boundaries& boundaries, const FlowFields& fields) {
    Vec3 force{0.0};
    Vec3 moment{0.0};
    double buffet = 0;
    const double still = stream.compressible ? stream.scaledPressure() : 0.0;
    for (std::size_t b = 0; b < dual.boundaries.size(); ++b) {
        if (!config.monitoringMarkers.contains(dual.boundaries[b].name))
            continue;
        for (const auto& vertex : dual.boundaries[b].vertices) {
            const auto point = static_cast<std::size_t>(vertex.point);
            Vec3 part = (fields.at(point)[0] - still) * vertex.normal;
            if (boundaries.kinds[b] == BoundaryKind::wall) {
                const double area = glm::length(vertex.normal);
                const Vec3 stress = wallTraction(fields, point, vertex.normal);
                part += area * stress;
                const Vec3 n = vertex.normal / area;
                const Vec3 shear = stress - glm::dot(stress, n) * n;
                const double size = glm::length(shear);
                if (size > 0)
                    buffet += area / (1 + std::exp(20 * glm::dot(shear, stream.direction) / size));
            }
            force += part;
            moment += glm::cross(dual.points[point] - config.refOrigin, part);
        }
    }
    const double reference = 0.5 * config.refArea;
    Coefficients c =
        Coefficients::of(force / reference, moment / (reference * config.refLength), stream);
    c.buffet = buffet / config.refArea;
    return c;
}

} // namespace ostrella::preview
