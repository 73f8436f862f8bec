#include "consolidated/ConsolidatedFile.h"

#include "consolidated/FileBuffer.h"
#include "model/BinaryForm.h"
#include "model/JsonText.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <locale>
#include <map>
#include <new>
#include <stdio_ext.h>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace consolidator {

namespace {

static_assert(sizeof(ConsolidatedFile::Header) == 16);

constexpr std::uint64_t tableOffset = sizeof(ConsolidatedFile::Header);
constexpr std::int32_t largestPosition = std::numeric_limits<std::int32_t>::max();

/// A table of so many entries, and the three that a run may add, ends at a position.
constexpr std::uint32_t mostEntries =
    (largestPosition - sizeof(ConsolidatedFile::Header)) / sizeof(SectionEntry) - 3;

/// Sections of a damaged file may overlap, and its table may name one place a million times. All
/// its sections together may have as many bytes as the file and so many more.
constexpr std::uint64_t overlapAllowance = std::uint64_t{64} * 1024;

/// Every section of a kind is written with the same content. Project names repeat by design, one a
/// run; other kinds only in files that were made by hand or damaged, where repeating them each time
/// would double the file with every run. Further sections are written while their kind holds less
/// than this; project names, while they hold less than this and the file that was read. In a file
/// that was written each entry has its own payload, so no series of runs ever gets there; a table
/// with a million entries for one long name does.
constexpr std::uint64_t repeatAllowance = std::uint64_t{1024} * 1024;

/// Records are small and many. More than this saves little, and makes blocks of JSON text, which
/// are twice as large, go through the buffer in whole.
constexpr std::size_t recordBuffer = std::size_t{32} * 1024;

/// A dump copies so many bytes at a time.
constexpr std::size_t copyBlock = std::size_t{128} * 1024;

/// Goes to an offset from the start of the file. Offsets are signed 32-bit numbers: the higher
/// half of a stored 64-bit offset is not looked at.
bool seek(std::FILE* file, std::uint64_t offset) {
    return std::fseek(file, static_cast<std::int32_t>(offset), SEEK_SET) == 0;
}

/// The number of bytes in the file, 0 when it has no length (a pipe). Leaves the file at its end.
std::uint64_t sizeOf(std::FILE* file) {
    if (std::fseek(file, 0, SEEK_END) != 0) {
        return 0;
    }
    return static_cast<std::uint64_t>(std::max(0L, std::ftell(file)));
}

/// Sections of other types are kept in the table, without a payload.
bool hasPayload(const SectionEntry& entry) {
    return entry.type <= static_cast<std::uint32_t>(SectionType::KernelJson);
}

} // namespace

bool ConsolidatedFile::open(const std::string& path, bool create, bool dumpOnly) {
    header_ = Header();
    create_ = create;
    dumpOnly_ = dumpOnly;
    if (dumpOnly) {
        // It is dumped from what the table was read from, whatever gets the file's name meanwhile.
        stream_ = openFile(path, "r");
        if (stream_ && !create_) {
            readFrom(stream_);
        }
        return stream_ != nullptr;
    }
    if (!create_) {
        readExisting(path);
    }
    return openTarget(path);
}

bool ConsolidatedFile::openTarget(const std::string& path) {
    auto target = std::make_unique<FileReplacement>();
    if (!target->open(path)) {
        if (errno == ENOMEM) {
            throw std::bad_alloc(); // which says nothing about the file
        }
        return false;
    }
    target_ = std::move(target);
    return true;
}

bool ConsolidatedFile::readExisting(const std::string& path) {
    FileHandle file = openFile(path, "r");
    return file && readFrom(file);
}

bool ConsolidatedFile::readFrom(FileHandle& file) {
    setBuffer(file, recordBuffer);
    FileReplacement::waitForWriter(fileno(file.get()));
    Header found;
    if (std::fread(&found, sizeof found, 1, file.get()) != 1 || found.magic != magicNumber) {
        return false;
    }
    header_ = found;
    if (!readTable(file.get(), found.sectionCount)) {
        return false;
    }
    return readSections(file.get());
}

bool ConsolidatedFile::readTable(std::FILE* file, std::uint32_t count) {
    // Entry by entry, and no room beforehand: the count is only what the file claims.
    for (std::uint32_t i = 0; i < count; ++i) {
        if (i == mostEntries) {
            return false; // no payload could be reached behind them
        }
        SectionEntry entry;
        if (std::fread(&entry, sizeof entry, 1, file) != 1) {
            return false;
        }
        sections_.push_back(entry);
    }
    return true;
}

