#pragma once

#include "Solver/Surface/IndexedSurface.h"

#include <glm/geometric.hpp>
#include <glm/mat3x3.hpp>
#include <glm/matrix.hpp>

namespace ostrella {

/// A weighted sum of squared distances to planes, as a function of a point x:
/// xᵀ A x + 2 bᵀ x + c (Garland and Heckbert, "Surface simplification using quadric error metrics",
/// 1997).
struct Quadric {
    glm::dmat3 a{0};
    DVec3 b{0};
    double c = 0;
    /// Sum of the weights.
    double weight = 0;

    /// Adds the plane through `point` with the unit normal `normal`.
    void addPlane(const DVec3& point, const DVec3& normal, double planeWeight) {
        const double distance = -glm::dot(normal, point);
        a += glm::outerProduct(normal, normal) * planeWeight;
        b += normal * (distance * planeWeight);
        c += distance * distance * planeWeight;
        weight += planeWeight;
    }

    Quadric& operator+=(const Quadric& other) {
        a += other.a;
        b += other.b;
        c += other.c;
        weight += other.weight;
        return *this;
    }

    double at(const DVec3& point) const {
        return glm::dot(point, a * point) + 2 * glm::dot(b, point) + c;
    }

    /// Where it is least, held to `start` by a spring of `stiffness` times the weight: directions
    /// that the planes leave free keep their place.
    DVec3 leastNear(const DVec3& start, double stiffness) const {
        const glm::dmat3 matrix = a + glm::dmat3(stiffness * weight);
        return start - glm::inverse(matrix) * (a * start + b);
    }
};

} // namespace ostrella
