#include "tests/damage/DamagedRun.h"

#include "consolidated/ConsolidatedFile.h"
#include "tests/damage/MemoryMeter.h"
#include "tests/support/DriverRun.h"
#include "tests/support/HowBuilt.h"
#include "tests/support/Kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

namespace consolidator::test {

namespace {

/// A case takes a millisecond. Minutes would be a hang, even on a busy machine; the sanitizers and
/// an emulator take their share of it.
constexpr std::chrono::seconds longestCase{sanitized || emulated ? 500 : 100};

} // namespace

DamagedRun::DamagedRun() : watchdog_(longestCase) {}

void DamagedRun::expectRun(const std::vector<std::string>& words, std::size_t inputSize, int status,
                           const std::string& messages) const {
    std::vector<std::string> all{"-f", db};
    all.insert(all.end(), words.begin(), words.end());
    const MemoryMeter meter;
    const CommandResult result = runDriver(all);
    const std::size_t peak = meter.peak();
    EXPECT_EQ(result, (CommandResult{status, "", messages}));
    EXPECT_LE(peak, memoryLimit(inputSize));
}

void DamagedRun::expectDatabase(NaiveDatabase& expected) const {
    const std::string written = directory.read("db");
    EXPECT_TRUE(written == expected.write()) << "the database is not as it should be";
    const NaiveDatabase naive = NaiveDatabase::read(written);
    EXPECT_TRUE(naive.complete || naive.stoppedAtUnknownType);
    ConsolidatedFile database;
    EXPECT_EQ(database.readExisting(db), naive.complete);
    if (!naive.complete) {
        return;
    }
    const std::vector<std::string> names = namesOf(database.kernels());
    for (const KnownKernel& kernel : expected.kernels) {
        // Texts come back up to their first zero byte.
        const std::string name = kernel.name.substr(0, kernel.name.find('\0'));
        EXPECT_NE(std::ranges::find(names, name), names.end()) << "lost: " << name;
    }
}

void DamagedRun::expectAnotherRunToKeepAll() const {
    const std::string before = directory.read("db");
    NaiveDatabase expected = NaiveDatabase::read(before);
    const std::size_t kernels = expected.kernels.size();
    expected.merge(stated);
    if (expected.complete) {
        EXPECT_EQ(expected.kernels.size(), kernels);
    }
    expectRun({"-h", hierarchy}, before.size());
    EXPECT_TRUE(directory.read("db") == expected.write()) << "another run has changed more";
}

} // namespace consolidator::test
