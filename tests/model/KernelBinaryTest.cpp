// Tests the binary form of a kernel: every byte of it, and what comes of files that are cut off,
// lie about lengths and counts, or hold duplicates.
#include "model/Kernel.h"
#include "tests/support/Bytes.h"
#include "tests/support/Conditions.h"
#include "tests/support/Kernels.h"
#include "tests/support/LimitedFile.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/SampleKernel.h"
#include "tests/support/Truncation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t largest = 0xFFFFFFFF;

/// Everything that a kernel holds, and what read() returned, as one comparable value.
struct KernelFields {
    std::string name = {};
    std::vector<std::string> instancePaths = {};
    std::uint32_t type = 3;
    std::vector<Variable> arguments = {};
    std::vector<Variable> variables = {};
    std::vector<HardwareVariable> hardwareVariables = {};
    std::vector<ConditionFields> conditions = {};
    std::vector<std::string> brams = {};
    bool result = false;

    bool operator==(const KernelFields&) const = default;
};

KernelFields kernelFields(const Kernel& kernel, bool result = false) {
    return {kernel.name(),
            kernel.instancePaths(),
            static_cast<std::uint32_t>(kernel.type()),
            {kernel.arguments().begin(), kernel.arguments().end()},
            kernel.variables(),
            kernel.hardwareVariables(),
            fieldsOf(kernel.breakableConditions()),
            kernel.brams(),
            result};
}

KernelFields readFields(std::FILE* file) {
    Kernel kernel;
    const bool result = kernel.read(file);
    return kernelFields(kernel, result);
}

KernelFields readFields(std::string_view bytes) {
    const FileHandle file = fileWith(bytes);
    return readFields(file.get());
}

std::vector<std::string> joined(const std::vector<std::vector<std::string>>& lists) {
    std::vector<std::string> result;
    for (const auto& one : lists) {
        result.insert(result.end(), one.begin(), one.end());
    }
    return result;
}

TEST(KernelBinary, OfANewKernelIsLengthsCountsAndTheUnknownType) {
    EXPECT_EQ(binaryForm(Kernel()), u32(0) + u32(0) + u32(3) + u32(0) + u32(0) + u32(0) + //
                                        u32(0) + u32(0));
}

TEST(KernelBinary, HasEveryFieldInItsPlace) {
    EXPECT_EQ(binaryForm(sampleKernel()), sampleRecord());
}

TEST(KernelBinary, HasTextsWhole) {
    Kernel kernel;
    kernel.setName(bytes("k\0\"\\\xFF"));
    kernel.addInstancePath(bytes("\0"));
    kernel.addBram(bytes("b\0"));
    EXPECT_EQ(binaryForm(kernel), bytes("\x05\0\0\0k\0\"\\\xFF"            // name
                                        "\x01\0\0\0\x01\0\0\0\0"           // instance paths
                                        "\x03\0\0\0"                       // type
                                        "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0" // four empty lists
                                        "\x01\0\0\0\x02\0\0\0b\0"));       // BRAM names
}

TEST(KernelBinary, WriteReturnsTheNumberOfBytes) {
    const FileHandle file = fileWith({});
    EXPECT_EQ(Kernel().write(file.get()), 32U);
    EXPECT_EQ(sampleKernel().write(file.get()), sampleRecord().size());
    EXPECT_EQ(contentOf(file.get()), record({}) + sampleRecord());
}

TEST(KernelBinary, WriteWithoutAStreamReturnsNothing) {
    EXPECT_EQ(sampleKernel().write(nullptr), 0U);
}

TEST(KernelBinary, ShortWritesShowInTheCount) {
    Kernel kernel;
    kernel.setName("ke");
    kernel.addInstancePath("top");
    kernel.addArgument("n", "n_r", "int");
    kernel.addVariable("i", "i_r", "");
    kernel.addHardwareLocation("/n", 1, 5, 6);
    kernel.addBreakableCondition(1, "x");
    kernel.addBreakableCondition(fileLine("y", 12, "f.c"));
    kernel.addBram("b");
    const std::vector<std::vector<std::string>> fields{
        {u32(2), "ke"},
        {u32(1), u32(3), "top"},
        {u32(3)},
        {u32(1), u32(1), "n", u32(3), "n_r", u32(3), "int", u32(0)},
        {u32(1), u32(1), "i", u32(3), "i_r", u32(0), u32(0)},
        {u32(1), u32(2), "/n", u32(2), u32(0), u32(0), u32(5), u32(6)},
        {u32(2), u32(1), u32(1), "x", u32(2), u32(1), "y", u32(12), u32(3), "f.c"},
        {u32(1), u32(1), "b"},
    };
    expectShortWritesToShow(kernel, joined(fields));
}

