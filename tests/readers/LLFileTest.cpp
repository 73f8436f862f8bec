// The logic-location reader: which registers a text gives which kernels, which texts are refused,
// and that it reads odd texts as the plainest reader does.

#include "readers/LLFile.h"

#include "tests/support/Bytes.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/OddLogicLocations.h"
#include "tests/support/PlainLogicLocations.h"
#include "tests/support/Reading.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A reader that has its kernels from the start.
class ReaderOfKernels {
public:
    template <typename Source>
    ReaderOfKernels(Source source, const std::vector<Kernel>& kernels, std::ostream& errors)
        : file_(std::move(source), errors) {
        file_.setKernels(kernels);
    }

    bool isOpen() const { return file_.isOpen(); }
    bool parse() { return file_.parse(); }
    const std::vector<Kernel>& kernels() const { return file_.kernels(); }
    const Diagnostic& diagnostic() const { return file_.diagnostic(); }

private:
    LLFile file_;
};

/// Address and offset.
using Place = std::pair<std::uint32_t, std::uint32_t>;

/// A net's name and the places of its bits.
using Register = std::pair<std::string, std::vector<Place>>;

std::vector<Register> registersOf(const Kernel& kernel) {
    std::vector<Register> result;
    for (const HardwareVariable& variable : kernel.hardwareVariables()) {
        EXPECT_TRUE(variable.valid);
        result.push_back({variable.name, {}});
        for (const LogicLocation& location : variable.locations) {
            result.back().second.emplace_back(location.address, location.offset);
        }
    }
    return result;
}

using Names = std::vector<std::string>;

Kernel kernelAt(const Names& paths, const Names& variables = {"state_r"},
                const Names& arguments = {}) {
    Kernel kernel;
    kernel.setName("scale_rows");
    for (const std::string& path : paths) {
        kernel.addInstancePath(path);
    }
    for (const std::string& name : variables) {
        kernel.addVariable("variable " + name, name, "int");
    }
    for (const std::string& name : arguments) {
        kernel.addArgument("argument " + name, name, "int");
    }
    return kernel;
}

const Kernel usual = kernelAt({"top/k_1"});

Reading readWith(const std::string& text, const std::vector<Kernel>& kernels) {
    return readText<ReaderOfKernels>(text, kernels);
}

/// The registers that a text, which must be read to its end, gives to a single kernel.
std::vector<Register> registersFrom(const std::string& text, const Kernel& kernel = usual) {
    const Reading reading = readWith(text, {kernel});
    EXPECT_TRUE(reading.succeeded);
    EXPECT_FALSE(reading.diagnostic.stopped().has_value());
    return registersOf(reading.kernels.at(0));
}

/// The same for a text that must be refused.
std::vector<Register> registersBeforeFaultOf(const std::string& text,
                                             const Kernel& kernel = usual) {
    const Reading reading = readWith(text, {kernel});
    EXPECT_FALSE(reading.succeeded);
    EXPECT_TRUE(reading.diagnostic.stopped().has_value());
    return registersOf(reading.kernels.at(0));
}

/// A line about one bit of a net, with what stands between "Bit" and the net.
std::string bitOf(const std::string& net, const std::string& fields = "1000 0x1a00 64 DIE0 0") {
    return "Bit " + fields + " Latch=Q Net=" + net + "\n";
}

const Place place{0x1a00, 64}; // where bitOf() says

/// The line of the usual kernel's register with these fields in front of the net.
std::string withFields(const std::string& fields) {
    return bitOf("top/k_1/state_r", fields);
}

std::vector<Register> only(const std::string& net, const std::vector<Place>& places) {
    return {{net, places}};
}

std::vector<Register> usualRegister(const std::vector<Place>& places = {place}) {
    return only("/top/k_1/state_r", places);
}

const std::string usualLine = bitOf("top/k_1/state_r");

// Registers and their bits

TEST(LLFile, GivesARegisterThePlaceOfEachOfItsBits) {
    EXPECT_EQ(registersFrom("; a comment\n"
                            "Revision 3\n"
                            "Bit  1000 0x00001a00   64 TILE_X1Y2 0 Latch=Q Net=top/k_1/state_r[0]\n"
                            "Bit  1032 0x00001a01  160 TILE_X1Y2 0 Latch=Q Net=top/k_1/state_r[1]\n"
                            "Bit  1064 0x00002b00    0 TILE_X3Y1 1 Net=top/k_1/state_r[2] Ram=B\n"),
              usualRegister({{6656, 64}, {6657, 160}, {11008, 0}}));
}

TEST(LLFile, FillsBitsThatAreNotNamedWithZeros) {
    EXPECT_EQ(registersFrom(bitOf("top/k_1/inst/state_r[3]"), kernelAt({"/top/k_1"})),
              only("/top/k_1/inst/state_r", {{0, 0}, {0, 0}, {0, 0}, place}));
}

TEST(LLFile, TakesTheBitsOfARegisterInAnyOrder) {
    EXPECT_EQ(registersFrom(bitOf("top/k_1/state_r[2]", "1 2 20 DIE0 0") +
                            bitOf("top/k_1/state_r[0]", "1 1 10 DIE0 0")),
              usualRegister({{1, 10}, {0, 0}, {2, 20}}));
}

TEST(LLFile, LetsTheLaterLineForABitWin) {
    EXPECT_EQ(registersFrom(bitOf("top/k_1/state_r[1]", "1 1 10 DIE0 0") +
                            bitOf("top/k_1/state_r[0]", "1 2 20 DIE0 0") +
                            bitOf("top/k_1/state_r[1]", "1 3 30 DIE0 0")),
              usualRegister({{2, 20}, {3, 30}}));
    EXPECT_EQ(registersFrom(usualLine + withFields("1 0 0 DIE0 0")), usualRegister({{0, 0}}));
}

TEST(LLFile, TakesANetWithoutIndexForBitZero) {
    EXPECT_EQ(registersFrom(usualLine), usualRegister());
    EXPECT_EQ(registersFrom(bitOf("top/k_1/state_r[0]", "1 1 10 DIE0 0") + usualLine),
              usualRegister());
}

TEST(LLFile, KeepsRegistersInTheOrderOfTheirFirstLines) {
    EXPECT_EQ(registersFrom(bitOf("top/k_1/b/n") + bitOf("top/k_1/a/n[1]") +
                                bitOf("top/k_1/b/n[1]") + bitOf("top/k_1/a/n"),
                            kernelAt({"top/k_1"}, {"n"})),
              (std::vector<Register>{{"/top/k_1/b/n", {place, place}},
                                     {"/top/k_1/a/n", {place, place}}}));
}

TEST(LLFile, AddsToRegistersThatTheKernelHas) {
    Kernel kernel = usual;
    kernel.addHardwareLocation("/top/other", 0, 5, 6);
    kernel.addHardwareLocation("/top/k_1/state_r", 0, 1, 2);
    kernel.addHardwareLocation("/top/k_1/state_r", 1, 3, 4);
    EXPECT_EQ(registersFrom(bitOf("top/k_1/state_r[1]") + bitOf("top/k_1/state_r[2]"), kernel),
              (std::vector<Register>{{"/top/other", {{5, 6}}},
                                     {"/top/k_1/state_r", {{1, 2}, place, place}}}));
}

