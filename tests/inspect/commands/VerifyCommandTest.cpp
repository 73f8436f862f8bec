// `consolidator-inspect verify`, to the letter: a database in order, and one for each kind of
// fault.

#include "tests/support/Bytes.h"
#include "tests/support/ExampleProject.h"
#include "tests/support/InspectRun.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace consolidator::test {

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

/// A whole JSON document without kernels, 22 bytes with its zero byte.
const std::string emptyDocument = bytes("{  \"Kernels\" : [  ] }\0");

/// The kernel data come first and begin at 0x40, behind a header of 16 bytes and two entries of 24;
/// their record begins with its name at 0x44.
std::string dataFirst(const std::string& kernelData, const std::string& document) {
    return DatabaseBuilder().section(2, kernelData).section(3, document).bytes();
}

std::string dataFirst(const std::vector<KnownKernel>& kernels) {
    return dataFirst(knownKernelData(kernels), knownJson(kernels));
}

/// A database of one record that cannot be read; what follows from that is the same everywhere.
std::string broken(const std::string& kernelData) {
    return dataFirst(kernelData, emptyDocument);
}

struct VerifyCommand : testing::Test {
    /// What the command prints about a file of these bytes, its path left out, behind its status.
    std::string verify(const std::string& database) const {
        const std::string path = directory.write("db", database);
        const CommandResult result = inspectRun({"verify", path});
        EXPECT_EQ(result.err, "");
        std::string out = "exit " + std::to_string(result.status) + "\n" + result.out;
        for (std::size_t at = out.find(path); at != std::string::npos; at = out.find(path, at)) {
            out.replace(at, path.size(), "db");
        }
        return out;
    }

    /// What is said about a broken record in front of what follows from it.
    std::string verifyBroken(const std::string& kernelData) const {
        const std::string out = verify(broken(kernelData));
        const std::string rest = note(kernelData) + "db: 1 error, 1 note\n";
        EXPECT_THAT(out, EndsWith(rest));
        return out.substr(0, out.size() - std::min(out.size(), rest.size()));
    }

    static std::string note(const std::string& kernelData) {
        std::ostringstream hex;
        hex << std::hex << 0x40 + kernelData.size();
        return "db:0x" + hex.str() +
               ": note: section 1 (kernel JSON): it cannot be compared with the kernel data\n";
    }

    TemporaryDirectory directory;
};

TEST_F(VerifyCommand, FindsNothingInTheExampleProject) {
    EXPECT_EQ(verify(exampleDatabase()), "exit 0\ndb: no faults found\n");
}

TEST_F(VerifyCommand, FindsNothingWhereTheKernelDataComeFirst) {
    KnownKernel kernel{.name = "k", .conditions = {{0, "(b == a)"}, {0, "(1'b1 == 1'b1)"}}};
    const std::string data = knownKernelData({kernel});
    kernel.conditions = {{0, "== $i/a $i/b"}}; // as a document has it
    EXPECT_EQ(verify(dataFirst(data, knownJson({kernel}))), "exit 0\ndb: no faults found\n");
}

TEST_F(VerifyCommand, FindsNothingInADatabaseWithoutKernels) {
    EXPECT_EQ(verify(DatabaseBuilder().section(3, emptyDocument).bytes()),
              "exit 0\ndb: no faults found\n");
}

TEST_F(VerifyCommand, CannotOpenWhatIsNotThere) {
    const std::string path = directory.path("none");
    EXPECT_EQ(
        inspectRun({"verify", path}),
        (CommandResult{2, "", path + ": error: cannot be opened: No such file or directory\n"}));
    const std::string folder = directory.path("");
    EXPECT_EQ(inspectRun({"verify", folder}),
              (CommandResult{2, "", folder + ": error: is a folder\n"}));
}

// Header and table

TEST_F(VerifyCommand, FindsAHeaderThatIsCut) {
    EXPECT_EQ(verify("hello"), "exit 1\n"
                               "db:0x0: error: the file has 5 bytes, and its header alone would "
                               "have 16\n"
                               "db: 1 error\n");
}

