// The command line of the consolidator.
#pragma once

#include "driver/Inputs.h"

#include <boost/program_options/options_description.hpp>

#include <ostream>
#include <string>

namespace consolidator {

/// The options of one run, parsed from the command line, with its input files.
///
/// Options may be given in any order; there are no positional arguments. Those that take a value
/// take one per occurrence, and only the list options may occur more than once.
class ConsolidatorOptions : public InputPaths {
public:
    /// Parses a command line as main() gets it. What is wrong with it is said on `out`.
    ConsolidatorOptions(int argc, const char* const* argv, std::ostream& out);

    /// Whether the run may go on. If not, the reason has been given on `out`, here or when the
    /// command line was parsed.
    bool check(std::ostream& out) const;

    /// Prints how the program is called, with every option.
    void printUsage(std::ostream& out) const;

    /// The name that the program was started by.
    std::string programName;

    bool add = true;     ///< Add to what the consolidated file holds; the opposite of `create`.
    bool create = false; ///< Start the consolidated file afresh.

    std::string dumpDwarfFile;  ///< Where to copy the DWARF section; empty if not asked for.
    std::string dumpJsonFile;   ///< Where to copy the JSON section; empty if not asked for.
    bool dumpRequested = false; ///< One of the two dump options was given.

    bool help = false;
    bool version = false;

    std::string consolidatedFile; ///< The database; empty if not given.
    std::string project;          ///< The project's name; empty if not given.

    bool optionError = false; ///< Both `add` and `create` were given.
    bool parseError = false;  ///< The command line cannot be parsed: the run is over.

private:
    void parse(int argc, const char* const* argv, std::ostream& out);

    boost::program_options::options_description description_{"Consolidator options"};
};

} // namespace consolidator
