// `consolidator-inspect verify DB`: whether a database is what it should be, to the byte.
//
//     accelerator.bin:0x8aa: error: section 3 (kernel data), kernel 2 of 2 ("checksum"), argument 1
//         of 3: the hardware name has a length of 9000, with 411 bytes left
//     accelerator.bin: 1 error
//
// (each finding on one line), or
//
//     accelerator.bin: no faults found

#include "inspect/commands/Commands.h"
#include "inspect/commands/UsageError.h"
#include "inspect/text/Style.h"
#include "query/Database.h"
#include "query/integrity/ContainerCheck.h"
#include "shared/Numbers.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <string>

namespace consolidator::inspect {

namespace {

/// "2 errors, 1 warning"; "no faults found", if there is nothing but notes.
std::string summary(const DatabaseFindings& findings) {
    std::string result;
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note}) {
        const std::uint64_t count = findings.count(severity);
        if (severity == Severity::Note && result.empty()) {
            result = "no faults found";
        }
        if (count > 0) {
            result += result.empty() ? "" : ", ";
            result += inWords(count, label(severity));
        }
    }
    return result;
}

void print(const DatabaseFindings& findings, const std::string& path, Console& console) {
    for (const Finding& finding : findings.kept()) {
        console.out << path << ':' << inHex(finding.offset) << ": "
                    << styledLabel(finding.severity, console.colour) << ": " << finding.text
                    << '\n';
    }
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note}) {
        const std::uint64_t count = findings.count(severity);
        if (count > DatabaseFindings::mostKept) {
            console.out << path << ": the first " << DatabaseFindings::mostKept << " of "
                        << inWords(count, label(severity)) << " are shown\n";
        }
    }
    console.out << path << ": " << summary(findings) << '\n';
}

/// The status is `Findings` if there is an error or a warning; notes alone are fine. A file that is
/// no database at all is one with a finding, and only one that cannot be opened is `Unreadable`.
class VerifyCommand final : public Command {
public:
    /// Adds the command to the command line.
    explicit VerifyCommand(CLI::App& commandLine);

    Status run(Console& console) override;

private:
    std::string path_;
};

VerifyCommand::VerifyCommand(CLI::App& commandLine) {
    CLI::App* command =
        commandLine.add_subcommand("verify", "Check strictly whether a database is in order");
    command->add_option("DB", path_, "The consolidated file to check")
        ->required()
        ->check(emptyNameError);
}

Status VerifyCommand::run(Console& console) {
    const std::string path = printable(path_);
    DatabaseFindings found;
    std::string error = openingError(path_);
    if (error.empty() && !ContainerCheck(found).check(path_)) {
        error = "is no regular file";
    }
    if (!error.empty()) {
        console.err << path << ": error: " << error << '\n';
        return Status::Unreadable;
    }
    print(found, path, console);
    return found.count(Severity::Error) + found.count(Severity::Warning) == 0 ? Status::Fine
                                                                              : Status::Findings;
}

} // namespace

std::unique_ptr<Command> makeVerifyCommand(CLI::App& commandLine) {
    return std::make_unique<VerifyCommand>(commandLine);
}

} // namespace consolidator::inspect
