#include "inspect/check/InputCheck.h"

#include "inspect/check/ConditionCheck.h"
#include "inspect/check/HlsLosses.h"
#include "inspect/check/KernelXmlLook.h"
#include "model/ConditionTranslation.h"
#include "model/RAMFile.h"
#include "readers/HLSFile.h"
#include "readers/LLFile.h"
#include "shared/Numbers.h"
#include "shared/TextHash.h"
#include "shared/Words.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <unordered_map>

namespace consolidator::inspect {

namespace {

constexpr std::string_view nothingMerged = "nothing of this file is merged";

std::string bytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Carriage returns are white space to the other readers.
bool mindsCarriageReturns(InputKind kind) {
    return kind == InputKind::Hls || kind == InputKind::RamReport;
}

/// Translation names signals so; high-level synthesis does not.
bool wasTranslated(std::string_view condition) {
    return condition.find("$i/") != std::string_view::npos;
}

/// Whether both are the same equation but for the order of its sides.
bool isSwappedEquation(std::string_view first, std::string_view second) {
    const std::string_view comparison = takeWord(first);
    const std::string_view left = takeWord(first);
    const std::string_view right = takeWord(first);
    return (comparison == "==" || comparison == "!=") && takeWord(second) == comparison &&
           takeWord(second) == right && takeWord(second) == left && takeWord(first).empty() &&
           takeWord(second).empty();
}

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
    reportTranslatedAgain(path);
}

void InputCheck::reportTranslatedAgain(const std::string& path) {
    const BreakableCondition* first = nullptr;
    bool isChanged = false; // in its meaning, as the first one is
    std::uint64_t count = 0;
    for (const Kernel& kernel : database_.kernels()) {
        for (const BreakableCondition& condition : kernel.breakableConditions()) {
            if (!wasTranslated(condition.condition)) {
                continue;
            }
            const std::string result = translatedCondition(condition.condition);
            if (result == condition.condition) {
                continue;
            }
            ++count;
            const bool changes = !isSwappedEquation(condition.condition, result);
            if (first == nullptr || (changes && !isChanged)) {
                first = &condition;
                isChanged = changes;
            }
        }
    }
    if (first != nullptr) {
        path_ = path;
        add(0, isChanged ? Severity::Warning : Severity::Note, Code::TranslatedAgain,
            inWords(count, "condition") + " translated by the run before " +
                (count == 1 ? "is" : "are") + " translated again: " + quotedName(first->condition) +
                " becomes " + quotedName(translatedCondition(first->condition)));
    }
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
    lookAtContent(InputKind::Dwarf);
}

// Before reading: what the file looks like

void InputCheck::beforeReading(InputKind kind, const std::string& path, InputFile& reader) {
    path_ = path;
    wasOpened_ = reader.isOpen();
    isMistaken_ = false;
    look_ = FileLook::at(path);
    if (!given_.insert(optionFor(kind) + wholePathOf(path)).second) {
        add(0, Severity::Warning, Code::GivenTwice, "is given twice");
    }
    if (wasOpened_) {
        lookAtFile(kind);
    }
    if (kind == InputKind::LogicLocations) {
        placements_.repeatedBits = {};
        dynamic_cast<LLFile&>(reader).observe(placements_);
    }
    progress_.begin(path, look_.size);
    reader.watch([this](std::uint64_t bytes) { progress_.update(bytes); });
}

void InputCheck::lookAtFile(InputKind kind) {
    if ((look_.isRegular && look_.size == 0) || look_.isEmptyDevice) {
        add(0, Severity::Warning, Code::Empty, "is empty");
    }
    lookAtContent(kind);
    lookAtText(kind);
    if (kind == InputKind::Hls) {
        lookAtHlsName();
    }
}

void InputCheck::lookAtContent(InputKind kind) {
    const std::string_view compression = compressionOf(look_.head);
    if (!compression.empty()) {
        add(0, Severity::Error, Code::Compressed,
            "is compressed (" + std::string(compression) + "): it must be unpacked first");
        isMistaken_ = true;
        return;
    }
    const Content content = contentOf(look_.head);
    const Content wanted = kind == InputKind::Dwarf ? Content(OtherContent::Binary) : Content(kind);
    if (content == Content(OtherContent::Unknown) || content == wanted) {
        return;
    }
    std::string text = "looks like " + std::string(describe(content));
    if (!optionFor(content).empty()) {
        text += ", which belongs to " + optionFor(content);
    }
    text += ", but is given with " + optionFor(kind) + " as " + std::string(describe(kind));
    add(0, Severity::Warning, Code::WrongKind, std::move(text));
    // XML that nobody knows may be meant: then the reader knows better what is wrong with it.
    isMistaken_ = content != Content(OtherContent::Xml);
}

void InputCheck::lookAtText(InputKind kind) {
    const std::string_view mark = byteOrderMarkOf(look_.head);
    if (!mark.empty() && kind != InputKind::KernelXml) {
        add(1, Severity::Warning, Code::ByteOrderMark,
            "the file begins with a byte order mark (" + std::string(mark) +
                "), which is read as a part of its first word");
    }
    if (mindsCarriageReturns(kind) && hasCarriageReturns(look_.head)) {
        add(1, Severity::Warning, Code::CarriageReturns,
            kind == InputKind::Hls ? "lines end with a carriage return and a newline (CRLF): "
                                     "conditions are cut off at "
                                     "the wrong place, and empty lines are not accepted"
                                   : "lines end with a carriage return and a newline (CRLF): no "
                                     "heading is recognised");
    }
}

void InputCheck::lookAtHlsName() {
    const std::string name = path_.substr(path_.rfind('/') + 1);
    constexpr std::size_t extension = 4;
    if (name.size() <= extension || name[name.size() - extension] != '.') {
        const std::string kernel =
            name.size() < extension ? name : name.substr(0, name.size() - extension);
        add(0, Severity::Warning, Code::KernelName,
            "the kernel's name is the file's name without its last four characters, here " +
                quotedName(kernel));
    }
}

// After reading: what came of it

void InputCheck::afterReading(InputKind kind, const std::string& path, const InputFile& reader,
                              bool isUsable) {
    path_ = path;
    progress_.end();
    if (!isMistaken_) {
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
        if (kind == InputKind::KernelXml && look_.isRegular && !isMistaken_) {
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
    inputs_.push_back({path_, kind, false, isMistaken_});
    if (isMistaken_) {
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
        reportHlsLosses(dynamic_cast<const HLSFile&>(reader), path_, findings_);
    }
    for (const Kernel& kernel : kernels) {
        const bool saysSo = kind == InputKind::Hierarchy || kind == InputKind::AuxiliaryXml;
        if (kernel.name().empty() && !saysSo) {
            add(0, Severity::Warning, Code::Nameless, "a kernel in it has no name");
        }
        reportIgnored(kind, kernel, origins_.add(number, kernel));
        reportConditions(kernel);
        if (const auto same = known.find(kernel.name()); same != known.end()) {
            reportRepeatedConditions(kernel, *same->second);
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

void InputCheck::reportConditions(const Kernel& kernel) {
    for (const BreakableCondition& condition : kernel.breakableConditions()) {
        if (condition.kind != BreakableCondition::FileLine) {
            continue;
        }
        const std::optional<ConditionFault> fault = conditionFault(condition.condition);
        if (!fault) {
            continue;
        }
        std::string text = "condition of " + condition.file;
        text += ':' + std::to_string(condition.line) + ' ';
        if (fault->isDropped) {
            add(0, Severity::Note, Code::ConditionDropped,
                text + "is always true and is left out: one cannot stop there");
            continue;
        }
        add(0, Severity::Warning, Code::ConditionMangled,
            text + quotedName(condition.condition) + " becomes " + quotedName(fault->result) +
                ": " + fault->reason);
    }
}

void InputCheck::reportRepeatedConditions(const Kernel& kernel, const Kernel& known) {
    using Place = std::tuple<std::uint32_t, std::string_view, std::uint32_t>;
    const auto placeOf = [](const BreakableCondition& condition) {
        return Place(condition.kind, condition.file, condition.line);
    };
    std::map<Place, std::set<std::string_view>> texts;
    for (const BreakableCondition& condition : known.breakableConditions()) {
        texts[placeOf(condition)].insert(condition.condition);
    }
    std::set<std::uint32_t> kinds;
    std::uint64_t lines = 0;
    for (const BreakableCondition& condition : kernel.breakableConditions()) {
        const auto place = texts.find(placeOf(condition));
        if (place != texts.end() && !place->second.contains(condition.condition)) {
            kinds.insert(condition.kind);
            lines += condition.kind == BreakableCondition::FileLine ? 1 : 0;
        }
    }
    std::string places;
    for (const std::uint32_t kind : kinds) { // Start, Stop, FileLine
        places += places.empty() ? "" : " and ";
        places += kind == BreakableCondition::Start ? "its start"
                  : kind == BreakableCondition::Stop
                      ? "its end"
                      : inWords(lines, "source line") + " of this file";
    }
    if (!places.empty()) {
        add(0, Severity::Warning, Code::RepeatedCondition,
            "kernel " + quotedName(kernel.name()) + " has other conditions for " + places +
                " already and keeps both: was the file added before?");
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