std::size_t ConsolidatedFile::sectionsToRead() const {
    if (!dumpOnly_) {
        return sections_.size();
    }
    // What is behind the last project name cannot change it, and what is before it can: reading
    // ends at the first section that cannot be read.
    const auto last = std::find_if(sections_.rbegin(), sections_.rend(), [](const auto& entry) {
        return entry.is(SectionType::ProjectName);
    });
    return static_cast<std::size_t>(sections_.rend() - last);
}

bool ConsolidatedFile::readSections(std::FILE* file) {
    const std::uint64_t size = sizeOf(file);
    nameRoom_ += size;
    std::uint64_t left = overlapAllowance + size;
    const std::size_t count = sectionsToRead();
    for (std::size_t i = 0; i < sections_.size(); ++i) {
        SectionEntry& entry = sections_[i];
        // Of sections that are not read too: a dump copies by it.
        entry.size = cappedLength(entry.size);
        if (entry.is(SectionType::KernelJson) || i >= count) {
            continue; // JSON is rendered anew whenever the file is written
        }
        if (!seek(file, entry.offset)) {
            return false;
        }
        const long start = std::ftell(file);
        if (!readSection(file, entry)) {
            return false;
        }
        // What was read counts, and not what the entry claims.
        const auto taken = static_cast<std::uint64_t>(std::ftell(file) - start);
        if (taken > left) {
            return false;
        }
        left -= taken;
    }
    return true;
}

bool ConsolidatedFile::readSection(std::FILE* file, const SectionEntry& entry) {
    switch (static_cast<SectionType>(entry.type)) {
    case SectionType::Dwarf:
        return dumpOnly_ ? skipBytes(file, entry.size) : readDwarf(file, entry.size);
    case SectionType::ProjectName:
        return readProject(file, entry.size);
    case SectionType::KernelData:
        return dumpOnly_ ? readList(file, [file] { return Kernel::skip(file); })
                         : readKernels(file);
    case SectionType::KernelJson:
        break;
    }
    return false;
}

bool ConsolidatedFile::readDwarf(std::FILE* file, std::uint32_t size) {
    if (!readBytes(file, size, dwarf_.emplace())) {
        // Half a payload is none.
        dwarf_.reset();
        return false;
    }
    return true;
}

bool ConsolidatedFile::readProject(std::FILE* file, std::uint32_t size) {
    std::string name;
    if (!readBytes(file, size, name)) {
        return false;
    }
    project_ = name.substr(0, name.find('\0'));
    return true;
}

bool ConsolidatedFile::readKernels(std::FILE* file) {
    return readList(file, [&] {
        Kernel kernel;
        if (!kernel.read(file)) {
            return false;
        }
        kernels_.append(std::move(kernel));
        return true;
    });
}

void ConsolidatedFile::setProject(std::string_view name) {
    const auto size = static_cast<std::uint32_t>(name.size());
    sections_.push_back(SectionEntry::make(SectionType::ProjectName, size));
    project_ = name;
    nameRoom_ += name.size();
}

void ConsolidatedFile::addDwarf(const std::string& path) {
    if (hasSection(SectionType::Dwarf) || dwarf_ || isReplaced(path)) {
        return;
    }
    const FileHandle file = openFile(path, "r");
    if (!file) {
        return;
    }
    const std::uint64_t size = sizeOf(file.get());
    std::string bytes;
    if (size == 0 || size > largestPosition || !seek(file.get(), 0) ||
        !readBytes(file.get(), size, bytes)) {
        return;
    }
    dwarf_ = std::move(bytes);
    sections_.push_back(SectionEntry::make(SectionType::Dwarf, static_cast<std::uint32_t>(size)));
}

bool ConsolidatedFile::addInputFile(InputFile& reader) {
    const bool isUsable = reader.tryToParse();
    if (isUsable) {
        addKernelsOf(reader);
    }
    return isUsable;
}

void ConsolidatedFile::addKernelsOf(InputFile& reader, MergeObserver* observer) {
    for (Kernel& kernel : reader.takeKernels()) {
        mergeKernel(std::move(kernel), observer);
    }
}

void ConsolidatedFile::mergeKernel(Kernel kernel, MergeObserver* observer) {
    if (observer != nullptr) {
        observer->beforeMerging(kernel);
    }
    const auto [existing, isNew] =
        kernels_.findOrAdd(kernel.name(), [&] { return std::move(kernel); });
    if (!isNew) {
        existing.merge(std::move(kernel), observer);
    }
}

bool ConsolidatedFile::hasSection(SectionType type) const {
    return std::ranges::any_of(sections_,
                               [type](const SectionEntry& entry) { return entry.is(type); });
}