TEST_F(VerifyCommand, FindsAnotherMagicNumber) {
    EXPECT_EQ(verify("0123456789abcdef"),
              "exit 1\n"
              "db:0x0: error: the file begins with 0x33323130, not with the magic number "
              "0xbeefdad4\n"
              "db: 1 error\n");
}

TEST_F(VerifyCommand, FindsAVersionThatIsNotKnown) {
    EXPECT_EQ(verify(DatabaseBuilder().version(2, 0).section(3, emptyDocument).bytes()),
              "exit 1\n"
              "db:0x4: error: the version is 2.0, and only versions up to 1.1 are known\n"
              "db: 1 error\n");
}

TEST_F(VerifyCommand, FindsAnOlderVersion) {
    EXPECT_EQ(verify(DatabaseBuilder().version(1, 0).section(3, emptyDocument).bytes()),
              "exit 1\n"
              "db:0x4: warning: the version is 1.0, and every run writes version 1.1\n"
              "db: 1 warning\n");
}

TEST_F(VerifyCommand, FindsATableThatTheFileHasNoRoomFor) {
    EXPECT_EQ(verify(header(3) + entry(0, 88, 0) + entry(0, 88, 0) + "0123"),
              "exit 1\n"
              "db:0xc: error: the section table has 3 entries, and the file has room for 2\n"
              "db: 1 error\n");
}

TEST_F(VerifyCommand, NotesPadding) {
    const std::string row = u32(3) + u32(7) + u64(40) + u32(22) + u32(0x89);
    EXPECT_EQ(verify(header(1) + row + emptyDocument),
              "exit 0\n"
              "db:0x14: note: section 0 (kernel JSON): the padding is 0x00000007, not zero\n"
              "db:0x24: note: section 0 (kernel JSON): the padding is 0x00000089, not zero\n"
              "db: no faults found, 2 notes\n");
}

TEST_F(VerifyCommand, FindsAnUnknownTypeAndGoesOnBehindIt) {
    EXPECT_EQ(
        verify(DatabaseBuilder().section(9, "???").section(3, emptyDocument).bytes()),
        "exit 1\n"
        "db:0x10: error: section 0 (type 9): the type is unknown: reading ends here, and what "
        "comes behind it in the table is not read\n"
        "db: 1 error\n");
}

// Where the sections lie

TEST_F(VerifyCommand, FindsASectionThatBeginsBehindTheFile) {
    EXPECT_EQ(verify(header(2) + entry(1, 0x100, 2) + entry(3, 0x40, 22) + emptyDocument),
              "exit 1\n"
              "db:0x18: error: section 0 (DWARF): it begins at 0x100, and the file ends at 0x56\n"
              "db: 1 error\n");
}

TEST_F(VerifyCommand, FindsASectionThatIsCutOff) {
    EXPECT_EQ(
        verify(header(2) + entry(3, 0x40, 22) + entry(1, 0x56, 3) + emptyDocument + "DW"),
        "exit 1\n"
        "db:0x38: error: section 1 (DWARF): it reaches from 0x56 to 0x59, and the file ends at "
        "0x58\n"
        "db: 1 error\n");
}

TEST_F(VerifyCommand, FindsASectionBeyondThePositions) {
    EXPECT_EQ(verify(header(2) + entry(1, 0x80000000, 2) + entry(3, 0x40, 22) + emptyDocument),
              "exit 1\n"
              "db:0x18: error: section 0 (DWARF): it begins at 0x80000000, beyond 2 GiB, where no "
              "section can\n"
              "db: 1 error\n");
    EXPECT_THAT(verify(header(1) + entry(1, 0xffffffffffffffff, 0xffffffff)),
                HasSubstr("it begins at 0xffffffffffffffff, beyond 2 GiB"));
}

