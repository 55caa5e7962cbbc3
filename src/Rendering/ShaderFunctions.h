#pragma once

#include "Rendering/Rhi.h"

#include <span>
#include <string_view>

namespace ostrella {

/// The vertex and fragment functions of the scene, each baked from a file of its own into this
/// program's resources.
namespace ShaderFunctions {

/// The names of all of them, without an order.
std::span<const std::string_view> vertexFunctions();
std::span<const std::string_view> fragmentFunctions();

/// A function by its name. One that is not there, or not readable, ends the process.
QShader vertex(std::string_view name);
QShader fragment(std::string_view name);

} // namespace ShaderFunctions

} // namespace ostrella
