#include "inspect/check/InputCheck.h"

#include "inspect/check/ConditionCheck.h"
#include "inspect/check/KernelXmlLook.h"
#include "model/RAMFile.h"
#include "readers/HLSFile.h"
#include "readers/LLFile.h"
#include "shared/Numbers.h"
#include "shared/TextHash.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace consolidator::inspect {

namespace {

constexpr std::string_view nothingMerged = "nothing of this file is merged";

std::string bytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The name of a kernel type, as a hierarchy file has it.
std::string_view typeWord(KernelType type) {
    switch (type) {
    case KernelType::OpenCL:
        return "clc";
    case KernelType::C:
        return "c";
    case KernelType::RTL:
        return "ip";
    case KernelType::HLS:
        return "hls";
    case KernelType::Unknown:
        break;
    }
    return "unknown";
}

/// What of an HLS file, which was read to its end, does not reach its kernel: the source lines of
/// other files whose number was taken, the variables of entries that do not count, and those that
/// have a second register. What a file has many times makes one finding.
class HlsLosses {
public:
    /// All three must outlive this object.
    HlsLosses(const HLSFile& reader, const std::string& path, Findings& findings)
        : reader_(reader), path_(path), findings_(findings) {
        for (const Kernel& kernel : reader.kernels()) {
            for (const Variable& variable : kernel.variables()) {
                registers_.emplace(variable.sourceName, variable.hardwareName);
            }
        }
    }

    void report() {
        for (const HLSFile::RtlEntry& entry : reader_.entries()) {
            if (entry.files.empty()) {
                reportVariables(entry, "has no source line");
                continue;
            }
            const auto [first, isNew] = firstOfLine_.emplace(entry.lines.front(), &entry);
            if (!isNew) {
                reportSourceLine(entry, *first->second);
            }
            reportVariables(entry, "is passed over");
        }
    }

private:
    void add(const HLSFile::RtlEntry& entry, Code code, std::string text) {
        findings_.add({path_, entry.lineNumber, Severity::Warning, code, std::move(text)});
    }

    void reportSourceLine(const HLSFile::RtlEntry& entry, const HLSFile::RtlEntry& first) {
        const std::string_view file = entry.files.front();
        const std::uint32_t line = entry.lines.front();
        if (file != first.files.front() && lostLines_.emplace(file, line).second) {
            add(entry, Code::LostSourceLine,
                "source line " + std::to_string(line) + " of " + quotedName(file) +
                    " is lost: entries are told apart by the line's number alone, and the entry in "
                    "line " +
                    std::to_string(first.lineNumber) + " has it for " +
                    quotedName(first.files.front()));
        }
    }

    /// `reason` is why variables that the kernel lacks are not there.
    void reportVariables(const HLSFile::RtlEntry& entry, std::string_view reason) {
        for (const HLSFile::HlsVariable& variable : entry.variables) {
            const auto [kept, isLost] = registers_.emplace(variable.name, variable.rtlName);
            if (isLost) {
                add(entry, Code::LostVariable,
                    "variable " + quotedName(variable.name) + " is lost with its entry, which " +
                        std::string(reason));
            } else if (kept->second != variable.rtlName &&
                       lostRegisters_.emplace(variable.name, variable.rtlName).second) {
                add(entry, Code::RepeatedVariable,
                    "variable " + quotedName(variable.name) + " has hardware name " +
                        quotedName(variable.rtlName) + " here and " + quotedName(kept->second) +
                        " before, and the first one counts");
            }
        }
    }

    const HLSFile& reader_;
    const std::string& path_;
    Findings& findings_;

    /// Hardware names by the names of the kernel's variables and of those that were reported.
    std::unordered_map<std::string_view, std::string_view, TextHash> registers_;

