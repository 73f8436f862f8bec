#include "readers/LineScanner.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace consolidator {

namespace {

constexpr std::size_t searches = 4;

/// One of the four: what is left of its part, and what it has found.
struct Search {
    const char* position;
    const char* end;
    std::uint32_t* first;
    std::uint32_t* behindLast;

    /// Whether there was one more newline.
    bool findNext(const char* text) {
        const auto* const newline = static_cast<const char*>(
            std::memchr(position, '\n', static_cast<std::size_t>(end - position)));
        if (newline == nullptr) {
            position = end;
            return false;
        }
        *behindLast++ = static_cast<std::uint32_t>(newline - text);
        position = newline + 1;
        return true;
    }
};

/// Finds the positions of all newlines of a text below 4 GiB, ascending. They are in `ends`, which
/// grows as far as needed.
///
/// A search for the next newline is quick, but begins where the one before has ended, and so waits
/// for it: for lines of 80 bytes that is most of the time. So the text is cut in four, and four
/// searches that need not wait for each other take turns. That halves the time.
std::span<const std::uint32_t> findEnds(std::string_view text, std::vector<std::uint32_t>& ends) {
    // Each byte may be a newline. It never shrinks, as growing again would fill it with zeros.
    ends.resize(std::max(ends.size(), text.size()));
    std::array<Search, searches> parts{};
    for (std::size_t i = 0; i < searches; ++i) {
        const std::size_t begin = text.size() * i / searches;
        const std::size_t end = text.size() * (i + 1) / searches;
        parts.at(i) = {text.data() + begin, text.data() + end, ends.data() + begin,
                       ends.data() + begin};
    }
    bool isGoingOn = !text.empty();
    while (isGoingOn) {
        isGoingOn = false;
        for (Search& part : parts) {
            isGoingOn = part.findNext(text.data()) || isGoingOn;
        }
    }
    std::size_t count = 0;
    for (const Search& part : parts) {
        const auto found = static_cast<std::size_t>(part.behindLast - part.first);
        if (found > 0) { // they may overlap
            std::memmove(&ends[count], part.first, found * sizeof *part.first);
        }
        count += found;
    }
    return std::span(ends).first(count);
}

} // namespace

LineScanner::Piece LineScanner::next(std::string_view ahead) {
    const Piece piece = pieceOf(ahead, pieceSize_);
    // Without the end of a line in it the piece was too small, or the line is too long.
    return piece.ends.empty() ? pieceOf(ahead, longestLine_ + 1) : piece;
}

LineScanner::Piece LineScanner::pieceOf(std::string_view ahead, std::size_t size) {
    // A zero byte, which no usual line has, is as good as the end.
    std::string_view text = ahead.substr(0, size);
    text = text.substr(0, text.find('\0'));
    return {text, findEnds(text, ends_)};
}

void LineScanner::took(const Piece& piece, std::size_t lines) {
    if (lines < piece.lineCount()) {
        pieceSize_ = std::clamp(2 * piece.startOf(lines), smallestPiece, largestPiece);
    } else if (lines > 0) {
        pieceSize_ = std::min(2 * pieceSize_, largestPiece);
    }
}

} // namespace consolidator
