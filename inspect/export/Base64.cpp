#include "inspect/export/Base64.h"

#include <cstdint>

namespace consolidator::inspect {

namespace {

constexpr std::string_view digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Appends the four characters of one to three bytes.
void appendGroup(std::string& text, std::string_view group) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < base64Group; ++i) {
        bits = bits << 8 | (i < group.size() ? static_cast<std::uint8_t>(group[i]) : 0U);
    }
    for (std::size_t i = 0; i <= base64Group; ++i) {
        text += i <= group.size() ? digits[bits >> (18 - 6 * i) & 0x3F] : '=';
    }
}

} // namespace

std::string base64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + base64Group - 1) / base64Group * (base64Group + 1));
    for (std::size_t at = 0; at < bytes.size(); at += base64Group) {
        appendGroup(text, bytes.substr(at, base64Group));
    }
    return text;
}

} // namespace consolidator::inspect