TEST(LLFile, LeavesTheRestOfTheKernelsAlone) {
    Kernel kernel = kernelAt({"top/k_1", "top/k_2"}, {"state_r"}, {"n"});
    kernel.setType(KernelType::HLS);
    kernel.addBreakableCondition(0, "== $i/kc_start 1'b1");
    kernel.addBram("buffer");
    const Reading reading = readWith(usualLine, {kernel, Kernel()});
    kernel.addHardwareLocation("/top/k_1/state_r", 0, 0x1a00, 64);
    ASSERT_EQ(reading.kernels.size(), 2U);
    EXPECT_EQ(binaryForm(reading.kernels[0]), binaryForm(kernel));
    EXPECT_EQ(binaryForm(reading.kernels[1]), binaryForm(Kernel()));
}

// Bit indices

TEST(LLFile, KeepsAClosingBracketThatNoneOpens) {
    EXPECT_EQ(registersFrom(bitOf("top/k_1/n]"), kernelAt({"top/k_1"}, {"n", "n]"})),
              only("/top/k_1/n]", {place}));
}

TEST(LLFile, KeepsBracketsBeforeTheEndOfTheName) {
    EXPECT_EQ(registersFrom(bitOf("top/k_1/a[2]_x"), kernelAt({"top/k_1"}, {"a", "a[2]_x"})),
              only("/top/k_1/a[2]_x", {place}));
    EXPECT_EQ(registersFrom(bitOf("top/k_1/a[2]_x[1]"), kernelAt({"top/k_1"}, {"a[2]_x"})),
              only("/top/k_1/a[2]_x", {{0, 0}, place}));
}

TEST(LLFile, CutsTheLastOfSeveralIndices) {
    EXPECT_EQ(registersFrom(bitOf("top/k_1/n[1][2]"), kernelAt({"top/k_1"}, {"n", "n[1]"})),
              only("/top/k_1/n[1]", {{0, 0}, {0, 0}, place}));
    EXPECT_EQ(registersFrom(bitOf("top/k_1/n[[1]"), kernelAt({"top/k_1"}, {"n", "n["})),
              only("/top/k_1/n[", {{0, 0}, place}));
}

TEST(LLFile, CutsANetAtItsOnlyOpeningBracketHoweverFarLeft) {
    EXPECT_EQ(registersFrom(bitOf("top/k_1[1]/inst/n]"), kernelAt({"top"}, {"n", "n]", "k_1"})),
              only("/top/k_1", {{0, 0}, place}));
    EXPECT_EQ(registersFrom(bitOf("[1]/n]"), kernelAt({"/"}, {"n", "n]", ""})),
              only("/", {{0, 0}, place}));
}

TEST(LLFile, KeepsAnIndexThatTheNameDoesNotEndWith) {
    for (const std::string name : {"n[3", "n[3]x", "n[", "[3]n"}) {
        EXPECT_EQ(registersFrom(bitOf("top/k_1/" + name), kernelAt({"top/k_1"}, {"n", name})),
                  only("/top/k_1/" + name, {place}));
    }
}

TEST(LLFile, ReadsAnIndexUpToWhatIsNoDigit) {
    const std::vector<Place> bitTwo = {{0, 0}, {0, 0}, place};
    for (const char* index : {"2", "002", "+2", "2x", "2]", "2.7", "-4294967294"}) {
        EXPECT_EQ(registersFrom(bitOf("top/k_1/state_r[" + std::string(index) + "]")),
                  usualRegister(bitTwo))
            << index;
    }
}

TEST(LLFile, TakesAnIndexThatIsNoNumberForZero) {
    for (const char* index : {"", "x", "-", "+", "x2", "0x2", "]", "-0", "--2"}) {
        EXPECT_EQ(registersFrom(bitOf("top/k_1/state_r[" + std::string(index) + "]")),
                  usualRegister())
            << index;
    }
}

TEST(LLFile, SkipsBitsThatNoRegisterHas) {
    for (const char* index : {"16777216", "4294967295", "4294967296", "18446744073709551616", "-1",
                              "-4278190080", "99999999999999999999999999"}) {
        const std::string net = "top/k_1/state_r[" + std::string(index) + "]";
        EXPECT_THAT(registersFrom(bitOf(net)), IsEmpty()) << index;
        EXPECT_EQ(registersFrom(usualLine + bitOf(net)), usualRegister()) << index;
    }
}

TEST(LLFile, KeepsTheHighestBitThatARegisterCanHave) {
    const Reading reading = readWith(bitOf("top/k_1/state_r[16777215]"), {usual});
    EXPECT_TRUE(reading.succeeded);
    EXPECT_THAT(reading.diagnostic.remarks(), IsEmpty());
    const std::vector<HardwareVariable>& registers = reading.kernels.at(0).hardwareVariables();
    ASSERT_EQ(registers.size(), 1U);
    ASSERT_EQ(registers[0].locations.size(), 16777216U);
    EXPECT_EQ(registers[0].locations[0], LogicLocation());
    EXPECT_EQ(registers[0].locations[16777215], (LogicLocation{0x1a00, 64}));
}

// Addresses, offsets and the other fields

struct FieldCase {
    std::string text;
    std::uint32_t value;
};

TEST(LLFile, ReadsAddressesAsHexadecimalNumbers) {
    for (const auto& [text, value] : std::vector<FieldCase>{
             {"0x00001a00", 0x1a00},
             {"1a00", 0x1a00},
             {"10", 0x10},
             {"0X1a", 0x1a},
             {"0xdeadBEEF", 0xdeadbeef},
             {"FFFFffff", 0xffffffff},
             {"0", 0},
             {"0x0", 0},
             {"+0x10", 0x10},
             {"-1", 0xffffffff},
             {"-0x10", 0xfffffff0},
             {"0000000000000000000000000000000012", 0x12},
         }) {
        EXPECT_EQ(registersFrom(withFields("1 " + text + " 64 DIE0 0")),
                  usualRegister({{value, 64}}))
            << text;
    }
}

TEST(LLFile, KeepsTheLow32BitsOfAnAddress) {
    for (const auto& [text, value] : std::vector<FieldCase>{
             {"0x100000000", 0},
             {"0x123456789", 0x23456789},
             {"ffffffff00000001", 1},
             {"0xffffffffffffffff", 0xffffffff},
             {"-0x100000001", 0xffffffff},
         }) {
        EXPECT_EQ(registersFrom(withFields("1 " + text + " 64 DIE0 0")),
                  usualRegister({{value, 64}}))
            << text;
    }
}

TEST(LLFile, ReadsOffsetsAsDecimalNumbers) {
    for (const auto& [text, value] : std::vector<FieldCase>{
             {"0", 0},
             {"64", 64},
             {"0064", 64},
             {"+5", 5},
             {"4294967295", 4294967295},
             {"-1", 4294967295},
             {"-4294967295", 1},
         }) {
        EXPECT_EQ(registersFrom(withFields("1 0x1a00 " + text + " DIE0 0")),
                  usualRegister({{0x1a00, value}}))
            << text;
    }
}

