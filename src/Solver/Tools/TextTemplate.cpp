#include "Solver/Tools/TextTemplate.h"

namespace ostrella {

std::string replaceAll(
    std::string_view text, std::string_view placeholder, std::string_view value) {
    std::string result;
    if (!placeholder.empty()) {
        for (std::size_t found = text.find(placeholder); found != std::string_view::npos;
             found = text.find(placeholder)) {
            result += text.substr(0, found);
            result += value;
            text.remove_prefix(found + placeholder.size());
        }
    }
    result += text;
    return result;
}

} // namespace ostrella
