#include "Rendering/ShaderFunctions.h"
#include "Rendering/DeviceUniforms.h"
#include "Rendering/OrientationGizmo.h"
#include "Rendering/Uniforms.h"
#include "Solver/Flow/StreamlineRibbons.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace ostrella {
namespace {

struct Member {
    std::string name;
    int offset;
    int size;
    bool operator==(const Member&) const = default;
};
void PrintTo(const Member& m, std::ostream* out) {
    *out << m.name << " at " << m.offset << ", " << m.size << " bytes";
}
struct Layout {
    int binding;
    int size;
    std::vector<Member> members;
};

#define MEMBER(Block, name)                                                                        \
    Member {                                                                                       \
#name, static_cast < int>(offsetof(Block, name)), static_cast < int>(sizeof(Block::name))  \
    }

/// The blocks as the program writes them.
const std::map<std::string, Layout>& written() {
    static const std::map<std::string, Layout> blocks{
        {"Uniforms", {1, sizeof(Uniforms),
                         {MEMBER(Uniforms, modelMatrix), MEMBER(Uniforms, viewMatrix),
                             MEMBER(Uniforms, projectionMatrix), MEMBER(Uniforms, lightDirection),
                             MEMBER(Uniforms, baseColor), MEMBER(Uniforms, scalarRange)}}},
        {"GridUniforms", {2, sizeof(GridUniforms),
                             {MEMBER(GridUniforms, lineColor), MEMBER(GridUniforms, background),
                                 MEMBER(GridUniforms, fade)}}},
        {"PreRunUniforms", {2, sizeof(PreRunUniforms),
                               {MEMBER(PreRunUniforms, color), MEMBER(PreRunUniforms, rimColor),
                                   MEMBER(PreRunUniforms, params)}}},
        {"VortexUniforms", {2, sizeof(VortexUniforms),
                               {MEMBER(VortexUniforms, tint), MEMBER(VortexUniforms, rimColor),
                                   MEMBER(VortexUniforms, params)}}},
        {"RibbonUniforms", {2, sizeof(RibbonUniforms),
                               {MEMBER(RibbonUniforms, view), MEMBER(RibbonUniforms, depth),
                                   MEMBER(RibbonUniforms, pulse), MEMBER(RibbonUniforms, look),
                                   MEMBER(RibbonUniforms, floorColor)}}},
        {"RingStyle",
            {2, sizeof(RingStyle),
                {MEMBER(RingStyle, color), MEMBER(RingStyle, view), MEMBER(RingStyle, centre),
                    MEMBER(RingStyle, eye), MEMBER(RingStyle, behind)}}},
        {"GizmoUniforms", {1, sizeof(GizmoUniforms), {MEMBER(GizmoUniforms, box)}}},
        {"DeviceUniforms", {3, sizeof(DeviceUniforms),
                               {MEMBER(DeviceUniforms, target), MEMBER(DeviceUniforms, traits)}}},
    };
    return blocks;
}

struct Function {
    std::string name;
    QShader shader;
};

std::vector<Function> allFunctions() {
    std::vector<Function> all;
    for (const std::string_view name : ShaderFunctions::vertexFunctions())
        all.push_back({std::string(name), ShaderFunctions::vertex(name)});
    for (const std::string_view name : ShaderFunctions::fragmentFunctions())
        all.push_back({std::string(name), ShaderFunctions::fragment(name)});
    return all;
}

std::vector<Member> membersOf(const QList<QShaderDescription::BlockVariable>& variables) {
    std::vector<Member> members;
    for (const auto& v : variables)
        members.push_back({v.name.toStdString(), v.offset, v.size});
    return members;
}

TEST(ShaderFunctions, everyFileIsAFunctionAndEveryFunctionAFile) {
    std::set<std::string> files;
    std::set<std::string> functions;
    const auto folder = std::filesystem::path(OSTRELLA_SOURCE_DIR) / "src/Rendering/shaders";
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".glsl")
            files.insert(entry.path().filename().string());
    }
    for (const std::string_view name : ShaderFunctions::vertexFunctions())
        functions.insert(std::string(name) + ".vert");
    for (const std::string_view name : ShaderFunctions::fragmentFunctions())
        functions.insert(std::string(name) + ".frag");
    EXPECT_EQ(files, functions);
}

TEST(ShaderFunctions, blocksLieAsTheProgramWritesThem) {
    std::set<std::string> seen;
    for (const Function& function : allFunctions()) {
        for (const auto& block : function.shader.description().uniformBlocks()) {
            SCOPED_TRACE(function.name + ", block " + block.blockName.toStdString());
            const auto expected = written().find(block.blockName.toStdString());
            ASSERT_NE(expected, written().end());
            seen.insert(expected->first);
            EXPECT_EQ(block.binding, expected->second.binding);
            EXPECT_EQ(block.size, expected->second.size);
            EXPECT_EQ(membersOf(block.members), expected->second.members);
            for (const auto& member : block.members)
                EXPECT_FALSE(member.matrixIsRowMajor) << member.name.toStdString();
        }
    }
    EXPECT_EQ(seen.size(), written().size()) << "some block is read by no function";
}

