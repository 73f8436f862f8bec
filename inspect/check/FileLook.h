// What can be told of an input file by a look at its beginning: mix-ups of files and options, and
// what happens to files on their way from one machine to another.
#pragma once

#include "driver/Inputs.h"
#include "inspect/check/Findings.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace consolidator::inspect {

/// What a file may hold that is no input.
enum class OtherContent : std::uint8_t {
    Unknown,
    Xml, ///< Of another kind than those that are read.
    Database,
    Binary, ///< None of the others, and no text.
};

/// What a file seems to hold. Never DWARF, whose bytes are not looked into: it is a binary file.
using Content = std::variant<InputKind, OtherContent>;

/// Judges by words that only one kind of file has. `head` is the beginning of the file.
Content contentOf(std::string_view head);

/// In words: "a logic-location file", "DWARF".
std::string_view describe(Content content);

/// The option that a kind of file is given with: "-l". Empty for contents that have none.
std::string optionFor(Content content);

/// The name of the compression that the file is packed with; empty if it seems to be none.
std::string_view compressionOf(std::string_view head);

/// The name of the byte order mark that the file begins with: "UTF-8" or "UTF-16"; else empty.
std::string_view byteOrderMarkOf(std::string_view head);

/// Whether the first line ends with a carriage return and a newline.
bool hasCarriageReturns(std::string_view head);

/// The path in the one form in which all paths of a file are the same, if there is such a file;
/// else as it is.
std::string wholePathOf(const std::string& path);

/// One look at a file.
struct FileLook {
    /// So much of the beginning is looked at: more than the comments in front of a file take.
    static constexpr std::size_t longestHead = 65536;

    bool isFolder = false;
    bool isEmptyDevice = false; ///< It is the null device.
    bool isRegular = false;     ///< It can be read more than once, unlike a pipe.
    std::uint64_t size = 0;     ///< Of a regular file.
    std::string head;           ///< Of a regular file.

    /// Looks at the file at `path`; one that is missing or cannot be read shows as nothing at all.
    static FileLook at(const std::string& path);
};

/// Reports that the file at `path`, an input of this kind, looks like another one. Returns whether
/// it is one: then nothing that is read of it is what it seems.
bool reportContent(const FileLook& look, InputKind kind, const std::string& path,
                   Findings& findings);

/// The same, with all else that shows before the file is read.
bool reportLook(const FileLook& look, InputKind kind, const std::string& path, Findings& findings);

} // namespace consolidator::inspect