TEST(LLFile, ReadsPositionAndSlotWithoutKeepingThem) {
    for (const char* position : {"0", "18446744073709551615", "-1", "+3", "0001"}) {
        EXPECT_EQ(registersFrom(withFields(std::string(position) + " 0x1a00 64 DIE0 0")),
                  usualRegister())
            << position;
    }
    for (const char* slot : {"1", "4294967295", "-1", "+3", "0001", "2x", "2Net=top/k_1/state_r"}) {
        EXPECT_EQ(registersFrom(withFields("1 0x1a00 64 DIE0 " + std::string(slot))),
                  usualRegister())
            << slot;
    }
}

TEST(LLFile, GoesOnRightBehindTheDigitsOfANumber) {
    EXPECT_EQ(registersFrom(withFields("12 0x1a00 64DIE0 0")), usualRegister());
    EXPECT_EQ(registersFrom(withFields("12abc 64 DIE0 0")), usualRegister({{0xabc, 64}}));
    EXPECT_EQ(registersFrom(withFields("12 +1a00+64+DIE0 0")), usualRegister());
    EXPECT_EQ(registersFrom(withFields("12-1 64 DIE0 0")), usualRegister({{0xffffffff, 64}}));
    // The net's word begins right behind the slot.
    EXPECT_EQ(registersFrom("Bit 1 0x1a00 64 DIE0 0Net=top/k_1/state_r\n"), usualRegister());
    EXPECT_THAT(registersFrom("Bit 1 0x1a00 64 DIE0 0xNet=top/k_1/state_r\n"), IsEmpty());
}

TEST(LLFile, PassesOverLinesWhoseNumbersCannotBeRead) {
    for (const char* fields : {
             "x 0x1a00 64 DIE0 0", // position
             "- 0x1a00 64 DIE0 0",
             "0x12 0x1a00 64 DIE0 0", // the position is 0, and "x12" no address
             "1.5 0x1a00 64 DIE0 0",
             "18446744073709551616 0x1a00 64 DIE0 0",
             "1 0x 64 DIE0 0", // address
             "1 0xg 64 DIE0 0",
             "1 x1a00 64 DIE0 0",
             "1 g 64 DIE0 0",
             "1 0x10000000000000000 64 DIE0 0",
             "1 0x1a00g 64 DIE0 0", // the address ends at "g", which is no offset
             "1 0x1a00 x DIE0 0",   // offset
             "1 0x1a00 4294967296 DIE0 0",
             "1 0x1a00 -4294967296 DIE0 0",
             "1 0x1a00 64 DIE0 x", // slot
             "1 0x1a00 64 DIE0 4294967296",
             "1 0x1a00 64 DIE0 -4294967296",
         }) {
        EXPECT_THAT(registersFrom(withFields(fields)), IsEmpty()) << fields;
        EXPECT_EQ(registersFrom(withFields(fields) + usualLine), usualRegister()) << fields;
    }
}

TEST(LLFile, PassesOverLinesWithFieldsMissing) {
    for (const char* line :
         {"Bit", "Bit ", "Bit 1", "Bit 1 0x1a00", "Bit 1 0x1a00 64", "Bit 1 0x1a00 64 DIE0",
          "Bit 1 0x1a00 64 DIE0 0", "Bit 1 0x1a00 64 DIE0 0 ", "Bit 1 0x1a00 64 DIE0 0 Latch=Q",
          "Bit Net=top/k_1/state_r", "Bit 1 Net=top/k_1/state_r", "Bit 1 0x1 Net=top/k_1/state_r",
          "Bit 1 0x1 64 Net=top/k_1/state_r", "Bit 1 0x1 64 DIE0 Net=top/k_1/state_r"}) {
        EXPECT_THAT(registersFrom(line), IsEmpty()) << line;
        EXPECT_EQ(registersFrom(std::string(line) + "\n" + usualLine), usualRegister()) << line;
    }
}

TEST(LLFile, TakesAnyWordForThePlace) {
    for (const char* word : {"0", ";", "Bit", "Net=top/k_1/other", "TILE[3]", "\xC3\xA9"}) {
        EXPECT_EQ(registersFrom(withFields("1 0x1a00 64 " + std::string(word) + " 0")),
                  usualRegister())
            << word;
    }
    EXPECT_THAT(registersFrom("Bit 1 0x1a00 64 Net=top/k_1/state_r 0\n"), IsEmpty());
    EXPECT_THAT(registersFrom("Bit 1 0x1a00 64 Net=top/k_1/state_r 0 \n"), IsEmpty());
}

TEST(LLFile, TakesEveryKindOfWhiteSpaceBetweenFields) {
    EXPECT_EQ(registersFrom("Bit\t1\v0x1a00\f64   DIE0\r0 \t Net=top/k_1/state_r\t\n"),
              usualRegister());
}

// The net's word

/// The registers of a line with these words behind its slot, for variables n, m and "Net=n".
std::vector<Register> registersOfWords(const std::string& words) {
    return registersFrom("Bit 1 0x1a00 64 DIE0 0 " + words + "\n",
                         kernelAt({"top"}, {"n", "m", "Net=n"}));
}

TEST(LLFile, FindsTheNetAmongOtherWords) {
    for (const char* words : {"Net=top/n", "Latch=Q Net=top/n", "Net=top/n Ram=B:BIT0",
                              "Net Latch = Net=top/n =", "top/m Net=top/n top/m"}) {
        EXPECT_EQ(registersOfWords(words), only("/top/n", {place})) << words;
    }
}

TEST(LLFile, CountsTheLastOfSeveralNets) {
    EXPECT_EQ(registersOfWords("Net=top/n Net=top/m"), only("/top/m", {place}));
    EXPECT_EQ(registersOfWords("Net=top/n[2] Latch=Q Net=top/m[1] Ram=B"),
              only("/top/m", {{0, 0}, place}));
    EXPECT_THAT(registersOfWords("Net=top/n Net=top/other"), IsEmpty());
}

TEST(LLFile, ForgetsTheIndexOfAnEarlierNet) {
    EXPECT_EQ(registersOfWords("Net=top/n[2] Net=top/m"), only("/top/m", {place}));
}

TEST(LLFile, PassesOverWordsThatOnlyHoldNet) {
    for (const char* words : {"xNet=top/n", "net=top/n", "NET=top/n", "Net= top/n", "Net =top/n",
                              "Net top/n", "Latch=QNet=top/n", "\"Net=top/n\"", "=Net=top/n"}) {
        EXPECT_THAT(registersOfWords(words), IsEmpty()) << words;
        EXPECT_EQ(registersOfWords("Net=top/m xNet=top/n"), only("/top/m", {place})) << words;
    }
}

TEST(LLFile, TakesTheRestOfTheWordForTheNetWhateverItIs) {
    EXPECT_EQ(registersOfWords("Net=top/Net=n"), only("/top/Net=n", {place}));
    EXPECT_EQ(registersOfWords("Net=/top/n"), only("//top/n", {place}));
    EXPECT_EQ(registersOfWords("Net=\"top\"/\\/n"), only("/\"top\"/\\/n", {place}));
}

TEST(LLFile, CountsANetWordWithNothingBehindItAsNoNet) {
    const Kernel nameless = kernelAt({"", "/"}, {"", "/"});
    EXPECT_THAT(registersFrom("Bit 1 0x1a00 64 DIE0 0 Net=\n", nameless), IsEmpty());
    EXPECT_THAT(registersFrom("Bit 1 0x1a00 64 DIE0 0 Net= \n", nameless), IsEmpty());
    EXPECT_THAT(registersFrom("Bit 1 0x1a00 64 DIE0 0 Net=", nameless), IsEmpty());
}

