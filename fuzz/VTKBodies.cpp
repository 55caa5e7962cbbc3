#include "fuzz/VTKBodies.h"

#include "Models/Precondition.h"
#include "Solver/Flow/FlowScreen.h"
#include "Solver/Flow/StreamlineRibbons.h"
#include "Solver/Flow/VTKNumberError.h"
#include "Solver/Flow/VTKParseError.h"
#include "Solver/Flow/VTKReader.h"
#include "fuzz/PlainVTKReader.h"

#include <algorithm>
#include <bit>
#include <string>
#include <string_view>

namespace ostrella::fuzz {

namespace {

std::string_view textOf(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The failure of `read` as the plain reader tells it, or "".
template <class Read>
std::string failureOf(Read read) {
    try {
        read();
        return "";
    } catch (const VTKParseError& error) {
        return error.what();
    } catch (const VTKNumberError& error) {
        const std::string text = error.what();
        return "impossible" + text.substr(text.rfind(" at token "));
    }
}

/// Equal numbers, or NaN on both sides.
bool areSame(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b) || (a != a && b != b);
}

bool areSame(std::span<const float> a, std::span<const float> b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
        [](float one, float other) { return areSame(one, other); });
}

std::span<const float> flat(const SharedArray<Vec3>& points) {
    return {points.empty() ? nullptr : &points[0].x, 3 * points.size()};
}

void agree(bool holds) {
    precondition(holds, "the reader and the plain reader disagree");
}

} // namespace

void vtkSurface(std::span<const std::uint8_t> bytes) {
    const std::string name = "Pressure_Coefficient";
    if (!VTKText::of(textOf(bytes)))
        return;
    const auto plain = PlainVTKReader(textOf(bytes)).surface(name);
    SurfaceField surface;
    agree(failureOf([&] { surface = VTKReader::surface(*VTKText::of(textOf(bytes)), name); }) ==
          plain.failure);
    agree(areSame(flat(surface.positions), plain.positions) &&
          areSame(surface.scalar.span(), plain.scalar) &&
          std::ranges::equal(surface.indices, plain.indices) &&
          (surface.primitive == SurfaceField::Primitive::triangle) == (plain.firstCellType == 5));
    try {
        FlowScreen::parseSurface(*VTKText::of(textOf(bytes)), name);
    } catch (const VTKParseError&) {
    } catch (const FlowScreenError&) {
    }
}

void vtkVolume(std::span<const std::uint8_t> bytes) {
    const std::string name = "Velocity";
    if (!VTKText::of(textOf(bytes)))
        return;
    const auto plain = PlainVTKReader(textOf(bytes)).volume(name);
    VolumeField volume;
    agree(failureOf([&] { volume = VTKReader::volume(*VTKText::of(textOf(bytes)), name); }) ==
          plain.failure);
    agree(areSame(flat(volume.positions), plain.positions) &&
          areSame(flat(volume.velocity), plain.velocity));
    if (!plain.failure.empty())
        return;
    try {
        const auto lines = FlowScreen::generate(volume, 50.0F, std::nullopt, 9, 20);
        StreamlineRibbons::build(lines);
        const auto focus =
            StreamlineFocus::around(volume.boundingMin, volume.boundingMax, 0.5F, 1.5F);
        FlowScreen::generate(volume, 50.0F, focus, 9, 20);
        FlowScreen::extract(volume, focus, 16, 99.5F);
    } catch (const FlowScreenError&) {
    }
}

void vtkStats(std::span<const std::uint8_t> bytes) {
    const std::string name = "Y_Plus";
    if (!VTKText::of(textOf(bytes)))
        return;
    const auto plain = PlainVTKReader(textOf(bytes)).stats(name);
    ScalarFieldStats stats;
    agree(failureOf([&] { stats = VTKReader::scalarStats(*VTKText::of(textOf(bytes)), name); }) ==
          plain.failure);
    agree(stats.count == plain.stats.count && areSame(stats.min, plain.stats.min) &&
          areSame(stats.max, plain.stats.max) && areSame(stats.mean, plain.stats.mean) &&
          (stats.p95 == plain.stats.p95 || areSame(stats.p95, plain.stats.p95)));
}

} // namespace ostrella::fuzz
