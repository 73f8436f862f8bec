// `consolidator-inspect json DB`: the content as JSON.
//
//     consolidator-inspect json DB             valid JSON on one line, see JsonExport.h
//     consolidator-inspect json --pretty DB    the same, indented
//     consolidator-inspect json --dwarf DB     with the DWARF blob's bytes
//     consolidator-inspect json --section DB   the JSON section that is stored in the database
#pragma once

#include "inspect/commands/DatabaseCommand.h"

namespace consolidator::inspect {

class JsonCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit JsonCommand(CLI::App& commandLine);

private:
    /// The stored section is only copied.
    Database::Extent extent() const override {
        return section_ ? Database::Extent::Table : Database::Extent::All;
    }
    Status show(const Database& database, Console& console) override;

    bool pretty_ = false;
    bool withDwarf_ = false;
    bool section_ = false;
};

} // namespace consolidator::inspect