    // Ordered, since a hash table could be made slow by chosen numbers.
    std::map<std::uint32_t, const HLSFile::RtlEntry*> firstOfLine_;
    std::set<std::pair<std::string_view, std::uint32_t>> lostLines_;
    std::set<std::pair<std::string_view, std::string_view>> lostRegisters_;
};

using KernelsByName = std::unordered_map<std::string_view, const Kernel*, TextHash>;

/// The first kernel of each name.
KernelsByName byName(const std::vector<Kernel>& kernels) {
    KernelsByName result;
    for (const Kernel& kernel : kernels) {
        result.try_emplace(kernel.name(), &kernel);
    }
    return result;
}

} // namespace

void InputCheck::add(std::uint64_t line, Severity severity, Code code, std::string text) {
    findings_.add({path_, line, severity, code, std::move(text)});
}

void InputCheck::addOldDatabase(const std::string& path) {
    if (database_.kernels().empty()) {
        return;
    }
    const auto number = static_cast<std::uint32_t>(inputs_.size());
    inputs_.push_back({path, InputKind::Hierarchy, true});
    for (const Kernel& kernel : database_.kernels()) {
        origins_.add(number, kernel);
    }
    reportTranslatedAgain(database_.kernels(), path, findings_);
}

// DWARF

void InputCheck::beforeDwarf(const std::string& path) {
    path_ = path;
    look_ = FileLook::at(path);
    constexpr std::string_view nothing = "; no DWARF gets into the database";
    if (database_.dwarf()) {
        const bool isSame =
            look_.size == database_.dwarf()->size() && bytesOf(path) == *database_.dwarf();
        add(0, isSame ? Severity::Note : Severity::Warning, Code::DwarfIgnored,
            isSame ? "the database has this DWARF already"
                   : "is ignored: the database has DWARF already, which stays (only a run with "
                     "--create replaces it)");
        return;
    }
    if (look_.isFolder) {
        add(0, Severity::Error, Code::Unreadable, "is a folder" + std::string(nothing));
        return;
    }
    const std::ifstream file(path);
    if (!file.is_open()) {
        add(0, Severity::Error, Code::Unreadable, "cannot be opened" + std::string(nothing));
        return;
    }
    if (!look_.isRegular || look_.size == 0) {
        add(0, Severity::Warning, Code::Empty,
            (look_.isRegular ? "is empty" : "has no length") + std::string(nothing));
        return;
    }
    if (look_.size > std::numeric_limits<std::int32_t>::max()) {
        add(0, Severity::Error, Code::TooLarge, "has 2 GiB or more" + std::string(nothing));
    }
    reportContent(look_, InputKind::Dwarf, path, findings_);
}

// Before reading: what the file looks like

void InputCheck::beforeReading(InputKind kind, const std::string& path, InputFile& reader) {
    path_ = path;
    wasOpened_ = reader.isOpen();
    isOfWrongKind_ = false;
    look_ = FileLook::at(path);
    if (!given_.insert(optionFor(kind) + wholePathOf(path)).second) {
        add(0, Severity::Warning, Code::GivenTwice, "is given twice");
    }
    if (wasOpened_) {
        isOfWrongKind_ = reportLook(look_, kind, path, findings_);
    }
    if (kind == InputKind::LogicLocations) {
        placements_.repeatedBits = {};
        dynamic_cast<LLFile&>(reader).observe(placements_);
    }
    progress_.begin(path, look_.size);
    reader.watch([this](std::uint64_t bytes) { progress_.update(bytes); });
}

// After reading: what came of it

void InputCheck::afterReading(InputKind kind, const std::string& path, const InputFile& reader,
                              bool isUsable) {
    path_ = path;
    progress_.end();
    if (!isOfWrongKind_) {
        reportRemarks(reader.diagnostic());
    }
    if (reader.diagnostic().stopped()) {
        reportStop(*reader.diagnostic().stopped(), kind, isUsable);
    }
    if (!isUsable || !wasOpened_) {
        return;
    }
    if (kind == InputKind::LogicLocations) {
        if (database_.kernels().empty()) {
            add(0, Severity::Warning, Code::BeforeAnyKernel,
                "no kernel is known when it is read, so that none of its nets belongs to one");
        }
        if (look_.isRegular) {
            readLogicLocations_.push_back({path, placements_.repeatedBits});
        }
    } else if (kind == InputKind::RamReport) {
        reportRamReport(reader);
    } else {
        if (kind == InputKind::KernelXml && look_.isRegular && !isOfWrongKind_) {
            lookAtKernelXml(path, findings_);
        }
        reportKernels(kind, reader);
    }
}

