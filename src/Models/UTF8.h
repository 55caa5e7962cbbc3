#pragma once

#include <cstddef>
#include <string_view>

namespace ostrella {

/// What a reader of text files needs to know of UTF-8, on bytes.
namespace UTF8 {

/// True if every byte of `text` is ASCII.
bool isASCII(std::string_view text);

/// True if `text` is well-formed: no stray or missing continuation, nothing longer than it need
/// be, no surrogates, nothing above U+10FFFF. ASCII is well-formed.
bool isValid(std::string_view text);

/// The bytes of the line end that valid `text` begins with, 0 if it begins with none. LF, CR, CRLF,
/// U+0085, U+2028 and U+2029 end lines; VT and FF do not.
std::size_t lineEnd(std::string_view text);

/// The bytes of the blank that valid `text` begins with, 0 if it begins with none: the tab and the
/// characters of Unicode's class Zs, the space and the no-break space among them.
std::size_t blank(std::string_view text);

/// The bytes of the character with Unicode's property White_Space that valid `text` begins with, 0
/// if it begins with none: what blank() and lineEnd() know, line ends one by one, VT and FF.
std::size_t whiteSpace(std::string_view text);

} // namespace UTF8

} // namespace ostrella