TEST_F(VerifyCommand, FindsASectionThatEndsBeyondThePositions) {
    const std::string path = directory.write(
        "large", header(2) + entry(3, 0x40, 22) + entry(1, 0x56, 0x7fffffff) + emptyDocument);
    std::filesystem::resize_file(path, 0x80000055); // takes no room on the disk
    EXPECT_EQ(inspectRun({"verify", path}).out,
              path +
                  ":0x38: warning: section 1 (DWARF): it reaches beyond 2 GiB, where positions "
                  "end\n" +
                  path + ": 1 warning\n");
}

TEST_F(VerifyCommand, FindsASectionInTheTable) {
    EXPECT_EQ(
        verify(header(2) + entry(1, 0x3f, 1) + entry(3, 0x40, 22) + emptyDocument),
        "exit 1\n"
        "db:0x18: error: section 0 (DWARF): it begins at 0x3f in the section table, which ends "
        "at 0x40: its content is not checked\n"
        "db: 1 error\n");
}

TEST_F(VerifyCommand, FindsSectionsThatOverlap) {
    EXPECT_EQ(
        verify(header(2) + entry(3, 0x40, 22) + entry(2, 0x55, 1) + emptyDocument),
        "exit 1\n"
        "db:0x30: error: section 1 (kernel data): it begins at 0x55 in section 0 (kernel JSON), "
        "which ends at 0x56: its content is not checked\n"
        "db:0x40: note: section 0 (kernel JSON): it cannot be compared with the kernel data\n"
        "db: 1 error, 1 note\n");
}

TEST_F(VerifyCommand, FindsBytesOfNoSection) {
    EXPECT_EQ(verify(header(1) + entry(3, 0x2a, 22) + "??" + emptyDocument + "!"),
              "exit 1\n"
              "db:0x28: warning: 2 bytes from here on without a section\n"
              "db:0x40: warning: 1 byte from here on without a section\n"
              "db: 2 warnings\n");
}

TEST_F(VerifyCommand, FindsAnotherOrderThanTheTables) {
    EXPECT_EQ(verify(header(2) + entry(3, 0x42, 22) + entry(0, 0x40, 2) + "pq" + emptyDocument),
              "exit 1\n"
              "db:0x30: warning: section 1 (project name): it lies in front of section 0 (kernel "
              "JSON), which comes first in the table\n"
              "db: 1 warning\n");
}

TEST_F(VerifyCommand, FindsSecondSectionsOfAKind) {
    EXPECT_EQ(
        verify(DatabaseBuilder()
                   .section(1, "a")
                   .section(1, "b")
                   .section(3, emptyDocument)
                   .section(3, emptyDocument)
                   .section(2, u32(0))
                   .section(2, u32(0))
                   .bytes()),
        "exit 1\n"
        "db:0x28: warning: section 1 (DWARF): there is another one, section 0 (DWARF): the last "
        "one counts, and a dump gives the first\n"
        "db:0x88: warning: section 5 (kernel data): there is another one, section 4 (kernel "
        "data): the kernels of all of them are read\n"
        "db:0x58: warning: section 3 (kernel JSON): there is another one, section 2 (kernel "
        "JSON): a dump gives the first one\n"
        "db:0xa2: note: section 2 (kernel JSON): it cannot be compared with the kernel data\n"
        "db: 3 warnings, 1 note\n");
}

// Project name and DWARF

TEST_F(VerifyCommand, FindsProjectNamesThatDiffer) {
    EXPECT_EQ(
        verify(DatabaseBuilder()
                   .section(0, "a")
                   .section(0, "a")
                   .section(0, "b")
                   .section(3, emptyDocument)
                   .bytes()),
        "exit 1\n"
        "db:0x72: warning: section 2 (project name): \"b\" is another name than that of section "
        "0 (project name): the last one counts\n"
        "db: 1 warning\n");
}

TEST_F(VerifyCommand, FindsAZeroByteInAProjectName) {
    EXPECT_EQ(
        verify(DatabaseBuilder().section(0, bytes("a\0b")).section(3, emptyDocument).bytes()),
        "exit 1\n"
        "db:0x40: warning: section 0 (project name): it has a zero byte, and is read as \"a\"\n"
        "db: 1 warning\n");
}