TEST(LLFile, LetsAnEmptyNetCountWhenItComesLast) {
    EXPECT_THAT(registersOfWords("Net=top/n Net="), IsEmpty());
    EXPECT_EQ(registersOfWords("Net= Net=top/n"), only("/top/n", {place}));
}

TEST(LLFile, TakesANetThatIsAnIndexAlone) {
    const std::string line = "Bit 1 0x1a00 64 DIE0 0 Net=[1]\n";
    EXPECT_EQ(registersFrom(line, kernelAt({""}, {""})), only("/", {{0, 0}, place}));
    EXPECT_THAT(registersFrom(line, kernelAt({""}, {"n", "[1]"})), IsEmpty());
}

// Which kernels a net belongs to

TEST(LLFile, FindsAnInstancePathAnywhereInTheNet) {
    for (const char* path : {"top/k_1", "/top/k_1", "top", "k_1/inst", "op/k_", "/inst/state_r",
                             "state_r", "/top/k_1/inst/state_r", "/"}) {
        EXPECT_EQ(registersFrom(bitOf("top/k_1/inst/state_r"), kernelAt({path})),
                  only("/top/k_1/inst/state_r", {place}))
            << path;
    }
    for (const char* path : {"top/k_2", "Top/k_1", "top/k_1/", "//top", "top/k_1/state_r/inst"}) {
        EXPECT_THAT(registersFrom(bitOf("top/k_1.state_r"), kernelAt({path}, {"k_1.state_r"})),
                    IsEmpty())
            << path;
    }
}

TEST(LLFile, LetsAPathMatchNetsOfLongerPaths) {
    EXPECT_EQ(registersFrom(bitOf("top/k_10/state_r"), kernelAt({"/top/k_1"})),
              only("/top/k_10/state_r", {place}));
}

TEST(LLFile, GivesANetToEachOfTwoKernelsWhenOnePathBeginsTheOther) {
    const Reading reading = readWith(bitOf("top/k_10/state_r") + bitOf("top/k_1/state_r"),
                                     {kernelAt({"top/k_1"}), kernelAt({"top/k_10"})});
    ASSERT_EQ(reading.kernels.size(), 2U);
    EXPECT_EQ(
        registersOf(reading.kernels[0]),
        (std::vector<Register>{{"/top/k_10/state_r", {place}}, {"/top/k_1/state_r", {place}}}));
    EXPECT_EQ(registersOf(reading.kernels[1]), only("/top/k_10/state_r", {place}));
}

TEST(LLFile, LetsAnEmptyPathMatchEveryNet) {
    EXPECT_EQ(registersFrom(bitOf("state_r") + bitOf("a/b/state_r"), kernelAt({""})),
              (std::vector<Register>{{"/state_r", {place}}, {"/a/b/state_r", {place}}}));
}

TEST(LLFile, LooksForPathsInTheNetWithoutItsIndex) {
    EXPECT_THAT(registersFrom(bitOf("top/state_r[3]"), kernelAt({"state_r["})), IsEmpty());
    EXPECT_THAT(registersFrom(bitOf("top/state_r[3]"), kernelAt({"3"})), IsEmpty());
}

TEST(LLFile, ComparesTheWholeLastComponentWithHardwareNames) {
    for (const char* net : {"top/k_1/state", "top/k_1/state_r0", "top/k_1/xstate_r",
                            "top/k_1/State_r", "top/k_1/state_r/q", "top/k_1/state_r/"}) {
        EXPECT_THAT(registersFrom(bitOf(net)), IsEmpty()) << net;
    }
}

TEST(LLFile, ComparesNoSourceNamesAndNoTypes) {
    Kernel kernel = kernelAt({"top"}, {});
    kernel.addVariable("sum", "sum_reg", "int");
    kernel.addArgument("n", "n_r", "char");
    EXPECT_THAT(registersFrom(bitOf("top/sum") + bitOf("top/n") + bitOf("top/int") +
                                  bitOf("top/char") + bitOf("top/scale_rows"),
                              kernel),
                IsEmpty());
}

TEST(LLFile, MatchesANetThatIsItsLastComponent) {
    EXPECT_EQ(registersFrom(bitOf("state_r[1]"), kernelAt({"/state_r"})),
              only("/state_r", {{0, 0}, place}));
}

TEST(LLFile, TakesTheLastComponentOfANetThatEndsInASlashForEmpty) {
    EXPECT_EQ(registersFrom(bitOf("top/k_1/"), kernelAt({"top/k_1"}, {""})),
              only("/top/k_1/", {place}));
    EXPECT_EQ(registersFrom(bitOf("top/k_1/[1]"), kernelAt({"top/k_1"}, {""})),
              only("/top/k_1/", {{0, 0}, place}));
    EXPECT_THAT(registersFrom(bitOf("top/k_1/"), kernelAt({"top/k_1"}, {"k_1", "/"})), IsEmpty());
}

TEST(LLFile, MatchesArgumentsAsWellAsVariables) {
    EXPECT_EQ(registersFrom(bitOf("top/a") + bitOf("top/v"), kernelAt({"top"}, {"v"}, {"a"})),
              (std::vector<Register>{{"/top/a", {place}}, {"/top/v", {place}}}));
}

TEST(LLFile, MakesOneRegisterOfANetThatMatchesSeveralTimes) {
    Kernel kernel = kernelAt({"top", "top/k_1", "k_1"}, {"n"}, {"n"});
    kernel.addVariable("other", "n", "int");
    kernel.addArgument("other", "n", "int");
    EXPECT_EQ(registersFrom(bitOf("top/k_1/n[1]") + bitOf("top/k_1/n"), kernel),
              only("/top/k_1/n", {place, place}));
}

TEST(LLFile, GivesKernelsOfTheSamePathTheSameNet) {
    const Reading reading = readWith(
        bitOf("top/n[0]") + bitOf("top/n[1]") + bitOf("top/m"),
        {kernelAt({"top"}, {"n"}), kernelAt({"top"}, {"x"}), kernelAt({"top"}, {}, {"m", "n"})});
    ASSERT_EQ(reading.kernels.size(), 3U);
    EXPECT_EQ(registersOf(reading.kernels[0]), only("/top/n", {place, place}));
    EXPECT_THAT(registersOf(reading.kernels[1]), IsEmpty());
    EXPECT_EQ(registersOf(reading.kernels[2]),
              (std::vector<Register>{{"/top/n", {place, place}}, {"/top/m", {place}}}));
}

TEST(LLFile, GivesKernelsWithoutPathsOrNamesNothing) {
    EXPECT_THAT(registersFrom(usualLine, kernelAt({})), IsEmpty());
    EXPECT_THAT(registersFrom(usualLine, kernelAt({"top"}, {})), IsEmpty());
}

TEST(LLFile, ReadsAFileForNoKernels) {
    const Reading reading = readWith(usualLine, {});
    EXPECT_TRUE(reading.succeeded);
    EXPECT_THAT(reading.kernels, IsEmpty());
}

// Lines

TEST(LLFile, SkipsComments) {
    EXPECT_EQ(registersFrom(";" + usualLine + "; anything\n;\n;;\n" + usualLine + "; end"),
              usualRegister());
    EXPECT_THAT(registersFrom(";" + usualLine), IsEmpty());
}

