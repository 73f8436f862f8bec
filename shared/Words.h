// Words of a text: what stands between white space.
#pragma once

#include <string>
#include <string_view>

namespace consolidator {

/// White space of the C locale, whatever locale the program runs in: blank, tab, newline, vertical
/// tab, form feed, carriage return.
constexpr bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Takes the first word off the front of `text`, with the white space before it; empty when there
/// is no word left. The words are those that a standard stream extracts.
std::string_view takeWord(std::string_view& text);

/// The words of `text`, each behind prefixOf(word), separated by one blank. White space behind the
/// last word shrinks to one blank; white space before the first one goes.
template <typename PrefixOf>
std::string joinedWords(std::string_view text, PrefixOf prefixOf) {
    std::string joined;
    for (auto word = takeWord(text); !word.empty(); word = takeWord(text)) {
        joined += prefixOf(word);
        joined += word;
        if (!text.empty()) {
            joined += ' ';
        }
    }
    return joined;
}

} // namespace consolidator