TEST_F(VerifyCommand, NotesWhatIsEmpty) {
    EXPECT_EQ(
        verify(DatabaseBuilder().section(0, "").section(1, "").section(3, emptyDocument).bytes()),
        "exit 0\n"
        "db:0x58: note: section 0 (project name): it is empty\n"
        "db:0x38: note: section 1 (DWARF): it is empty\n"
        "db: no faults found, 2 notes\n");
}

// Kernel data

TEST_F(VerifyCommand, FindsAMissingCountOfKernels) {
    EXPECT_EQ(verifyBroken("abc"),
              "exit 1\n"
              "db:0x40: error: section 0 (kernel data): the section ends before "
              "the number of kernels\n");
}

TEST_F(VerifyCommand, FindsMoreKernelsThanCanBe) {
    EXPECT_EQ(
        verifyBroken(u32(0xffffffff) + "0123"),
        "exit 1\n"
        "db:0x40: error: section 0 (kernel data): the number of kernels is 4294967295, with 4 "
        "bytes left\n");
}

TEST_F(VerifyCommand, FindsATextThatIsTooLong) {
    EXPECT_EQ(verifyBroken(u32(1) + u32(6) + "hello"),
              "exit 1\n"
              "db:0x44: error: section 0 (kernel data), kernel 1 of 1: the name has a length of 6, "
              "with 5 bytes left\n");
}

// Name 4 + 1, instance paths 4, type 4: the arguments begin at 0x51 with their number; the first
// one is 3 texts of 4 + 1 and a number, the second one begins at 0x68.
TEST_F(VerifyCommand, FindsWhichElementIsCutOff) {
    const std::string kernel = text("k") + u32(0) + u32(4) + u32(2) + variable("a", "b", "c");
    EXPECT_EQ(
        verifyBroken(u32(1) + kernel + text("d") + u32(9) + "e"),
        "exit 1\n"
        "db:0x6d: error: section 0 (kernel data), kernel 1 of 1 (\"k\"), argument 2 of 2: the "
        "hardware name has a length of 9, with 1 byte left\n");
}

// Behind the type stand two empty lists, at 0x51 and 0x55, and the number of registers.
TEST_F(VerifyCommand, FindsMoreBitsThanCanBe) {
    const std::string kernel = text("k") + u32(0) + u32(4) + u32(0) + u32(0) + u32(1);
    EXPECT_EQ(
        verifyBroken(u32(1) + kernel + text("r") + u32(2) + location(1, 2)),
        "exit 1\n"
        "db:0x62: error: section 0 (kernel data), kernel 1 of 1 (\"k\"), register 1 of 1: the "
        "number of bits is 2, with 8 bytes left\n");
}

TEST_F(VerifyCommand, FindsMoreLocationsThanCanBe) {
    const std::string argument = variable("a", "b", "c", {u32(1) + "1234567"});
    EXPECT_EQ(verifyBroken(u32(1) + text("k") + u32(0) + u32(4) + u32(1) + argument),
              "exit 1\n"
              "db:0x68: error: section 0 (kernel data), kernel 1 of 1 (\"k\"), argument 1 of 1, "
              "instance 1 of 1: the number of locations is 1, with 7 bytes left\n");
}

TEST_F(VerifyCommand, FindsARecordThatReachesIntoTheNextSection) {
    // The record is whole only with the bytes of the document behind it.
    const std::string data = u32(1) + record({.name = "k"});
    EXPECT_THAT(
        verify(header(2) + entry(2, 0x40, static_cast<std::uint32_t>(data.size() - 4)) +
               entry(3, 0x40 + data.size() - 4, 26) + data + emptyDocument),
        HasSubstr("kernel 1 of 1 (\"k\"): the section ends before the number of BRAM names"));
}