TEST(ShaderFunctions, attributesAreThoseOfTheTwoVertexLayouts) {
    using Type = QShaderDescription::VariableType;
    const auto attributes = [](std::string_view name) {
        std::map<int, Type> types;
        for (const auto& v : ShaderFunctions::vertex(name).description().inputVariables())
            types[v.location] = v.type;
        return types;
    };
    const std::map<int, Type> positionAndNormal{
        {0, QShaderDescription::Vec3}, {1, QShaderDescription::Vec3}};
    const std::map<int, Type> positionAndScalar{
        {0, QShaderDescription::Vec3}, {1, QShaderDescription::Float}};
    EXPECT_EQ(attributes("vertex_main"), positionAndNormal);
    EXPECT_EQ(attributes("vortex_vertex"), positionAndNormal);
    EXPECT_EQ(attributes("prerun_wire_vertex"), positionAndNormal);
    EXPECT_EQ(attributes("colormap_vertex"), positionAndScalar);
    for (const std::string_view raw : {"grid_vertex", "feature_line_vertex", "colormap_line_vertex",
             "streamline_ribbon_vertex", "ring_vertex", "gizmo_vertex"})
        EXPECT_TRUE(attributes(raw).empty()) << raw << " reads raw buffers";
}

TEST(ShaderFunctions, rawBuffersHoldWhatTheProgramWrites) {
    const auto elementOf = [](std::string_view name, int binding) {
        for (const auto& block : ShaderFunctions::vertex(name).description().storageBlocks()) {
            if (block.binding == binding)
                return block.members.first();
        }
        return QShaderDescription::BlockVariable();
    };
    // Rows of four floats lie 16 bytes apart; a point of a ribbon is two of them.
    static_assert(sizeof(StreamlineRibbons::Point) == 2 * sizeof(Vec4));
    for (const std::string_view raw : {"grid_vertex", "feature_line_vertex", "ring_vertex",
             "colormap_line_vertex", "streamline_ribbon_vertex"})
        EXPECT_EQ(elementOf(raw, 0).type, QShaderDescription::Vec4) << raw;
    for (const std::string_view raw : {"colormap_line_vertex", "streamline_ribbon_vertex"})
        EXPECT_EQ(elementOf(raw, 4).type, QShaderDescription::Uint) << raw;
    using Segment = OrientationGizmo::Segment;
    const std::vector<Member> expected{
        MEMBER(Segment, ends), MEMBER(Segment, color), MEMBER(Segment, params)};
    EXPECT_EQ(membersOf(elementOf("gizmo_vertex", 0).structMembers), expected);
}

TEST(ShaderFunctions, areBakedForEveryDevice) {
    const std::vector<std::pair<QShader::Source, int>> wanted{
        {QShader::SpirvShader, 100}, {QShader::GlslShader, 430}, {QShader::MslShader, 12}};
    for (const Function& function : allFunctions()) {
        for (const auto& [source, version] : wanted) {
            const QShaderKey key(source, QShaderVersion(version));
            EXPECT_FALSE(function.shader.shader(key).shader().isEmpty())
                << function.name << " for " << source;
        }
    }
}

TEST(ShaderFunctions, metalSourceIsWholeAndKnowsItsSlots) {
    for (const Function& function : allFunctions()) {
        SCOPED_TRACE(function.name);
        const QShaderKey key(QShader::MslShader, QShaderVersion(12));
        const QShaderCode code = function.shader.shader(key);
        const std::string text = code.shader().toStdString();
        EXPECT_NE(text.find("#include <metal_stdlib>"), std::string::npos);
        EXPECT_NE(text.find(code.entryPoint().toStdString() + "("), std::string::npos);
        EXPECT_EQ(std::ranges::count(text, '{'), std::ranges::count(text, '}'));
        EXPECT_EQ(std::ranges::count(text, '('), std::ranges::count(text, ')'));
        const auto description = function.shader.description();
        std::set<int> bindings;
        for (const auto& block : description.uniformBlocks())
            bindings.insert(block.binding);
        for (const auto& block : description.storageBlocks())
            bindings.insert(block.binding);
        const auto slots = function.shader.nativeResourceBindingMap(key);
        std::set<int> native;
        for (const int binding : bindings) {
            ASSERT_TRUE(slots.contains(binding)) << "binding " << binding;
            EXPECT_TRUE(native.insert(slots.value(binding).first).second)
                << "binding " << binding << " shares its slot";
        }
    }
}

} // namespace
} // namespace ostrella
