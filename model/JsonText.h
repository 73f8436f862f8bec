// The pieces that the JSON forms of the records share.
//
// JSON text is written piece by piece on one line and nothing in it is escaped: a name that holds
// a double quote or a backslash comes out as it is. Readers of the database depend on these exact
// bytes.
#pragma once

#include "model/LogicLocation.h"

#include <array>
#include <cstddef>
#include <ostream>
#include <span>
#include <string_view>

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

/// Writes locations, each as `open`, a blank, the address, ", ", the offset and `close`, with ", "
/// between two of them: "[ 4096, 31], [ 4096, 32]". They may come in several runs; the last of the
/// text goes out when the writer is destroyed.
class JsonLocations {
public:
    JsonLocations(std::ostream& out, char open, char close)
        : out_(out), open_(open), close_(close) {}
    ~JsonLocations();
    JsonLocations(const JsonLocations&) = delete;
    JsonLocations& operator=(const JsonLocations&) = delete;

    void add(std::span<const LogicLocation> run);

private:
    /// The longest text of one location: "[ 4294967295, 4294967295], ".
    static constexpr std::size_t longestText = 27;

    void flush();

    std::ostream& out_;
    char open_;
    char close_;
    bool isFirst_ = true;
    std::size_t length_ = 0;       ///< Characters in the block that are not on `out_` yet.
    std::array<char, 4096> block_; ///< Not initialised: there is a writer for each register.
};

} // namespace consolidator