// A name 5, and seven numbers of a kernel without anything: 0x44 + 33 = 0x65.
TEST_F(VerifyCommand, FindsBytesBehindTheLastRecord) {
    const std::vector<KnownKernel> kernels{{.name = "k"}};
    EXPECT_EQ(verify(dataFirst(knownKernelData(kernels) + "abc", knownJson(kernels))),
              "exit 1\n"
              "db:0x65: warning: section 0 (kernel data): 3 bytes without a record behind "
              "the last one\n"
              "db: 1 warning\n");
}

TEST_F(VerifyCommand, FindsAnUnknownTypeOfKernel) {
    EXPECT_EQ(
        verify(dataFirst({{.name = "k", .type = 5}})),
        "exit 1\n"
        "db:0x4d: warning: section 0 (kernel data), kernel 1 of 1 (\"k\"): type 5 is no type of "
        "a kernel, and shown as Unknown\n"
        "db: 1 warning\n");
}

// Name 5, numbers of paths, type, arguments, variables, registers and conditions: 24.
TEST_F(VerifyCommand, FindsAnUnknownKindOfCondition) {
    EXPECT_EQ(verify(dataFirst({{.name = "k", .conditions = {{3, "$i/x"}}}})),
              "exit 1\n"
              "db:0x61: warning: section 0 (kernel data), kernel 1 of 1 (\"k\"), condition 1 of 1: "
              "kind 3 is no kind of a condition\n"
              "db: 1 warning\n");
}

TEST_F(VerifyCommand, FindsAZeroByteInAText) {
    const std::string data = u32(1) + record({.name = "k", .instancePaths = {bytes("top\0/k")}});
    EXPECT_EQ(
        verify(dataFirst(data, emptyDocument)),
        "exit 1\n"
        "db:0x4d: warning: section 0 (kernel data), kernel 1 of 1 (\"k\"), instance path 1 of "
        "1: the text has a zero byte, and is read as \"top\"\n" +
            note(data) + "db: 1 warning, 1 note\n");
}

TEST_F(VerifyCommand, FindsNamesThatAreNotUnique) {
    // Instance paths from 0x4d, 5 bytes each; arguments from 0x64, 19 bytes each; registers from
    // 0x92, 18 bytes each; conditions from 0xba, 12 bytes each.
    const KnownKernel kernel{.name = "k",
                             .instancePaths = {"p", "p", "p"},
                             .arguments = {{"a", "b", "c"}, {"a", "x", "y"}},
                             .registers = {{"/r", {{1, 2}}}, {"/r", {{3, 4}}}},
                             .conditions = {{0, "$i/x"}, {0, "$i/x"}, {1, "$i/x"}}};
    EXPECT_EQ(
        verify(dataFirst({kernel})),
        "exit 1\n"
        "db:0x52: warning: section 0 (kernel data), kernel 1 of 1 (\"k\"): the instance path "
        "\"p\" stands here again, first at 0x4d, and 3 times in all\n"
        "db:0x77: warning: section 0 (kernel data), kernel 1 of 1 (\"k\"): the argument \"a\" "
        "stands here again, first at 0x64\n"
        "db:0xa4: warning: section 0 (kernel data), kernel 1 of 1 (\"k\"): the register \"/r\" "
        "stands here again, first at 0x92\n"
        "db:0xc6: warning: section 0 (kernel data), kernel 1 of 1 (\"k\"): the condition "
        "\"$i/x\" stands here again, first at 0xba\n"
        "db: 4 warnings\n");
}

// In the order of the second of each; a path takes 5 bytes, the first one from 0x4d on.
TEST_F(VerifyCommand, FindsSeveralNamesOfOneListThatAreNotUnique) {
    const std::string start = "section 0 (kernel data), kernel 1 of 1 (\"k\"): the instance path ";
    EXPECT_EQ(verify(dataFirst({{.name = "k", .instancePaths = {"q", "p", "r", "p", "q", "p"}}})),
              "exit 1\n"
              "db:0x5c: warning: " +
                  start +
                  "\"p\" stands here again, first at 0x52, and 3 times in all\n"
                  "db:0x61: warning: " +
                  start +
                  "\"q\" stands here again, first at 0x4d\n"
                  "db: 2 warnings\n");
}

