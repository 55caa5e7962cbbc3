#pragma once

#include <string>
#include <string_view>

namespace ostrella {

/// `text` with every occurrence of `placeholder` replaced by `value`, from the left; what a value
/// brings in is not looked at again. An empty placeholder replaces nothing.
std::string replaceAll(std::string_view text, std::string_view placeholder, std::string_view value);

} // namespace ostrella
