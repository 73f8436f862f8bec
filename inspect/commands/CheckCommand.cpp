// `consolidator-inspect check OPTIONS`: what a run of the consolidator would make of its inputs,
// and what it would pass over in silence.
//
//     $ consolidator-inspect check -f accelerator.bin -h system.hier -k kernel.xml -l top.ll
//     top.ll:30: error: line begins with "Info", not "Bit": reading stops here and nothing of …
//     …
//
// It takes the inputs as the consolidator does, reads them by the same code in the same order, and
// writes nothing. What it prints is told in CheckReport.h.

#include "driver/Inputs.h"
#include "inspect/check/CheckReport.h"
#include "inspect/check/Findings.h"
#include "inspect/check/OldDatabase.h"
#include "inspect/check/ProjectCheck.h"
#include "inspect/commands/Commands.h"
#include "inspect/commands/UsageError.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <variant>
#include <vector>

namespace consolidator::inspect {

namespace {

/// Whether a long name of the option begins so, or it has this letter.
bool isMeantBy(std::string_view begin, const CLI::Option& option) {
    const auto isBegun = [begin](std::string_view name) { return name.starts_with(begin); };
    return std::ranges::any_of(option.get_lnames(), isBegun) ||
           std::ranges::count(option.get_snames(), begin) > 0;
}

/// The names of an option for the command line: "-r,--ram,--ra,--r". As with the consolidator, a
/// long one may be abbreviated as long as no other one begins in the same way. Not to the letter of
/// another option, though: to newer versions of the parser "--f" and "-f" are the same name. `all`
/// has all options under their whole names; without it there are no abbreviations.
std::string namesOf(const CLI::App* all, std::string_view shortName, std::string_view longName) {
    std::string names(shortName);
    names += names.empty() ? "--" : ",--";
    names += longName;
    if (all == nullptr) {
        return names;
    }
    const auto others = all->get_options([name = std::string(longName)](const CLI::Option* option) {
        return !option->check_lname(name);
    });
    for (std::size_t length = longName.size() - 1; length > 0; --length) {
        const std::string_view begin = longName.substr(0, length);
        const auto isMeant = [begin](const CLI::Option* other) { return isMeantBy(begin, *other); };
        if (std::ranges::none_of(others, isMeant)) {
            names += ",--";
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
        ->check(emptyNameError)
        ->type_name("FILE");
}

class CheckCommand final : public Command {
public:
    /// Adds the command to the command line.
    explicit CheckCommand(CLI::App& commandLine);

    Status run(Console& console) override;

private:
    /// `all` has these options already, by their whole names; without it none is abbreviated.
    void addOptions(CLI::App& command, const CLI::App* all);
    Status check(Console& console);
    void reportDatabaseAsInput(Findings& findings) const;

    InputPaths inputs_;
    std::vector<std::string> dwarfFiles_;
    bool add_ = false;    ///< As without; the consolidator has this option.
    bool create_ = false; ///< What the database holds now is not looked at.
    std::string databasePath_;
    std::string project_;
    std::string format_ = "text";
};

CheckCommand::CheckCommand(CLI::App& commandLine) {
    // How far a name may be cut short is known when all are, and an option takes no more names once
    // it is added. So they are added twice, first to a command line that nobody uses.
    CLI::App all;
    addOptions(all, nullptr);
    CLI::App& command = *commandLine.add_subcommand(
        "check", "Read inputs as the consolidator does, and say what goes wrong; write nothing");
    addOptions(command, &all);
}

void CheckCommand::addOptions(CLI::App& command, const CLI::App* all) {
    const auto names = [all](std::string_view shortName, std::string_view longName) {
        return namesOf(all, shortName, longName);
    };
    command.set_help_flag(names("", "help"), "Print this help and exit");
    CLI::Option* const add =
        command.add_flag(names("-a", "add"), add_, "Add to what the database holds (default)");
    command
        .add_flag(names("-c", "create"), create_,
                  "Check for a new database, whatever the one of -f holds now")
        ->excludes(add);
    for (const InputOption& input : inputOptions()) {
        const auto* const many = std::get_if<InputOption::ManyPaths>(&input.paths);
        addList(command, names(std::string{'-', input.letter}, input.longName),
                many != nullptr ? inputs_.**many : dwarfFiles_,
                std::string(input.checkDescription));
    }
    command
        .add_option(names("-f", "consolidated_file"), databasePath_,
                    "Consolidated file that the inputs would be added to")
        ->check(emptyNameError)
        ->type_name("DB");
    command.add_option(names("-p", "project"), project_, "Name of the project")->type_name("NAME");
    command.add_option(names("", "format"), format_, "Form of the output: text or json")
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
        console.err << printable(databasePath_) << ": error: " << old.error() << '\n';
        return Status::Unreadable;
    }
    for (std::size_t i = 1; i < dwarfFiles_.size(); ++i) {
        findings.add(
            {dwarfFiles_[i], 0, Severity::Error, Code::RepeatedOption,
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
    for (const InputOption& input : inputOptions()) {
        for (const std::string& path : inputs_.of(input)) {
            std::error_code error;
            if (!databasePath_.empty() && std::filesystem::equivalent(path, databasePath_, error)) {
                findings.add({path, 0, Severity::Error, Code::DatabaseIsInput,
                              "is given with -f too: a run empties it before it is read"});
            }
        }
    }
}

} // namespace

std::unique_ptr<Command> makeCheckCommand(CLI::App& commandLine) {
    return std::make_unique<CheckCommand>(commandLine);
}

} // namespace consolidator::inspect