// A kernel without anything has 33 bytes.
TEST_F(VerifyCommand, FindsKernelsOfOneName) {
    EXPECT_EQ(
        verify(dataFirst({{.name = "k"}, {.name = "l"}, {.name = "k"}})),
        "exit 1\n"
        "db:0x86: warning: section 0 (kernel data): the kernel \"k\" stands here again, first "
        "at 0x44\n"
        "db: 1 warning\n");
}

// The document takes 22 bytes from 0x40 on, the kernel data come behind. The numbers of conditions
// and BRAM names are zero, as the locations are: the file is made longer, and takes no room.
TEST_F(VerifyCommand, FindsRegistersOfOddSizes) {
    constexpr std::uint32_t bits = (1U << 24U) + 1;
    const std::string data = u32(1) + text("k") + u32(0) + u32(4) + u32(0) + u32(0) + u32(2) +
                             text("e") + u32(0) + text("r") + u32(bits);
    const auto size =
        static_cast<std::uint32_t>(data.size() + 8 * bits + 2 * sizeof(std::uint32_t));
    const std::string path = directory.write(
        "large", header(2) + entry(3, 0x40, 22) + entry(2, 0x56, size) + emptyDocument + data);
    std::filesystem::resize_file(path, 0x56 + size);
    EXPECT_EQ(inspectRun({"verify", path}).out,
              path +
                  ":0x78: note: section 1 (kernel data), kernel 1 of 1 (\"k\"), register 1 of 2: "
                  "\"e\" has no bits\n" +
                  path +
                  ":0x81: warning: section 1 (kernel data), kernel 1 of 1 (\"k\"), register 2 "
                  "of 2: \"r\" has 16777217 bits, and no run makes more than 16777216\n" +
                  path +
                  ":0x51: error: section 0 (kernel JSON): from here on, in kernel 1, it is not "
                  "what section 1 (kernel data) gives\n" +
                  path + ": 1 error, 1 warning, 1 note\n");
}

// The JSON document

TEST_F(VerifyCommand, FindsThatThereIsNoDocument) {
    EXPECT_EQ(verify(header(0)),
              "exit 1\n"
              "db:0xc: warning: there is no kernel JSON section, which every run writes\n"
              "db: 1 warning\n");
}

TEST_F(VerifyCommand, FindsADocumentThatWasGivenUp) {
    EXPECT_EQ(
        verify(dataFirst(knownKernelData({{.name = "k"}}), "")),
        "exit 1\n"
        "db:0x38: warning: section 1 (kernel JSON): it is empty: when the file was written, the "
        "document was given up, because of its length or for want of space\n"
        "db: 1 warning\n");
}

TEST_F(VerifyCommand, FindsADocumentWithoutItsZeroByte) {
    EXPECT_EQ(verify(DatabaseBuilder().section(3, "{  \"Kernels\" : [  ] }").bytes()),
              "exit 1\n"
              "db:0x3c: error: section 0 (kernel JSON): it does not end with a zero byte\n"
              "db: 1 error\n");
}

// The document begins at 0x40 with 17 characters; { "Name" : " are 12 more.
TEST_F(VerifyCommand, FindsADocumentOfOtherKernels) {
    EXPECT_EQ(verify(DatabaseBuilder()
                         .section(3, knownJson({{.name = "k"}}))
                         .section(2, knownKernelData({{.name = "l"}}))
                         .bytes()),
              "exit 1\n"
              "db:0x5d: error: section 0 (kernel JSON): from here on, in kernel 1, it is not what "
              "section 1 (kernel data) gives\n"
              "db: 1 error\n");
}

