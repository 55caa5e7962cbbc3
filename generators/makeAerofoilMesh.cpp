// Writes the demo's aerofoil mesh: ostrella-make-aerofoil-mesh OUTPUT.su2
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "AerofoilMesh.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: ostrella-make-aerofoil-mesh OUTPUT.su2\n", stderr);
        return 2;
    }
    const std::filesystem::path path = argv[1];
    std::error_code ignored;
    std::filesystem::create_directories(path.parent_path(), ignored);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << ostrella::generators::AerofoilMesh::make().su2Text();
    file.close();
    if (!file) {
        std::fprintf(stderr, "ostrella-make-aerofoil-mesh: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
