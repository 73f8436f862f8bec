#include "query/BitRun.h"

#include "shared/Numbers.h"

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string_view>

namespace consolidator {

std::string rangeText(std::uint32_t from, std::uint32_t to) {
    std::string text = std::to_string(from);
    if (to != from) {
        text += '-' + std::to_string(to);
    }
    return text;
}

std::string bitsText(const BitRun& run) {
    std::string text = std::to_string(run.last);
    if (run.last != run.first) {
        text += ':' + std::to_string(run.first);
    }
    return text;
}

std::string addressText(std::uint32_t address) {
    constexpr std::size_t digits = 8;
    return inHex(address, digits);
}

std::size_t bitsWidth(std::uint32_t bits) {
    const std::size_t digits = std::to_string(std::max(bits, 1U) - 1).size();
    return bits <= 1 ? digits : 2 * digits + 1;
}

void printBitRuns(std::ostream& out, const LocationList& locations, std::string_view indent) {
    if (locations.empty()) {
        out << indent << "no bits\n";
        return;
    }
    const std::size_t width = bitsWidth(locations.size()) +
                              std::string_view(locations.size() == 1 ? "bit " : "bits ").size();
    forEachBitRun(locations, [&](const BitRun& run) {
        std::string bits(run.first == run.last ? "bit " : "bits ");
        bits += bitsText(run);
        bits.append(std::max(width, bits.size()) - bits.size(), ' ');
        out << indent << bits << "  ";
        if (!run.isLocated()) {
            out << "not located\n";
            return;
        }
        out << "frame " << addressText(run.place.address)
            << (run.first == run.last ? "  offset " : "  offsets ")
            << rangeText(run.place.offset, run.lastOffset()) << '\n';
    });
}

} // namespace consolidator
