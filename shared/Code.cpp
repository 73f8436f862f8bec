#include "shared/Code.h"

#include <array>
#include <cstddef>

namespace consolidator {

namespace {

struct Entry {
    Code code;
    std::string_view word;
};

/// In the order of the codes.
constexpr auto entries = std::to_array<Entry>({
    {Code::None, ""},
    {Code::ReadingStopped, "reading-stopped"},
    {Code::NotMerged, "not-merged"},
    {Code::Unreadable, "unreadable"},
    {Code::Compressed, "compressed"},
    {Code::TooLarge, "too-large"},
    {Code::RepeatedOption, "repeated-option"},
    {Code::OtherProject, "other-project"},
    {Code::NewerVersion, "newer-version"},
    {Code::NoDatabase, "no-database"},
    {Code::DamagedDatabase, "damaged-database"},
    {Code::DatabaseIsInput, "database-is-input"},
    {Code::NotWritable, "not-writable"},
    {Code::NewDatabase, "new-database"},
    {Code::MissingPath, "missing-path"},
    {Code::UnknownType, "unknown-type"},
    {Code::InstanceAsKernel, "instance-as-kernel"},
    {Code::NoWord, "no-word"},
    {Code::NameAtEnd, "name-at-end"},
    {Code::RepeatedArgument, "repeated-argument"},
    {Code::NamelessArgument, "nameless-argument"},
    {Code::NoAcceleratorMap, "no-accelerator-map"},
    {Code::NamelessMap, "nameless-map"},
    {Code::NoEntry, "no-entry"},
    {Code::NoSourceLine, "no-source-line"},
    {Code::RepeatedSourceLine, "repeated-source-line"},
    {Code::NetOfNoKernel, "net-of-no-kernel"},
    {Code::BlankNet, "blank-net"},
    {Code::NoFinalNewline, "no-final-newline"},
    {Code::UnreadableNumbers, "unreadable-numbers"},
    {Code::OddBitIndex, "odd-bit-index"},
    {Code::BitTooHigh, "bit-too-high"},
    {Code::NetOfTooMany, "net-of-too-many"},
    {Code::TooManyEmptyBits, "too-many-empty-bits"},
    {Code::BlockRam, "block-ram"},
    {Code::MoreRemarks, "more-remarks"},
    {Code::WrongKind, "wrong-kind"},
    {Code::Empty, "empty"},
    {Code::GivenTwice, "given-twice"},
    {Code::ByteOrderMark, "byte-order-mark"},
    {Code::CarriageReturns, "carriage-returns"},
    {Code::KernelName, "kernel-name"},
    {Code::NoKernel, "no-kernel"},
    {Code::BeforeAnyKernel, "before-any-kernel"},
    {Code::Nameless, "nameless"},
    {Code::RepeatedKernel, "repeated-kernel"},
    {Code::CarriedArguments, "carried-arguments"},
    {Code::IgnoredType, "ignored-type"},
    {Code::IgnoredDescription, "ignored-description"},
    {Code::IgnoredLocations, "ignored-locations"},
    {Code::LostSourceLine, "lost-source-line"},
    {Code::LostVariable, "lost-variable"},
    {Code::RepeatedVariable, "repeated-variable"},
    {Code::DwarfIgnored, "dwarf-ignored"},
    {Code::ConditionDropped, "condition-dropped"},
    {Code::ConditionMangled, "condition-mangled"},
    {Code::RepeatedCondition, "repeated-condition"},
    {Code::TranslatedAgain, "translated-again"},
    {Code::UnknownXml, "unknown-xml"},
    {Code::MissingAttribute, "missing-attribute"},
    {Code::NoTable, "no-table"},
    {Code::NoMatch, "no-match"},
    {Code::RepeatedBit, "repeated-bit"},
    {Code::OneInputOnly, "one-input-only"},
    {Code::NoInstance, "no-instance"},
    {Code::OtherPath, "other-path"},
    {Code::OtherName, "other-name"},
    {Code::InstanceWithoutNet, "instance-without-net"},
    {Code::PathCut, "path-cut"},
    {Code::RepeatedNet, "repeated-net"},
    {Code::NothingLocated, "nothing-located"},
});

constexpr bool areInOrder() {
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].code != static_cast<Code>(i)) {
            return false;
        }
    }
    return true;
}

// A code is a position in the table: one row out of its place would shift the words behind it.
static_assert(areInOrder());

} // namespace

std::string_view word(Code code) {
    const auto position = static_cast<std::size_t>(code);
    return position < entries.size() ? entries[position].word : std::string_view();
}

} // namespace consolidator
