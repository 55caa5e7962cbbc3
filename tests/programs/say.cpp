#include "Emit.h"

#include <cstdlib>
#include <string>
#include <string_view>

namespace {

/// Replaces \n, \r, \t, \\ and \xHH.
std::string unescaped(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            bytes += text[i];
            continue;
        }
        switch (text[++i]) {
        case 'n':
            bytes += '\n';
            break;
        case 'r':
            bytes += '\r';
            break;
        case 't':
            bytes += '\t';
            break;
        case 'x':
            bytes += static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16));
            i += 2;
            break;
        default:
            bytes += text[i];
        }
    }
    return bytes;
}

} // namespace

/// Writes each argument by a call of its own. "--stderr" and "--stdout" choose where the following
/// go,
/// "--exit N" ends with that status.
int main(int argc, char** argv) {
    int descriptor = STDOUT_FILENO;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--stderr") {
            descriptor = STDERR_FILENO;
        } else if (argument == "--stdout") {
            descriptor = STDOUT_FILENO;
        } else if (argument == "--exit" && i + 1 < argc) {
            return std::atoi(argv[i + 1]);
        } else {
            emit(unescaped(argument), descriptor);
        }
    }
}
