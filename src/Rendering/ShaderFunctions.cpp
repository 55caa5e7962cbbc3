#include "Rendering/ShaderFunctions.h"

#include "Models/Precondition.h"

#include <QFile>

#include <array>

namespace ostrella::ShaderFunctions {

namespace {

using namespace std::string_view_literals;

constexpr std::array vertexNames{"vertex_main"sv, "grid_vertex"sv, "colormap_vertex"sv,
    "colormap_line_vertex"sv, "streamline_ribbon_vertex"sv, "vortex_vertex"sv,
    "prerun_wire_vertex"sv, "feature_line_vertex"sv, "gizmo_vertex"sv, "ring_vertex"sv};
constexpr std::array fragmentNames{"fragment_main"sv, "grid_fragment"sv, "colormap_fragment"sv,
    "streamline_ribbon_fragment"sv, "vortex_fragment"sv, "prerun_fill_fragment"sv,
    "solid_color_fragment"sv, "gizmo_fragment"sv, "ring_fragment"sv};

QShader function(std::string_view name, const char* stage) {
    const QString folder = QStringLiteral(":/ostrella/shaders/");
    QFile file(folder + QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())) +
               QLatin1String(stage) + QStringLiteral(".qsb"));
    QShader shader;
    if (file.open(QIODevice::ReadOnly))
        shader = QShader::fromSerialized(file.readAll());
    precondition(shader.isValid(), "every function of the scene is in the program's resources");
    return shader;
}

} // namespace

std::span<const std::string_view> vertexFunctions() {
    return vertexNames;
}

std::span<const std::string_view> fragmentFunctions() {
    return fragmentNames;
}

QShader vertex(std::string_view name) {
    return function(name, ".vert");
}

QShader fragment(std::string_view name) {
    return function(name, ".frag");
}

} // namespace ostrella::ShaderFunctions