TEST(LLFile, SkipsLinesThatHoldTheWordRevision) {
    for (const char* line : {"Revision 3", "Revision", " the Revision", "xRevisions",
                             "Bit 1 0x1a00 64 DIE0 0 Net=top/k_1/state_r Revision",
                             "Bit 1 0x1a00 64 Revision 0 Net=top/k_1/state_r",
                             "Bit 1 0x1a00 64 DIE0 0 Net=top/k_1/Revision/state_r"}) {
        EXPECT_THAT(registersFrom(line), IsEmpty()) << line;
    }
    EXPECT_EQ(registersFrom(usualLine + "Revision\n"), usualRegister());
    for (const char* line : {"revision 3", "Revisio 3", "Rev ision", "REVISION"}) {
        EXPECT_THAT(registersBeforeFaultOf(line), IsEmpty()) << line;
    }
}

TEST(LLFile, TakesACommentBehindBlanksForOneOnlyBehindAnotherLine) {
    EXPECT_THAT(registersBeforeFaultOf(" ; comment\n" + usualLine), IsEmpty());
    EXPECT_THAT(registersBeforeFaultOf("\t;\n"), IsEmpty());
    EXPECT_EQ(registersFrom(";\n  \t; comment\n" + usualLine), usualRegister());
}

TEST(LLFile, SkipsWhiteSpaceInFrontOfALine) {
    EXPECT_EQ(registersFrom(" \t" + usualLine), usualRegister());
    EXPECT_EQ(registersFrom(";\n \t" + usualLine), usualRegister());
    EXPECT_EQ(registersFrom("\v\f\r " + usualLine), usualRegister());
}

TEST(LLFile, PassesOverBlankLinesBehindTheFirst) {
    EXPECT_EQ(registersFrom(";\n\n \n\t\r\n" + usualLine + "\n\n"), usualRegister());
    EXPECT_EQ(registersFrom(usualLine + " \t\n \r\n  "), usualRegister());
}

TEST(LLFile, RefusesAFileThatBeginsWithABlankLine) {
    for (const char* start : {"\n", "\r\n", " \n", "\t\n"}) {
        EXPECT_THAT(registersBeforeFaultOf(start + usualLine), IsEmpty());
    }
}

TEST(LLFile, RefusesAFileOfNothingButWhiteSpace) {
    for (const char* text : {"\n", " ", "\t", "\r", "\r\n", "\n\n\n", " \n", "   \n \t \n\n"}) {
        EXPECT_THAT(registersBeforeFaultOf(text), IsEmpty());
    }
}

TEST(LLFile, AcceptsAnEmptyFile) {
    EXPECT_THAT(registersFrom(""), IsEmpty());
}

TEST(LLFile, StopsAtALineThatBeginsWithAnotherWord) {
    for (const char* line :
         {"word", "bit 1 0x1a00 64 DIE0 0", "Bits 1 0x1a00 64 DIE0 0", "BIT", "Bit1 0x1a00", "#",
          "Net=top/k_1/state_r", "1 0x1a00 64 DIE0 0", "Bit;", "\xEF\xBB\xBF;"}) {
        EXPECT_EQ(registersBeforeFaultOf(usualLine + line + "\n" + bitOf("top/k_1/x/state_r")),
                  usualRegister())
            << line;
        EXPECT_THAT(registersBeforeFaultOf(line), IsEmpty()) << line;
    }
}

TEST(LLFile, NeedsNoNewlineAtTheEnd) {
    EXPECT_EQ(registersFrom("Bit 1 0x1a00 64 DIE0 0 Net=top/k_1/state_r"), usualRegister());
    EXPECT_EQ(registersFrom(usualLine + ";"), usualRegister());
    EXPECT_EQ(registersBeforeFaultOf(usualLine + "x"), usualRegister());
}

TEST(LLFile, ReadsLinesWithCarriageReturns) {
    EXPECT_EQ(registersFrom("; comment\r\nRevision 3\r\n\r\n"
                            "Bit 1 0x1a00 64 DIE0 0 Net=top/k_1/state_r[0]\r\n"
                            "Bit 1 0x1a00 64 DIE0 0 Net=top/k_1/state_r[1]\r\n"
                            "Bit 1 0x1a00 64 DIE0 0\r\n"),
              usualRegister({place, place}));
}

TEST(LLFile, EndsALineAtALineFeedOnly) {
    EXPECT_THAT(registersFrom(";\r" + usualLine), IsEmpty());
    EXPECT_EQ(registersFrom("Bit 1 0x1a00 64 DIE0 0\rNet=top/k_1/state_r\r" + usualLine),
              usualRegister());
}

TEST(LLFile, TakesALineUpToItsFirstZeroByte) {
    EXPECT_EQ(registersFrom(bytes("Bit 1 0x1a00 64 DIE0 0 Net=top/k_1/state_r\0[3]\n") +
                            bitOf("top/k_1/state_r[1]")),
              usualRegister({place, place}));
    EXPECT_THAT(registersFrom(bytes("Bit 1 0x1a00 64 DIE0 0\0 Net=top/k_1/state_r\n")), IsEmpty());
    EXPECT_EQ(registersFrom(bytes("Bit 1 0x1a00 64 DIE0 0 Net=top/k_1/state_r\0 Revision\n")),
              usualRegister());
    EXPECT_EQ(registersFrom(bytes("; comment\0\n") + usualLine), usualRegister());
}

TEST(LLFile, RefusesALineThatBeginsWithAZeroByte) {
    EXPECT_EQ(registersBeforeFaultOf(usualLine + bytes("\0\n")), usualRegister());
    EXPECT_EQ(registersBeforeFaultOf(usualLine + bytes("\0Revision\n")), usualRegister());
    EXPECT_THAT(registersBeforeFaultOf(bytes("\0")), IsEmpty());
}

// Long lines

/// A line of so many characters about the usual register.
std::string lineOf(std::size_t size) {
    std::string result = "Bit 1 0x1a00 64 DIE0 0 Net=top/k_1/state_r ";
    return result + std::string(size - result.size(), 'x');
}

/// A line of `size` characters that ends in `end`.
std::string lineWithEnd(std::size_t size, const std::string& end) {
    const std::string start = "Bit 1 0x1a00 64 TILE_X1Y2 0";
    return start + std::string(size - start.size() - end.size(), ' ') + end;
}

TEST(LLFile, ReadsLinesOfUpTo2046Characters) {
    for (const std::size_t size : {2044U, 2045U, 2046U}) {
        EXPECT_EQ(registersFrom(lineOf(size)), usualRegister()) << size;
        EXPECT_EQ(registersFrom(lineOf(size) + "\n"), usualRegister()) << size;
        EXPECT_EQ(registersFrom(lineOf(size) + "\n" + bitOf("top/k_1/state_r[1]")),
                  usualRegister({place, place}))
            << size;
        EXPECT_EQ(registersFrom(lineWithEnd(size, "Net=top/k_1/state_r[0]") + "\n"),
                  usualRegister())
            << size;
    }
}

