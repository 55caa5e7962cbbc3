// Writes one of the test bodies, nasty ones among them: ostrella-make-bodies NAME OUTPUT.stl;
// --list names them all.
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include "NastyBodies.h"
#include "StlWriter.h"
#include "TestBodies.h"

int main(int argc, char** argv) {
    using namespace ostrella::generators;
    if (argc == 2 && std::string_view(argv[1]) == "--list") {
        for (const TestBody& body : testBodies()) {
            std::printf("%s\t%s\n", body.name.data(), body.about.data());
        }
        for (const NastyBody& body : nastyBodies()) {
            if (testBody(body.name) == nullptr) {
                std::printf("%s\t%s\n", body.name.data(), body.about.data());
            }
        }
        return 0;
    }
    if (argc != 3) {
        std::fputs("usage: ostrella-make-bodies NAME OUTPUT.stl | --list\n", stderr);
        return 2;
    }
    const TestBody* body = testBody(argv[1]);
    const NastyBody* nasty = nastyBody(argv[1]);
    if (body == nullptr && nasty == nullptr) {
        std::fprintf(stderr, "ostrella-make-bodies: no body is named %s; see --list\n", argv[1]);
        return 2;
    }
    try {
        if (body != nullptr && body->ascii) {
            writeAsciiStl(body->make(), argv[2], body->name);
        } else {
            writeBinaryStl(body != nullptr ? body->make() : nasty->make(), argv[2],
                "Ostrella test body " + std::string(argv[1]));
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "ostrella-make-bodies: %s\n", error.what());
        return 1;
    }
    return 0;
}
