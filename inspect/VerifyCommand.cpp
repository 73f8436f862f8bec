#include "inspect/VerifyCommand.h"

#include "inspect/ContainerCheck.h"
#include "inspect/Database.h"
#include "inspect/Numbers.h"
#include "inspect/Printable.h"
#include "inspect/Style.h"

#include <CLI/CLI.hpp>
#include <ostream>

namespace consolidator::inspect {

namespace {

using Severity = Finding::Severity;

std::string inColour(Severity severity, bool colour) {
    const std::string_view word = label(severity);
    switch (severity) {
    case Severity::Error:
        return red(word, colour);
    case Severity::Warning:
        return yellow(word, colour);
    case Severity::Note:
        break;
    }
    return std::string(word);
}

/// "2 errors, 1 warning"; "no faults found", if there is nothing but notes.
std::string summary(const Findings& findings) {
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

void print(const Findings& findings, const std::string& path, Console& console) {
    for (const Finding& finding : findings.kept()) {
        console.out << path << ':' << inHex(finding.offset) << ": "
                    << inColour(finding.severity, console.colour) << ": " << finding.text << '\n';
    }
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Note}) {
        const std::uint64_t count = findings.count(severity);
        if (count > Findings::mostKept) {
            console.out << path << ": the first " << Findings::mostKept << " of "
                        << inWords(count, label(severity)) << " are shown\n";
        }
    }
    console.out << path << ": " << summary(findings) << '\n';
}

} // namespace

VerifyCommand::VerifyCommand(CLI::App& commandLine) {
    CLI::App* command =
        commandLine.add_subcommand("verify", "Check strictly whether a database is in order");
    command->add_option("DB", path_, "The consolidated file to check")->required();
}

Status VerifyCommand::run(Console& console) {
    const std::string path = printable(path_);
    Findings found;
    std::string fault = openingFault(path_);
    if (fault.empty() && !ContainerCheck(found).check(path_)) {
        fault = "is no regular file";
    }
    if (!fault.empty()) {
        console.err << path << ": error: " << fault << '\n';
        return unreadable;
    }
    print(found, path, console);
    return found.count(Severity::Error) + found.count(Severity::Warning) == 0 ? fine : findings;
}

} // namespace consolidator::inspect
