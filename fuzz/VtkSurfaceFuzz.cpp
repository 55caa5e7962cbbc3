// Feeds arbitrary bytes to the reader of surfaces.
// Start corpus: tests/data/vtk and its folder fuzz.

#include "fuzz/VTKBodies.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ostrella::fuzz::vtkSurface({data, size});
    return 0;
}
