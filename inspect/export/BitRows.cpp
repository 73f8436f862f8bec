#include "inspect/export/BitRows.h"

#include <initializer_list>
#include <span>

namespace consolidator::inspect {

void BitRows::add(std::int64_t owner, std::uint32_t bit, LogicLocation location) {
    for (const std::int64_t number :
         std::initializer_list<std::int64_t>{owner, bit, location.address, location.offset}) {
        waiting_[count_++] = number;
    }
    if (count_ == waiting_.size()) {
        batch_.runNumbers(waiting_);
        count_ = 0;
    }
}

void BitRows::finish() {
    for (std::size_t i = 0; i < count_; i += columns) {
        one_.runNumbers(std::span(waiting_).subspan(i, columns));
    }
    count_ = 0;
}

} // namespace consolidator::inspect
