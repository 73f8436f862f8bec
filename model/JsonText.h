// The pieces that the JSON forms of the records share.
//
// JSON text is written piece by piece on one line and nothing in it is escaped: a name that holds
// a double quote or a backslash comes out as it is. Readers of the database depend on these exact
// bytes.
#pragma once

#include "model/LogicLocation.h"

#include <ostream>
#include <string_view>
#include <vector>

namespace consolidator {

/// Calls writeOne(element) for each element, with ", " on `out` between two of them.
template <typename Elements, typename WriteOne>
void writeSeparated(std::ostream& out, Elements& elements, WriteOne writeOne) {
    std::string_view separator;
    for (auto& element : elements) {
        out << separator;
        writeOne(element);
        separator = ", ";
    }
}

/// Writes `text` between double quotes.
void writeQuoted(std::ostream& out, std::string_view text);

/// Writes each location as `open`, a blank, the address, ", ", the offset and `close`, with ", "
/// between two of them: "[ 4096, 31], [ 4096, 32]".
void writeJsonLocations(std::ostream& out, const std::vector<LogicLocation>& locations, char open,
                        char close);

} // namespace consolidator
