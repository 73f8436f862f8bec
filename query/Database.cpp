#include "query/Database.h"

#include "query/integrity/ContainerCheck.h"
#include "shared/Numbers.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace consolidator {

namespace {

/// The first error in a file that could not be read whole.
Finding firstError(const std::string& path) {
    DatabaseFindings found;
    ContainerCheck(found).check(path);
    for (const Finding& finding : found.kept()) {
        if (finding.severity == Severity::Error) {
            return finding;
        }
    }
    return {"", 0, Severity::Error, Code::None, "the file has changed meanwhile"};
}

} // namespace

Database::Readable Database::read(const std::string& path, Extent extent) {
    content_ = std::make_unique<ConsolidatedFile>();
    fileSize_ = 0;
    path_ = path;
    error_ = openingError(path);
    if (!error_.empty()) {
        return Readable::Not;
    }
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    fileSize_ = error ? 0 : size;

    const bool isWhole = readContent(extent);
    // A newer file may hold anything: that it cannot be read is no damage.
    if (header().magic == ConsolidatedFile::magicNumber && content_->isNewer()) {
        error_ = "is of version " + std::to_string(header().majorVersion) + "." +
                 std::to_string(header().minorVersion) + "; only versions up to " +
                 std::to_string(ConsolidatedFile::supportedMajor) + "." +
                 std::to_string(ConsolidatedFile::supportedMinor) + " are known";
        return Readable::Not;
    }
    if (isWhole) {
        return Readable::Whole;
    }
    // Only a table can follow a header, and only a header makes the file a database.
    if (sections().empty()) {
        error_ = "is no consolidated file: " + firstError(path).text;
        return Readable::Not;
    }
    const Finding first = firstError(path);
    error_ = "is damaged at " + inHex(first.offset) + ": " + first.text +
             "; what could be read is shown";
    return Readable::InPart;
}

const Kernel* Database::kernel(std::string_view name) const {
    const auto found = std::ranges::find(kernels(), name, &Kernel::name);
    return found == kernels().end() ? nullptr : &*found;
}

bool Database::readContent(Extent extent) {
    if (extent == Extent::All) {
        return content_->readExisting(path_);
    }
    constexpr bool create = false;
    constexpr bool dumpOnly = true;
    content_->open(path_, create, dumpOnly);
    // It does not say whether there is a header. Behind one without entries nothing is read.
    return sections().empty() ? content_->readExisting(path_)
                              : sections().size() == header().sectionCount;
}

std::string openingError(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status)) {
        return "is a folder";
    }
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        return "is no regular file"; // and cannot be read at any place, as a pipe cannot
    }
    errno = 0;
    const std::ifstream file(path, std::ios::binary);
    return file.is_open() ? "" : std::string("cannot be opened: ") + std::strerror(errno);
}

} // namespace consolidator
