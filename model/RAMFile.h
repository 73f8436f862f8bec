// Reader of the RAM utilization report of synthesis: which block-RAM cells lie in which instance.
//
// The report is plain text with numbered headings and tables whose cells stand between "|":
//
//     3. Memory Utilization - Inferred                  a title in the table of contents
//     8. Block Ram / URAM Memory Power - Instantiated   the last title: the contents are over
//     3. Memory Utilization - Inferred                  now a heading: a wanted table follows
//     ----------------------------------
//     | top/k_1/ram_reg   | RAMB_BIG   | …              a row
//     4. Memory Performance - Inferred                  ends the table
//     6. Memory Utilization - Instantiated              the other wanted table
//     7. Memory Utilization - Instantiated              ends it
//
// Headings are whole lines, to the letter. A row belongs to a kernel if its first cell contains one
// of the kernel's instance paths and its second cell contains "RAMB". Rows of fewer cells match
// nothing.
//
// This is the one file of model/ that knows the base of the readers.
#pragma once

#include "consolidated/InputFile.h"
#include "model/Kernel.h"
#include "model/KernelIndex.h"
#include "shared/Marks.h"
#include "shared/PathFinder.h"

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator {

/// Matches the report's cells against the kernels of a project.
///
/// The project's kernels stay as they are: their lists of BRAM names are not filled from the
/// report, which debuggers rely on. What matched is noted in the diagnostic, once per row with the
/// first of its kernels and the number of the others.
class RAMFile final : public InputFile {
public:
    /// The most characters that a line may have.
    static constexpr std::size_t longestLine = 2046;

    /// `projectKernels` is not owned and must outlive the reader, whose own list stays empty.
    RAMFile(const std::string& path, const std::vector<Kernel>& projectKernels,
            std::ostream& errors = std::cerr);

    /// The same on a text in memory.
    RAMFile(std::unique_ptr<std::streambuf> source, const std::vector<Kernel>& projectKernels,
            std::ostream& errors = std::cerr);

    /// Whether a heading of a wanted table was met behind the table of contents.
    bool hasTable() const { return hasTable_; }

    /// How many rows of wanted tables are those of block RAMs, whatever instance they lie in.
    std::uint64_t blockRamCount() const { return blockRamCount_; }

    /// Fails only when the file is not open. A line that is too long ends the reading.
    bool parse() override;

private:
    /// The instance paths of all kernels.
    struct Paths {
        explicit Paths(const std::vector<Kernel>& kernels);

        KernelIndex index;
        PathFinder finder;
        Marks counted; ///< The kernels that were found for a row.
    };

    /// The kernels that a block RAM belongs to.
    struct Owners {
        std::uint32_t first = std::numeric_limits<std::uint32_t>::max();
        std::size_t count = 0;
    };

    void parseLine(std::string_view text);
    void enterSection(std::string_view text);
    void matchRow(std::string_view row);
    Owners ownersOf(std::string_view name);
    std::string described(const Owners& owners) const;

    const std::vector<Kernel>* projectKernels_;
    std::optional<Paths> paths_; ///< While reading.
    std::uint32_t section_ = 0;  ///< 3 or 6 inside a wanted table, 4 or 7 behind it, else 0.
    bool pastContents_ = false;  ///< The table of contents is over.
    std::uint64_t lineNumber_ = 0;
    bool hasTable_ = false;
    std::uint64_t blockRamCount_ = 0;
};

} // namespace consolidator
