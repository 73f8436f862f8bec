#include "inspect/Inspector.h"

#include "inspect/commands/Commands.h"
#include "inspect/commands/UsageError.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator::inspect {

namespace {

/// Makes the text of --help, as the parser's own is another one with each of its versions:
///
///     Show the source lines at which kernels can be stopped
///     Usage: consolidator-inspect break [OPTIONS] DB FILE[:LINE]
///
///     Arguments:
///       DB                          The consolidated file to look into
///       FILE[:LINE]                 A source file, as the end of its path, ...
///
///     Options:
///       --help                      Print this help and exit
class HelpFormatter final : public CLI::FormatterBase {
public:
    // NOLINTNEXTLINE(readability-identifier-naming): the parser's name
    std::string make_help(const CLI::App* app, std::string /*name*/,
                          CLI::AppFormatMode /*mode*/) const override {
        const auto commands = app->get_subcommands([](const CLI::App*) { return true; });
        std::string usage = "Usage: " + pathOf(*app) + " [OPTIONS]";
        std::string arguments;
        std::string options;
        for (const CLI::Option* option : app->get_options()) {
            if (option->get_positional()) {
                const std::string name = argumentName(*option);
                usage += option->get_required() ? ' ' + name : " [" + name + ']';
                arguments += row(argumentName(*option), option->get_description());
            } else {
                options += row(optionNames(*option), option->get_description());
            }
        }
        std::string commandRows;
        for (const CLI::App* command : commands) {
            commandRows += row(command->get_name(), command->get_description());
        }
        return app->get_description() + '\n' + usage + (commands.empty() ? "" : " COMMAND ...") +
               '\n' + section("Arguments", arguments) + section("Options", options) +
               section("Commands", commandRows) + '\n';
    }

private:
    static std::string pathOf(const CLI::App& app) {
        const CLI::App* const parent = app.get_parent();
        return parent == nullptr ? app.get_name() : pathOf(*parent) + ' ' + app.get_name();
    }

    /// The type's name where a command has set one: the parser's name of an argument may hold no
    /// brackets.
    static std::string argumentName(const CLI::Option& option) {
        const std::string type = option.get_type_name();
        return type == defaultType ? option.get_name(true) : type;
    }

    /// Without the abbreviations of long names, which are names of their own to the parser.
    static std::string optionNames(const CLI::Option& option) {
        std::string names;
        for (const std::string& shortName : option.get_snames()) {
            names += '-' + shortName + ',';
        }
        if (option.get_lnames().empty()) {
            names.pop_back(); // the comma
        } else {
            names += "--" + option.get_lnames().front();
        }
        if (option.get_items_expected_max() > 0) {
            names += ' ' + option.get_type_name();
        }
        return option.get_items_expected_max() > 1 ? names + " ..." : names;
    }

    static std::string row(std::string names, const std::string& description) {
        constexpr std::size_t column = 28;
        names.resize(std::max(names.size() + 1, column), ' ');
        return "  " + names + description + '\n';
    }

    static std::string section(const std::string& title, const std::string& rows) {
        return rows.empty() ? "" : '\n' + title + ":\n" + rows;
    }

    static constexpr std::string_view defaultType = "TEXT";
};

/// The whole command line, and the commands that fill themselves from it.
class CommandLine {
public:
    CommandLine() {
        app_.name("consolidator-inspect");
        // "-h" is what the consolidator calls a hierarchy file.
        app_.set_help_flag("--help", "Print this help and exit");
        app_.set_version_flag("--version", CONSOLIDATOR_VERSION "\n" CONSOLIDATOR_LINKAGE,
                              "Print the version, and how the programs were made, and exit");
        app_.formatter(std::make_shared<HelpFormatter>());
        app_.require_subcommand(1);
        add(makeSummaryCommand);
        add(makeKernelCommand);
        add(makeFindCommand);
        add(makeAtCommand);
        add(makeBreakCommand);
        add(makeCheckCommand);
        add(makeMergeCommand);
        add(makeJsonCommand);
        add(makeSqliteCommand);
        add(makeDiffCommand);
        add(makeVerifyCommand);
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
    void add(std::unique_ptr<Command> (*make)(CLI::App&)) {
        std::unique_ptr<Command> command = make(app_);
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
