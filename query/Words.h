// What the things of a database are called, for people: sections, kernel types, conditions, bits,
// places.
//
// Each has one wording, which everything that shows something uses. Names come out of files and may
// hold anything: they are made printable() here.
#pragma once

#include "consolidated/SectionEntry.h"
#include "model/BreakableCondition.h"
#include "model/KernelType.h"
#include "query/Bits.h"
#include "query/KernelView.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace consolidator {

/// What a section holds; "type 7 (unknown)" for a type that this program does not know.
std::string sectionText(const SectionEntry& entry);

/// "HLS"; "Unknown" for a kernel whose inputs name no type; "Unknown (7)" for a number that stands
/// for none.
std::string typeText(KernelType type);

/// "start", "stop", "line" or, for kinds that are none of these, "error".
std::string_view conditionKind(const BreakableCondition& condition);

/// Where a condition stops: "start", "stop", "scale.cpp:14" or "error (kind 7)".
std::string conditionPlace(const BreakableCondition& condition);

/// A name, or "" (two double quotes) for an empty one.
std::string nameText(std::string_view name);

/// "instance 0", or "no instance".
std::string instanceText(std::optional<std::uint32_t> instance);

/// The kind and the source name, for lines that may be many: "argument size". A very long name is
/// cut.
std::string variableText(const SourceVariable& variable);

/// For one line: "argument size, variable n"; of more than four the first four, and how many more.
std::string variablesText(std::span<const SourceVariable> variables);

/// "from" alone if both are equal, else "from-to".
std::string rangeText(std::uint32_t from, std::uint32_t to);

/// The bit indices of a run as hardware designers write them: "7:0", or "6" for one.
std::string bitsText(const BitRun& run);

/// The number of characters in the longest bitsText() for a register of so many bits.
std::size_t bitsWidth(std::uint32_t bits);

/// Frame address as in a logic-location file: "0x00001a01".
std::string addressText(std::uint32_t address);

/// "frame 0x00001a01  offsets 160-167", "frame 0x00001a01  offset 160" or "not located".
std::string placeText(const BitRun& run);

} // namespace consolidator
