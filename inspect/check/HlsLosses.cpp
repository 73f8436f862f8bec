#include "inspect/check/HlsLosses.h"

#include "shared/TextHash.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace consolidator::inspect {

namespace {

/// Goes through the entries of one file.
class Losses {
public:
    Losses(const HLSFile& reader, const std::string& path, Findings& findings)
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

} // namespace

void reportHlsLosses(const HLSFile& reader, const std::string& path, Findings& findings) {
    Losses(reader, path, findings).report();
}

} // namespace consolidator::inspect
