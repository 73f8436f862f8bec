#include "shared/Utf8.h"

#include <algorithm>
#include <cstdint>

namespace consolidator {

namespace {

/// What the first two bytes allow; table 3-7 of the Unicode Standard, "Well-Formed UTF-8 Byte
/// Sequences". Bytes behind the second are 80 to BF.
struct Form {
    std::uint8_t firstFrom;
    std::uint8_t firstTo;
    std::uint8_t secondFrom;
    std::uint8_t secondTo;
    std::size_t length;
};

constexpr Form forms[] = {
    {0x00, 0x7F, 0x00, 0xFF, 1}, {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

bool isBetween(char byte, std::uint8_t from, std::uint8_t to) {
    const auto value = static_cast<std::uint8_t>(byte);
    return from <= value && value <= to;
}

} // namespace

std::size_t utf8Length(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    const auto* form = std::ranges::find_if(forms, [text](const Form& candidate) {
        return isBetween(text.front(), candidate.firstFrom, candidate.firstTo);
    });
    if (form == std::ranges::end(forms) || text.size() < form->length) {
        return 0;
    }
    if (form->length > 1 && !isBetween(text[1], form->secondFrom, form->secondTo)) {
        return 0;
    }
    for (std::size_t i = 2; i < form->length; ++i) {
        if (!isContinuation(text[i])) {
            return 0;
        }
    }
    return form->length;
}

bool isContinuation(char byte) {
    return isBetween(byte, 0x80, 0xBF);
}

std::string_view utf8Beginning(std::string_view text, std::size_t most) {
    if (text.size() <= most) {
        return text;
    }
    // A character has no more than three bytes behind its first one.
    const std::size_t least = most - std::min<std::size_t>(most, 3);
    std::size_t length = most;
    while (length > least && isContinuation(text[length])) {
        --length;
    }
    return text.substr(0, length);
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        // Most texts have ASCII only, which needs no closer look.
        const auto isAscii = [](char byte) { return isBetween(byte, 0x00, 0x7F); };
        text.remove_prefix(
            static_cast<std::size_t>(std::ranges::find_if_not(text, isAscii) - text.begin()));
        const std::size_t length = utf8Length(text);
        if (length == 0) {
            return text.empty();
        }
        text.remove_prefix(length);
    }
    return true;
}

std::string validUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        if (length == 0) {
            result += "\xEF\xBF\xBD";
            text.remove_prefix(1);
        } else {
            result += text.substr(0, length);
            text.remove_prefix(length);
        }
    }
    return result;
}

} // namespace consolidator
