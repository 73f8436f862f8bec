// Where a command of the inspector writes, and how.
#pragma once

#include <iosfwd>

namespace consolidator::inspect {

/// Both streams outlive the command.
struct Console {
    std::ostream& out; ///< What was asked for.
    std::ostream& err; ///< What went wrong, and progress.

    bool colour = false;   ///< `out` is a terminal whose user has nothing against colour.
    bool progress = false; ///< `err` is a terminal: long work may show how far it has come.
};

} // namespace consolidator::inspect
