#include "driver/ConsolidatorOptions.h"

#include <boost/program_options/errors.hpp>
#include <boost/program_options/parsers.hpp>
#include <boost/program_options/positional_options.hpp>
#include <boost/program_options/value_semantic.hpp>
#include <boost/program_options/variables_map.hpp>

#include <algorithm>
#include <variant>

namespace po = boost::program_options;

namespace consolidator {

namespace {

/// Copies the value of the option `name` into `field`, if the option was given.
template <typename Field>
bool take(const po::variables_map& given, const char* name, Field& field) {
    if (given.count(name) == 0) {
        return false;
    }
    field = given[name].as<Field>();
    return true;
}

/// Makes the value of an input's option, which has the type of its field.
struct ValueOf {
    template <typename Field>
    const po::value_semantic* operator()(Field InputPaths::* /*paths*/) const {
        return po::value<Field>();
    }
};

void addInput(po::options_description& description, const InputOption& input) {
    const std::string names = std::string(input.longName) + ',' + input.letter;
    description.add_options()(names.c_str(), std::visit(ValueOf(), input.paths),
                              std::string(input.description).c_str());
}

} // namespace

ConsolidatorOptions::ConsolidatorOptions(int argc, const char* const* argv, std::ostream& out) {
    const auto text = [] { return po::value<std::string>(); };
    // clang-format off
    description_.add_options()
        ("add,a", "Add information to the file as opposed to overwriting (default)")
        ("create,c", "If the file exists, overwrite it")
        ("dump-dwarf,u", text(), "Output file to dump current DWARF information to")
        ("dump-json,j", text(), "Output file to dump current JSON information to");
    // clang-format on
    // In the list of options, --help stands behind the first input.
    for (const InputOption& input : inputOptions()) {
        addInput(description_, input);
        if (input.kind == InputKind::Dwarf) {
            description_.add_options()("help", "Output this information");
        }
    }
    // clang-format off
    description_.add_options()
        ("consolidated_file,f", text(), "Specify the consolidated file to add to or create")
        ("project,p", text(), "Specify the name of the project")
        ("version,v", "Output version information");
    // clang-format on
    if (argc > 0) {
        programName = argv[0];
    }
    try {
        parse(argc, argv, out);
    } catch (const po::multiple_occurrences& error) {
        out << "Unsupported multiple occurrences of : " << error.get_option_name() << std::endl;
        parseError = true;
    } catch (const po::error& error) {
        out << "Unknown option: " << error.what() << std::endl;
        parseError = true;
    }
}

void ConsolidatorOptions::parse(int argc, const char* const* argv, std::ostream& out) {
    // The words behind the program's name; not even that need be there.
    const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
    // The positional description has no positions, so that a stray word is an error.
    po::variables_map given;
    po::store(po::command_line_parser(words)
                  .options(description_)
                  .positional(po::positional_options_description())
                  .run(),
              given);
    po::notify(given);

    add = given.count("create") == 0;
    create = !add;
    if (create && given.count("add") > 0) {
        out << "Error: Cannot specify both add and create" << std::endl;
        optionError = true;
        return; // the other options stay as if they had not been given
    }
    dumpRequested = take(given, "dump-dwarf", dumpDwarfFile);
    dumpRequested = take(given, "dump-json", dumpJsonFile) || dumpRequested;
    for (const InputOption& input : inputOptions()) {
        const std::string name(input.longName);
        std::visit([&](auto paths) { take(given, name.c_str(), this->*paths); }, input.paths);
    }
    help = given.count("help") > 0;
    take(given, "consolidated_file", consolidatedFile);
    take(given, "project", project);
    version = given.count("version") > 0;
}

bool ConsolidatorOptions::check(std::ostream& out) const {
    if (optionError) {
        return false;
    }
    // None of these adds anything, so neither a database nor an input has to be named.
    if (version || help || !dumpDwarfFile.empty() || !dumpJsonFile.empty()) {
        return true;
    }
    if (consolidatedFile.empty()) {
        out << "Error: A consolidated file must be specified" << std::endl;
        return false;
    }
    if (!anyInput()) {
        out << "No input meta-data files specified" << std::endl;
        return false;
    }
    return true;
}

void ConsolidatorOptions::printUsage(std::ostream& out) const {
    out << "Usage: " << programName << " [options] --consolidated_file filename" << std::endl
        << std::endl
        << description_ << std::endl;
}

} // namespace consolidator