void ConsolidatedFile::addRequiredSections() {
    // JSON before kernel data: a new file holds conditions that rendering has translated.
    if (!hasSection(SectionType::KernelJson)) {
        sections_.push_back(SectionEntry::make(SectionType::KernelJson, 0));
    }
    if (!kernels().empty() && !hasSection(SectionType::KernelData)) {
        sections_.push_back(SectionEntry::make(SectionType::KernelData, 0));
    }
}

bool ConsolidatedFile::write() {
    if (!target_) {
        errno = EBADF;
        return false;
    }
    addRequiredSections();
    const std::vector<SectionEntry> wanted = sections_;
    int fault = writeTo(openDescriptor(target_->begin()));
    if (fault == 0) {
        return target_->commit();
    }
    if ((fault == ENOSPC || fault == EDQUOT) && target_->canGoInPlace() && canBeWrittenAgain()) {
        // No room for a second file. If there is for the new one alone, it goes over the old.
        fault = writeInPlace(wanted, fault);
    }
    errno = fault;
    return fault == 0;
}

/// Writes over the old file. Returns 0 or the error; `fault` if there is not even room for that.
int ConsolidatedFile::writeInPlace(const std::vector<SectionEntry>& wanted, int fault) {
    isTranslated_ = true;
    sections_ = wanted;
    const std::uint64_t size = measure();
    sections_ = wanted;
    return target_->beginInPlace(size) ? writeTo(openDescriptor(target_->begin())) : fault;
}

/// Whether writing once more, without translating the conditions again, makes the same bytes: in
/// nearly all files, where a single JSON section comes before the kernel data.
bool ConsolidatedFile::canBeWrittenAgain() const {
    const auto isOf = [](SectionType type) {
        return [type](const SectionEntry& entry) { return entry.is(type); };
    };
    const auto json = std::ranges::find_if(sections_, isOf(SectionType::KernelJson));
    return std::ranges::count_if(sections_, isOf(SectionType::KernelJson)) == 1 &&
           std::none_of(sections_.begin(), json, isOf(SectionType::KernelData));
}

/// The size of what would be written.
std::uint64_t ConsolidatedFile::measure() {
    CountedBytes bytes;
    writeTo(bytes.open());
    return bytes.size();
}

/// Writes all into the stream and closes it. Returns 0 when all of it has got there, and otherwise
/// the error (see errno) of what was the first that did not.
int ConsolidatedFile::writeTo(FileHandle stream) {
    stream_ = std::move(stream);
    if (!stream_) {
        return errno;
    }
    setBuffer(stream_, recordBuffer);
    jsonGivenUp_ = false;
    errno = 0;
    writePayloads();
    const long end = std::ftell(stream_.get());
    writeHeaderAndTable();
    const bool isWritten = std::fflush(stream_.get()) == 0 && std::ferror(stream_.get()) == 0;
    const int fault = isWritten ? 0 : errno != 0 ? errno : EIO;
    if (isWritten && end >= 0 && (jsonGivenUp_ || target_->isInPlace())) {
        // What the document has left behind the end, or the old file. Where that fails it belongs
        // to no section.
        std::ignore = ftruncate(fileno(stream_.get()), end);
    }
    return std::fclose(stream_.release()) == 0 || fault != 0 ? fault : errno;
}

void ConsolidatedFile::writePayloads() {
    // Behind the table as long as it can get: which entries are dropped shows only later.
    seek(stream_.get(), tableOffset + sizeof(SectionEntry) * sections_.size());
    std::map<std::uint32_t, std::uint64_t> written; // bytes of each kind
    std::vector<SectionEntry> kept;
    for (SectionEntry& entry : sections_) {
        std::uint64_t& bytes = written[entry.type];
        const std::uint64_t room = entry.is(SectionType::ProjectName) ? nameRoom_ : 0;
        if (bytes < repeatAllowance + room && writeSection(entry)) {
            bytes += hasPayload(entry) ? entry.size : 0;
            kept.push_back(entry);
        }
    }
    sections_ = std::move(kept);
}

bool ConsolidatedFile::writeSection(SectionEntry& entry) {
    const long offset = std::ftell(stream_.get());
    if (offset > largestPosition) {
        // Readers could not go there. In the table, the entry would send them somewhere else.
        return false;
    }
    if (offset < 0) {
        return true; // a pipe has no positions
    }
    entry.offset = static_cast<std::uint64_t>(offset);
    switch (static_cast<SectionType>(entry.type)) {
    case SectionType::Dwarf:
        writeDwarf(entry);
        break;
    case SectionType::ProjectName:
        writeProject(entry);
        break;
    case SectionType::KernelData:
        writeKernels(entry);
        break;
    case SectionType::KernelJson:
        writeJson(entry);
        break;
    }
    // A section of another type keeps its entry with the old size, but its payload was not read
    // and is not written.
    return true;
}

