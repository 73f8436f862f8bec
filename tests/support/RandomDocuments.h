// Kernel description documents by chance: good ones, odd ones and damaged ones.
#pragma once

#include "tests/support/RandomSource.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace consolidator::test {

/// The same seed gives the same documents everywhere.
class RandomDocuments {
public:
    explicit RandomDocuments(std::uint32_t seed) : random_(seed) {}

    /// A document that a reader must accept: elements where they belong, repeated and in any order,
    /// between comments and text. Names and types are of few kinds, so that many are equal.
    std::string valid();

    /// Elements also where they do not belong, unknown ones, document types and other roots; a few
    /// addresses are no numbers. Well-formed; a reader may accept it or not.
    std::string odd();

    /// A valid or odd document cut off, with bytes changed, or with a piece of it repeated.
    std::string damaged();

    /// Any of the three.
    std::string any();

private:
    std::string document(bool isOdd);
    void addElement(std::string_view name, std::size_t depth);
    void addAttributes(std::string_view element);
    void addContent(std::string_view element, std::size_t depth);
    void addFiller();

    RandomSource random_;
    std::string text_;         ///< Of the document that is being made.
    std::size_t elements_ = 0; ///< Its elements so far.
    bool isOdd_ = false;
};

} // namespace consolidator::test