TEST_F(VerifyCommand, FindsADocumentThatEndsEarlyOrGoesOn) {
    const std::vector<KnownKernel> one{{.name = "k"}};
    const std::vector<KnownKernel> two{{.name = "k"}, {.name = "l"}};
    EXPECT_THAT(
        verify(dataFirst(knownKernelData(two), knownJson(one))),
        HasSubstr("from here on, in kernel 2, it is not what section 0 (kernel data) gives"));
    EXPECT_THAT(verify(dataFirst(knownKernelData(one), knownJson(two))),
                HasSubstr("from here on, it is not what section 0 (kernel data) gives"));
    EXPECT_THAT(verify(dataFirst(knownKernelData(one), knownJson(one) + bytes("!\0"))),
                HasSubstr("from here on, it is not what section 0 (kernel data) gives"));
}

TEST_F(VerifyCommand, FindsADocumentOfKernelsThatAreNotThere) {
    EXPECT_EQ(verify(DatabaseBuilder().section(3, knownJson({{.name = "k"}})).bytes()),
              "exit 1\n"
              "db:0x39: error: section 0 (kernel JSON): from here on, it is not the document of no "
              "kernels, and there is no kernel data section\n"
              "db: 1 error\n");
}

// As a run leaves it that extends a file with two of them: the second one is translated twice.
TEST_F(VerifyCommand, ComparesTheFirstDocument) {
    KnownKernel kernel{.name = "k", .conditions = {{0, "== $i/a $i/b"}}};
    const std::string data = knownKernelData({kernel});
    const std::string document = knownJson({kernel});
    kernel.conditions = {{0, "== $i/b $i/a"}};
    EXPECT_THAT(verify(DatabaseBuilder()
                           .section(3, document)
                           .section(2, data)
                           .section(3, knownJson({kernel}))
                           .bytes()),
                EndsWith("db: 1 warning\n"));
}

// As it is printed

TEST_F(VerifyCommand, PrintsSoManyFindingsAtMost) {
    std::string table;
    for (int i = 0; i < 1001; ++i) {
        table += entry(7, 0, 0);
    }
    const std::string out = verify(header(1001) + table);
    EXPECT_THAT(out, HasSubstr("db:0x5db8: error: section 999 (type 7)"));
    EXPECT_THAT(out, Not(HasSubstr("section 1000 (type 7)")));
    EXPECT_THAT(out, EndsWith("db: the first 1000 of 1001 errors are shown\n"
                              "db: 1001 errors, 1 warning\n"));
}

TEST_F(VerifyCommand, ShortensLongNamesAndLetsNoneDriveTheTerminal) {
    const std::string name = "\x1b[2J" + std::string(75, 'x') + "\u00e9 and more";
    const std::string out = verify(dataFirst({{.name = name, .type = 5}}));
    EXPECT_THAT(out,
                HasSubstr("kernel 1 of 1 (\"\\x1b[2J" + std::string(75, 'x') + "…\"): type 5"));
}

TEST_F(VerifyCommand, ColoursTheSeverityOnATerminal) {
    const std::string path = directory.write("db", "hello");
    EXPECT_THAT(inspectRunInColour({"verify", path}).out,
                HasSubstr(":0x0: \x1b[31merror\x1b[0m: the file has"));
}

TEST_F(VerifyCommand, GivesTheReasonWhereADamagedDatabaseIsShown) {
    std::string database = exampleDatabase();
    database.pop_back();
    const std::string path = directory.write("db", database);
    // The entry of the kernel data is the fourth one, at 16 + 3 * 24, and its size 16 behind that.
    EXPECT_EQ(inspectRun({"summary", path}).err,
              path +
                  ": error: is damaged at 0x68: section 3 (kernel data): it reaches from 0x8aa to "
                  "0xd7c, and the file ends at 0xd7b; what could be read is shown\n");
    const std::string none = directory.write("none", "0123456789abcdef");
    EXPECT_EQ(inspectRun({"summary", none}).err,
              none +
                  ": error: is no consolidated file: the file begins with 0x33323130, not with the "
                  "magic number 0xbeefdad4\n");
}

} // namespace

} // namespace consolidator::test
