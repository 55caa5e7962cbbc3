#pragma once

#include <string>
#include <string_view>

namespace ostrella {

/// What the maker of a package says of it; settings of the build.
namespace AppLinks {

/// Address of the product's help site.
extern const std::string_view help;
/// Address of the product's web site.
extern const std::string_view site;
/// The line with the rights in the product; may be empty.
extern const std::string_view rights;

/// Tool tip of the help item, which names the site.
std::string helpToolTip();

/// An address without scheme and final slash, for people.
std::string_view shownAddress(std::string_view address);

} // namespace AppLinks

} // namespace ostrella