TEST(KernelBinary, AFileThatRefusesEverythingTakesNothing) {
    const FileHandle readOnly = openFile("/dev/null", "r");
    ASSERT_TRUE(readOnly);
    EXPECT_EQ(sampleKernel().write(readOnly.get()), 0U);
    const FileHandle full = openFile("/dev/full", "w");
    ASSERT_TRUE(full);
    ASSERT_EQ(std::setvbuf(full.get(), nullptr, _IONBF, 0), 0);
    EXPECT_EQ(sampleKernel().write(full.get()), 0U);
}

/// Reads one copy of the bytes and passes over another.
void expectToSkipLikeReading(std::string_view bytes) {
    const FileHandle toRead = fileWith(bytes);
    const FileHandle toSkip = fileWith(bytes);
    Kernel kernel;
    EXPECT_EQ(Kernel::skip(toSkip.get()), kernel.read(toRead.get()));
    EXPECT_EQ(std::ftell(toSkip.get()), std::ftell(toRead.get()));
}

TEST(KernelBinary, SkippingGoesAsFarAsReadingWhereverTheRecordIsCutOff) {
    const std::string whole = sampleRecord() + "behind";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        expectToSkipLikeReading(std::string_view(whole).substr(0, length));
    }
}

TEST(KernelBinary, SkippingGoesAsFarAsReadingWhateverNumberIsDamaged) {
    const std::string whole = sampleRecord() + record({}) + std::string(20000, '\0');
    for (std::size_t i = 0; i + 4 <= sampleRecord().size(); ++i) {
        for (const std::uint32_t number : {0U, 1U, 2U, 3U, 5000U, largest - 1, largest}) {
            expectToSkipLikeReading(std::string(whole).replace(i, 4, u32(number)));
        }
    }
}

TEST(KernelBinary, SkippingWithoutAStreamFails) {
    EXPECT_FALSE(Kernel::skip(nullptr));
}

TEST(KernelBinary, ReadingTakesBackWhatWasWritten) {
    const FileHandle file = fileWith(sampleRecord());
    Kernel read;
    EXPECT_TRUE(read.read(file.get()));
    EXPECT_EQ(kernelFields(read), kernelFields(sampleKernel()));
    EXPECT_EQ(binaryForm(read), sampleRecord());
}

TEST(KernelBinary, LocationsOfVariablesAreReadAndWrittenBack) {
    const Record fields{.arguments = {variable("n", "n", "int",
                                               {u32(2) + location(1, 2) + location(3, 4), u32(0)})},
                        .variables = {variable("i", "i", "int", {u32(1) + location(5, 6)})}};
    const Kernel kernel = kernelOf(fields);
    EXPECT_THAT(kernel.arguments()[0].locations,
                ElementsAre(ElementsAre(LogicLocation{1, 2}, LogicLocation{3, 4}), IsEmpty()));
    EXPECT_EQ(binaryForm(kernel), record(fields));
}

TEST(KernelBinary, ReadingReplacesEverything) {
    const FileHandle file = fileWith(record({.name = "k", .type = 4}));
    Kernel kernel = sampleKernel();
    EXPECT_TRUE(kernel.read(file.get()));
    EXPECT_EQ(kernelFields(kernel), (KernelFields{.name = "k", .type = 4}));
}

TEST(KernelBinary, AFailedReadKeepsNothingOfTheKernelBefore) {
    const FileHandle file = fileWith(text("k"));
    Kernel kernel = sampleKernel();
    EXPECT_FALSE(kernel.read(file.get()));
    EXPECT_EQ(kernelFields(kernel), (KernelFields{.name = "k"}));
}

TEST(KernelBinary, ReadingStopsBehindTheRecord) {
    const FileHandle file = fileWith(sampleRecord() + record({.name = "second"}) + sampleRecord());
    Kernel kernel;
    EXPECT_TRUE(kernel.read(file.get()));
    EXPECT_TRUE(kernel.read(file.get()));
    EXPECT_EQ(kernel.name(), "second");
    EXPECT_TRUE(kernel.read(file.get()));
    EXPECT_EQ(binaryForm(kernel), sampleRecord());
    EXPECT_FALSE(kernel.read(file.get()));
}

