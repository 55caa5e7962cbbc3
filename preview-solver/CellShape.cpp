#include "CellShape.h"

namespace ostrella::preview {

namespace {

using Edge = std::array<int, 2>;
using Face = CellShape::Face;

constexpr Edge lineEdges[] = {{0, 1}};
constexpr Face lineFaces[] = {{2, {0, 1, 0, 0}}};
constexpr Edge triangleEdges[] = {{0, 1}, {1, 2}, {2, 0}};
constexpr Face triangleFaces[] = {{3, {0, 1, 2, 0}}};
constexpr Edge quadEdges[] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}};
constexpr Face quadFaces[] = {{4, {0, 1, 2, 3}}};
constexpr Edge tetEdges[] = {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}};
constexpr Face tetFaces[] = {
    {3, {0, 2, 1, 0}}, {3, {0, 1, 3, 0}}, {3, {1, 2, 3, 0}}, {3, {2, 0, 3, 0}}};
constexpr Edge hexEdges[] = {
    {0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6}, {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
constexpr Face hexFaces[] = {{4, {0, 3, 2, 1}}, {4, {4, 5, 6, 7}}, {4, {0, 1, 5, 4}},
    {4, {1, 2, 6, 5}}, {4, {2, 3, 7, 6}}, {4, {3, 0, 4, 7}}};
constexpr Edge prismEdges[] = {
    {0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}};
constexpr Face prismFaces[] = {
    {3, {0, 2, 1, 0}}, {3, {3, 4, 5, 0}}, {4, {0, 1, 4, 3}}, {4, {1, 2, 5, 4}}, {4, {2, 0, 3, 5}}};
constexpr Edge pyramidEdges[] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {0, 4}, {1, 4}, {2, 4}, {3, 4}};
constexpr Face pyramidFaces[] = {
    {4, {0, 3, 2, 1}}, {3, {0, 1, 4, 0}}, {3, {1, 2, 4, 0}}, {3, {2, 3, 4, 0}}, {3, {3, 0, 4, 0}}};

const CellShape line{2, lineEdges, lineFaces, {1, 0}};
const CellShape triangle{3, triangleEdges, triangleFaces, {0, 2, 1}};
const CellShape quad{4, quadEdges, quadFaces, {0, 3, 2, 1}};
const CellShape tet{4, tetEdges, tetFaces, {0, 2, 1, 3}};
const CellShape hex{8, hexEdges, hexFaces, {4, 5, 6, 7, 0, 1, 2, 3}};
const CellShape prism{6, prismEdges, prismFaces, {3, 4, 5, 0, 1, 2}};
const CellShape pyramid{5, pyramidEdges, pyramidFaces, {0, 3, 2, 1, 4}};

} // namespace

int cellPoints(int type) {
    switch (type) {
    case 3:
        return 2;
    case 5:
        return 3;
    case 9:
    case 10:
        return 4;
    case 12:
        return 8;
    case 13:
        return 6;
    case 14:
        return 5;
    default:
        return 0;
    }
}

int cellDimension(CellType type) {
    if (type == CellType::line)
        return 1;
    return type == CellType::triangle || type == CellType::quadrilateral ? 2 : 3;
}

const CellShape& CellShape::of(CellType type) {
    switch (type) {
    case CellType::line:
        return line;
    case CellType::triangle:
        return triangle;
    case CellType::quadrilateral:
        return quad;
    case CellType::tetrahedron:
        return tet;
    case CellType::hexahedron:
        return hex;
    case CellType::prism:
        return prism;
    case CellType::pyramid:
        break;
    }
    return pyramid;
}

double signedVolume(const Cell& cell, std::span<const Vec3> points) {
    const CellShape& shape = CellShape::of(cell.type);
    auto at = [&](int local) -> const Vec3& { return points[cell.points[local]]; };
    const Vec3 origin = at(0);
    if (cellDimension(cell.type) == 2) {
        double twice = 0;
        for (int i = 1; i + 1 < shape.points; ++i) {
            const Vec3 a = at(i) - origin;
            const Vec3 b = at(i + 1) - origin;
            twice += a.x * b.y - a.y * b.x;
        }
        return twice / 2;
    }
    double sixfold = 0;
    for (const auto& face : shape.faces) {
        Vec3 centre{0.0};
        for (int i = 0; i < face.count; ++i)
            centre += (at(face.points[i]) - origin) / static_cast<double>(face.count);
        for (int i = 0; i < face.count; ++i) {
            const Vec3 a = at(face.points[i]) - origin;
            const Vec3 b = at(face.points[(i + 1) % face.count]) - origin;
            sixfold += glm::dot(centre, glm::cross(a, b));
        }
    }
    return sixfold / 6;
}

} // namespace ostrella::preview
