#include "inspect/StoredText.h"

#include "inspect/Printable.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace consolidator::inspect {

namespace {

/// So many bytes tell a reader which text is meant.
constexpr std::size_t longestBeginning = 80;

/// The text without what may be the first bytes of a character that was cut.
std::string_view withoutHalfCharacter(std::string_view text) {
    const auto isPart = [](char byte) { return static_cast<std::uint8_t>(byte) >= 0x80; };
    while (!text.empty() && isPart(text.back())) {
        const bool isFirst = static_cast<std::uint8_t>(text.back()) >= 0xC0;
        text.remove_suffix(1);
        if (isFirst) {
            break;
        }
    }
    return text;
}

} // namespace

StoredText::StoredText(ByteRange& bytes, std::uint64_t length) {
    // Always the same pieces, wherever the text stands: they make the hash.
    std::array<char, 4096> piece; // NOLINT(cppcoreguidelines-pro-type-member-init)
    for (std::uint64_t left = length; left > 0;) {
        const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(left, piece.size()));
        left -= size;
        if (hasZero_ || !bytes.read(std::span(piece).first(size))) {
            bytes.skip(left + (hasZero_ ? size : 0));
            return;
        }
        std::string_view text(piece.data(), size);
        hasZero_ = text.find('\0') != std::string_view::npos;
        text = text.substr(0, text.find('\0'));
        if (!text.empty()) {
            hash_.add(text);
        }
        const std::size_t room = longestBeginning - beginning_.size();
        isCut_ = isCut_ || text.size() > room;
        beginning_ += text.substr(0, room);
    }
}

std::string StoredText::quoted() const {
    std::string result = "\"";
    result += printable(isCut_ ? withoutHalfCharacter(beginning_) : beginning_);
    result += isCut_ ? "…\"" : "\"";
    return result;
}

} // namespace consolidator::inspect
