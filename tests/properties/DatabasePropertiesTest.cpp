// What holds for every database: a run reads all of it, and writes exactly what its format and the
// rules of merging say.

#include "consolidated/ConsolidatedFile.h"
#include "tests/support/Bytes.h"
#include "tests/support/DriverRun.h"
#include "tests/support/NaiveDatabase.h"
#include "tests/support/RandomRecords.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

constexpr std::uint32_t seeds = 200;

/// Tests on a database, "db", and a hierarchy file, "new.hier", of one kernel.
struct DatabaseProperties : testing::Test {
    template <typename Check>
    void forEachSeed(Check check) {
        for (std::uint32_t seed = 1; seed <= seeds && !HasFailure(); ++seed) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            RandomRecords random(seed);
            check(random);
        }
    }

    /// Runs the driver on "db" with one hierarchy file; nothing may be said.
    void add(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> words{"-f", db, "-h", hierarchy};
        words.insert(words.end(), more.begin(), more.end());
        EXPECT_EQ(runDriver(words), CommandResult{});
    }

    TemporaryDirectory directory = TemporaryDirectory::inMemory();
    std::string db = directory.path("db");
    std::string hierarchy =
        directory.write("new.hier", "scale_rows instance path: top/new type: hls\n");
    KnownKernel stated = {.name = "scale_rows", .type = 4, .instancePaths = {"top/new"}};
};

} // namespace

TEST_F(DatabaseProperties, TheNaiveReaderFindsWhatWasPutTogether) {
    forEachSeed([](RandomRecords& random) {
        const std::vector<KnownKernel> kernels = random.kernels();
        const std::vector<KnownKernel> more = random.kernels();
        const NaiveDatabase database = NaiveDatabase::read(DatabaseBuilder()
                                                               .section(2, knownKernelData(kernels))
                                                               .section(1, "dwarf")
                                                               .section(0, "demo")
                                                               .section(2, knownKernelData(more))
                                                               .bytes());
        EXPECT_TRUE(database.complete);
        EXPECT_EQ(database.project, "demo");
        EXPECT_EQ(database.dwarf, "dwarf");
        std::vector<KnownKernel> all = kernels;
        all.insert(all.end(), more.begin(), more.end());
        EXPECT_TRUE(database.kernels == all);
    });
}

TEST_F(DatabaseProperties, ARunWritesWhatTheNaiveDatabaseDoes) {
    forEachSeed([this](RandomRecords& random) {
        const std::string before = random.database();
        directory.write("db", before);
        add();
        NaiveDatabase expected = NaiveDatabase::read(before);
        expected.merge(stated);
        ASSERT_TRUE(directory.read("db") == expected.write());
    });
}

TEST_F(DatabaseProperties, ADatabaseIsReadBackCompletely) {
    forEachSeed([this](RandomRecords& random) {
        directory.write("db", random.database());
        add();
        const NaiveDatabase written = NaiveDatabase::read(directory.read("db"));
        ConsolidatedFile database;
        EXPECT_EQ(database.readExisting(db), !written.stoppedAtUnknownType);
        EXPECT_EQ(written.complete, !written.stoppedAtUnknownType);
        EXPECT_EQ(database.kernels().size(), written.kernels.size());
        EXPECT_EQ(database.project(), written.project);
        EXPECT_EQ(database.dwarf(), written.dwarf);
    });
}

TEST_F(DatabaseProperties, RunsWithoutNewFactsChangeNothingButConditions) {
    forEachSeed([this](RandomRecords& random) {
        directory.write("db", random.database());
        add();
        for (int runs = 0; runs < 3; ++runs) {
            NaiveDatabase expected = NaiveDatabase::read(directory.read("db"));
            const std::vector<KnownKernel> kernels = expected.kernels;
            if (!expected.stoppedAtUnknownType) {
                expected.merge(stated);
                EXPECT_TRUE(expected.kernels == kernels);
            }
            expected.merge(stated);
            add();
            ASSERT_TRUE(directory.read("db") == expected.write());
        }
    });
}

TEST_F(DatabaseProperties, ARunThatNamesTheProjectAddsOneMoreEntry) {
    forEachSeed([this](RandomRecords& random) {
        const std::string before = random.database();
        const std::string stored = NaiveDatabase::read(before).project;
        const std::string name = stored.empty() ? "demo" : stored;
        directory.write("db", before);
        for (int runs = 0; runs < 3; ++runs) {
            NaiveDatabase expected = NaiveDatabase::read(directory.read("db"));
            expected.setProject(name);
            expected.merge(stated);
            add({"-p", name});
            ASSERT_TRUE(directory.read("db") == expected.write());
        }
    });
}

TEST_F(DatabaseProperties, AnotherProjectIsRefused) {
    forEachSeed([this](RandomRecords& random) {
        const std::string before = random.database();
        const std::string project = NaiveDatabase::read(before).project;
        if (project.empty()) {
            return;
        }
        directory.write("db", before);
        EXPECT_EQ(runDriver({"-f", db, "-h", hierarchy, "-p", "other"}),
                  (CommandResult{1, "",
                                 "Error: consolidated file " + db + " has meta-data for project " +
                                     project + ", not specified project other\n"}));
        EXPECT_EQ(directory.read("db"), before);
    });
}

TEST_F(DatabaseProperties, DwarfComesInUnlessThereIsSome) {
    const std::string bytes = "\x7f"
                              "dwarf\n";
    const std::string dwarf = directory.write("dwarf", bytes);
    forEachSeed([&](RandomRecords& random) {
        const std::string before = random.database();
        directory.write("db", before);
        add({"-d", dwarf});
        NaiveDatabase expected = NaiveDatabase::read(before);
        expected.addDwarf(bytes);
        expected.merge(stated);
        ASSERT_TRUE(directory.read("db") == expected.write());
    });
}

TEST_F(DatabaseProperties, CreatingLooksAtNothingThatWasThere) {
    forEachSeed([this](RandomRecords& random) {
        directory.write("db", random.database());
        add({"-c", "-p", "demo"});
        NaiveDatabase expected;
        expected.setProject("demo");
        expected.merge(stated);
        ASSERT_TRUE(directory.read("db") == expected.write());
    });
}

TEST_F(DatabaseProperties, DumpsCopyTheFirstSectionOfTheirType) {
    forEachSeed([this](RandomRecords& random) {
        directory.write("db", random.database());
        add({"-d", directory.write("dwarf", "new dwarf")});
        const std::string bytes = directory.read("db");
        NaiveDatabase written = NaiveDatabase::read(bytes);
        if (written.stoppedAtUnknownType) {
            return;
        }
        EXPECT_EQ(runDriver({"-f", db, "-u", directory.path("u")}), CommandResult{});
        EXPECT_EQ(runDriver({"-f", db, "-j", directory.path("j")}), CommandResult{});
        EXPECT_EQ(directory.read("db"), bytes);
        std::vector<std::string> first(4);
        std::vector<bool> seen(4);
        std::size_t offset = 16 + 24 * written.sections.size();
        for (const NaiveDatabase::Section& section : written.sections) {
            if (!seen[section.type]) {
                seen[section.type] = true;
                first[section.type] = bytes.substr(offset, section.size);
            }
            offset += section.size;
        }
        EXPECT_EQ(directory.read("u"), first[1]);
        EXPECT_EQ(directory.read("j"), first[3]);
    });
}

} // namespace consolidator::test
