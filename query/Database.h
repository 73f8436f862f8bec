// A consolidated file as the inspector's commands look at it.
#pragma once

#include "consolidated/ConsolidatedFile.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace consolidator {

/// What one consolidated file holds, in memory, and what kept it from being read whole.
///
/// It is read by the consolidator's own code, so that what the inspector shows is what a run would
/// add to. `verify` looks at the bytes with other eyes: see ContainerCheck.
class Database {
public:
    enum class Readable {
        Whole,
        InPart, ///< There is more in the file than could be read.
        Not,    ///< It is no consolidated file, or of a version that this program does not know.
    };

    enum class Extent {
        All,
        Table, ///< Header and section table: no DWARF and no kernels.
    };

    /// To be called once. Afterwards fault() says why the file, as far as it was to be read, is not
    /// Whole.
    Readable read(const std::string& path, Extent extent = Extent::All);

    /// In words that follow "error: "; empty when the file was read whole.
    const std::string& fault() const { return fault_; }

    const std::string& path() const { return path_; }
    std::uint64_t fileSize() const { return fileSize_; }

    const ConsolidatedFile::Header& header() const { return content_->header(); }
    const std::vector<SectionEntry>& sections() const { return content_->sections(); }
    const std::string& project() const { return content_->project(); }
    const std::optional<std::string>& dwarf() const { return content_->dwarf(); }
    const std::vector<Kernel>& kernels() const { return content_->kernels(); }

    /// The same as the consolidator has it, for inputs to be added to.
    ConsolidatedFile& content() { return *content_; }

private:
    bool readContent(Extent extent);

    std::string path_;
    std::string fault_;
    std::uint64_t fileSize_ = 0;
    // ConsolidatedFile owns a stream and stays where it is; a Database may be moved.
    std::unique_ptr<ConsolidatedFile> content_ = std::make_unique<ConsolidatedFile>();
};

/// Why the file cannot be opened for reading at any place of it, in words as of fault(); empty if
/// it can be.
std::string openingFault(const std::string& path);

} // namespace consolidator
