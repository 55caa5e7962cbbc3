// Writes the sample bodies into a folder: ostrella-make-samples FOLDER
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

#include "Samples.h"
#include "StlWriter.h"

int main(int argc, char** argv) {
    using namespace ostrella::generators;
    if (argc != 2) {
        std::fputs("usage: ostrella-make-samples FOLDER\n", stderr);
        return 2;
    }
    try {
        const std::filesystem::path folder = argv[1];
        std::filesystem::create_directories(folder);
        for (const Sample& sample : samples()) {
            const std::string id(sample.id);
            writeBinaryStl(sample.make(), folder / (id + ".stl"), "Ostrella sample " + id + ", m");
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "ostrella-make-samples: %s\n", error.what());
        return 1;
    }
    return 0;
}
