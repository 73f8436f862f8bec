// Logic locations for a project that is neither copied nor changed while they are read: what is
// merged makes the same database as merging a changed copy of each kernel, also for projects with
// several kernels of a name, which only a database can have.

#include "consolidated/ConsolidatedFile.h"
#include "readers/LLFile.h"
#include "tests/support/Bytes.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/OddLogicLocations.h"
#include "tests/support/RandomSource.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

/// What a run leaves behind.
struct Left {
    std::string database = {}; ///< The kernels' binary forms, one after the other.
    std::vector<std::string> remarks = {};
    std::uint64_t mostOwners = 0; ///< Which tells what is left of the budget for sharing.
    bool mayBeEmpty = false;      ///< Whether a bit is left of the budget for empty ones.

    bool operator==(const Left&) const = default;
};

void PrintTo(const Left& left, std::ostream* out) {
    *out << testing::PrintToString(left.database) << ", " << testing::PrintToString(left.remarks)
         << ", " << left.mostOwners << ", " << left.mayBeEmpty;
}

std::string formsOf(const std::vector<Kernel>& kernels) {
    std::string forms;
    for (const Kernel& kernel : kernels) {
        forms += binaryForm(kernel);
    }
    return forms;
}

/// Database files in which any kernels may stand.
struct LogicLocationMerging : testing::Test {
    std::string databaseOf(const std::vector<Kernel>& kernels) const {
        const std::string data = u32(static_cast<std::uint32_t>(kernels.size())) + formsOf(kernels);
        return directory.write(
            "db", header(1) + entry(2, 40, static_cast<std::uint32_t>(data.size())) + data);
    }

    /// Reads the texts, one after the other, into the database of this path.
    template <typename GiveProject>
    Left leftBy(const std::string& path, const std::vector<std::string>& texts,
                LocationBudget budget, GiveProject giveProject) const {
        ConsolidatedFile database;
        EXPECT_TRUE(database.readExisting(path));
        Left left;
        for (const std::string& text : texts) {
            // Where there is no text there is no file either.
            const std::unique_ptr<LLFile> reader =
                text.empty() ? std::make_unique<LLFile>(directory.path("none"))
                             : std::make_unique<LLFile>(std::make_unique<std::stringbuf>(text));
            giveProject(*reader, database);
            reader->setBudget(budget);
            database.addInputFile(*reader);
            budget = reader->budget();
            for (const Finding& remark : reader->diagnostic().remarks()) {
                left.remarks.push_back(describe(remark));
            }
        }
        left.database = formsOf(database.kernels());
        left.mostOwners = budget.mostOwners();
        left.mayBeEmpty = budget.takeEmptyBits(1);
        return left;
    }

    Left leftByCopies(const std::string& path, const std::vector<std::string>& texts,
                      const LocationBudget& budget) const {
        return leftBy(path, texts, budget, [](LLFile& reader, const ConsolidatedFile& database) {
            reader.setKernels(database.kernels());
        });
    }

    Left leftByProject(const std::string& path, const std::vector<std::string>& texts,
                       const LocationBudget& budget) const {
        return leftBy(path, texts, budget, [](LLFile& reader, const ConsolidatedFile& database) {
            reader.setProject(database.kernels());
        });
    }

    TemporaryDirectory directory = TemporaryDirectory::inMemory();
};

/// Kernels of few names and types, some with a BRAM and a condition of their own.
std::vector<Kernel> mixed(std::vector<Kernel> kernels, RandomSource& random) {
    for (std::size_t i = 0; i < kernels.size(); ++i) {
        const std::string number = std::to_string(i);
        kernels[i].setName(random.anyOf({"a", "b", "c", "d", "", "e"}) +
                           (random.onceIn(3) ? number : ""));
        kernels[i].setType(random.onceIn(2) ? KernelType::Unknown : KernelType::RTL);
        kernels[i].addBram("ram " + number);
        kernels[i].addBreakableCondition(random.onceIn(3) ? 1 : 0, "state_" + number);
    }
    return kernels;
}

TEST_F(LogicLocationMerging, ComesToTheSameWithoutCopies) {
    constexpr std::uint32_t projects = 2000;
    OddLogicLocations odd(31);
    RandomSource random(32);
    std::size_t changed = 0;
    for (std::uint32_t i = 0; i < projects && !HasFailure(); ++i) {
        const std::vector<Kernel> kernels = mixed(odd.kernels(), random);
        const std::string path = databaseOf(kernels);
        std::vector<std::string> texts = random.upTo(3, [&] { return odd.text(); });
        const LocationBudget budget = random.onceIn(2)
                                          ? LocationBudget()
                                          : LocationBudget(random.below(20), random.below(400));
        SCOPED_TRACE("project " + std::to_string(i) + ": " + testing::PrintToString(texts));
        const Left left = leftByProject(path, texts, budget);
        EXPECT_EQ(left, leftByCopies(path, texts, budget));
        changed += left.database != formsOf(kernels) ? 1 : 0;
    }
    EXPECT_GT(changed, projects / 4);
}

TEST_F(LogicLocationMerging, LeavesTheProjectAsItIsUntilItIsMerged) {
    Kernel kernel;
    kernel.setName("k");
    kernel.addInstancePath("top/k");
    kernel.addVariable("n", "n", "int");
    kernel.addHardwareLocation("/top/k/n", 0, 7, 7);
    const std::vector<Kernel> project{kernel};
    const std::string before = formsOf(project);
    LLFile reader(std::make_unique<std::stringbuf>("Bit 1 0x1 2 a 0 Net=top/k/n[3]\n"
                                                   "Bit 1 0x3 4 a 0 Net=top/k/a/n[0]\n"
                                                   "no Bit\n"));
    reader.setProject(project);
    EXPECT_FALSE(reader.parse());
    EXPECT_EQ(formsOf(project), before);
    ASSERT_EQ(reader.kernels().size(), 1U);
    const Kernel& found = reader.kernels().front();
    EXPECT_EQ(found.name(), "k");
    EXPECT_TRUE(found.instancePaths().empty());
    ASSERT_EQ(found.hardwareVariables().size(), 2U);
    EXPECT_EQ(found.hardwareVariables()[0].locations,
              (LocationList{{7, 7}, {0, 0}, {0, 0}, {1, 2}}));
    EXPECT_EQ(found.hardwareVariables()[1].locations, (LocationList{{3, 4}}));
}

} // namespace

} // namespace consolidator::test
