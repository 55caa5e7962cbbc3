#include "Batch/HelpText.h"

#include "Batch/OptionTable.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace ostrella {

namespace {

constexpr std::size_t lineWidth = 80;
constexpr std::string_view indentation = "      ";

/// Characters of a UTF-8 text.
std::size_t length(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

/// Lines of whole words, each indented.
std::string paragraph(std::string_view text) {
    std::string result;
    std::string line;
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(word.size() + 1, text.size()));
        if (!line.empty() && indentation.size() + length(line) + 1 + length(word) > lineWidth) {
            result += fmt::format("{}{}\n", indentation, line);
            line.clear();
        }
        line += line.empty() ? "" : " ";
        line += word;
    }
    return result + fmt::format("{}{}\n", indentation, line);
}

} // namespace

std::string batchHelp() {
    std::string text = "Usage: ostrella-batch [OPTION…] MODEL.stl\n"
                       "       ostrella-batch [OPTION…] --sample NAME\n"
                       "       ostrella-batch [OPTION…] --demo\n"
                       "       ostrella-batch [OPTION…] --results DIR\n\n"
                       "Meshes the air around a body, solves the flow and reports lift and drag.\n"
                       "Lengths are metres.\n";
    for (const BatchOptionGroup& group : batchOptionGroups()) {
        text += fmt::format("\n{}:\n", group.title);
        for (const BatchOption& option : group.options) {
            text += fmt::format("  --{}{}{}\n{}", option.name, option.value.empty() ? "" : " ",
                option.value, paragraph(option.help));
        }
    }
    text += "\nOther:\n"
            "  --help\n      This text.\n"
            "  --version\n      The version.\n"
            "  --\n      What follows is the model's name, also if it begins with a dash.\n"
            "\nCtrl-C cancels. The run works in a directory of its own under TMPDIR.\n"
            "\nExit status: 0 finished, 2 wrong usage or a model that cannot be loaded,\n"
            "3 the mesh failed, 4 the solver failed, 5 the results failed or a file could\n"
            "not be written, 130 cancelled.\n";
    return text;
}

} // namespace ostrella
