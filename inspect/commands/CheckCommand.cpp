#include "inspect/commands/CheckCommand.h"

#include "inspect/check/CheckReport.h"
#include "inspect/check/OldDatabase.h"
#include "inspect/check/ProjectCheck.h"
#include "inspect/commands/UsageError.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <filesystem>
#include <ostream>
#include <string_view>
#include <system_error>

namespace consolidator::inspect {

namespace {

constexpr std::array<std::string_view, 13> longNames{
    "add", "create", "DWARF",  "hierarchy",         "kernel",  "hls",  "aux",
    "ll",  "ram",    "format", "consolidated_file", "project", "help",
};

constexpr std::string_view shortNames = "acdhksxlrfp";

/// The names of an option for the command line: "-r,--ram,--ra,--r". As with the consolidator, a
/// long one may be abbreviated as long as no other one begins in the same way. Not to the letter of
/// another option, though: to newer versions of the parser "--f" and "-f" are the same name.
std::string namesOf(std::string_view shortName, std::string_view longName) {
    std::string names(shortName);
    for (std::size_t length = longName.size(); length > 0; --length) {
        const std::string_view begin = longName.substr(0, length);
        const auto isBegun = [begin](std::string_view name) { return name.starts_with(begin); };
        const bool isOthersLetter = length == 1 &&
                                    shortNames.find(begin.front()) != std::string_view::npos &&
                                    !shortName.ends_with(begin);
        if (std::ranges::count_if(longNames, isBegun) == 1 && !isOthersLetter) {
            names += names.empty() ? "--" : ",--";
            names += begin;
        }
    }
    return names;
}

/// An option that takes one value per occurrence, as often as one likes.
void addList(CLI::App& command, const std::string& names, std::vector<std::string>& paths,
             const std::string& help) {
    command.add_option(names, paths, help)
        ->allow_extra_args(false)
        ->check(emptyNameFault)
        ->type_name("FILE");
}

/// Calls visit(path) for each input file.
template <typename Visit>
void forEachPath(const InputPaths& inputs, Visit visit) {
    if (!inputs.dwarfFile.empty()) {
        visit(inputs.dwarfFile);
    }
    for (const auto* paths : {&inputs.hierarchyFiles, &inputs.kernelFiles, &inputs.hlsFiles,
                              &inputs.auxFiles, &inputs.llFiles, &inputs.ramFiles}) {
        std::ranges::for_each(*paths, visit);
    }
}

} // namespace

CheckCommand::CheckCommand(CLI::App& commandLine) {
    CLI::App& command = *commandLine.add_subcommand(
        "check", "Read inputs as the consolidator does, and say what goes wrong; write nothing");
    command.set_help_flag(namesOf("", "help"), "Print this help and exit");
    CLI::Option* const add =
        command.add_flag(namesOf("-a", "add"), add_, "Add to what the database holds (default)");
    command
        .add_flag(namesOf("-c", "create"), create_,
                  "Check for a new database, whatever the one of -f holds now")
        ->excludes(add);
    addList(command, namesOf("-d", "DWARF"), dwarfFiles_, "DWARF metadata file");
    addList(command, namesOf("-h", "hierarchy"), inputs_.hierarchyFiles,
            "Hierarchy metadata file of the system linker");
    addList(command, namesOf("-k", "kernel"), inputs_.kernelFiles,
            "kernel.xml of high-level synthesis");
    addList(command, namesOf("-s", "hls"), inputs_.hlsFiles,
            "Kernel metadata of high-level synthesis");
    addList(command, namesOf("-x", "aux"), inputs_.auxFiles,
            "*_auxiliary.xml of high-level synthesis");
    addList(command, namesOf("-l", "ll"), inputs_.llFiles, "*.ll file of bitstream generation");
    addList(command, namesOf("-r", "ram"), inputs_.ramFiles, "RAM utilization report of synthesis");
    command
        .add_option(namesOf("-f", "consolidated_file"), databasePath_,
                    "Consolidated file that the inputs would be added to")
        ->check(emptyNameFault)
        ->type_name("DB");
    command.add_option(namesOf("-p", "project"), project_, "Name of the project")
        ->type_name("NAME");
    command.add_option(namesOf("", "format"), format_, "Form of the output: text or json")
        ->check(CLI::IsMember({"text", "json"}))
        ->type_name("FORM");
}

Status CheckCommand::run(Console& console) {
    if (!dwarfFiles_.empty()) {
        inputs_.dwarfFile = dwarfFiles_.front();
    }
    if (!inputs_.anyInput()) {
        return usageError(console, "check", "no input file is given");
    }
    return check(console);
}

Status CheckCommand::check(Console& console) {
    Findings findings;
    OldDatabase old;
    if (create_ && !databasePath_.empty()) {
        OldDatabase::checkWritable(databasePath_, findings);
    }
    if (!databasePath_.empty() && !create_ && !old.read(databasePath_, project_, findings)) {
        console.err << printable(databasePath_) << ": error: " << old.fault() << '\n';
        return Status::Unreadable;
    }
    for (std::size_t i = 1; i < dwarfFiles_.size(); ++i) {
        findings.add(
            {dwarfFiles_[i], 0, Severity::Error, "repeated-option",
             "-d is given more than once: the consolidator refuses the whole command line, "
             "and only the first one is looked at here"});
    }
    reportDatabaseAsInput(findings);
    Progress progress(console.err, console.progress);
    InputCheck inputs(old.content(), findings, progress);
    inputs.addOldDatabase(databasePath_);
    std::ostream nowhere(nullptr); // what readers say themselves is in their diagnostics too
    addInputs(old.content(), inputs_, nowhere, &inputs);

    ProjectCheck project(old.content(), inputs, findings, progress);
    project.run();
    const CheckReport report{findings, project.coverage(), project.mistakenKernels(),
                             !inputs.readLogicLocations().empty()};
    if (format_ == "json") {
        printJson(report, console.out);
    } else {
        printText(report, console);
    }
    const bool anyFault =
        findings.count(Severity::Error) > 0 || findings.count(Severity::Warning) > 0;
    return anyFault ? Status::Findings : Status::Fine;
}

void CheckCommand::reportDatabaseAsInput(Findings& findings) const {
    forEachPath(inputs_, [&](const std::string& path) {
        std::error_code error;
        if (!databasePath_.empty() && std::filesystem::equivalent(path, databasePath_, error)) {
            findings.add({path, 0, Severity::Error, "database-is-input",
                          "is given with -f too: a run empties it before it is read"});
        }
    });
}

} // namespace consolidator::inspect
