// Reader of the kernel metadata that high-level synthesis writes: which hardware condition belongs
// to which source line, and which register holds which source variable.
//
// One file describes one kernel, whose name is the file's name without folder and without its last
// four characters (the extension). It is read line by line, as words between white space:
//
//     Begin Function scale                       functions may nest; each one must end
//     RTL 1 state2 (fsm_state2 == 1'b1)          an entry: two words that are skipped, a condition
//     local sum                                  a variable of the entry, with its block behind it:
//     at: scale.cpp:12                             a source line of the entry (FILE:LINE)
//     reg: sum_reg[31:0]                           the variable's register
//     end sum_reg[31:0] 32                         ends the block; its second word is the register
//     End Function scale                         the name is not compared
//
// A line that is empty or begins with a blank or a tab is skipped, words and all. Any other line is
// not accepted and makes the whole file unusable.
//
// Block lines have exactly two words, the second with a ":" in it. The first line that is not like
// that ends the block, is consumed, and sets the register in any case: an empty line, or the end of
// the file, leaves the variable with an empty register name. Lines that begin with a blank or a tab
// are skipped here too; an empty line is not.
//
// An entry counts only with a source line, and only if no entry before it has the same first line
// number; its variables are passed over together with it.
#pragma once

#include "consolidated/InputFile.h"
#include "model/Kernel.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator {

class HLSFile final : public InputFile {
public:
    /// The most characters that a line may have.
    static constexpr std::size_t longestLine = 1022;

    /// A register as the file names it: NAME[HIGH:LOW].
    struct Register {
        std::string_view name;
        std::uint32_t width;
    };

    /// One local variable and the register that holds it.
    struct HlsVariable {
        std::string name;
        std::string rtlName;
        std::uint32_t width = 1;

        void setRegister(const Register& range);
    };

    /// One "RTL" line and what follows it.
    struct RtlEntry {
        std::uint64_t lineNumber = 0; ///< Where the "RTL" line stands.
        std::string condition;
        std::vector<std::string> files;
        std::vector<std::uint32_t> lines; ///< The n-th belongs to the n-th file.
        std::vector<HlsVariable> variables;
    };

    using InputFile::InputFile;

    /// Appends one kernel, without a type, with a condition for each entry that counts and with the
    /// entries' variables. Fails, always in silence, when the file is not open or cannot be read,
    /// on a line that is not accepted or too long, on a variable or source line before the first
    /// entry, and on functions that do not end or end without having begun.
    bool parse() override;

    /// All entries of the file, also those that do not count, which the kernel lacks.
    const std::deque<RtlEntry>& entries() const { return entries_; }

private:
    /// A "Begin Function" line.
    struct Function {
        std::string name;
        std::uint64_t lineNumber;
    };

    static Register registerRange(std::string_view word);

    std::string_view nextLine();
    bool dispatch(std::string_view text);
    bool endFunction();
    void addEntry(std::string_view words);
    bool readBlock(std::string_view name);
    void skipIndentedLines();
    bool readBlockLine(std::string_view text, HlsVariable& variable);
    std::string kernelName() const;
    void convertEntries(Kernel& kernel);

    std::vector<Function> functions_; ///< The functions that have begun and not ended.
    std::deque<RtlEntry> entries_;    ///< Never moved: there may be millions of empty ones.
    std::vector<char> buffer_ = std::vector<char>(longestLine + 1);
    std::uint64_t lineNumber_ = 0; ///< Of the line in the buffer.
};

} // namespace consolidator
