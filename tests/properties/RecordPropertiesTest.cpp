// What holds for every kernel record: it comes back as it was written, and merging loses nothing,
// adds nothing twice and keeps the order of first appearance.

#include "consolidated/ConsolidatedFile.h"
#include "model/Kernel.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/NaiveConditions.h"
#include "tests/support/NaiveDatabase.h"
#include "tests/support/RandomRecords.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

constexpr std::uint32_t seeds = 200;

/// Calls check(random) for each seed; a failure tells the seed.
template <typename Check>
void forEachSeed(Check check) {
    for (std::uint32_t seed = 1; seed <= seeds && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomRecords random(seed);
        check(random);
    }
}

/// The kernel as the program reads it.
Kernel kernelFrom(const KnownKernel& known) {
    Kernel kernel;
    EXPECT_TRUE(kernel.read(fileWith(knownRecord(known)).get()));
    return kernel;
}

/// The kernel as the program makes it through its add operations.
Kernel kernelAdded(const KnownKernel& known) {
    Kernel kernel;
    kernel.setName(known.name);
    kernel.setType(static_cast<KernelType>(known.type));
    for (const std::string& path : known.instancePaths) {
        kernel.addInstancePath(path);
    }
    for (const KnownVariable& argument : known.arguments) {
        kernel.addArgument(argument.sourceName, argument.hardwareName, argument.typeText);
    }
    for (const KnownVariable& variable : known.variables) {
        kernel.addVariable(variable.sourceName, variable.hardwareName, variable.typeText);
    }
    for (const KnownRegister& added : known.registers) {
        for (std::size_t bit = 0; bit < added.places.size(); ++bit) {
            const KnownPlace& place = added.places[bit];
            kernel.addHardwareLocation(added.netName, static_cast<std::uint32_t>(bit),
                                       place.address, place.offset);
        }
    }
    for (const KnownCondition& condition : known.conditions) {
        BreakableCondition added(condition.kind, condition.text);
        added.line = condition.line;
        added.file = condition.file;
        kernel.addBreakableCondition(added);
    }
    for (const std::string& bram : known.brams) {
        kernel.addBram(bram);
    }
    return kernel;
}

/// The records of a database's kernels.
std::vector<std::string> recordsOf(const std::vector<Kernel>& kernels) {
    std::vector<std::string> records;
    records.reserve(kernels.size());
    for (const Kernel& kernel : kernels) {
        records.push_back(binaryForm(kernel));
    }
    return records;
}

std::vector<std::string> recordsOf(const std::vector<KnownKernel>& kernels) {
    std::vector<std::string> records;
    records.reserve(kernels.size());
    for (const KnownKernel& kernel : kernels) {
        records.push_back(knownRecord(kernel));
    }
    return records;
}

/// One of `pieces` runs of neighbouring elements, which together are the whole list.
template <typename Element>
std::vector<Element> piece(const std::vector<Element>& elements, std::size_t number,
                           std::size_t pieces) {
    const auto at = [&](std::size_t i) {
        return elements.begin() + static_cast<std::ptrdiff_t>(elements.size() * i / pieces);
    };
    return {at(number), at(number + 1)};
}

KnownKernel piece(const KnownKernel& kernel, std::size_t number, std::size_t pieces) {
    KnownKernel result;
    result.name = kernel.name;
    result.type = kernel.type;
    result.instancePaths = piece(kernel.instancePaths, number, pieces);
    result.arguments = piece(kernel.arguments, number, pieces);
    result.variables = piece(kernel.variables, number, pieces);
    result.registers = piece(kernel.registers, number, pieces);
    result.conditions = piece(kernel.conditions, number, pieces);
    return result;
}

} // namespace

TEST(RecordProperties, EveryRecordComesBackAsItWasWritten) {
    forEachSeed([](RandomRecords& random) {
        const std::string record = knownRecord(random.locatedKernel());
        const FileHandle file = fileWith(record + "what follows");
        Kernel kernel;
        ASSERT_TRUE(kernel.read(file.get()));
        EXPECT_EQ(std::ftell(file.get()), static_cast<long>(record.size()));
        EXPECT_EQ(binaryForm(kernel), record);
    });
}

TEST(RecordProperties, WritingTellsHowManyBytesWentOut) {
    forEachSeed([](RandomRecords& random) {
        const KnownKernel known = random.locatedKernel();
        const Kernel kernel = kernelFrom(known);
        EXPECT_EQ(kernel.write(fileWith({}).get()), knownRecord(known).size());
    });
}

