#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ostrella {

/// Texts from elsewhere as something that can only be read: a feed's notes are somebody's HTML, and
/// neither pictures nor scripts nor styles of it are wanted.
namespace NotesText {

/// The text of HTML, or of plain text the text itself, without blank ends: paragraphs and headings
/// apart by an empty line, points of lists each on a line after "•". Never more than `most` bytes
/// and an ellipsis.
std::string plain(std::string_view plainOrHTML, std::size_t most);

} // namespace NotesText

} // namespace ostrella
