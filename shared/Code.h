// What findings are called by scripts, whichever part of the programs makes them.
//
// All codes stand here, so that none is given to two things. What each says, and of which severity
// it is, is told in docs/inspector.md, where a test looks for each of them; a name here is its word
// there: Code::NotMerged is "not-merged".
#pragma once

#include <cstdint>
#include <string_view>

namespace consolidator {

/// The kind of a finding. Scripts know codes by their words: those stay as they are.
enum class Code : std::uint8_t {
    None, ///< Of a finding that no script can see.

    // What becomes of a file, and of the run.
    ReadingStopped,
    NotMerged,
    Unreadable,
    Compressed,
    TooLarge,
    RepeatedOption,
    OtherProject,
    NewerVersion,
    NoDatabase,
    DamagedDatabase,
    DatabaseIsInput,
    NotWritable,
    NewDatabase,

    // What readers remark on: of hierarchy files, kernel.xml and auxiliary XML, HLS files,
    // logic-location files, RAM reports.
    MissingPath,
    UnknownType,
    InstanceAsKernel,
    NoWord,
    NameAtEnd,
    RepeatedArgument,
    NamelessArgument,
    NoAcceleratorMap,
    NamelessMap,
    NoEntry,
    NoSourceLine,
    RepeatedSourceLine,
    NetOfNoKernel,
    BlankNet,
    NoFinalNewline,
    UnreadableNumbers,
    OddBitIndex,
    BitTooHigh,
    NetOfTooMany,
    TooManyEmptyBits,
    BlockRam,
    MoreRemarks,

    // What a file looks like, and what its kernels come to.
    WrongKind,
    Empty,
    GivenTwice,
    ByteOrderMark,
    CarriageReturns,
    KernelName,
    NoKernel,
    BeforeAnyKernel,
    Nameless,
    RepeatedKernel,
    CarriedArguments,
    IgnoredType,
    IgnoredDescription,
    IgnoredLocations,
    LostSourceLine,
    LostVariable,
    RepeatedVariable,
    DwarfIgnored,
    ConditionDropped,
    ConditionMangled,
    RepeatedCondition,
    TranslatedAgain,
    UnknownXml,
    MissingAttribute,
    NoTable,
    NoMatch,

    // What the inputs come to together.
    RepeatedBit,
    OneInputOnly,
    NoInstance,
    OtherPath,
    OtherName,
    InstanceWithoutNet,
    PathCut,
    RepeatedNet,
    NothingLocated,
};

/// "not-merged"; empty for None and for what is no code.
std::string_view word(Code code);

} // namespace consolidator
