#include "shared/Words.h"

#include <algorithm>

namespace consolidator {

std::string_view takeWord(std::string_view& text) {
    const auto start = std::ranges::find_if_not(text, isSpace);
    const auto end = std::find_if(start, text.end(), isSpace);
    const std::string_view word(start, end);
    text = std::string_view(end, text.end());
    return word;
}

} // namespace consolidator
