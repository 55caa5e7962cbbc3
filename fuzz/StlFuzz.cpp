// Feeds arbitrary bytes to the STL parser and to what the loader does with its models.
// Start corpus: tests/data/stl.

#include "fuzz/STLBody.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ostrella::fuzz::stl({data, size});
    return 0;
}
