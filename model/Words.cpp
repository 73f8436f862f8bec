#include "model/Words.h"

#include <algorithm>

namespace consolidator {

std::string_view takeWord(std::string_view& text) {
    constexpr std::string_view whiteSpace = " \t\n\v\f\r";
    text.remove_prefix(std::min(text.size(), text.find_first_not_of(whiteSpace)));
    const std::string_view word = text.substr(0, text.find_first_of(whiteSpace));
    text.remove_prefix(word.size());
    return word;
}

} // namespace consolidator
