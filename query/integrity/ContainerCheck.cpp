#include "query/integrity/ContainerCheck.h"

#include "query/Words.h"
#include "query/integrity/ByteRange.h"
#include "query/integrity/DocumentCheck.h"
#include "query/integrity/KernelDataCheck.h"
#include "query/integrity/StoredText.h"
#include "shared/Numbers.h"

#include <algorithm>
#include <array>
#include <span>

namespace consolidator {

namespace {

constexpr std::uint64_t headerSize = 16;
constexpr std::uint64_t entrySize = 24;
constexpr std::uint64_t versionPlace = 4;
constexpr std::uint64_t countPlace = 12;

// Where the fields of a table entry stand in it.
constexpr std::uint64_t firstPaddingPlace = 4;
constexpr std::uint64_t offsetPlace = 8;
constexpr std::uint64_t sizePlace = 16;
constexpr std::uint64_t secondPaddingPlace = 20;

/// Positions are signed 32-bit numbers.
constexpr std::uint64_t positionsEnd = std::uint64_t{1} << 31U;

std::uint64_t rowOf(std::size_t number) {
    return headerSize + entrySize * number;
}

std::uint64_t endOf(const SectionEntry& entry) {
    // An offset near the largest number has no end, and is refused for itself.
    return std::min(entry.offset, positionsEnd) + entry.size;
}

bool isKnown(const SectionEntry& entry) {
    return entry.type <= static_cast<std::uint32_t>(SectionType::KernelJson);
}

} // namespace

bool ContainerCheck::check(const std::string& path) {
    path_ = path;
    if (!file_.open(path)) {
        return false;
    }
    if (!checkHeader()) {
        return true;
    }
    for (std::size_t number = 0; number < sections_.size(); ++number) {
        checkEntry(number);
    }
    checkRepeatedKinds();
    checkLayout();
    checkOrder();
    for (std::size_t number = 0; number < sections_.size(); ++number) {
        checkContent(number);
    }
    checkDocument();
    return true;
}

/// False if there is nothing behind the header that could be understood.
bool ContainerCheck::checkHeader() {
    std::array<char, headerSize> bytes{};
    const std::size_t came = file_.read(0, bytes);
    const auto number = [&bytes](std::uint64_t place) {
        return static_cast<std::uint32_t>(
            littleEndian(std::span(bytes).subspan(static_cast<std::size_t>(place), 4)));
    };
    if (came < headerSize) {
        add(Severity::Error, 0,
            "the file has " + inWords(came, "byte") + ", and its header alone would have 16");
        return false;
    }
    if (number(0) != 0xBEEFDAD4) {
        add(Severity::Error, 0,
            "the file begins with " + inHex(number(0), 8) +
                ", not with the magic number 0xbeefdad4");
        return false;
    }
    const std::uint32_t major = number(versionPlace);
    const std::uint32_t minor = number(versionPlace + 4);
    const std::string version = std::to_string(major) + "." + std::to_string(minor);
    if (static_cast<std::int32_t>(major) > 1) {
        add(Severity::Error, versionPlace,
            "the version is " + version + ", and only versions up to 1.1 are known");
        return false;
    }
    if (major != 1 || minor != 1) {
        add(Severity::Warning, versionPlace,
            "the version is " + version + ", and every run writes version 1.1");
    }
    return readTable(number(countPlace));
}

bool ContainerCheck::readTable(std::uint32_t count) {
    const std::uint64_t room = (file_.size() - headerSize) / entrySize;
    if (count > room) {
        add(Severity::Error, countPlace,
            "the section table has " + std::to_string(count) +
                " entries, and the file has room for " + std::to_string(room));
        return false;
    }
    if (rowOf(count) >= positionsEnd) {
        add(Severity::Error, countPlace,
            "the section table reaches beyond 2 GiB, where no section can begin");
        return false;
    }
    ByteRange table(file_, headerSize, rowOf(count));
    for (std::uint32_t i = 0; i < count; ++i) {
        std::array<char, entrySize> bytes{};
        if (!table.read(bytes)) {
            add(Severity::Error, rowOf(i), "the section table cannot be read");
            return false;
        }
        const auto field = [&bytes](std::uint64_t place, std::size_t width) {
            return littleEndian(std::span(bytes).subspan(static_cast<std::size_t>(place), width));
        };
        Section& section = sections_.emplace_back();
        section.entry = {.type = static_cast<std::uint32_t>(field(0, 4)),
                         .padding1 = static_cast<std::uint32_t>(field(firstPaddingPlace, 4)),
                         .offset = field(offsetPlace, 8),
                         .size = static_cast<std::uint32_t>(field(sizePlace, 4)),
                         .padding2 = static_cast<std::uint32_t>(field(secondPaddingPlace, 4))};
    }
    return true;
}

void ContainerCheck::checkEntry(std::size_t number) {
    const SectionEntry& entry = sections_[number].entry;
    const std::uint64_t row = rowOf(number);
    for (const auto& [padding, place] : {std::pair(entry.padding1, firstPaddingPlace),
                                         std::pair(entry.padding2, secondPaddingPlace)}) {
        if (padding != 0) {
            findings_->add(Severity::Note, row + place, [&, value = padding] {
                return name(number) + ": the padding is " + inHex(value, 8) + ", not zero";
            });
        }
    }
    if (isKnown(entry)) {
        checkPlace(number);
        return;
    }
    findings_->add(Severity::Error, row, [&] {
        return name(number) + ": the type is unknown: reading ends here, and what comes behind it "
                              "in the table is not read";
    });
}

/// Whether the payload lies in the file, and where positions reach.
void ContainerCheck::checkPlace(std::size_t number) {
    Section& section = sections_[number];
    const SectionEntry& entry = section.entry;
    const std::uint64_t row = rowOf(number);
    const std::uint64_t end = endOf(entry);
    const auto addAt = [&](Severity severity, std::uint64_t place, const auto& makeText) {
        findings_->add(severity, row + place, [&] { return name(number) + ": " + makeText(); });
    };
    if (entry.offset >= positionsEnd) {
        addAt(Severity::Error, offsetPlace, [&] {
            return "it begins at " + inHex(entry.offset) + ", beyond 2 GiB, where no section can";
        });
    } else if (entry.offset > file_.size()) {
        addAt(Severity::Error, offsetPlace, [&] {
            return "it begins at " + inHex(entry.offset) + ", and the file ends at " +
                   inHex(file_.size());
        });
    } else if (end > file_.size()) {
        addAt(Severity::Error, sizePlace, [&] {
            return "it reaches from " + inHex(entry.offset) + " to " + inHex(end) +
                   ", and the file ends at " + inHex(file_.size());
        });
    } else {
        section.isReadable = true;
        if (end > positionsEnd) {
            addAt(Severity::Warning, sizePlace,
                  [] { return std::string("it reaches beyond 2 GiB, where positions end"); });
        }
    }
}

/// Whether a part of the file at least could be the section's.
bool ContainerCheck::isInReach(const Section& section) const {
    return section.entry.offset < positionsEnd && section.entry.offset <= file_.size();
}

/// The sections that are not empty, in the order in which they lie in the file.
std::vector<std::size_t> ContainerCheck::byOffset() const {
    std::vector<std::size_t> order;
    for (std::size_t number = 0; number < sections_.size(); ++number) {
        if (isInReach(sections_[number]) && sections_[number].entry.size > 0) {
            order.push_back(number);
        }
    }
    std::ranges::stable_sort(order, {},
                             [this](auto number) { return sections_[number].entry.offset; });
    return order;
}

/// Whether every byte belongs to one section, and to one only.
void ContainerCheck::checkLayout() {
    std::uint64_t covered = tableEnd(); // by known sections
    std::uint64_t claimed = covered;    // by others too, whose payloads may be missing
    std::optional<std::size_t> last;
    for (const std::size_t number : byOffset()) {
        Section& section = sections_[number];
        reportGap(claimed, section.entry.offset);
        if (isKnown(section.entry)) {
            if (section.entry.offset < covered) {
                section.overlaps = true;
                section.isReadable = false;
                findings_->add(Severity::Error, rowOf(number) + offsetPlace, [&] {
                    return name(number) + ": it begins at " + inHex(section.entry.offset) + " in " +
                           (last ? name(*last) : "the section table") + ", which ends at " +
                           inHex(covered) + ": its content is not checked";
                });
            }
            if (endOf(section.entry) > covered) {
                covered = endOf(section.entry);
                last = number;
            }
        }
        claimed = std::max(claimed, endOf(section.entry));
    }
    reportGap(claimed, file_.size());
}

void ContainerCheck::reportGap(std::uint64_t begin, std::uint64_t end) {
    if (begin < end) {
        findings_->add(Severity::Warning, begin, [&] {
            return inWords(end - begin, "byte") + " from here on without a section";
        });
    }
}

/// Whether the payloads come in the order of the table. Those that overlap have been reported.
void ContainerCheck::checkOrder() {
    std::optional<std::size_t> before;
    for (std::size_t number = 0; number < sections_.size(); ++number) {
        const Section& section = sections_[number];
        if (!section.isReadable) {
            continue;
        }
        if (before && section.entry.offset < sections_[*before].entry.offset) {
            findings_->add(Severity::Warning, rowOf(number) + offsetPlace, [&] {
                return name(number) + ": it lies in front of " + name(*before) +
                       ", which comes first in the table";
            });
        }
        before = number;
    }
}

/// Project names repeat by design, one a run.
void ContainerCheck::checkRepeatedKinds() {
    struct Kind {
        SectionType type;
        const char* consequence;
    };
    for (const Kind& kind :
         {Kind{SectionType::Dwarf, "the last one counts, and a dump gives the first"},
          Kind{SectionType::KernelData, "the kernels of all of them are read"},
          Kind{SectionType::KernelJson, "a dump gives the first one"}}) {
        const std::optional<std::size_t> one = first(kind.type);
        for (std::size_t number = one.value_or(sections_.size()) + 1; number < sections_.size();
             ++number) {
            if (sections_[number].entry.is(kind.type)) {
                findings_->add(Severity::Warning, rowOf(number), [&] {
                    return name(number) + ": there is another one, " + name(*one) + ": " +
                           kind.consequence;
                });
            }
        }
    }
}

void ContainerCheck::checkContent(std::size_t number) {
    const Section& section = sections_[number];
    const SectionEntry& entry = section.entry;
    if (entry.is(SectionType::KernelData)) {
        checkKernelData(number);
    } else if (entry.is(SectionType::ProjectName)) {
        checkProject(number);
    } else if (entry.is(SectionType::Dwarf) && entry.size == 0) {
        findings_->add(Severity::Note, rowOf(number) + sizePlace,
                       [&] { return name(number) + ": it is empty"; });
    }
}

void ContainerCheck::checkProject(std::size_t number) {
    const Section& section = sections_[number];
    if (!section.isReadable) {
        return;
    }
    ByteRange bytes(file_, section.entry.offset, endOf(section.entry));
    const StoredText project(bytes, section.entry.size);
    const auto addHere = [&](Severity severity, const auto& makeText) {
        findings_->add(severity, section.entry.offset,
                       [&] { return name(number) + ": " + makeText(); });
    };
    if (project.hasZero()) {
        addHere(Severity::Warning,
                [&] { return "it has a zero byte, and is read as " + project.quoted(); });
    }
    if (project.empty()) {
        addHere(Severity::Note, [] { return std::string("it is empty"); });
    }
    if (!projectHash_) {
        projectHash_ = project.hash();
    } else if (*projectHash_ != project.hash()) {
        addHere(Severity::Warning, [&] {
            return project.quoted() + " is another name than that of " +
                   name(first(SectionType::ProjectName).value_or(0)) + ": the last one counts";
        });
    }
}

void ContainerCheck::checkKernelData(std::size_t number) {
    Section& section = sections_[number];
    // Of one that is cut off by the end of the file, as much is checked as there is.
    const bool isCut = isInReach(section) && endOf(section.entry) > file_.size();
    if (section.overlaps || !(section.isReadable || isCut)) {
        return;
    }
    const std::uint64_t end = std::min(endOf(section.entry), file_.size());
    KernelDataCheck content(file_, section.entry.offset, end, name(number), *findings_);
    section.isWhole = content.check() && section.isReadable;
    section.hasZeroBytes = content.hasZeroBytes();
    kernels_ += content.kernels();
}

/// Only the first document is looked at: it is the one that a dump gives.
void ContainerCheck::checkDocument() {
    const std::optional<std::size_t> number = first(SectionType::KernelJson);
    if (!number) {
        add(Severity::Warning, countPlace,
            "there is no kernel JSON section, which every run writes");
        return;
    }
    const Section& section = sections_[*number];
    if (!section.isReadable) {
        return;
    }
    if (section.entry.size == 0) {
        add(Severity::Warning, rowOf(*number) + sizePlace,
            name(*number) + ": it is empty: when the file was written, the document was given up, "
                            "because of its length or for want of space");
        return;
    }
    std::uint64_t end = endOf(section.entry);
    std::array<char, 1> last{};
    if (file_.read(end - 1, last) == 1 && last[0] == '\0') {
        --end;
    } else {
        add(Severity::Error, end - 1, name(*number) + ": it does not end with a zero byte");
    }
    compareDocument(*number, end);
}

void ContainerCheck::compareDocument(std::size_t number, std::uint64_t end) {
    DocumentCheck document(path_, file_, sections_[number].entry.offset, end);
    std::optional<DocumentCheck::Difference> difference;
    std::string expected = "the document of no kernels, and there is no kernel data section";
    if (first(SectionType::KernelData)) {
        const std::optional<std::size_t> data = kernelDataFor(number);
        if (!data) {
            add(Severity::Note, sections_[number].entry.offset,
                name(number) + ": it cannot be compared with the kernel data");
            return;
        }
        expected = "what " + name(*data) + " gives";
        difference = document.compare(sections_[*data].entry.offset, *data > number);
    } else {
        difference = document.compare();
    }
    if (difference) {
        const std::string where =
            difference->kernel == 0 ? "" : ", in kernel " + std::to_string(difference->kernel);
        add(Severity::Error, difference->offset,
            name(number) + ": from here on" + where + ", it is not " + expected);
    }
}

/// The kernel data section whose conditions are those of the document, or will be once they are
/// translated: one behind it, but not behind a second document, or one before it. Nothing if there
/// is none, if it cannot be read, or if texts in it end early.
std::optional<std::size_t> ContainerCheck::kernelDataFor(std::size_t document) const {
    for (std::size_t number = 0; number < sections_.size(); ++number) {
        const Section& section = sections_[number];
        if (section.entry.is(SectionType::KernelJson) && number > document) {
            break;
        }
        if (section.entry.is(SectionType::KernelData)) {
            const bool isComparable = section.isWhole && !section.hasZeroBytes;
            return isComparable ? std::optional(number) : std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> ContainerCheck::first(SectionType type) const {
    const auto found = std::ranges::find_if(
        sections_, [type](const Section& section) { return section.entry.is(type); });
    if (found == sections_.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - sections_.begin());
}

/// "section 3 (kernel data)".
std::string ContainerCheck::name(std::size_t number) const {
    const SectionEntry& entry = sections_[number].entry;
    const std::string type =
        isKnown(entry) ? sectionText(entry) : "type " + std::to_string(entry.type);
    return "section " + std::to_string(number) + " (" + type + ")";
}

std::uint64_t ContainerCheck::tableEnd() const {
    return rowOf(sections_.size());
}

} // namespace consolidator
