// Feeds arbitrary bytes to the reader of update feeds. Start corpus: tests/data/appcast.

#include "fuzz/AppcastBody.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ostrella::fuzz::appcast({data, size});
    return 0;
}
