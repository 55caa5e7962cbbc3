#include "Solver/Tools/solverfiles/FakePackage.h"

#include <fmt/format.h>

#include <array>

namespace ostrella::test {

namespace fs = std::filesystem;

FakePackage::FakePackage()
    : run_(directory_.path() / "run"),
      environment_{.bundle = AppBundle(directory_.path() / "package"),
          .temporaryDirectory = directory_.path(),
          .words = &PlatformWords::freedesktop(),
          .clock = &clock_} {
    fs::create_directories(run_);
    setTemplate("lc = {{LC_MIN}};\n");
}

fs::path FakePackage::templateFile() const {
    return environment_.bundle.resourcesDirectory() / "su2" / "templates" / "stl_external_aero.geo";
}

void FakePackage::setGmsh(const std::string& script) const {
    writeFile(gmsh(), "#!/bin/sh\n" + script + "\n");
    fs::permissions(gmsh(), fs::perms::owner_all);
}

void FakePackage::setTemplate(const std::string& text) const {
    writeFile(templateFile(), text);
}

GMSHRunner::Output FakePackage::makeMesh(
    const TriangleMesh& mesh, const CancellationToken& token, const GMSHRunner::Attempt& attempt) {
    GMSHRunner::Output output;
    onWorker([&] { output = GMSHRunner(environment_).makeMesh(mesh, run_, log_, token, attempt); });
    return output;
}

std::string FakePackage::failure(const TriangleMesh& mesh, const GMSHRunner::Attempt& attempt) {
    try {
        makeMesh(mesh, {}, attempt);
    } catch (const std::exception& error) {
        return error.what();
    }
    return "no failure";
}

std::vector<std::string> FakePackage::lines() const {
    std::vector<std::string> result;
    for (const LogStore::Line& line : log_.lines()) {
        result.push_back(fmt::format("{}: {}", LogStore::Line::rawValue(line.level), line.text));
    }
    return result;
}

TriangleMesh boxMesh(const Vec3& min, const Vec3& max) {
    const auto corner = [&](unsigned number) {
        return Vec3((number & 1U) != 0 ? max.x : min.x, (number & 2U) != 0 ? max.y : min.y,
            (number & 4U) != 0 ? max.z : min.z);
    };
    struct Side {
        std::array<unsigned, 4> corners;
        Vec3 normal;
    };
    const std::array<Side, 6> sides{
        {{{0, 2, 3, 1}, {0, 0, -1}}, {{4, 5, 7, 6}, {0, 0, 1}}, {{0, 1, 5, 4}, {0, -1, 0}},
            {{2, 6, 7, 3}, {0, 1, 0}}, {{0, 4, 6, 2}, {-1, 0, 0}}, {{1, 3, 7, 5}, {1, 0, 0}}}};
    std::vector<Vec3> positions;
    std::vector<Vec3> normals;
    for (const Side& side : sides) {
        for (const std::size_t i : {0, 1, 2, 0, 2, 3}) {
            positions.push_back(corner(side.corners[i]));
            normals.push_back(side.normal);
        }
    }
    return {std::move(positions), std::move(normals)};
}

} // namespace ostrella::test
