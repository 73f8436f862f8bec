#include "inspect/commands/UsageError.h"

#include "query/NearestNames.h"
#include "shared/Printable.h"

#include <CLI/CLI.hpp>
#include <ostream>
#include <vector>

namespace consolidator::inspect {

namespace {

std::string unknownCommand(const CLI::App& app, std::string_view name) {
    NearestNames nearest(name);
    const auto commands = app.get_subcommands([](const CLI::App*) { return true; });
    for (const CLI::App* command : commands) {
        nearest.add(command->get_name());
    }
    return "there is no command " + quotedPrintable(name) +
           (nearest.empty() ? "; --help lists them" : nearest.question());
}

/// Of a word that looks like an option and is none.
std::string unknownOption(const CLI::App& command, std::string_view word) {
    const std::string_view name = word.substr(0, word.find('='));
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& longName : option->get_lnames()) {
            names.push_back("--" + longName);
            break; // any others are abbreviations
        }
    }
    std::string begun;
    NearestNames nearest(name);
    for (const std::string& known : names) {
        nearest.add(known);
        if (name.size() > 2 && known.starts_with(name)) {
            begun += (begun.empty() ? "" : ", ") + known;
        }
    }
    const std::string start = "there is no option " + quotedPrintable(name);
    return begun.empty() ? start + nearest.question() : start + ", but " + begun;
}

std::string reasonOf(const CLI::App& app, const CLI::App* command, const CLI::ParseError& error) {
    // What was not expected says more than what is missing for want of it.
    const std::vector<std::string> rest = app.remaining(true);
    for (const std::string& word : rest) {
        if (word.size() > 1 && word.front() == '-') {
            return unknownOption(command != nullptr ? *command : app, word);
        }
    }
    if (command == nullptr) {
        return rest.empty() ? "no command is given; --help lists them"
                            : unknownCommand(app, rest.front());
    }
    if (!rest.empty() && error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError)) {
        return quotedPrintable(rest.front()) + " is one argument too many";
    }
    return printable(error.what());
}

} // namespace

Status usageError(Console& console, std::string_view command, std::string_view reason) {
    console.err << "consolidator-inspect" << (command.empty() ? "" : " ") << command
                << ": error: " << reason << '\n';
    return Status::Unreadable;
}

Status usageError(Console& console, const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<CLI::App*> commands = app.get_subcommands();
    const CLI::App* const command = commands.empty() ? nullptr : commands.front();
    return usageError(console, command != nullptr ? command->get_name() : std::string(),
                      reasonOf(app, command, error));
}

std::string emptyNameError(const std::string& path) {
    return path.empty() ? "the name of the file is empty" : "";
}

} // namespace consolidator::inspect
