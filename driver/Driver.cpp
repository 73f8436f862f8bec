#include "driver/Driver.h"

#include "consolidated/ConsolidatedFile.h"
#include "driver/ConsolidatorOptions.h"
#include "driver/Inputs.h"
#include "readers/HierarchyFile.h"

#include <cstdint>
#include <ostream>
#include <tuple>

namespace consolidator {

namespace {

void printVersions(std::ostream& out) {
    out << "Consolidated version: " << ConsolidatedFile::supportedMajor << "."
        << ConsolidatedFile::supportedMinor << std::endl;
    out << "Supported hierarchy version: " << HierarchyFile::supportedVersion << std::endl;
}

/// False, after a message, when the database was made for another project than the given one.
bool isOfProject(const ConsolidatedFile& database, const ConsolidatorOptions& options,
                 std::ostream& err) {
    if (!options.add || options.project.empty() || database.project().empty() ||
        options.project == database.project()) {
        return true;
    }
    err << "Error: consolidated file " << options.consolidatedFile << " has meta-data for project "
        << database.project() << ", not specified project " << options.project << std::endl;
    return false;
}

/// False, after a message, when the database has a newer major version.
bool isOfSupportedVersion(const ConsolidatedFile& database, const ConsolidatorOptions& options,
                          std::ostream& err) {
    if (!database.isNewer()) {
        return true;
    }
    const ConsolidatedFile::Header& header = database.header();
    err << "Error: consolidated file " << options.consolidatedFile << " is version "
        << header.majorVersion << "." << header.minorVersion << " and only versions up to "
        << ConsolidatedFile::supportedMajor << "." << ConsolidatedFile::supportedMinor
        << " are supported." << std::endl;
    return false;
}

} // namespace

int run(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
    const ConsolidatorOptions options(argc, argv, out);
    // A wrong command line ends with 0 as well: 1 speaks of the database alone.
    if (options.parseError) {
        return 0;
    }
    if (!options.check(out) || options.help) {
        options.printUsage(out);
        return 0;
    }
    if (options.version) {
        printVersions(out);
        return 0;
    }

    ConsolidatedFile database;
    if (!database.open(options.consolidatedFile, options.create, options.dumpRequested)) {
        err << "Unable to open " << options.consolidatedFile << std::endl;
        return 1;
    }
    if (!isOfProject(database, options, err) || !isOfSupportedVersion(database, options, err)) {
        return 1;
    }
    if (!options.project.empty()) {
        database.setProject(options.project);
    }
    // One dump a run, and of two that are asked for the DWARF.
    if (!options.dumpDwarfFile.empty()) {
        database.dumpSection(SectionType::Dwarf, options.dumpDwarfFile);
    } else if (!options.dumpJsonFile.empty()) {
        database.dumpSection(SectionType::KernelJson, options.dumpJsonFile);
    } else {
        addInputs(database, options, err);
        // A run that has got as far as writing ends well: callers of this program know it so. What
        // could not be written has left the old file, and `consolidator-inspect merge` tells of it.
        std::ignore = database.write();
    }
    return 0;
}

} // namespace consolidator
