// The consolidated debug database of one project: its file format, and the merging of what the
// readers find.
//
// The file, all numbers little-endian:
//
//     offset 0    header, 16 bytes
//                   u32 magic          0xBEEFDAD4 (bytes d4 da ef be)
//                   u32 major version  1
//                   u32 minor version  1
//                   u32 N              number of sections
//     offset 16   section table, N entries of 24 bytes
//                   u32 type, u32 padding, u64 offset, u32 size, u32 padding
//     16 + 24 N   the sections' payloads in table order, without gaps
//                   (but for one behind the table when entries were dropped)
//
//     type 0  project name   its bytes
//     type 1  DWARF          the bytes of the DWARF metadata file
//     type 2  kernel data    u32 kernel count, then each kernel (see Kernel.h)
//     type 3  kernel JSON    {  "Kernels" : [ KERNEL, KERNEL ] } and a zero byte
//
// Rendering the JSON section translates each kernel's breakable conditions in place. So a kernel
// data section that comes behind the JSON section, as in every new file, holds translated
// conditions, one that comes before it the untranslated ones, and a file that is read and written
// again has its conditions translated again. Debuggers know the files so; it stays.
#pragma once

#include "consolidated/FileHandle.h"
#include "consolidated/InputFile.h"
#include "consolidated/SectionEntry.h"
#include "model/Kernel.h"
#include "shared/FileReplacement.h"
#include "shared/UniqueList.h"

