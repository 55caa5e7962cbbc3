#include "Damage.h"

#include <cmath>
#include <numbers>
#include <utility>

#include <glm/geometric.hpp>

namespace ostrella::generators {

Body turnedAbout(const Body& body, const glm::dvec3& axis, double degrees) {
    const glm::dvec3 k = glm::normalize(axis);
    const double angle = degrees * std::numbers::pi / 180.0;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    Body result = body;
    for (glm::dvec3& v : result.vertices) {
        v = v * c + glm::cross(k, v) * s + k * glm::dot(k, v) * (1.0 - c);
    }
    return result;
}

Body stretched(const Body& body, const glm::dvec3& factors) {
    Body result = body;
    for (glm::dvec3& v : result.vertices) {
        v *= factors;
    }
    return result;
}

Body insideOut(const Body& body) {
    Body result = body;
    for (Body::Triangle& t : result.triangles) {
        std::swap(t[1], t[2]);
    }
    return result;
}

Body without(const Body& body, const std::function<bool(const glm::dvec3&)>& isGone) {
    Body result = body;
    std::erase_if(result.triangles, [&](const Body::Triangle& t) {
        return isGone((body.vertices[t[0]] + body.vertices[t[1]] + body.vertices[t[2]]) / 3.0);
    });
    return result;
}

Body withNoise(const Body& body, double reach, Random& random) {
    Body result = body;
    for (glm::dvec3& v : result.vertices) {
        const glm::dvec3 direction = random.direction();
        v += direction * random.within(0.0, reach);
    }
    return result;
}

Body unshared(const Body& body) {
    Body result;
    for (const Body::Triangle& t : body.triangles) {
        Body::Triangle own{};
        for (std::size_t k = 0; k < 3; ++k) {
            own[k] = result.add(body.vertices[t[k]]);
        }
        result.triangles.push_back(own);
    }
    return result;
}

} // namespace ostrella::generators