void InputCheck::reportStop(const Finding& stop, InputKind kind, bool isUsable) {
    std::string text = look_.isFolder ? "is a folder" : stop.text;
    text += ": ";
    if (!wasOpened_ || look_.isFolder) {
        add(0, Severity::Error, Code::Unreadable, text + std::string(nothingMerged));
        return;
    }
    if (kind == InputKind::RamReport && isUsable) {
        add(stop.line, Severity::Error, Code::ReadingStopped, text + "reading stops here");
        return;
    }
    add(stop.line, Severity::Error, Code::NotMerged,
        text + (stop.line > 0 ? "reading stops here and " : "") + std::string(nothingMerged));
}

void InputCheck::reportRemarks(const Diagnostic& diagnostic) {
    std::vector<const Finding*> remarks;
    for (const Finding& remark : diagnostic.remarks()) {
        remarks.push_back(&remark);
    }
    // Some are made at the end of the file, about its middle.
    std::ranges::stable_sort(remarks, {}, [](const auto* remark) { return remark->line; });
    for (const Finding* const remark : remarks) {
        add(remark->line, remark->severity, remark->code, remark->text);
    }
    if (diagnostic.remarkCount() > remarks.size()) {
        add(0, Severity::Note, Code::MoreRemarks,
            "there are " + std::to_string(diagnostic.remarkCount() - remarks.size()) +
                " more remarks like these");
    }
}

void InputCheck::reportKernels(InputKind kind, const InputFile& reader) {
    const std::vector<Kernel>& kernels = reader.kernels();
    if (kernels.empty()) {
        add(0, Severity::Warning, Code::NoKernel, "no kernel is found in it");
        return;
    }
    const auto number = static_cast<std::uint32_t>(inputs_.size());
    inputs_.push_back({path_, kind, false, isOfWrongKind_});
    if (isOfWrongKind_) {
        for (const Kernel& kernel : kernels) {
            origins_.add(number, kernel);
        }
        return; // there would be no end of findings
    }
    reportRepeatedKernels(kernels);
    if (kind == InputKind::KernelXml) {
        reportCarriedArguments(kernels);
    }
    const bool hasConditions = kind == InputKind::Hls || kind == InputKind::KernelXml;
    const KernelsByName known = hasConditions ? byName(database_.kernels()) : KernelsByName();
    if (kind == InputKind::Hls) {
        HlsLosses(dynamic_cast<const HLSFile&>(reader), path_, findings_).report();
    }
    for (const Kernel& kernel : kernels) {
        const bool saysSo = kind == InputKind::Hierarchy || kind == InputKind::AuxiliaryXml;
        if (kernel.name().empty() && !saysSo) {
            add(0, Severity::Warning, Code::Nameless, "a kernel in it has no name");
        }
        reportIgnored(kind, kernel, origins_.add(number, kernel));
        reportConditions(kernel, path_, findings_);
        if (const auto same = known.find(kernel.name()); same != known.end()) {
            reportRepeatedConditions(kernel, *same->second, path_, findings_);
        }
    }
}

void InputCheck::reportRepeatedKernels(const std::vector<Kernel>& kernels) {
    std::set<std::string_view> names;
    std::set<std::string_view> repeated;
    for (const Kernel& kernel : kernels) {
        if (!names.insert(kernel.name()).second && repeated.insert(kernel.name()).second) {
            add(0, Severity::Warning, Code::RepeatedKernel,
                "kernel " + quotedName(kernel.name()) +
                    " comes more than once; all of them become one");
        }
    }
}

