#include "inspect/check/RepeatedBits.h"

#include "shared/Numbers.h"

namespace consolidator::inspect {

void RepeatedBits::look(const Placement& placement) {
    if (!placement.before || *placement.before == placement.location) {
        return;
    }
    if (count_++ == 0) {
        net_ = placement.net;
        bitIndex_ = placement.bitIndex;
        before_ = *placement.before;
        line_ = placement.line;
    }
}

void RepeatedBits::lookAgain(const Placement& placement) {
    if (placement.line < line_ && placement.bitIndex == bitIndex_ &&
        placement.location == before_ && placement.net == net_) {
        lineBefore_ = placement.line; // the last one counts
    }
}

void RepeatedBits::report(const std::string& path, Findings& findings) const {
    // It is not found again if the file has changed in between.
    const std::string earlier =
        lineBefore_ == 0 ? "an earlier line" : "line " + std::to_string(lineBefore_);
    findings.add({path, line_, Severity::Warning, Code::RepeatedBit,
                  earlier + " places the same bit elsewhere, and the later line counts" +
                      (count_ > 1 ? "; there are " + inWords(count_ - 1, "more such line") : "")});
}

} // namespace consolidator::inspect
