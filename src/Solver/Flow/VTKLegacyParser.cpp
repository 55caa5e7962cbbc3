#include "Solver/Flow/VTKLegacyParser.h"

#include "Models/Precondition.h"
#include "Solver/Flow/VTKNumberError.h"
#include "Solver/Flow/VTKReader.h"
#include "Solver/Flow/VTKText.h"

#include <cstdlib>
#include <utility>

namespace ostrella::VTKLegacyParser {

namespace {

/// What `read` gives of a file whose counts and ids are vouched for: a wrong one ends the process.
template <class Read>
auto trusted(Read read, VTKText text, std::string_view name) {
    try {
        return read(std::move(text), name);
    } catch (const VTKNumberError& error) {
        precondition(false, error.what());
        std::abort(); // never comes to this
    }
}

} // namespace

SurfaceField parseSurface(const std::filesystem::path& url, std::string_view scalarName) {
    return trusted(VTKReader::surface, VTKText::read(url), scalarName);
}

VolumeField parseVolume(const std::filesystem::path& url, std::string_view vectorName) {
    return trusted(VTKReader::volume, VTKText::read(url), vectorName);
}

ScalarFieldStats extractScalarStats(const std::filesystem::path& url, std::string_view scalarName) {
    return trusted(VTKReader::scalarStats, VTKText::read(url), scalarName);
}

} // namespace ostrella::VTKLegacyParser
