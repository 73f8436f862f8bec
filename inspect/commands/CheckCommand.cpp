// `consolidator-inspect check OPTIONS`: what a run of the consolidator would make of its inputs,
// and what it would pass over in silence. `consolidator-inspect merge OPTIONS`: the same, and the
// database is written if there is no error.
//
//     $ consolidator-inspect check -f accelerator.bin -h system.hier -k kernel.xml -l top.ll
//     top.ll:30: error: line begins with "Info", not "Bit": reading stops here and nothing of …
//     …
//
//     $ consolidator-inspect merge -f accelerator.bin -h system.hier -k kernel.xml -l top.ll
//     …
//     accelerator.bin: not written: 1 error
//
// Both take the inputs as the consolidator does and read them by the same code in the same order.
// `check` writes nothing; `merge` writes what the consolidator would, byte for byte, or leaves the
// old database as it is. What they print is told in CheckReport.h.

#include "driver/Inputs.h"
#include "inspect/check/CheckReport.h"
#include "inspect/check/Findings.h"
#include "inspect/check/ProjectCheck.h"
#include "inspect/commands/Commands.h"
#include "inspect/commands/UsageError.h"
#include "query/Database.h"
#include "shared/Numbers.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <variant>
#include <vector>

namespace consolidator::inspect {

namespace {

/// Why a run cannot write to what is at `path`; empty if it can.
std::string writingError(const std::string& path) {
    return access(path.c_str(), W_OK) == 0 ? "" : std::strerror(errno);
}

/// The folder of a file that is to be made, with a "/" behind it, so that a file is none.
std::string folderOf(const std::string& path) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "./" : folder + '/';
}

void reportUnwritable(const std::string& path, const std::string& reason, Findings& findings) {
    findings.add({path, 0, Severity::Error, Code::NotWritable,
                  reason + ": a run cannot open it and does nothing"});
}

/// A database in memory that inputs may be added to; empty unless one was read.
class OldDatabase {
public:
    /// Reads the file at `path`, to be called once at most. That there is none, or that a run for
    /// this project (empty: none is named) would refuse or replace it, makes a finding. False, with
    /// a error(), when it cannot be opened.
    bool read(const std::string& path, const std::string& project, Findings& findings);

    /// Whether a run can write the file at `path`, or make it if there is none. Else that is a
    /// finding.
    static bool checkWritable(const std::string& path, Findings& findings);

    /// In words that follow "error: ".
    const std::string& error() const { return database_.error(); }

    /// What is in it, for inputs to be added to.
    ConsolidatedFile& content() { return database_.content(); }

private:
    void reportUnusable(Findings& findings);

    Database database_;
};

bool OldDatabase::read(const std::string& path, const std::string& project, Findings& findings) {
    std::error_code error;
    if (!std::filesystem::exists(path, error) && !error) {
        if (checkWritable(path, findings)) {
            findings.add(
                {path, 0, Severity::Note, Code::NewDatabase, "does not exist: a run makes it"});
        }
        return true;
    }
    const Database::Readable readable = database_.read(path);
    if (readable == Database::Readable::Not) {
        if (std::filesystem::is_directory(path, error) || !std::ifstream(path).is_open()) {
            return false;
        }
        reportUnusable(findings);
        return true;
    }
    checkWritable(path, findings);
    if (readable == Database::Readable::InPart) {
        findings.add({path, 0, Severity::Error, Code::DamagedDatabase,
                      database_.error() + "; what could not be read is lost after a run"});
    }
    if (!project.empty() && !database_.project().empty() && project != database_.project()) {
        findings.add({path, 0, Severity::Error, Code::OtherProject,
                      "is of project " + quotedName(database_.project()) + ", not " +
                          quotedName(project) + ": a run refuses it and does nothing"});
    }
    return true;
}

bool OldDatabase::checkWritable(const std::string& path, Findings& findings) {
    std::error_code error;
    const bool exists = std::filesystem::exists(path, error) || error;
    std::string reason = writingError(exists ? path : folderOf(path));
    if (reason.empty() && std::filesystem::is_directory(path, error)) {
        reason = std::strerror(EISDIR);
    }
    if (!reason.empty()) {
        reportUnwritable(
            path, (exists ? "cannot be written: " : "does not exist and cannot be made: ") + reason,
            findings);
    }
    return reason.empty();
}

void OldDatabase::reportUnusable(Findings& findings) {
    const std::string path = database_.path();
    const bool isNewer = database_.content().isNewer();
    findings.add({path, 0, Severity::Error, isNewer ? Code::NewerVersion : Code::NoDatabase,
                  isNewer ? database_.error() + ": a run refuses it and does nothing"
                          : "is no consolidated file: a run replaces all of its content"});
    database_ = Database(); // the inputs are looked at all the same
}

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

/// Whether the consolidator would refuse the whole run. So does a merge then, whatever its options.
bool isRefused(const Findings& findings) {
    return std::ranges::any_of(findings.kept(), [](const Finding& finding) {
        return finding.code == Code::OtherProject || finding.code == Code::NewerVersion ||
               finding.code == Code::RepeatedOption;
    });
}

/// Whether the file at `path` is what this program prints into. To open it for writing empties it,
/// and a database among findings is none.
bool isPrintedInto(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error) &&
           (std::filesystem::equivalent(path, "/dev/stdout", error) ||
            std::filesystem::equivalent(path, "/dev/stderr", error));
}