TEST(KernelBinary, ReadingWithoutAStreamFails) {
    Kernel kernel;
    EXPECT_FALSE(kernel.read(nullptr));
    EXPECT_EQ(kernelFields(kernel), KernelFields{});
}

TEST(KernelBinary, EveryTypeNumberSurvives) {
    for (const std::uint32_t type : {0U, 1U, 2U, 3U, 4U, 5U, 7U, largest}) {
        const Kernel kernel = kernelOf({.name = "k", .type = type});
        EXPECT_EQ(static_cast<std::uint32_t>(kernel.type()), type);
        EXPECT_EQ(binaryForm(kernel), record({.name = "k", .type = type}));
    }
}

TEST(KernelBinary, TextsAreReadUpToTheirFirstZeroByte) {
    const std::string cut = bytes("x\"\\\xFF\0y");
    const std::string kept = "x\"\\\xFF";
    const Kernel kernel = kernelOf({.name = cut,
                                    .instancePaths = {cut},
                                    .arguments = {variable(cut, cut, cut)},
                                    .variables = {variable(cut, cut, cut)},
                                    .hardwareVariables = {hardwareVariable(cut, {})},
                                    .conditions = {condition(cut, 1, cut)},
                                    .brams = {cut}});
    EXPECT_EQ(binaryForm(kernel), record({.name = kept,
                                          .instancePaths = {kept},
                                          .arguments = {variable(kept, kept, kept)},
                                          .variables = {variable(kept, kept, kept)},
                                          .hardwareVariables = {hardwareVariable(kept, {})},
                                          .conditions = {condition(kept, 1, kept)},
                                          .brams = {kept}}));
}

TEST(KernelBinary, ListsReadFromAFileKeepTheirDuplicates) {
    const Record fields{
        .instancePaths = {"p", "q", "p"},
        .arguments = {variable("n", "first", "int"), variable("n", "second", "char")},
        .variables = {variable("i", "first", "int"), variable("i", "first", "int")},
        .hardwareVariables = {hardwareVariable("/r", {location(1, 2)}), hardwareVariable("/r", {})},
        .conditions = {condition(0, "x"), condition(0, "x")},
        .brams = {"b", "b"}};
    EXPECT_EQ(binaryForm(kernelOf(fields)), record(fields));
}

TEST(KernelBinary, TextsThatBecomeEqualWhenCutBothStay) {
    const Kernel kernel = kernelOf({.instancePaths = {bytes("p\0a"), bytes("p\0b")}});
    EXPECT_THAT(kernel.instancePaths(), ElementsAre("p", "p"));
}

TEST(KernelBinary, AddingWhatAFileHoldsTwiceChangesNothing) {
    const Record fields{
        .instancePaths = {"p", "p"},
        .arguments = {variable("n", "first", "int"), variable("n", "second", "char")},
        .variables = {variable("i", "first", "int"), variable("i", "second", "char")},
        .hardwareVariables = {hardwareVariable("/r", {location(1, 2)}), hardwareVariable("/r", {})},
        .conditions = {condition("x", 1, "a.cpp"), condition("x", 1, "a.cpp")}};
    Kernel kernel = kernelOf(fields);
    kernel.addInstancePath("p");
    kernel.addArgument("n", "third", "long");
    kernel.addVariable("i", "third", "long");
    kernel.addHardwareVariable(HardwareVariable("/r"));
    kernel.addBreakableCondition(fileLine("x", 1, "a.cpp"));
    EXPECT_EQ(binaryForm(kernel), record(fields));
}

TEST(KernelBinary, ALocationForARegisterThatAFileHoldsTwiceGoesToTheFirst) {
    Kernel kernel = kernelOf({.hardwareVariables = {hardwareVariable("/other", {}), //
                                                    hardwareVariable("/r", {location(1, 2)}),
                                                    hardwareVariable("/r", {location(3, 4)})}});
    kernel.addHardwareLocation("/r", 1, 5, 6);
    EXPECT_EQ(binaryForm(kernel), record({.hardwareVariables = {
                                              hardwareVariable("/other", {}),
                                              hardwareVariable("/r", {location(1, 2), //
                                                                      location(5, 6)}),
                                              hardwareVariable("/r", {location(3, 4)}),
                                          }}));
}

