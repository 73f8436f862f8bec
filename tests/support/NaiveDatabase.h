// A database read, merged and written in the plainest way, straight from the description of its
// format, for the program to be compared with byte for byte. It works on whole files in memory and
// shares nothing with the program.
//
//     NaiveDatabase database = NaiveDatabase::read(bytes);
//     database.merge({.name = "scale_rows"});
//     EXPECT_EQ(directory.read("db"), database.write());
#pragma once

#include "tests/support/KnownKernels.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

struct NaiveDatabase {
    /// A table entry; offsets are made anew whenever a database is written.
    struct Section {
        std::uint32_t type = 0;
        std::uint32_t padding1 = 0;
        std::uint32_t size = 0;
        std::uint32_t padding2 = 0;
    };

    std::uint32_t major = 1; ///< As read; what is written is always 1.1.
    std::uint32_t minor = 1;
    std::vector<Section> sections;
    std::string project;
    std::optional<std::string> dwarf;
    std::vector<KnownKernel> kernels;

    /// Whether the file was read to the end of its last section.
    bool complete = true;
    /// Whether reading ended at a section of unknown type.
    bool stoppedAtUnknownType = false;

    /// What a file of these bytes holds, however damaged it is. What the JSON form derives from
    /// other fields (bit widths, path suffixes) is only filled in by write().
    static NaiveDatabase read(const std::string& bytes);

    /// What "-p NAME" does.
    void setProject(std::string_view name);
    /// What "-d FILE" does with a file of these bytes.
    void addDwarf(std::string_view bytes);
    /// What an input does that describes this kernel.
    void merge(const KnownKernel& kernel);

    /// The file as it is written at the end of a run. Like the program, it translates conditions on
    /// the way, and these stay translated.
    std::string write();
};

} // namespace consolidator::test