TEST(RecordProperties, ARecordThatIsCutAnywhereIsNotRead) {
    forEachSeed([](RandomRecords& random) {
        const std::string record = knownRecord(random.locatedKernel());
        const std::size_t step = 1 + record.size() / 40;
        for (std::size_t length = 0; length < record.size(); length += step) {
            Kernel kernel;
            EXPECT_FALSE(kernel.read(fileWith(record.substr(0, length)).get())) << length;
        }
    });
}

TEST(RecordProperties, AddingKeepsTheFirstOfEachKeyInOrder) {
    forEachSeed([](RandomRecords& random) {
        KnownKernel known = random.kernel();
        // A register's second description would add to the first here; merging drops it.
        std::ranges::sort(known.registers, {}, &KnownRegister::netName);
        const auto end = std::unique(
            known.registers.begin(), known.registers.end(),
            [](const auto& left, const auto& right) { return left.netName == right.netName; });
        known.registers.erase(end, known.registers.end());
        std::erase_if(known.registers,
                      [](const KnownRegister& added) { return added.places.empty(); });
        NaiveDatabase expected;
        expected.merge({.name = known.name});
        expected.merge(known);
        expected.kernels.front().brams = known.brams;
        for (KnownCondition& condition : known.conditions) {
            condition.line = condition.kind == 2 ? condition.line : 0;
        }
        EXPECT_EQ(binaryForm(kernelAdded(known)), knownRecord(expected.kernels.front()));
    });
}

TEST(RecordProperties, MergingAKernelTwiceIsMergingItOnce) {
    forEachSeed([](RandomRecords& random) {
        const Kernel other = kernelFrom(random.locatedKernel());
        Kernel once = kernelFrom(random.locatedKernel());
        once.merge(other);
        Kernel twice = once;
        twice.merge(other);
        EXPECT_EQ(binaryForm(twice), binaryForm(once));
    });
}

TEST(RecordProperties, MergingAKernelIntoItselfChangesNothing) {
    forEachSeed([](RandomRecords& random) {
        const KnownKernel known = random.locatedKernel();
        Kernel kernel = kernelFrom(known);
        kernel.merge(kernelFrom(known));
        EXPECT_EQ(binaryForm(kernel), knownRecord(known));
    });
}

TEST(RecordProperties, MergingInPiecesIsMergingAtOnce) {
    forEachSeed([](RandomRecords& random) {
        const KnownKernel known = random.locatedKernel();
        const Kernel before = kernelFrom(random.locatedKernel());
        Kernel atOnce = before;
        atOnce.merge(kernelFrom(known));
        for (const std::size_t pieces : {2U, 3U, 5U}) {
            Kernel inPieces = before;
            for (std::size_t number = 0; number < pieces; ++number) {
                inPieces.merge(kernelFrom(piece(known, number, pieces)));
            }
            EXPECT_EQ(binaryForm(inPieces), binaryForm(atOnce)) << pieces << " pieces";
        }
    });
}

TEST(RecordProperties, MergedKernelsKeepTheOrderOfTheirFirstAppearance) {
    forEachSeed([](RandomRecords& random) {
        ConsolidatedFile database;
        NaiveDatabase expected;
        std::vector<std::string> names;
        for (int i = 0; i < 12; ++i) {
            const KnownKernel known = random.locatedKernel();
            database.mergeKernel(kernelFrom(known));
            expected.merge(known);
            if (std::ranges::find(names, known.name) == names.end()) {
                names.push_back(known.name);
            }
        }
        std::vector<std::string> found;
        for (const Kernel& kernel : database.kernels()) {
            found.push_back(kernel.name());
        }
        EXPECT_EQ(found, names);
        EXPECT_EQ(recordsOf(database.kernels()), recordsOf(expected.kernels));
    });
}

TEST(RecordProperties, ConditionsAreTranslatedAsTheNaiveTranslationDoes) {
    forEachSeed([](RandomRecords& random) {
        for (int i = 0; i < 20; ++i) {
            const std::string text = random.conditionText();
            Kernel kernel;
            kernel.addBreakableCondition(0, text);
            kernel.translateConditions();
            const std::optional<std::string> expected = naiveTranslation(text);
            ASSERT_EQ(kernel.breakableConditions().size(), expected ? 1U : 0U) << text;
            if (expected) {
                EXPECT_EQ(kernel.breakableConditions().front().condition, *expected) << text;
            }
        }
    });
}

} // namespace consolidator::test