TEST(KernelBinary, NewElementsJoinBehindThoseReadFromAFile) {
    Kernel kernel = kernelOf({.instancePaths = {"p"}, .arguments = {variable("n", "n", "int")}});
    kernel.addInstancePath("a");
    kernel.addArgument("a", "a", "int");
    EXPECT_THAT(kernel.instancePaths(), ElementsAre("p", "a"));
    EXPECT_THAT(kernel.arguments(),
                ElementsAre(Variable("n", "n", "int"), Variable("a", "a", "int")));
}

TEST(KernelBinary, ATextThatClaimsFourGigabytesInASmallFileEndsTheRead) {
    for (const std::uint32_t claimed : {largest, largest - 1}) {
        EXPECT_EQ(readFields(u32(claimed) + std::string(36, 'x')), KernelFields{});
        EXPECT_EQ(readFields(text("k") + u32(2) + text("p") + u32(claimed) + std::string(22, 'x')),
                  (KernelFields{.name = "k", .instancePaths = {"p"}}));
        // All lists but the last are empty.
        const std::string front = text("k") + u32(0) + u32(1) + u32(0) + u32(0) + u32(0) + u32(0);
        EXPECT_EQ(readFields(front + u32(2) + text("b") + u32(claimed) + "x"),
                  (KernelFields{.name = "k", .type = 1, .brams = {"b"}}));
    }
}

TEST(KernelBinary, TheLargestCountOfInstancePathsInASmallFileEndsTheRead) {
    EXPECT_EQ(readFields(text("k") + u32(largest) + text("p") + text("q")),
              (KernelFields{.name = "k", .instancePaths = {"p", "q"}}));
}

TEST(KernelBinary, TheLargestCountOfArgumentsInASmallFileEndsTheRead) {
    EXPECT_EQ(readFields(text("k") + u32(0) + u32(1) + u32(largest) + variable("n", "m", "int")),
              (KernelFields{
                  .name = "k", .type = 1, .arguments = {Variable("n", "m", "int"), Variable()}}));
}

TEST(KernelBinary, TheLargestCountOfVariablesInASmallFileEndsTheRead) {
    EXPECT_EQ(readFields(text("k") + u32(0) + u32(1) + u32(0) + //
                         u32(largest) + variable("n", "m", "int")),
              (KernelFields{
                  .name = "k", .type = 1, .variables = {Variable("n", "m", "int"), Variable()}}));
}

TEST(KernelBinary, TheLargestCountOfHardwareVariablesInASmallFileEndsTheRead) {
    EXPECT_EQ(readFields(text("k") + u32(0) + u32(1) + u32(0) + u32(0) + //
                         u32(largest) + hardwareVariable("/n", {})),
              (KernelFields{.name = "k",
                            .type = 1,
                            .hardwareVariables = {HardwareVariable("/n"), HardwareVariable()}}));
}

TEST(KernelBinary, TheLargestCountOfConditionsInASmallFileEndsTheRead) {
    EXPECT_EQ(readFields(text("k") + u32(0) + u32(1) + u32(0) + u32(0) + u32(0) + //
                         u32(largest) + condition(1, "x")),
              (KernelFields{.name = "k", .type = 1, .conditions = {{1, "x", 0, "", true}, {}}}));
}

TEST(KernelBinary, TheLargestCountOfBramsInASmallFileEndsTheRead) {
    EXPECT_EQ(readFields(text("k") + u32(0) + u32(1) + u32(0) + u32(0) + u32(0) + u32(0) + //
                         u32(largest) + text("b")),
              (KernelFields{.name = "k", .type = 1, .brams = {"b"}}));
}

TEST(KernelBinary, ARecordCutOffBehindTheTypeHasNamePathsAndType) {
    EXPECT_EQ(readFields(text("k") + u32(1) + text("p") + u32(4)),
              (KernelFields{.name = "k", .instancePaths = {"p"}, .type = 4}));
}

// What comes of a record that is cut off: an element joins its list as soon as the one before it is
// whole, and becomes valid with its last byte.

using KernelStages = Stages<KernelFields>;
using TextsOf = std::vector<std::string> KernelFields::*;
using VariablesOf = std::vector<Variable> KernelFields::*;