/// Says why the database could not be written.
Status writingFailed(const std::string& path, const std::string& reason, Console& console) {
    console.err << printable(path) << ": error: cannot be written: " << reason << '\n';
    return Status::Unreadable;
}

/// `check` and `merge`.
class CheckCommand final : public Command {
public:
    enum class Mode { Check, Merge };

    /// Adds the command to the command line.
    CheckCommand(CLI::App& commandLine, Mode mode);

    Status run(Console& console) override;

private:
    /// `all` has these options already, by their whole names; without it none is abbreviated.
    void addOptions(CLI::App& command, const CLI::App* all);
    void addMergeOptions(CLI::App& command);
    bool isMerge() const { return mode_ == Mode::Merge; }
    bool writes() const { return isMerge() && !dryRun_; }
    Status check(Console& console);
    Status look(OldDatabase& old, Findings& findings, Console& console);
    void reportCommandLine(Findings& findings) const;
    void reportDatabaseAsInput(Findings& findings) const;
    std::string reasonNotToWrite(const Findings& findings) const;
    MergeOutcome write(ConsolidatedFile& database, const Findings& findings) const;
    Status statusOf(const Findings& findings) const;

    Mode mode_;
    InputPaths inputs_;
    std::vector<std::string> dwarfFiles_;
    bool add_ = false;    ///< As without; the consolidator has this option.
    bool create_ = false; ///< What the database holds now is not looked at.
    std::string databasePath_;
    std::string project_;
    std::string format_ = "text";

    // Of a merge alone.
    bool warningsAreErrors_ = false;
    bool keepGoing_ = false; ///< Writes in spite of errors.
    bool dryRun_ = false;    ///< Is a check.
};

CheckCommand::CheckCommand(CLI::App& commandLine, Mode mode) : mode_(mode) {
    // How far a name may be cut short is known when all are, and an option takes no more names once
    // it is added. So they are added twice, first to a command line that nobody uses.
    CLI::App all;
    addOptions(all, nullptr);
    CLI::App& command =
        isMerge()
            ? *commandLine.add_subcommand(
                  "merge", "Read inputs as check does, and write the database if there is no error")
            : *commandLine.add_subcommand(
                  "check",
                  "Read inputs as the consolidator does, and say what goes wrong; write nothing");
    addOptions(command, &all);
    if (isMerge()) {
        addMergeOptions(command);
    }
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
                  isMerge() ? "Start the database afresh, whatever it holds now"
                            : "Check for a new database, whatever the one of -f holds now")
        ->excludes(add);
    for (const InputOption& input : inputOptions()) {
        const auto* const many = std::get_if<InputOption::ManyPaths>(&input.paths);
        addList(command, names(std::string{'-', input.letter}, input.longName),
                many != nullptr ? inputs_.**many : dwarfFiles_,
                std::string(input.checkDescription));
    }
    command
        .add_option(names("-f", "consolidated_file"), databasePath_,
                    isMerge() ? "Consolidated file that the inputs are added to; needed"
                              : "Consolidated file that the inputs would be added to")
        ->check(emptyNameError)
        ->type_name("DB");
    command.add_option(names("-p", "project"), project_, "Name of the project")->type_name("NAME");
    command.add_option(names("", "format"), format_, "Form of the output: text or json")
        ->check(CLI::IsMember({"text", "json"}))
        ->type_name("FORM");
}

/// They have no abbreviations, and leave the other options theirs: those of the consolidator's
/// command line.
void CheckCommand::addMergeOptions(CLI::App& command) {
    command.add_flag("--werror", warningsAreErrors_, "Take warnings for errors: write nothing");
    command.add_flag("--keep-going", keepGoing_,
                     "Write in spite of errors, as the consolidator does");
    command.add_flag("--dry-run", dryRun_, "Do what check does: write nothing");
}

Status CheckCommand::run(Console& console) {
    if (!dwarfFiles_.empty()) {
        inputs_.dwarfFile = dwarfFiles_.front();
    }
    const std::string_view name = isMerge() ? "merge" : "check";
    if (isMerge() && databasePath_.empty()) {
        return usageError(console, name, "no consolidated file is given; -f names it");
    }
    if (!inputs_.anyInput()) {
        return usageError(console, name, "no input file is given");
    }
    return check(console);
}

