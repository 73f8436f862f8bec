#include "inspect/Inspector.h"

#include "inspect/AtCommand.h"
#include "inspect/BreakCommand.h"
#include "inspect/CheckCommand.h"
#include "inspect/DiffCommand.h"
#include "inspect/FindCommand.h"
#include "inspect/JsonCommand.h"
#include "inspect/KernelCommand.h"
#include "inspect/SqliteCommand.h"
#include "inspect/SummaryCommand.h"
#include "inspect/UsageError.h"
#include "inspect/VerifyCommand.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::inspect {

namespace {

/// Help without the abbreviations of long names, which are names of their own to the parser.
class HelpFormatter final : public CLI::Formatter {
public:
    // NOLINTNEXTLINE(readability-identifier-naming): the parser's name
    std::string make_option_name(const CLI::Option* option, bool isPositional) const override {
        std::string name;
        if (isPositional || option->get_lnames().empty()) {
            name = CLI::Formatter::make_option_name(option, isPositional);
        } else {
            for (const std::string& shortName : option->get_snames()) {
                name += "-" + shortName + ",";
            }
            name += "--" + option->get_lnames().front();
        }
        return name;
    }
};

/// The whole command line, and the commands that fill themselves from it.
class CommandLine {
public:
    CommandLine() {
        app_.name("consolidator-inspect");
        // "-h" is what the consolidator calls a hierarchy file.
        app_.set_help_flag("--help", "Print this help and exit");
        app_.set_version_flag("--version", CONSOLIDATOR_VERSION, "Print the version and exit");
        app_.formatter(std::make_shared<HelpFormatter>());
        app_.get_formatter()->label("SUBCOMMAND", "COMMAND ...");
        app_.require_subcommand(1);
        add<SummaryCommand>();
        add<KernelCommand>();
        add<FindCommand>();
        add<AtCommand>();
        add<BreakCommand>();
        add<CheckCommand>();
        add<JsonCommand>();
        add<SqliteCommand>();
        add<DiffCommand>();
        add<VerifyCommand>();
    }

    Status run(int argc, const char* const* argv, Console& console) {
        try {
            app_.parse(argc, argv);
        } catch (const CLI::Success& request) {
            app_.exit(request, console.out, console.err); // prints what --help or --version want
            return Status::Fine;
        } catch (const CLI::ParseError& error) {
            return usageError(console, app_, error);
        }
        for (const auto& [subcommand, command] : commands_) {
            if (subcommand->parsed()) {
                return command->run(console);
            }
        }
        return Status::Unreadable;
    }

private:
    template <typename NewCommand>
    void add() {
        auto command = std::make_unique<NewCommand>(app_);
        commands_.emplace_back(app_.get_subcommands({}).back(), std::move(command));
    }

    CLI::App app_{"Shows what is in a consolidated debug database, and why something is not."};
    std::vector<std::pair<CLI::App*, std::unique_ptr<Command>>> commands_; ///< In order of help.
};

} // namespace

int inspect(int argc, const char* const* argv, Console& console) {
    return static_cast<int>(CommandLine().run(argc, argv, console));
}

} // namespace consolidator::inspect
