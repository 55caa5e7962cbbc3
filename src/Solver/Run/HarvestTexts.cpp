#include "Solver/Run/HarvestTexts.h"

#include <fmt/format.h>

#include <new>
#include <stdexcept>

namespace ostrella::HarvestTexts {

namespace {

bool isOutOfMemory(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const std::bad_alloc&) {
        return true;
    } catch (const std::length_error&) {
        return true; // A container that would be larger than any memory.
    } catch (...) {
        return false;
    }
}

} // namespace

std::size_t primitiveCount(const SurfaceField& surface) {
    return surface.indices.size() / 2;
}

std::string surfaceLine(const SurfaceField& surface) {
    return fmt::format("Surface: {} points, {} primitives, Cp ∈ [{:.3f}, {:.3f}]",
        surface.positions.size(), primitiveCount(surface), surface.scalarMin, surface.scalarMax);
}

std::string volumeLine(const VolumeField& volume, double seconds) {
    return fmt::format("Volume: {} points parsed in {:.1f} s", volume.positions.size(), seconds);
}

std::string streamlinesLine(const Streamlines& streamlines, double seconds) {
    return fmt::format(
        "Streamlines: {} seeds → {} segments in {:.2f} s, |V| ∈ [{:.2f}, {:.2f}] m/s",
        streamlines.seedCount, streamlines.indexCount / 2, seconds, streamlines.magnitudeMin,
        streamlines.magnitudeMax);
}

std::string vortexLine(const IsoSurface& vortex, double seconds) {
    return fmt::format("Vortex: {} triangles in {:.2f} s, iso Q = {:.3g}",
        vortex.indices.size() / 3, seconds, vortex.isoValue);
}

std::string reason(const std::exception_ptr& error, std::string_view part) {
    if (isOutOfMemory(error)) {
        return fmt::format("There is not enough memory for {}. Close other programs, or open the "
                           "run's folder on a machine with more.",
            part);
    }
    return errorDescription(error);
}

} // namespace ostrella::HarvestTexts