#include <cstdint>
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator {

/// One database in memory, opened once for one run.
///
/// It prints nothing. Until all is written, the old file stays as it was (see FileReplacement), so
/// that a run which is refused or interrupted, and a full disk, leave it. Positions in the file are
/// signed 32-bit numbers, so databases of 2 GiB or more are not supported: a JSON document that
/// would reach beyond is left out, with a size of 0, and sections that would begin beyond are left
/// out with their entries.
///
/// What a damaged or hostile file costs is bounded by its size: reading ends, as at any damage,
/// when the sections together have been 64 KiB longer than the file, which only overlapping ones
/// can be. When it is written again, a kind of section is repeated only while its sections hold
/// less than 1 MiB, and project names while they hold less than that and the file together, which
/// those of a series of runs always do; entries beyond that go, and leave a gap between the table
/// and the first payload.
class ConsolidatedFile {
public:
    /// The first 16 bytes of the file.
    struct Header {
        std::uint32_t magic = magicNumber;
        std::uint32_t majorVersion = supportedMajor;
        std::uint32_t minorVersion = supportedMinor;
        std::uint32_t sectionCount = 0;
    };

    static constexpr std::uint32_t magicNumber = 0xBEEFDAD4;
    static constexpr std::uint32_t supportedMajor = 1;
    static constexpr std::uint32_t supportedMinor = 1;

    /// Reads what the file at `path` holds, unless `create` is set, then opens it: for reading if
    /// `dumpOnly` is set, else for writing. Its content stays until write(), but for a device, and
    /// for a file that is the standard output. Returns false when it cannot be opened; that it
    /// could not be read is no failure.
    ///
    /// For a dump only header, table and project name are kept, which are the same as without:
    /// DWARF and kernels are passed over, and not even that behind the last project name.
    bool open(const std::string& path, bool create, bool dumpOnly);

    /// Opens the file that write() will replace, as open() does; reads nothing. False, with errno,
    /// when that is impossible.
    bool openTarget(const std::string& path);

    /// Adds the content of the file at `path`. False when it is not a whole consolidated file; what
    /// was read before the fault stays, except for the half-read last kernel or payload. A file
    /// without the magic number adds nothing at all.
    bool readExisting(const std::string& path);

    /// Sets the project's name and appends a section for it. A section that is there already is
    /// not looked for: every run that names a project leaves one more, all with the same name.
    void setProject(std::string_view name);

    /// Takes in a DWARF metadata file as it is. Nothing happens when the database has a DWARF
    /// section already, or when the file is empty, cannot be read, or is larger than 2 GiB - 1.
    void addDwarf(const std::string& path);

    /// Runs one reader and merges its kernels. An input that cannot be opened or used, also one
    /// whose reader throws, adds nothing. Returns whether the reader went through.
    bool addInputFile(InputFile& reader);

    /// The second half of it: merges the kernels of a reader that has succeeded. `observer`, unless
    /// null, is told what of them the project does not take over.
    void addKernelsOf(InputFile& reader, MergeObserver* observer = nullptr);

    /// Merges a kernel into the first one of its name (see Kernel::merge), or appends it if the
    /// name is new. `observer` as of addKernelsOf().
    void mergeKernel(Kernel kernel, MergeObserver* observer = nullptr);

    /// Writes the whole file anew, translating the kernels' conditions on the way. To be called
    /// once for each open() or openTarget(), and without effect before it. What cannot be written
    /// whole leaves the old file. Returns whether all has got into place; errno says why not.
    bool write();

    /// Whether an input of this path is the file that write() will replace. Such an input counts
    /// as empty.
    bool isReplaced(const std::string& path) const { return target_ && target_->isTarget(path); }

    /// Copies the payload of the first section of this type to the file at `outputPath`, which
    /// stays empty if there is none or it cannot be read. Does nothing unless the database is open
    /// and the output can be opened.
    void dumpSection(SectionType type, const std::string& outputPath);

    /// Lists header and section table, one item a line, for debugging this program.
    void printHeader(std::ostream& out = std::cout) const;

    /// Whether the file is of a newer major version than this program knows. The comparison is
    /// signed: a version with its highest bit set counts as old.
    bool isNewer() const {
        return static_cast<std::int32_t>(header().majorVersion) >
               static_cast<std::int32_t>(supportedMajor);
    }

    /// As read from the existing file, or as written last; so are the sections.
    const Header& header() const { return header_; }
    const std::vector<SectionEntry>& sections() const { return sections_; }
    const std::string& project() const { return project_; }
    /// The DWARF blob; nothing when there is none.
    const std::optional<std::string>& dwarf() const { return dwarf_; }
    /// In the order in which they were first seen.
    const std::vector<Kernel>& kernels() const { return kernels_.items(); }

private:
    struct ByName {
        std::string_view operator()(const Kernel& kernel) const { return kernel.name(); }
    };

    bool readFrom(FileHandle& file);
    bool readTable(std::FILE* file, std::uint32_t count);
    std::size_t sectionsToRead() const;
    bool readSections(std::FILE* file);
    bool readSection(std::FILE* file, const SectionEntry& entry);
    bool readDwarf(std::FILE* file, std::uint32_t size);
    bool readProject(std::FILE* file, std::uint32_t size);
    bool readKernels(std::FILE* file);

    bool copySection(SectionType type, std::FILE* output);

    bool hasSection(SectionType type) const;
    void addRequiredSections();
    bool canBeWrittenAgain() const;
    std::uint64_t measure();
    int writeInPlace(const std::vector<SectionEntry>& wanted, int fault);
    int writeTo(FileHandle stream);
    void writePayloads();
    bool writeSection(SectionEntry& entry);
    void writeDwarf(SectionEntry& entry);
    void writeProject(SectionEntry& entry);
    void writeKernels(SectionEntry& entry);
    void writeJson(SectionEntry& entry);
    void writeHeaderAndTable();

    std::unique_ptr<FileReplacement> target_; ///< Of write(); nothing for a dump.
    FileHandle stream_;                       ///< What is dumped from, or being written.
    bool create_ = false;                     ///< The old file was not read.
    bool dumpOnly_ = false;                   ///< No more is read than a dump needs.
    Header header_;
    std::vector<SectionEntry> sections_; ///< In file order.
    std::string project_;
    std::uint64_t nameRoom_ = 0; ///< Bytes of the files that were read and the names that were set.
    std::optional<std::string> dwarf_;
    UniqueList<Kernel, ByName> kernels_;
    bool isTranslated_ = false; ///< The conditions are, by a writing that was given up.
    bool jsonGivenUp_ = false;  ///< A document was begun, and what it left was not all overwritten.
};

} // namespace consolidator
