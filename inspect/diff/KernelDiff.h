// What differs between two records of one kernel.
#pragma once

#include "inspect/diff/DiffPrinter.h"
#include "inspect/diff/ListMatch.h"
#include "model/Kernel.h"

#include <span>
#include <string>
#include <vector>

namespace consolidator::inspect {

/// Compares two kernels of the same name, list by list: instance paths and BRAM names as they are,
/// arguments and variables by source name, registers by net, conditions by kind and source line.
class KernelDiff {
public:
    /// All three must outlive the comparison.
    KernelDiff(const Kernel& before, const Kernel& after, DiffPrinter& printer)
        : before_(&before), after_(&after), printer_(&printer) {}

    /// Prints each difference.
    void run();

private:
    void compareTypes();
    void compareTexts(const std::string& word, const std::vector<std::string>& before,
                      const std::vector<std::string>& after);
    void compareVariables(const std::string& word, std::span<const Variable> before,
                          std::span<const Variable> after);
    void compareVariable(const std::string& word, const Variable& before, const Variable& after);
    void compareRegisters();
    void compareBits(const std::string& what, const LocationList& before,
                     const LocationList& after);
    void compareConditions();

    template <typename List, typename Name, typename Describe, typename Compare>
    void compareLists(const std::string& word, const List& before, const List& after, Name name,
                      Describe describe, Compare compare);

    const Kernel* before_;
    const Kernel* after_;
    DiffPrinter* printer_;
};

/// "order of the registers: B comes before A", from the names after.
template <typename NameOf>
void reportOrder(const std::string& word, const ListMatch& match, NameOf nameOf,
                 DiffPrinter& printer) {
    if (const auto moved = match.firstOutOfOrder()) {
        printer.changed("order of the " + word + "s: " + nameOf(moved->first) +
                        " now comes before " + nameOf(moved->second));
    }
}

} // namespace consolidator::inspect