Status CheckCommand::check(Console& console) {
    Findings findings;
    OldDatabase old;
    const Status status = look(old, findings, console);
    if (status != Status::Fine) {
        return status;
    }
    reportCommandLine(findings);
    Progress progress(console.err, console.progress);
    InputCheck inputs(old.content(), findings, progress);
    inputs.addOldDatabase(databasePath_);
    std::ostream nowhere(nullptr); // what readers say themselves is in their diagnostics too
    addInputs(old.content(), inputs_, nowhere, &inputs);

    ProjectCheck project(old.content(), inputs, findings, progress);
    project.run();
    std::optional<MergeOutcome> outcome;
    if (writes()) {
        outcome = write(old.content(), findings);
    }
    const CheckReport report{findings, project.coverage(), project.kernelsOfWrongKind(),
                             !inputs.readLogicLocations().empty(), outcome};
    if (format_ == "json") {
        printJson(report, console.out);
    } else {
        printText(report, console);
    }
    return outcome && outcome->hasFailed ? writingFailed(databasePath_, outcome->reason, console)
                                         : statusOf(findings);
}

/// Looks at the database as it is, and opens it if it will be written: from then on, an input that
/// is the database counts as empty, as with the consolidator. Fine, or Unreadable after a message.
Status CheckCommand::look(OldDatabase& old, Findings& findings, Console& console) {
    if (create_ && !databasePath_.empty()) {
        OldDatabase::checkWritable(databasePath_, findings);
    }
    if (!databasePath_.empty() && !create_ && !old.read(databasePath_, project_, findings)) {
        console.err << printable(databasePath_) << ": error: " << old.error() << '\n';
        return Status::Unreadable;
    }
    if (!writes()) {
        return Status::Fine;
    }
    if (isPrintedInto(databasePath_)) {
        return writingFailed(databasePath_, "it is the output of this program", console);
    }
    if (!old.content().openTarget(databasePath_)) {
        return writingFailed(databasePath_, std::strerror(errno), console);
    }
    if (!project_.empty()) {
        old.content().setProject(project_);
    }
    return Status::Fine;
}

void CheckCommand::reportCommandLine(Findings& findings) const {
    for (std::size_t i = 1; i < dwarfFiles_.size(); ++i) {
        findings.add(
            {dwarfFiles_[i], 0, Severity::Error, Code::RepeatedOption,
             "-d is given more than once: the consolidator refuses the whole command line, "
             "and only the first one is looked at here"});
    }
    reportDatabaseAsInput(findings);
}

void CheckCommand::reportDatabaseAsInput(Findings& findings) const {
    for (const InputOption& input : inputOptions()) {
        for (const std::string& path : inputs_.of(input)) {
            std::error_code error;
            if (!databasePath_.empty() && std::filesystem::equivalent(path, databasePath_, error)) {
                findings.add({path, 0, Severity::Error, Code::DatabaseIsInput,
                              "is given with -f too: a run takes it as empty"});
            }
        }
    }
}

/// In words that follow "not written: "; empty if nothing speaks against it.
std::string CheckCommand::reasonNotToWrite(const Findings& findings) const {
    if (isRefused(findings)) {
        return "the run is refused";
    }
    const std::uint64_t errors = findings.count(Severity::Error);
    const std::uint64_t warnings = warningsAreErrors_ ? findings.count(Severity::Warning) : 0;
    if (keepGoing_ || errors + warnings == 0) {
        return "";
    }
    std::string reason = errors > 0 ? inWords(errors, "error") : "";
    if (warnings > 0) {
        reason += (reason.empty() ? "" : ", ") + inWords(warnings, "warning");
    }
    return reason;
}

/// Writes the database unless the findings are against it.
MergeOutcome CheckCommand::write(ConsolidatedFile& database, const Findings& findings) const {
    MergeOutcome outcome{databasePath_, reasonNotToWrite(findings)};
    if (outcome.isWritten() && !database.write()) {
        outcome.reason = std::strerror(errno);
        outcome.hasFailed = true;
    }
    return outcome;
}

/// A merge does its work in spite of warnings, unless it is told not to; a check is there for them.
Status CheckCommand::statusOf(const Findings& findings) const {
    const bool doWarningsCount = !writes() || warningsAreErrors_;
    const bool anyFault = findings.count(Severity::Error) > 0 ||
                          (doWarningsCount && findings.count(Severity::Warning) > 0);
    return anyFault ? Status::Findings : Status::Fine;
}

} // namespace

std::unique_ptr<Command> makeCheckCommand(CLI::App& commandLine) {
    return std::make_unique<CheckCommand>(commandLine, CheckCommand::Mode::Check);
}

std::unique_ptr<Command> makeMergeCommand(CLI::App& commandLine) {
    return std::make_unique<CheckCommand>(commandLine, CheckCommand::Mode::Merge);
}

} // namespace consolidator::inspect