void nothing(KernelFields&) {}

void addTextStages(KernelStages& stages, const std::vector<std::string>& texts, TextsOf list) {
    stages.push_back({u32(static_cast<std::uint32_t>(texts.size())), nothing});
    for (const std::string& one : texts) {
        stages.push_back({text(one), [=](KernelFields& read) { (read.*list).push_back(one); }});
    }
}

/// Two elements: one with three texts and no instance, one with one text and one instance.
void addVariableStages(KernelStages& stages, VariablesOf list) {
    const auto beginNext = [=](KernelFields& read) { (read.*list).emplace_back(); };
    stages.push_back({u32(2), beginNext});
    stages.push_back({text("a"), [=](KernelFields& read) { (read.*list)[0].sourceName = "a"; }});
    stages.push_back({text("b"), [=](KernelFields& read) { (read.*list)[0].hardwareName = "b"; }});
    stages.push_back({text("c"), [=](KernelFields& read) { (read.*list)[0].typeText = "c"; }});
    stages.push_back({u32(0), [=](KernelFields& read) {
                          (read.*list)[0].valid = true;
                          beginNext(read);
                      }});
    stages.push_back({text("d"), [=](KernelFields& read) { (read.*list)[1].sourceName = "d"; }});
    stages.push_back({text(""), nothing});
    stages.push_back({text(""), nothing});
    stages.push_back({u32(1), nothing});
    stages.push_back(
        {u32(1), [=](KernelFields& read) { (read.*list)[1].locations.addInstance(); }});
    stages.push_back({location(1, 2), [=](KernelFields& read) {
                          (read.*list)[1].locations[0].push_back({1, 2});
                          (read.*list)[1].valid = true;
                      }});
}

void addRegisterStages(KernelStages& stages) {
    stages.push_back({u32(2), [](KernelFields& read) { read.hardwareVariables.emplace_back(); }});
    stages.push_back(
        {text("/n"), [](KernelFields& read) { read.hardwareVariables[0].name = "/n"; }});
    stages.push_back({u32(1), nothing});
    stages.push_back({location(1, 2), [](KernelFields& read) {
                          read.hardwareVariables[0].locations.set(0, {1, 2});
                          read.hardwareVariables[0].valid = true;
                          read.hardwareVariables.emplace_back();
                      }});
    stages.push_back(
        {text("/m"), [](KernelFields& read) { read.hardwareVariables[1].name = "/m"; }});
    stages.push_back({u32(0), [](KernelFields& read) { read.hardwareVariables[1].valid = true; }});
}

void addConditionStages(KernelStages& stages) {
    stages.push_back({u32(2), [](KernelFields& read) { read.conditions.emplace_back(); }});
    stages.push_back({u32(2), [](KernelFields& read) { read.conditions[0].kind = 2; }});
    stages.push_back({text("x"), [](KernelFields& read) { read.conditions[0].condition = "x"; }});
    stages.push_back({u32(12), [](KernelFields& read) { read.conditions[0].line = 12; }});
    stages.push_back({text("f.c"), [](KernelFields& read) {
                          read.conditions[0].file = "f.c";
                          read.conditions[0].valid = true;
                          read.conditions.emplace_back();
                      }});
    stages.push_back({u32(1), [](KernelFields& read) { read.conditions[1].kind = 1; }});
    stages.push_back({text("y"), [](KernelFields& read) {
                          read.conditions[1].condition = "y";
                          read.conditions[1].valid = true;
                      }});
}

TEST(KernelBinary, ReadingARecordCutOffAnywhereKeepsWhatCameWhole) {
    KernelStages stages;
    stages.push_back({text("k"), [](KernelFields& read) { read.name = "k"; }});
    addTextStages(stages, {"p", "q"}, &KernelFields::instancePaths);
    stages.push_back({u32(1), [](KernelFields& read) { read.type = 1; }});
    addVariableStages(stages, &KernelFields::arguments);
    addVariableStages(stages, &KernelFields::variables);
    addRegisterStages(stages);
    addConditionStages(stages);
    addTextStages(stages, {"b"}, &KernelFields::brams);
    stages.push_back({"", [](KernelFields& read) { read.result = true; }});
    expectEveryPrefixRead(stages, [](std::FILE* file) { return readFields(file); });
}

} // namespace
} // namespace consolidator::test
