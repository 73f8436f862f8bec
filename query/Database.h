// A consolidated file, opened for reading only, with the reason why it cannot be read.
//
//     Database database;
//     if (database.read("accelerator.bin") != Database::Readable::Whole) {
//         std::cerr << database.path() << ": " << database.error() << '\n';
//     }
//     for (const Kernel& kernel : database.kernels()) {
#pragma once

#include "consolidated/ConsolidatedFile.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace consolidator {

/// What one consolidated file holds, in memory, and what kept it from being read whole. It owns all
/// that it returns references to, and a Database that it is moved to does so after it.
///
/// It is read by the consolidator's own code, so that what it shows is what a run would add to.
/// ContainerCheck looks at the bytes with other eyes.
class Database {
public:
    /// How much of the file could be read.
    enum class Readable {
        Whole,  ///< All of it, or all that was to be read.
        InPart, ///< There is more in the file than could be read.
        Not,    ///< It is no consolidated file, or of a version that this program does not know.
    };

    /// How much of the file is to be read.
    enum class Extent {
        All,
        Table, ///< Header and section table: no DWARF and no kernels.
    };

    /// Reads the regular file at `path`, which is never written to. What was read before goes. Then
    /// error() says why the file, as far as it was to be read, is not Whole. Damage costs no
    /// memory: nothing is reserved for what a file only claims. Throws std::bad_alloc where there
    /// is not enough for what it holds.
    Readable read(const std::string& path, Extent extent = Extent::All);

    /// In words that follow "error: ", without a full stop; empty when the file was read whole.
    const std::string& error() const { return error_; }

    /// As it was given to read(); empty before.
    const std::string& path() const { return path_; }

    /// In bytes; 0 for a file that could not be looked at.
    std::uint64_t fileSize() const { return fileSize_; }

    /// As it stands in the file; where there is none, that of a new database.
    const ConsolidatedFile::Header& header() const { return content_->header(); }

    /// The section table, in its order, as far as it could be read.
    const std::vector<SectionEntry>& sections() const { return content_->sections(); }

    /// The project's name; empty if it has none. As all names, it may hold any byte.
    const std::string& project() const { return content_->project(); }

    /// The DWARF data; nothing if there is none, or with Extent::Table.
    const std::optional<std::string>& dwarf() const { return content_->dwarf(); }

    /// In the order in which they were first seen; of a damaged file those that could be
    /// read. None with Extent::Table.
    const std::vector<Kernel>& kernels() const { return content_->kernels(); }

    /// The first kernel of this name, which is the one that runs add to; null if there is none.
    const Kernel* kernel(std::string_view name) const;

    /// The same as the consolidator has it, for inputs to be added to, of which
    /// nothing gets into the file.
    ConsolidatedFile& content() { return *content_; }

private:
    bool readContent(Extent extent);

    std::string path_;
    std::string error_;
    std::uint64_t fileSize_ = 0;
    // ConsolidatedFile owns a stream and stays where it is; a Database may be moved.
    std::unique_ptr<ConsolidatedFile> content_ = std::make_unique<ConsolidatedFile>();
};

/// Why the file cannot be opened for reading at any place of it, in words as of error(); empty if
/// it can be.
std::string openingError(const std::string& path);

} // namespace consolidator
