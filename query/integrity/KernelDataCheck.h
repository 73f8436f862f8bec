// The strict check of a kernel data section: record by record, every length and every count.
//
//     number of kernels, then each kernel:
//       name                  text
//       instance paths        count, then a text each
//       type                  number
//       arguments, variables  count, then each: source name, hardware name, type; number of
//                             instances, then per instance a number of locations and the locations
//       registers             count, then each: net; number of bits, then a location for each
//       conditions            count, then each: kind, condition and, for kind 2, line and file
//       BRAM names            count, then a text each
//
// A text is its length and its bytes, a location two numbers; numbers have four bytes.
#pragma once

#include "query/integrity/ByteRange.h"
#include "query/integrity/DatabaseFindings.h"
#include "query/integrity/StoredText.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator {

/// Checks one section. It reads the bytes itself, by the format alone: the model's own reading is
/// what it is there to be compared with.
///
/// Memory grows with the longest list, by 16 bytes for each of its elements.
class KernelDataCheck {
public:
    /// The section's payload stands from `begin` to `end`; `section` names it in findings.
    KernelDataCheck(const FileBytes& file, std::uint64_t begin, std::uint64_t end,
                    std::string section, DatabaseFindings& findings);

    /// To be called once. False if there is a record that cannot be read, which ends the check.
    bool check();

    /// How many kernels there are, as far as they could be read.
    std::uint64_t kernels() const { return kernels_; }

    /// Whether a text holds a zero byte, which readers take for its end.
    bool hasZeroBytes() const { return hasZeroBytes_; }

private:
    /// A list of a record.
    struct List {
        std::string_view element;    ///< What one of its elements is called.
        std::string_view countName;  ///< What the number in front of them is called.
        bool isUnique = true;        ///< No run puts two elements of one key into it.
        std::uint64_t textBegin = 0; ///< Where in an element its key, or a text of it, stands.
    };

    /// A list that the check is in.
    struct Level {
        std::string_view element;
        std::uint32_t number = 0; ///< Of the current element, from 1.
        std::uint32_t count = 0;
        std::optional<StoredText> name = {}; ///< Of the current element, if it is known.
    };

    class Repeats;

    /// The hash of an element's key; nothing if the element cannot be read.
    using Key = std::optional<std::uint64_t>;

    Key checkKernel();
    Key checkVariable();
    Key checkRegister();
    Key checkCondition();
    Key checkText();
    bool checkType();
    bool checkLocations(std::string_view what, std::uint32_t& count);
    void reportTooMany(std::uint64_t offset, std::string_view what, std::uint32_t count);

    template <typename CheckOne>
    bool checkList(const List& list, CheckOne checkOne);
    void reportRepeats(const List& list, Repeats& repeats);

    std::optional<std::uint32_t> number(std::string_view what);
    std::optional<StoredText> text(std::string_view what);

    template <typename Text>
    void add(Severity severity, std::uint64_t offset, Text makeText);
    std::string here() const;

    const FileBytes* file_;
    ByteRange bytes_;
    std::uint64_t end_;
    std::string section_;
    DatabaseFindings* findings_;
    std::vector<Level> levels_; ///< The innermost one last.
    std::uint64_t kernels_ = 0;
    bool hasZeroBytes_ = false;
};

} // namespace consolidator
