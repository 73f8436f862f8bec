// The reserved words of the hardware description languages, and the names made to evade them.
//
// High-level synthesis names a kernel's ports after its source arguments. Where a source name is a
// reserved word it appends "_r", so that the hardware description stays legal: the argument "input"
// becomes the port "input_r". Readers of kernel descriptions see port names and have to give users
// their own names back.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace consolidator {

/// The set of reserved words of Verilog and VHDL, all in lower case, and both mappings of names.
class HdlReservedWords {
public:
    /// Fills the set.
    HdlReservedWords();

    /// One set for the whole process, made on first use.
    static const HdlReservedWords& shared();

    const std::set<std::string, std::less<>>& words() const { return words_; }

    /// From port to source: drops a "_r" at the end if a reserved word is left. The first "_r" of
    /// the name must be the one at its end: "wait_r" gives "wait"; "a_r_r", "data_r", "_r" and
    /// "Wait_r" stay.
    std::string sourceName(std::string_view hardwareName) const;

    /// From source to port: appends "_r" to a reserved word.
    std::string hardwareName(std::string_view sourceName) const;

private:
    std::set<std::string, std::less<>> words_;
};

} // namespace consolidator
