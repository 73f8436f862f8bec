// The strict check of a consolidated file: header, section table, where the sections lie, and what
// is in them.
//
// The consolidator reads damaged files as far as it can and says nothing; this looks at every byte
// that has a meaning and says what is wrong with it.
#pragma once

#include "consolidated/SectionEntry.h"
#include "query/integrity/DatabaseFindings.h"
#include "query/integrity/FileBytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace consolidator {

/// One check of one file. It reads the file by the format alone and shares no code for it with
/// ConsolidatedFile, so that each is a check of the other: where this finds no error, the other
/// reads everything.
///
/// Memory grows with the section table, the longest list of a kernel and, for the comparison of
/// kernel data and JSON, the largest kernel.
class ContainerCheck {
public:
    /// What is found is added to `findings`, which must outlive the check.
    explicit ContainerCheck(DatabaseFindings& findings) : findings_(&findings) {}

    /// Checks the file at `path`, which is only read. To be called once. False if the file cannot
    /// be opened or has no length; then nothing was checked, and nothing is said.
    bool check(const std::string& path);

    /// How many kernels all kernel data sections hold, as far as they could be read.
    std::uint64_t kernels() const { return kernels_; }

private:
    struct Section {
        SectionEntry entry;
        bool overlaps = false;   ///< Another one has the bytes that it begins with.
        bool isReadable = false; ///< All of it is in the file, and it does not overlap.
        bool isWhole = false;    ///< Its content has been read without an error.
        bool hasZeroBytes = false;
    };

    bool checkHeader();
    bool readTable(std::uint32_t count);
    void checkEntry(std::size_t number);
    void checkPlace(std::size_t number);
    void checkOrder();
    void checkLayout();
    bool isInReach(const Section& section) const;
    std::vector<std::size_t> byOffset() const;
    void reportGap(std::uint64_t begin, std::uint64_t end);

    void checkContent(std::size_t number);
    void checkProject(std::size_t number);
    void checkKernelData(std::size_t number);
    void checkRepeatedKinds();

    void checkDocument();
    void compareDocument(std::size_t number, std::uint64_t end);
    std::optional<std::size_t> kernelDataFor(std::size_t document) const;
    std::optional<std::size_t> first(SectionType type) const;

    std::string name(std::size_t number) const;
    std::uint64_t tableEnd() const;
    void add(Severity severity, std::uint64_t offset, const std::string& text) {
        findings_->add(severity, offset, text);
    }

    DatabaseFindings* findings_;
    std::string path_;
    FileBytes file_;
    std::vector<Section> sections_;
    std::optional<std::uint64_t> projectHash_; ///< Of the first project name.
    std::uint64_t kernels_ = 0;
};

} // namespace consolidator
