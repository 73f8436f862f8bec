#include "query/integrity/Repeats.h"

#include <algorithm>
#include <tuple>

namespace consolidator {

std::vector<Repeats::Repeat> Repeats::take() {
    std::ranges::sort(elements_, [](const Element& left, const Element& right) {
        return std::tie(left.keyHash, left.offset) < std::tie(right.keyHash, right.offset);
    });
    std::vector<Repeat> repeats;
    for (std::size_t begin = 0; begin < elements_.size();) {
        std::size_t end = begin + 1;
        while (end < elements_.size() && elements_[end].keyHash == elements_[begin].keyHash) {
            ++end;
        }
        if (end - begin > 1) {
            repeats.push_back({elements_[begin].offset, elements_[begin + 1].offset, end - begin});
        }
        begin = end;
    }
    elements_.clear();
    std::ranges::sort(repeats, {}, &Repeat::second);
    return repeats;
}

} // namespace consolidator