void InputCheck::reportCarriedArguments(const std::vector<Kernel>& kernels) {
    for (std::size_t i = 1; i < kernels.size(); ++i) {
        const std::size_t carried = kernels[i - 1].arguments().size();
        if (carried > 0) {
            add(0, Severity::Note, Code::CarriedArguments,
                "kernel " + quotedName(kernels[i].name()) + " takes over the " +
                    inWords(carried, "argument") + " of the kernels before it in this file");
        }
    }
}

void InputCheck::reportIgnored(InputKind kind, const Kernel& kernel,
                               const KernelOrigins::Ignored& ignored) {
    const std::string ofKernel = " of kernel " + quotedName(kernel.name());
    for (const IgnoredType& type : ignored.types) {
        add(0, Severity::Warning, Code::IgnoredType,
            "type \"" + std::string(typeWord(type.type)) + "\"" + ofKernel +
                " is ignored: it is \"" + std::string(typeWord(type.firstType)) + "\" in " +
                inputs_[type.firstInput].path + ", and the first known type counts");
    }
    for (const IgnoredDescription& description : ignored.descriptions) {
        const bool isRenamed = description.hardwareName != description.firstHardwareName;
        // Auxiliary XML knows no types but "int" and a pointer to it.
        const bool isExpected = kind == InputKind::AuxiliaryXml && !isRenamed;
        add(0, isExpected ? Severity::Note : Severity::Warning, Code::IgnoredDescription,
            (description.isArgument ? "argument " : "variable ") +
                quotedName(description.sourceName) + ofKernel + " is ignored: " +
                (isRenamed ? "hardware name " + quotedName(description.hardwareName) + " here, " +
                                 quotedName(description.firstHardwareName)
                           : "type " + quotedName(description.typeText) + " here, " +
                                 quotedName(description.firstTypeText)) +
                " in " + inputs_[description.firstInput].path +
                ", and the first description counts");
    }
}

// While merging: what the project does not take over

void InputCheck::beforeMerging(const Kernel& /*coming*/) {
    ++merged_;
}

void InputCheck::ignoredLocations(const Kernel& kernel, const HardwareVariable& known,
                                  const HardwareVariable& /*ignored*/) {
    // Only logic-location files have registers, and one kernel for each of the project's. Where
    // another tool has repeated a kernel's name, the further ones come with registers of their own,
    // of which the file need not have said anything.
    const bool isOfTheFile =
        merged_ <= database_.kernels().size() && &database_.kernels()[merged_ - 1] == &kernel;
    if (isOfTheFile && ignored_++ == 0) {
        firstIgnored_ = known.name;
    }
}

void InputCheck::afterMerging() {
    if (ignored_ > 0) {
        reportIgnoredLocations();
    }
    merged_ = 0;
    ignored_ = 0;
}

void InputCheck::reportIgnoredLocations() {
    const bool isAdded = !inputs_.empty() && inputs_.front().isOldDatabase;
    std::string text = "locations of net " + quotedName(firstIgnored_);
    text += ignored_ > 1 ? " (and " + std::to_string(ignored_ - 1) + " more)" : "";
    text += " are ignored: the database has others already, which stay";
    text += isAdded ? " (only a run with --create replaces them)" : "";
    add(0, Severity::Warning, Code::IgnoredLocations, std::move(text));
}

void InputCheck::reportRamReport(const InputFile& reader) {
    const auto& report = dynamic_cast<const RAMFile&>(reader);
    if (!report.hasTable()) {
        add(0, Severity::Warning, Code::NoTable,
            "no table of block RAMs is found: the heading \"3. Memory Utilization - Inferred\" or "
            "\"6. Memory Utilization - Instantiated\" must come after the one of section 8 in the "
            "table of contents, to the letter");
    } else if (report.blockRamCount() > 0 && report.diagnostic().remarkCount() == 0) {
        add(0, Severity::Warning, Code::NoMatch,
            "none of its block RAMs (" + std::to_string(report.blockRamCount()) +
                ") lies in an instance of a kernel");
    }
}

} // namespace consolidator::inspect