TEST(LLFile, StopsBehindTheFirst2046CharactersOfALongerLine) {
    for (const std::size_t size : {2047U, 2048U, 2049U, 5000U}) {
        EXPECT_EQ(registersBeforeFaultOf(lineOf(size)), usualRegister()) << size;
        EXPECT_EQ(registersBeforeFaultOf(lineOf(size) + "\n"), usualRegister()) << size;
        EXPECT_EQ(registersBeforeFaultOf(lineOf(size) + "\n" + bitOf("top/k_1/state_r[1]")),
                  usualRegister())
            << size;
    }
}

TEST(LLFile, CutsAWordThatStandsAcrossTheLimit) {
    EXPECT_EQ(registersBeforeFaultOf(lineWithEnd(2046, "Net=top/k_1/state_r") + "_x\n"),
              usualRegister());
    EXPECT_EQ(registersBeforeFaultOf(lineWithEnd(2046, "Net=top/k_1/state_r[1]") + "]\n"),
              usualRegister({{0, 0}, place}));
    EXPECT_THAT(registersBeforeFaultOf(lineWithEnd(2046, "Net=top/k_1/state_") + "r\n"), IsEmpty());
    EXPECT_THAT(registersBeforeFaultOf(lineWithEnd(2047, " Revision")), IsEmpty());
}

TEST(LLFile, StopsAtLongLinesOfEveryKind) {
    for (const char* start : {";", "Revision", "word"}) {
        std::string line = start;
        line.resize(2047, 'x');
        EXPECT_EQ(registersBeforeFaultOf(usualLine + line + "\n" + bitOf("top/k_1/state_r[1]")),
                  usualRegister())
            << start;
    }
    EXPECT_EQ(registersFrom(";" + std::string(2045, 'x') + "\n" + usualLine), usualRegister());
}

TEST(LLFile, CountsCarriageReturnsAndZeroBytesAsCharactersOfTheLine) {
    EXPECT_EQ(registersFrom(lineOf(2045) + "\r\n"), usualRegister());
    EXPECT_EQ(registersBeforeFaultOf(lineOf(2046) + "\r\n"), usualRegister());
    const std::string start = "Bit 1 0x1a00 64 DIE0 0 Net=top/k_1/state_r";
    EXPECT_EQ(registersFrom(start + std::string(2046 - start.size(), '\0') + "\n"),
              usualRegister());
    EXPECT_EQ(registersBeforeFaultOf(start + std::string(2047 - start.size(), '\0') + "\n"),
              usualRegister());
}

TEST(LLFile, DoesNotCountBlanksInFrontOfALineBehindTheFirst) {
    EXPECT_EQ(registersFrom(";\n" + std::string(5000, ' ') + lineOf(2046)), usualRegister());
    EXPECT_EQ(registersBeforeFaultOf(" " + lineOf(2046)), usualRegister());
}

// Files

TEST(LLFile, ReadsAFileNamedByItsPath) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("top.ll", usualLine);
    const Reading reading = readFile<ReaderOfKernels>(path, std::vector<Kernel>{usual});
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ(registersOf(reading.kernels.at(0)), usualRegister());
}

TEST(LLFile, IsNotOpenWhenThereIsNoFile) {
    const TemporaryDirectory directory;
    std::ostringstream errors;
    LLFile reader(directory.path("missing"), errors);
    reader.setKernels({usual});
    EXPECT_FALSE(reader.isOpen());
    EXPECT_FALSE(reader.parse());
    EXPECT_EQ(errors.str(), "");
    EXPECT_EQ(reader.kernels().size(), 1U);
    EXPECT_EQ(reader.diagnostic().stopped(),
              stopAt(0, "cannot be opened: No such file or directory"));
}

TEST(LLFile, IsNotOpenAfterItsEnd) {
    LLFile reader(std::make_unique<std::stringbuf>(usualLine));
    reader.setKernels({usual});
    EXPECT_TRUE(reader.parse());
    EXPECT_FALSE(reader.isOpen());
    EXPECT_FALSE(reader.parse());
    EXPECT_EQ(registersOf(reader.kernels().at(0)), usualRegister());
}

TEST(LLFile, FindsNoVersion) {
    LLFile reader(std::make_unique<std::stringbuf>("Revision 3\n"));
    EXPECT_TRUE(reader.parse());
    EXPECT_EQ(reader.version(), -1.0F);
}

TEST(LLFile, FailsOnADirectory) {
    const TemporaryDirectory directory;
    const Reading reading =
        readFile<ReaderOfKernels>(directory.path("."), std::vector<Kernel>{usual});
    EXPECT_FALSE(reading.succeeded);
    EXPECT_THAT(registersOf(reading.kernels.at(0)), IsEmpty());
}

TEST(LLFile, FailsWhereTheFileCannotBeRead) {
    for (const std::string text : {"", "; comment\n", "Bit 1 0x1a00 64"}) {
        const Reading reading = readBroken<ReaderOfKernels>(text, std::vector<Kernel>{usual});
        EXPECT_FALSE(reading.succeeded) << text;
        EXPECT_THAT(registersOf(reading.kernels.at(0)), IsEmpty()) << text;
    }
    const Reading reading =
        readBroken<ReaderOfKernels>(usualLine + ";", std::vector<Kernel>{usual});
    EXPECT_FALSE(reading.succeeded);
    EXPECT_EQ(registersOf(reading.kernels.at(0)), usualRegister());
}

// Explanations

TEST(LLFile, ExplainsWhyItStoppedAndWhere) {
    EXPECT_EQ(readWith(";\n\n" + usualLine + "  word 1\n", {}).stop(),
              stopAt(4, "line begins with \"word\", not \"Bit\""));
    EXPECT_EQ(readWith("\n" + usualLine, {}).stop(),
              stopAt(1, "line begins with \"\", not \"Bit\""));
    EXPECT_EQ(readWith(usualLine + lineOf(2047) + "\n" + usualLine, {}).stop(),
              stopAt(2, "the line has more than 2046 characters"));
}

TEST(LLFile, ExplainsThatTheFileCannotBeRead) {
    const TemporaryDirectory directory;
    const Reading ofDirectory =
        readFile<ReaderOfKernels>(directory.path("."), std::vector<Kernel>{});
    EXPECT_EQ(ofDirectory.stop().text, "the file cannot be read");
    const Reading ofBroken = readBroken<ReaderOfKernels>(usualLine, std::vector<Kernel>{});
    EXPECT_EQ(ofBroken.stop().text, "the file cannot be read");
}

std::vector<Finding> remarksOn(const std::string& text) {
    return readWith(text, {usual}).diagnostic.remarks();
}

auto remarkAt(std::uint64_t line, const std::string& part) {
    return AllOf(testing::Field(&Finding::line, line),
                 testing::Field(&Finding::text, HasSubstr(part)));
}

TEST(LLFile, RemarksOnBitsThatItSkips) {
    EXPECT_THAT(remarksOn(usualLine + bitOf("top/k_1/state_r[16777216]")),
                ElementsAre(remarkAt(2, "bit 16777216 of \"/top/k_1/state_r\" is skipped")));
    EXPECT_THAT(remarksOn(bitOf("top/k_1/state_r[4294967296]")),
                ElementsAre(remarkAt(1, "bit 4294967295 of \"/top/k_1/state_r\" is skipped")));
}

TEST(LLFile, RemarksOnNumbersThatCannotBeRead) {
    EXPECT_THAT(remarksOn(";\n" + withFields("1 0x 64 DIE0 0") + usualLine + "Bit 1 Net=state_r\n"),
                ElementsAre(remarkAt(2, "numbers"), remarkAt(4, "numbers")));
}

