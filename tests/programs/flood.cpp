#include "Emit.h"

#include <cstdlib>
#include <string>

/// Writes as many numbered lines as its argument says, as fast as it can.
int main(int argc, char** argv) {
    const long count = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 0;
    std::string block;
    for (long i = 0; i < count; ++i) {
        block += "line " + std::to_string(i) + " of a solver that has very much to tell\n";
        if (block.size() > 60000) {
            emit(block);
            block.clear();
        }
    }
    emit(block);
}
