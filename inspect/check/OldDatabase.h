// The database that a run would add to, as `check` finds it.
#pragma once

#include "inspect/check/Findings.h"
#include "query/Database.h"

#include <string>

namespace consolidator::inspect {

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

} // namespace consolidator::inspect