TEST(LLFile, DoesNotLookAtTheNumbersOfALineWithoutANet) {
    EXPECT_THAT(remarksOn("Bit 1\nBit x\nBit\nBit 1 0x 64 DIE0 0\n"), IsEmpty());
}

TEST(LLFile, RemarksOnALastLineWithoutANewline) {
    for (const std::string& last : {std::string("Bit 1 0x1 1 DIE0 0 Net=top/k_1/state_r"),
                                    std::string("; comment"), std::string("Bit")}) {
        EXPECT_THAT(remarksOn(usualLine + last),
                    ElementsAre(remarkAt(2, "no newline at its end: was the file cut off?")))
            << last;
    }
    EXPECT_THAT(remarksOn(usualLine + " \t"), IsEmpty());
    EXPECT_THAT(remarksOn(""), IsEmpty());
}

TEST(LLFile, RemarksOnceOnBlanksInFrontOfNets) {
    const std::string line = "Bit 1 0x1 1 DIE0 0 Net= top/k_1/state_r\n";
    EXPECT_THAT(remarksOn(usualLine + line + usualLine + line),
                ElementsAre(remarkAt(2, "the first of 2 lines without a net: a blank stands "
                                        "behind \"Net=\"")));
    EXPECT_THAT(remarksOn(line),
                ElementsAre(warningAt(1, Code::BlankNet, "a blank stands behind \"Net=\"")));
    EXPECT_THAT(remarksOn("Bit 1 0x1 1 DIE0 0 Net= \nBit 1 0x1 1 DIE0 0 Net=\n"), IsEmpty());
}

TEST(LLFile, RemarksOnBitIndicesThatAreNoNumbers) {
    EXPECT_THAT(
        remarksOn(bitOf("top/k_1/state_r[a]") + bitOf("top/k_1/state_r[3:1]") +
                  bitOf("top/k_1/state_r[]")),
        ElementsAre(
            warningAt(1, Code::OddBitIndex, "bit index \"a\" is no number and is read as 0"),
            warningAt(2, Code::OddBitIndex, "bit index \"3:1\" is no number and is read as 3"),
            warningAt(3, Code::OddBitIndex, "bit index \"\" is no number and is read as 0")));
    EXPECT_THAT(remarksOn(bitOf("top/k_1/state_r[007]")), IsEmpty());
}

TEST(LLFile, TellsItsRemarksApartByCodes) {
    EXPECT_THAT(
        remarksOn(bitOf("top/k_1/state_r[16777216]") + withFields("1 0x 64 DIE0 0") +
                  bitOf("top/k_2/state_r") + "Bit"),
        testing::UnorderedElementsAre(testing::Field(&Finding::code, Code::BitTooHigh),
                                      testing::Field(&Finding::code, Code::UnreadableNumbers),
                                      testing::Field(&Finding::code, Code::NetOfNoKernel),
                                      testing::Field(&Finding::code, Code::NoFinalNewline)));
}

TEST(LLFile, RemarksOnceOnNetsThatBelongToNoKernel) {
    EXPECT_THAT(remarksOn(usualLine + bitOf("top/k_2/state_r") + bitOf("top/k_1/other") +
                          bitOf("top/k_2/state_r[4294967295]")),
                ElementsAre(remarkAt(2, "the first of 3 lines whose net belongs to no kernel")));
    EXPECT_THAT(remarksOn(usualLine + bitOf("top/k_2/state_r")),
                ElementsAre(remarkAt(2, "its net belongs to no kernel")));
}

TEST(LLFile, RemarksOnceOnASkippedBitOfSeveralKernels) {
    const std::string line = bitOf("top/k_1/state_r[16777216]");
    EXPECT_THAT(readWith(line, {usual, usual}).diagnostic.remarks(),
                ElementsAre(remarkAt(1, "bit 16777216 of \"/top/k_1/state_r\" is skipped")));
}

// What a file may add beyond its own size

/// What the reader makes of a text within this budget; it must read it to its end.
Reading readWithin(const LocationBudget& budget, const std::string& text,
                   const std::vector<Kernel>& kernels) {
    LLFile file(std::make_unique<std::stringbuf>(text));
    file.setKernels(kernels);
    file.setBudget(budget);
    EXPECT_TRUE(file.parse());
    return {true, file.kernels(), file.diagnostic()};
}

constexpr std::uint64_t noLimit = std::uint64_t{1} << 40;

TEST(LLFile, SkipsBitsThatWouldAddTooManyEmptyOnes) {
    const Place empty{0, 0};
    const Reading reading =
        readWithin(LocationBudget(4, noLimit),
                   bitOf("top/k_1/a/state_r[3]") +     // takes three
                       bitOf("top/k_1/a/state_r[0]") + // fills one of them, which gives none back
                       bitOf("top/k_1/b/state_r[2]") + // would take two
                       bitOf("top/k_1/a/state_r[6]") + // two
                       bitOf("top/k_1/a/state_r[4]") + // none
                       bitOf("top/k_1/a/state_r[6]") + // the last one
                       bitOf("top/k_1/a/state_r[8]") + // one more
                       bitOf("top/k_1/c/state_r"),     // none
                   {usual});
    EXPECT_THAT(registersOf(reading.kernels.at(0)),
                ElementsAre(Register{"/top/k_1/a/state_r",
                                     {place, empty, empty, place, place, empty, place}},
                            Register{"/top/k_1/c/state_r", {place}}));
    EXPECT_THAT(reading.diagnostic.remarks(),
                ElementsAre(remarkAt(3, "bit 2 of \"/top/k_1/b/state_r\" is skipped"),
                            remarkAt(4, "bit 6 of \"/top/k_1/a/state_r\" is skipped"),
                            remarkAt(7, "bit 8 of \"/top/k_1/a/state_r\" is skipped")));
}

TEST(LLFile, CountsTheEmptyBitsOfEachKernel) {
    const Reading reading =
        readWithin(LocationBudget(3, noLimit), bitOf("top/k_1/state_r[2]"), {usual, usual, usual});
    EXPECT_EQ(registersOf(reading.kernels.at(0)), usualRegister({{0, 0}, {0, 0}, place}));
    EXPECT_THAT(registersOf(reading.kernels.at(1)), IsEmpty());
    EXPECT_THAT(registersOf(reading.kernels.at(2)), IsEmpty());
    EXPECT_THAT(reading.diagnostic.remarks(),
                ElementsAre(remarkAt(1, "bit 2 of "), remarkAt(1, "bit 2 of ")));
}

TEST(LLFile, SkipsOnlyTheKernelWhoseRegisterIsTooShort) {
    Kernel longer = usual;
    longer.addHardwareLocation("/top/k_1/state_r", 2, 7, 7);
    const Reading reading =
        readWithin(LocationBudget(1, noLimit), bitOf("top/k_1/state_r[2]"), {usual, longer});
    EXPECT_THAT(registersOf(reading.kernels.at(0)), IsEmpty());
    EXPECT_EQ(registersOf(reading.kernels.at(1)), usualRegister({{0, 0}, {0, 0}, place}));
}

