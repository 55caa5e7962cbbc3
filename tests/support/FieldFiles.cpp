#include "support/FieldFiles.h"

#include <fmt/format.h>

#include <gtest/gtest.h>

#include <cmath>

namespace ostrella::test::FieldFiles {

namespace {

std::string row(const Vec3& v) {
    return fmt::format("{:.9g} {:.9g} {:.9g}\n", v.x, v.y, v.z);
}

} // namespace

std::string grid(
    const std::vector<Vec3>& points, const std::vector<std::vector<int>>& cells, int cellType) {
    std::string text = fmt::format("# vtk DataFile Version 3.0\nvtk output\nASCII\n"
                                   "DATASET UNSTRUCTURED_GRID\nPOINTS {} double\n",
        points.size());
    for (const Vec3& point : points) {
        text += row(point);
    }
    std::size_t size = 0;
    std::string rows;
    for (const auto& cell : cells) {
        size += cell.size() + 1;
        rows += fmt::format("{}", cell.size());
        for (const int id : cell) {
            rows += fmt::format(" {}", id);
        }
        rows += '\n';
    }
    text += fmt::format("CELLS {} {}\n{}CELL_TYPES {}\n", cells.size(), size, rows, cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i) {
        text += fmt::format("{}\n", cellType);
    }
    return text;
}

std::string pointData(std::size_t count) {
    return fmt::format("POINT_DATA {}\n", count);
}

std::string scalars(const std::string& name, const std::vector<float>& values) {
    std::string text = fmt::format("SCALARS {} double 1\nLOOKUP_TABLE default\n", name);
    for (const float value : values) {
        text += fmt::format("{:.9g}\n", value);
    }
    return text;
}

std::string vectors(const std::string& name, const std::vector<Vec3>& values) {
    std::string text = fmt::format("VECTORS {} double\n", name);
    for (const Vec3& value : values) {
        text += row(value);
    }
    return text;
}

std::string box(const Vec3& low, const Vec3& high) {
    std::vector<Vec3> corners;
    for (int i = 0; i < 8; ++i) {
        corners.emplace_back((i & 1) != 0 ? high.x : low.x, (i & 2) != 0 ? high.y : low.y,
            (i & 4) != 0 ? high.z : low.z);
    }
    const std::vector<std::vector<int>> triangles{{0, 3, 1}, {0, 2, 3}, {4, 5, 7}, {4, 7, 6},
        {0, 1, 5}, {0, 5, 4}, {2, 7, 3}, {2, 6, 7}, {0, 6, 2}, {0, 4, 6}, {1, 3, 7}, {1, 7, 5}};
    constexpr int triangle = 5;
    return grid(corners, triangles, triangle) + pointData(corners.size()) +
           scalars("Pressure_Coefficient", {0.5F, 0.25F, 0.125F, 0, 0, -0.125F, -0.25F, -0.5F});
}

std::string volume(const Vec3& low, const Vec3& high, const std::vector<int>& counts,
    const std::function<Vec3(const Vec3&)>& velocity) {
    const auto at = [&](int axis, int i) {
        const int intervals = std::max(counts[axis] - 1, 1);
        return low[axis] +
               (high[axis] - low[axis]) * static_cast<float>(i) / static_cast<float>(intervals);
    };
    std::vector<Vec3> points;
    std::vector<Vec3> velocities;
    for (int k = 0; k < counts[2]; ++k) {
        for (int j = 0; j < counts[1]; ++j) {
            for (int i = 0; i < counts[0]; ++i) {
                points.emplace_back(at(0, i), at(1, j), at(2, k));
                velocities.push_back(velocity(points.back()));
            }
        }
    }
    constexpr int tetrahedron = 10;
    return grid(points, {{0, 1, 2, 3}}, tetrahedron) + pointData(points.size()) +
           vectors("Velocity", velocities);
}

Vec3 vortexVelocity(const Vec3& p) {
    const float turn = 40 * std::exp(-5 * (p.y * p.y + p.z * p.z)) / (1 + std::exp(-4 * p.x));
    return {50, -turn * p.z, turn * p.y};
}

std::string replaced(const std::string& text, const std::string& old, const std::string& by) {
    std::string result = text;
    const std::size_t found = result.find(old);
    EXPECT_NE(found, std::string::npos) << "there is no \"" << old << "\"";
    if (found != std::string::npos) {
        result.replace(found, old.size(), by);
    }
    return result;
}

} // namespace ostrella::test::FieldFiles
