// Texts from files, made fit for a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace consolidator {

/// The text on one line, and without anything that a terminal would take for a command: control
/// bytes, DEL, and bytes that are no UTF-8 come as "\n", "\t" or "\x1b", a backslash as "\\".
/// Control characters of two bytes (U+0080 to U+009F) come byte by byte, and so do characters that
/// one does not see, as the byte order mark, or that turn the direction of writing around.
///
/// A net or a name from a build is never changed by it; one from a hostile file cannot move the
/// cursor or forge a line.
std::string printable(std::string_view text);

constexpr std::size_t longestRepeated = 500;

/// The same for a text that comes again on many lines: of one with more than `most` bytes only as
/// many, less those of a character that is cut, then "…". A hostile file may hold a name of
/// megabytes and a million places that it belongs to.
std::string shortPrintable(std::string_view text, std::size_t most = longestRepeated);

/// printable() between double quotes, for a sentence. A double quote in the text stays as it is, as
/// names have none that would leave a doubt.
std::string quotedPrintable(std::string_view text);

/// shortPrintable() between double quotes.
std::string quotedShortPrintable(std::string_view text, std::size_t most = longestRepeated);

/// The number of columns that a printable text takes, one for each of its UTF-8 characters.
std::size_t columns(std::string_view text);

} // namespace consolidator
