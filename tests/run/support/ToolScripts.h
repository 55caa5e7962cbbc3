#pragma once

#include <filesystem>
#include <string>

namespace ostrella::test::ToolScripts {

/// Answers "--version", and otherwise writes a mesh of one cell.
extern const std::string goodMesher;
/// Writes three iterations and all files, and says that it converged.
extern const std::string goodSolver;

/// The part of goodSolver that writes "surface_flow.vtk", a triangle squeezed to a line along the
/// flow, and "flow.vtk", four points around it. No line gets anywhere, and no vortex is looked for.
extern const std::string fields;

/// In the place of `fields`: a cube of side 1 m around the origin, with Cp from 0.5 down to -0.5
/// and y⁺ up to 4, and a flow of 50 m/s along x that turns about x behind it. 4225 points.
extern const std::string vortexFields;

/// The part of goodSolver that writes "history.csv" with `rows` iterations.
std::string writingHistory(int rows);

/// Leaves the script's process number in a file, for whileAlive().
std::string notingIn(const std::filesystem::path& file);

/// Runs until it is killed; obeys SIGTERM at once.
extern const std::string waiting;

/// Does not hear SIGTERM and SIGINT, notes its process number and then runs until it is killed.
std::string deafNotingIn(const std::filesystem::path& file);

/// Waits until there is such a file.
std::string waitingFor(const std::filesystem::path& file);

} // namespace ostrella::test::ToolScripts
