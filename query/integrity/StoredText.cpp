#include "query/integrity/StoredText.h"

#include "shared/Printable.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace consolidator {

namespace {

/// The bytes of a text that are enough to tell which one is meant.
constexpr std::size_t longestBeginning = 80;

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
        // One more, which tells whether there is more.
        beginning_ += text.substr(0, longestBeginning + 1 - beginning_.size());
    }
}

std::string StoredText::quoted() const {
    return quotedShortPrintable(beginning_, longestBeginning);
}

} // namespace consolidator
