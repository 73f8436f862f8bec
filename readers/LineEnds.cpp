#include "readers/LineEnds.h"

#include <algorithm>
#include <array>
#include <cstddef>
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

} // namespace

std::span<const std::uint32_t> LineEnds::find(std::string_view text) {
    ends_.resize(std::max(ends_.size(), text.size()));
    std::array<Search, searches> parts{};
    for (std::size_t i = 0; i < searches; ++i) {
        const std::size_t begin = text.size() * i / searches;
        const std::size_t end = text.size() * (i + 1) / searches;
        parts.at(i) = {text.data() + begin, text.data() + end, ends_.data() + begin,
                       ends_.data() + begin};
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
            std::memmove(&ends_[count], part.first, found * sizeof *part.first);
        }
        count += found;
    }
    return std::span(ends_).first(count);
}

} // namespace consolidator
