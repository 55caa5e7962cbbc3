// Feeds arbitrary bytes to the reader of volumes and to what is made of them.
// Start corpus: tests/data/vtk and its folder fuzz.

#include "fuzz/VTKBodies.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ostrella::fuzz::vtkVolume({data, size});
    return 0;
}
