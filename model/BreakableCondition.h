// One place at which a debugger may stop a kernel.
#pragma once

#include <cstdint>
#include <cstdio>
#include <iosfwd>
#include <string>
#include <string_view>

namespace consolidator {

/// A place at which a kernel may be stopped: its start, its end, or a source line.
///
/// Binary form: kind as a number, condition as a text and, for a file line only, line as a number
/// and file as a text (see BinaryForm.h).
///
/// JSON forms, by kind:
///
///     { "Start":true, "Cond":"== $i/kc_start 1'b1"}
///     { "Stop":true, "Cond":"== $i/kc_done 1'b1"}
///     { "File":"scale.cpp", "Line":12, "Cond":"== 1'b1 $i/fsm_state2"}
///     { "Error":1, "Cond":""}
struct BreakableCondition {
    /// The kinds that have a meaning; every other number is an error condition.
    enum Kind : std::uint32_t { Start = 0, Stop = 1, FileLine = 2 };

    std::uint32_t kind = Start;
    /// Source line; 0 unless the kind is FileLine. (Beside the kind it takes no more room.)
    std::uint32_t line = 0;
    /// The hardware condition; "$i" in it stands for the path of a kernel instance and is filled
    /// in by the debugger that evaluates it.
    std::string condition;
    std::string file;   ///< Source file; empty unless the kind is FileLine.
    bool valid = false; ///< True once the record is complete; no part of equality.

    /// An empty record that is not complete: what reading starts from.
    BreakableCondition() = default;

    /// A complete condition without a source line.
    BreakableCondition(std::uint32_t conditionKind, std::string_view conditionText);

    /// Reads the binary form. A short read (or a null stream) gives a record that is not valid and
    /// holds what came before it.
    explicit BreakableCondition(std::FILE* stream);

    /// Equal kind, condition, line and file.
    bool operator==(const BreakableCondition& other) const;

    /// Writes the JSON form, with nothing before or after it.
    void writeJson(std::ostream& out) const;

    /// Writes the binary form and returns the number of bytes that went out; 0 for a null stream.
    std::uint32_t write(std::FILE* stream) const;

    /// Passes over a record: reads as many bytes as reading it does and returns whether it would be
    /// valid, but keeps nothing.
    static bool skip(std::FILE* stream);

private:
    bool readFields(std::FILE* stream);
};

/// Agrees with the equality of conditions.
std::uint64_t keyHash(const BreakableCondition& condition);

} // namespace consolidator
