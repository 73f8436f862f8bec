#include "inspect/commands/VerifyCommand.h"

#include "inspect/commands/UsageError.h"
#include "inspect/text/Style.h"
#include "query/Database.h"
#include "query/integrity/ContainerCheck.h"
#include "shared/Numbers.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <ostream>

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

} // namespace

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

} // namespace consolidator::inspect
