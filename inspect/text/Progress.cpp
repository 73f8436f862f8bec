#include "inspect/text/Progress.h"

#include "shared/Printable.h"

#include <algorithm>
#include <ostream>

namespace consolidator::inspect {

namespace {

constexpr std::chrono::milliseconds pause{100};
constexpr std::uint64_t width = 40;

/// The terminal's line is cleared, with the cursor at its front.
constexpr const char* clearedLine = "\r\x1b[K";

} // namespace

void Progress::begin(const std::string& name, std::uint64_t size) {
    end();
    if (isShown_ && size >= shortestFile) {
        name_ = printable(name);
        size_ = size;
        next_ = clock_() + pause;
    }
}

void Progress::update(std::uint64_t bytes) {
    if (size_ == 0 || clock_() < next_) {
        return;
    }
    next_ = clock_() + pause;
    const std::uint64_t read = std::min(bytes, size_); // the file may grow meanwhile
    const std::uint64_t full = read * width / size_;
    out_ << clearedLine << name_ << "  [" << std::string(full, '#')
         << std::string(width - full, '.') << "]  " << read * 100 / size_ << " %" << std::flush;
    isDrawn_ = true;
}

void Progress::end() {
    if (isDrawn_) {
        out_ << clearedLine << std::flush;
        isDrawn_ = false;
    }
    size_ = 0;
}

} // namespace consolidator::inspect
