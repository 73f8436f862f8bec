#include "driver/ConsolidatorOptions.h"

#include <boost/program_options/errors.hpp>
#include <boost/program_options/parsers.hpp>
#include <boost/program_options/positional_options.hpp>
#include <boost/program_options/value_semantic.hpp>
#include <boost/program_options/variables_map.hpp>

#include <algorithm>

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

} // namespace

ConsolidatorOptions::ConsolidatorOptions(int argc, const char* const* argv, std::ostream& out) {
    const auto text = [] { return po::value<std::string>(); };
    const auto list = [] { return po::value<std::vector<std::string>>(); };
    // clang-format off
    description_.add_options()
        ("add,a", "Add information to the file as opposed to overwriting (default)")
        ("create,c", "If the file exists, overwrite it")
        ("dump-dwarf,u", text(), "Output file to dump current DWARF information to")
        ("dump-json,j", text(), "Output file to dump current JSON information to")
        ("DWARF,d", text(), "Input DWARF metadata file")
        ("help", "Output this information")
        ("hierarchy,h", list(), "Input hierarchy metadata file generated from System Linker")
        ("kernel,k", list(), "Input kernel.xml meta data")
        ("hls,s", list(), "Input kernel meta data generated from HLS")
        ("aux,x", list(), "Input *_auxiliary.xml meta data generated from HLS")
        ("ll,l", list(), "Input *.ll meta data generated during bitstream generation")
        ("ram,r", list(), "Input ram utilization report file generated from synthesis")
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
    take(given, "DWARF", dwarfFile);
    help = given.count("help") > 0;
    take(given, "hierarchy", hierarchyFiles);
    take(given, "kernel", kernelFiles);
    take(given, "hls", hlsFiles);
    take(given, "aux", auxFiles);
    take(given, "ll", llFiles);
    take(given, "ram", ramFiles);
    take(given, "consolidated_file", consolidatedFile);
    take(given, "project", project);
    version = given.count("version") > 0;
}

bool ConsolidatorOptions::check(std::ostream& out) const {
    if (optionError) {
        return false;
    }
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
