// Reader of a logic-location file, written during bitstream generation: where each storage bit of a
// net lies in the configured device.
//
// The file is read line by line:
//
//     ; a comment
//     Revision 3                                                        the header
//     Bit 26214438 0x00402a1f 2214 TILE_X1Y2 0 Latch=Q Net=top/k_1/inst/state_r[3]
//
//     Bit       the first word of every other line
//     26214438  position in the bitstream, decimal; not kept
//     0x…       frame address, hexadecimal with or without "0x"; its low 32 bits are kept
//     2214      offset in the frame, decimal
//     TILE_…    a word; not kept
//     0         a decimal number; not kept
//     …         words; "Net=" begins the net's name, the last such word of the line counts
//
// A net's name gets a "/" in front. A bit index at its end, "[3]", goes and gives the bit; without
// one the bit is 0.
//
// A net belongs to a kernel if one of the kernel's instance paths occurs anywhere in it ("top/k_1"
// in "/top/k_10/x" too) and if its last path component is the hardware name of one of the kernel's
// arguments or variables. It then becomes a hardware variable of the kernel, which keeps the
// location of each bit; a later line for the same bit wins.
//
// Numbers are what a standard stream makes of them: of "12abc" the number is 12, and "abc" is what
// the next field begins with; "-1" is the largest number. A line whose numbers cannot be read
// yields nothing.
#pragma once

#include "consolidated/InputFile.h"
#include "model/Kernel.h"
#include "readers/LocationBudget.h"
#include "readers/LogicLocationObserver.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator {

class LLFile final : public InputFile {
public:
    /// The most characters that a line may have.
    static constexpr std::size_t longestLine = 2046;

    /// A line with this text in it is the header, whatever else it has.
    static constexpr std::string_view headerWord = "Revision";

    /// Bits of a register are numbered below this. A register's list has an entry for each bit up
    /// to the highest one seen, so the number decides how much of the database it takes. Real
    /// registers stay below a hundred thousand bits; lines beyond the limit are skipped, and so is
    /// what goes beyond the LocationBudget.
    static constexpr std::uint32_t bitLimit = std::uint32_t{1} << 24;

    using InputFile::InputFile;

    /// Gives the reader the kernels to match nets against; it works on this copy. To be called
    /// before parse().
    void setKernels(std::vector<Kernel> kernels) {
        project_ = nullptr;
        lacksRegisters_.clear();
        kernels_ = std::move(kernels);
    }

    /// Gives the reader the kernels of a project instead, which it neither copies nor changes; they
    /// must stay where they are until parse() is done. To be called before it.
    ///
    /// The reader's own kernels are then what the project still has to take over with
    /// ConsolidatedFile::mergeKernel, which comes to the same as merging a changed copy of each:
    /// for the first kernel of a name a kernel with nothing but this name and registers, for the
    /// others, which the first one takes in, a whole copy.
    void setProject(const std::vector<Kernel>& project);

    /// Gives the reader another budget than a fresh one, for example what another file has left. To
    /// be called before parse().
    void setBudget(const LocationBudget& budget) { budget_ = budget; }
    const LocationBudget& budget() const { return budget_; }

    /// Has the observer, which must stay until parse() is done, told what is read. To be called
    /// before it.
    void observe(LogicLocationObserver& observer) { observer_ = &observer; }

    /// Adds the locations of the nets that belong to the kernels. Fails in silence when the file is
    /// not open or cannot be read, and on a line that is too long or begins with another word than
    /// "Bit"; the kernels keep what came before. An empty file succeeds, one that begins with an
    /// empty line does not.
    bool parse() override;

private:
    class Reading;

    const std::vector<Kernel>* project_ = nullptr; ///< Null when the base's kernels are it.

    /// Per kernel of the base, whether it still lacks the registers that it has in the project.
    std::vector<bool> lacksRegisters_;

    LocationBudget budget_;
    LogicLocationObserver* observer_ = nullptr;
};

} // namespace consolidator
