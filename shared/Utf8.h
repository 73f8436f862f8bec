// UTF-8 as RFC 3629 defines it: texts in a database are bytes, and readers of JSON, SQLite and
// terminals want characters.
//
// Debian's library for it, utfcpp, has the same idea of what UTF-8 is (utfcpp 3.2.3 agreed on each
// of 551,881 sequences of up to four bytes out of 27: first, last and next to them of each kind).
// Its repair is another one: replace_invalid() puts one U+FFFD in the place of a whole over-long
// form, surrogate or cut-off character, where a byte each is promised here. JSON and SQLite exports
// have that in them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace consolidator {

/// The number of bytes of the character that the text begins with, 1 to 4; 0 if the text is empty
/// or begins with no character of UTF-8: a wrong byte, a cut-off or over-long form, a surrogate, or
/// a number above U+10FFFF.
std::size_t utf8Length(std::string_view text);

/// Whether the byte is one behind the first of a character.
bool isContinuation(char byte);

/// The first bytes of the text, at most `most`, without those of a character whose end does not fit
/// in.
std::string_view utf8Beginning(std::string_view text, std::size_t most);

/// Whether all of the text is UTF-8.
bool isUtf8(std::string_view text);

/// The text with U+FFFD in the place of every byte that belongs to no character. A text that is
/// UTF-8 comes back as it is.
std::string validUtf8(std::string_view text);

} // namespace consolidator