TEST(LLFile, CountsTheBitsThatARegisterOfTheKernelHas) {
    Kernel kernel = usual;
    kernel.addHardwareLocation("/top/k_1/state_r", 9, 7, 7);
    const Reading reading =
        readWithin(LocationBudget(1, noLimit), bitOf("top/k_1/state_r[11]"), {kernel});
    EXPECT_EQ(registersOf(reading.kernels.at(0)).at(0).second.size(), 12);
    EXPECT_THAT(reading.diagnostic.remarks(), IsEmpty());
}

TEST(LLFile, GivesNetsToTheirFirstKernelOnlyWhenTheyAddTooMuch) {
    // A line of 60 bytes allows 960. A further kernel takes 8 for the location and 128 + 16 for the
    // register, so the seventh still begins below the limit and the eighth does not.
    const std::string line = bitOf("top/k_1/state_r", "1000000 0x00001a00 64 DIE0 0");
    ASSERT_EQ(line.size() - 1, 60);
    const std::vector<Kernel> kernels(20, usual);
    const Reading reading = readWithin(LocationBudget(0, 0), line, kernels);
    for (std::size_t i = 0; i < kernels.size(); ++i) {
        EXPECT_EQ(registersOf(reading.kernels[i]).size(), i <= 7 ? 1 : 0) << i;
    }
    EXPECT_THAT(reading.diagnostic.remarks(), ElementsAre(remarkAt(1, "only the first kernels")));
}

TEST(LLFile, AllowsMoreSharingWithEveryLine) {
    const std::vector<Kernel> kernels(20, usual);
    const Reading reading = readWithin(
        LocationBudget(0, 0), usualLine + usualLine + usualLine + usualLine + usualLine, kernels);
    EXPECT_EQ(registersOf(reading.kernels.back()), usualRegister());
}

// Many kernels and lines: looking at every kernel for every line would take minutes

TEST(LLFile, ReadsManyLinesForManyKernelsOfOnePath) {
    constexpr std::size_t count = 20000;
    std::vector<Kernel> kernels;
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string name = "state_" + std::to_string(i);
        kernels.push_back(kernelAt({"top/k_1"}, {name}));
        text += bitOf("top/k_1/" + name);
    }
    const Reading reading = readWith(text, kernels);
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_EQ(registersOf(reading.kernels[i]),
                  only("/top/k_1/state_" + std::to_string(i), {place}));
    }
}

TEST(LLFile, ReadsManyLinesForManyKernelsOfOneName) {
    constexpr std::size_t count = 20000;
    std::vector<Kernel> kernels;
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        kernels.push_back(kernelAt({"top/k_" + std::to_string(i) + "/"}));
        text += bitOf("top/k_" + std::to_string(i) + "/state_r");
    }
    const Reading reading = readWith(text, kernels);
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_EQ(registersOf(reading.kernels[i]),
                  only("/top/k_" + std::to_string(i) + "/state_r", {place}));
    }
}

TEST(LLFile, ReadsManyLinesThatBelongToManyKernels) {
    constexpr std::size_t count = 20000;
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += bitOf("top/k_1/" + std::to_string(i) + "/state_r");
    }
    const std::vector<Kernel> kernels(count, usual);
    const Reading reading = readWithin(LocationBudget(0, 0), text, kernels);
    EXPECT_EQ(registersOf(reading.kernels[0]).size(), count);
    EXPECT_THAT(registersOf(reading.kernels[count - 1]), IsEmpty());
}

TEST(LLFile, RemarksOnNothingInAPlainFile) {
    EXPECT_THAT(remarksOn("; comment\nRevision 3\n" + usualLine + bitOf("top/k_1/state_r[1]") +
                          "Bit 1 0x1 1 DIE0 0 Ram=B:BIT0\nBit 1 0x1 1 DIE0 0\n\n"),
                IsEmpty());
}

// Comparison with the plainest reader

std::string bytesOf(const std::vector<Kernel>& kernels) {
    const FileHandle file = fileWith({});
    for (const Kernel& kernel : kernels) {
        kernel.write(file.get());
    }
    return contentOf(file.get());
}

/// Reads the text in both ways, which must agree, and returns what LLFile made of it.
Reading compareReadings(const std::string& text, const std::vector<Kernel>& kernels) {
    Reading reading = readWith(text, kernels);
    std::vector<Kernel> expected = kernels;
    EXPECT_EQ(reading.succeeded, readPlainLogicLocations(text, expected));
    EXPECT_EQ(bytesOf(reading.kernels), bytesOf(expected));
    for (const Kernel& kernel : reading.kernels) {
        registersOf(kernel); // expects them to be complete
    }
    return reading;
}

TEST(LLFile, AgreesWithThePlainReaderOnOddTexts) {
    constexpr std::uint32_t seed = 20260131;
    constexpr int texts = 5000;
    OddLogicLocations odd(seed);
    int readToTheEnd = 0;
    int withRegisters = 0;
    int refusedWithRegisters = 0;
    for (int i = 0; i < texts && !testing::Test::HasFailure(); ++i) {
        const std::vector<Kernel> kernels = odd.kernels();
        const std::string text = odd.text();
        SCOPED_TRACE("seed " + std::to_string(seed) + ", text " + std::to_string(i) + ": " +
                     testing::PrintToString(text));
        const Reading reading = compareReadings(text, kernels);
        const bool changed =
            !std::ranges::equal(reading.kernels, kernels, {}, registersOf, registersOf);
        readToTheEnd += reading.succeeded ? 1 : 0;
        withRegisters += changed ? 1 : 0;
        refusedWithRegisters += changed && !reading.succeeded ? 1 : 0;
    }
    // The texts would show nothing if nearly all of them went the same way.
    EXPECT_GT(readToTheEnd, texts / 4);
    EXPECT_GT(texts - readToTheEnd, texts / 20);
    EXPECT_GT(withRegisters, texts / 5);
    EXPECT_GT(refusedWithRegisters, texts / 100);
}

const std::string sampleText = "; sample\n"
                               "Revision 3\n"
                               "Bit  1000 0x00001a00 64 TILE_X1Y2 0 Latch=Q Net=top/k_1/n[1]\n"
                               " \r\n"
                               "Bit\t+9 0X12345678Ab -1 DIE0 07 Net=x Net=top/k_10/a/state_r\n"
                               "Bit 1 0x1 1 DIE0 0 Ram=B:BIT0\n";

TEST(LLFile, AgreesWithThePlainReaderOnEveryBeginningOfAFile) {
    const std::vector<Kernel> kernels = {kernelAt({"top/k_1"}, {"state_r", "n"}), kernelAt({""})};
    for (std::size_t size = 0; size <= sampleText.size(); ++size) {
        const std::string text = sampleText.substr(0, size);
        SCOPED_TRACE(text);
        compareReadings(text, kernels);
    }
}

TEST(LLFile, AgreesWithThePlainReaderOnAFileWithAnyByteDamaged) {
    const std::vector<Kernel> kernels = {kernelAt({"top/k_1"}, {"state_r", "n"}), kernelAt({""})};
    for (std::size_t i = 0; i < sampleText.size(); ++i) {
        for (const char byte : {';', ' ', '\n', '\0', '9', '-', ']', '/', 'x', '\xFF'}) {
            std::string text = sampleText;
            text[i] = byte;
            SCOPED_TRACE(text);
            compareReadings(text, kernels);
        }
    }
}

} // namespace

} // namespace consolidator::test
