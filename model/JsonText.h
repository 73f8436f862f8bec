// The pieces that the JSON forms of the records share.
//
// JSON text is written piece by piece on one line and nothing in it is escaped: a name that holds
// a double quote or a backslash comes out as it is. Readers of the database depend on these exact
// bytes.
#pragma once

#include "model/LogicLocation.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <span>
#include <string_view>

namespace consolidator {

/// Calls writeOne(element) for each element, with ", " on `out` between two of them.
template <typename Elements, typename WriteOne>
void writeSeparated(std::ostream& out, Elements&& elements, WriteOne writeOne) {
    std::string_view separator;
    for (auto& element : elements) {
        out << separator;
        writeOne(element);
        separator = ", ";
    }
}

/// Writes `text` between double quotes.
void writeQuoted(std::ostream& out, std::string_view text);

/// Gathers the pieces of a record, of which a database has millions, as an operation of a stream
/// costs more than most of them. They are on the stream once the block is destroyed.
///
///     JsonBlock(out).add("[ ").addQuoted(name).add(", ").add(width).add("]");
class JsonBlock {
public:
    explicit JsonBlock(std::ostream& out) : out_(out) {}
    ~JsonBlock() { flush(); }
    JsonBlock(const JsonBlock&) = delete;
    JsonBlock& operator=(const JsonBlock&) = delete;

    JsonBlock& add(std::string_view text);
    /// A number in decimal.
    JsonBlock& add(std::uint32_t number);
    /// A text between double quotes.
    JsonBlock& addQuoted(std::string_view text);

private:
    friend class JsonLocations;

    /// Where the next character belongs; there is room for `length`, below the block's size.
    char* room(std::size_t length) {
        if (length > block_.size() - length_) {
            flush();
        }
        return block_.data() + length_;
    }

    /// All up to `end` belongs to the text.
    void endAt(const char* end) { length_ = static_cast<std::size_t>(end - block_.data()); }

    void flush();

    std::ostream& out_;
    std::size_t length_ = 0;       ///< Characters in the block that are not on `out_` yet.
    std::array<char, 4096> block_; ///< Not initialised: there is a block for each record.
};

/// Adds locations to a block, each as `open`, a blank, the address, ", ", the offset and `close`,
/// with ", " between two of them: "[ 4096, 31], [ 4096, 32]". They may come in several runs; the
/// text is whole when the object is destroyed.
class JsonLocations {
public:
    JsonLocations(JsonBlock& block, char open, char close)
        : block_(block), before_{open, ' '}, between_{close, ',', ' ', open, ' '} {}
    ~JsonLocations();
    JsonLocations(const JsonLocations&) = delete;
    JsonLocations& operator=(const JsonLocations&) = delete;

    void add(std::span<const LogicLocation> run);

private:
    JsonBlock& block_;
    std::array<char, 2> before_;  ///< What stands before the first address,
    std::array<char, 5> between_; ///< and before all others.
    bool isFirst_ = true;
};

} // namespace consolidator