void ConsolidatedFile::writeDwarf(SectionEntry& entry) {
    // A damaged file may have two DWARF entries, or one whose payload could not be read: no entry
    // says more than there is.
    const std::string_view bytes = dwarf_ ? std::string_view(*dwarf_) : std::string_view();
    entry.size = static_cast<std::uint32_t>(std::min<std::size_t>(entry.size, bytes.size()));
    if (entry.size > 0) {
        std::fwrite(bytes.data(), 1, entry.size, stream_.get());
    }
}

void ConsolidatedFile::writeProject(SectionEntry& entry) {
    entry.size = static_cast<std::uint32_t>(project_.size());
    std::fwrite(project_.data(), 1, project_.size(), stream_.get());
}

void ConsolidatedFile::writeKernels(SectionEntry& entry) {
    entry.size = sizeof(std::uint32_t); // of the count
    writeNumber(stream_.get(), static_cast<std::uint32_t>(kernels().size()));
    for (const Kernel& kernel : kernels()) {
        entry.size += kernel.write(stream_.get());
    }
}

void ConsolidatedFile::writeJson(SectionEntry& entry) {
    entry.size = 0;
    if (jsonGivenUp_) {
        return; // it would not go out this time either
    }
    if (!isTranslated_) {
        kernels_.changeEach([](Kernel& kernel) { kernel.translateConditions(); });
    }
    FileBuffer buffer(stream_.get(), largestPosition - entry.offset);
    std::ostream json(&buffer);
    json.imbue(std::locale::classic());
    json << "{  \"Kernels\" : [ ";
    writeSeparated(json, kernels(), [&](const Kernel& kernel) { kernel.writeJson(json); });
    json << " ] }" << '\0';
    if (buffer.finish() && json.good()) {
        entry.size = static_cast<std::uint32_t>(buffer.written());
        return;
    }
    // Half a document is none. The kernel data, which nothing else can replace, gets its place.
    __fpurge(stream_.get()); // what could not be written would stand in the way of going back
    seek(stream_.get(), entry.offset);
    jsonGivenUp_ = true;
}

void ConsolidatedFile::writeHeaderAndTable() {
    // Whatever version was read: what is written is in this program's version.
    header_ = Header();
    header_.sectionCount = static_cast<std::uint32_t>(sections_.size());
    seek(stream_.get(), 0);
    std::fwrite(&header_, sizeof header_, 1, stream_.get());
    if (!sections_.empty()) {
        std::fwrite(sections_.data(), sizeof(SectionEntry), sections_.size(), stream_.get());
    }
}

void ConsolidatedFile::dumpSection(SectionType type, const std::string& outputPath) {
    if (!stream_) {
        return;
    }
    const FileHandle output = openFile(outputPath, "w");
    if (output && !copySection(type, output.get())) {
        // The file got shorter meanwhile, or the disk failed.
        __fpurge(output.get());
        std::ignore = ftruncate(fileno(output.get()), 0);
    }
}

bool ConsolidatedFile::copySection(SectionType type, std::FILE* output) {
    const auto entry = std::ranges::find_if(
        sections_, [type](const SectionEntry& candidate) { return candidate.is(type); });
    if (entry == sections_.end()) {
        return false;
    }
    // Most sections that cannot be read reach behind the end. To be told so beforehand matters
    // where the output cannot be taken back, as on a pipe.
    const std::uint64_t size = sizeOf(stream_.get());
    if (!seek(stream_.get(), entry->offset) ||
        static_cast<std::uint64_t>(std::ftell(stream_.get())) + entry->size > size) {
        return false;
    }
    std::vector<char> block(copyBlock);
    for (std::uint64_t left = entry->size; left > 0;) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, block.size()));
        if (std::fread(block.data(), 1, wanted, stream_.get()) < wanted) {
            return false;
        }
        if (std::fwrite(block.data(), 1, wanted, output) < wanted) {
            return true; // cut off where the disk is full
        }
        left -= wanted;
    }
    return true;
}

void ConsolidatedFile::printHeader(std::ostream& out) const {
    // Whatever the stream's locale is, the numbers are plain.
    const auto line = [&out](std::string_view what, std::uint64_t number) {
        out << what << ": " << std::to_string(number) << std::endl;
    };
    line("Magic number", header_.magic);
    line("Major Version", header_.majorVersion);
    line("Minor Version", header_.minorVersion);
    line("Num sections", header_.sectionCount);
    for (std::size_t i = 0; i < sections_.size(); ++i) {
        line("Section " + std::to_string(i), sections_[i].type);
        line("Offset", sections_[i].offset);
        line("Size", sections_[i].size);
    }
}

} // namespace consolidator
