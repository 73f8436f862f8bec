#include "shared/Printable.h"

#include "shared/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace consolidator {

namespace {

std::string escaped(char byte) {
    switch (byte) {
    case '\n':
        return "\\n";
    case '\t':
        return "\\t";
    // The backslash too: else a name of \ and n would look like one with a newline.
    case '\\':
        return "\\\\";
    default:
        break;
    }
    constexpr std::string_view digits = "0123456789abcdef";
    const auto value = static_cast<std::uint8_t>(byte);
    return {'\\', 'x', digits[value / digits.size()], digits[value % digits.size()]};
}

/// Characters of three bytes that take no room, break the line or turn the direction of writing
/// around: U+200B to U+200F, U+2028 to U+202E, U+2060 to U+206F and U+FEFF.
bool isInvisible(std::string_view character) {
    const auto last = static_cast<std::uint8_t>(character[2]);
    if (character.starts_with("\xE2\x80")) {
        return (last >= 0x8B && last <= 0x8F) || (last >= 0xA8 && last <= 0xAE);
    }
    return (character.starts_with("\xE2\x81") && last >= 0xA0 && last <= 0xAF) ||
           character == "\xEF\xBB\xBF";
}

bool isControl(std::string_view character) {
    const auto first = static_cast<std::uint8_t>(character.front());
    if (character.size() == 1) {
        return first < 0x20 || first == 0x7F;
    }
    if (character.size() == 2) {
        // U+0080 to U+009F, which some terminals obey as they do an escape sequence.
        return first == 0xC2 && static_cast<std::uint8_t>(character[1]) < 0xA0;
    }
    return character.size() == 3 && isInvisible(character);
}

} // namespace

std::string printable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
        if (length == 0 || isControl(character) || character == "\\") {
            for (const char byte : character) {
                result += escaped(byte);
            }
        } else {
            result += character;
        }
        text.remove_prefix(character.size());
    }
    return result;
}

std::string shortPrintable(std::string_view text, std::size_t most) {
    if (text.size() <= most) {
        return printable(text);
    }
    return printable(utf8Beginning(text, most)) + "…";
}

std::string quotedPrintable(std::string_view text) {
    return '"' + printable(text) + '"';
}

std::string quotedShortPrintable(std::string_view text, std::size_t most) {
    return '"' + shortPrintable(text, most) + '"';
}

std::size_t columns(std::string_view text) {
    return text.size() - static_cast<std::size_t>(std::ranges::count_if(text, isContinuation));
}

} // namespace consolidator
