// Databases that are damaged in every way: a run takes from them what is whole, loses nothing of
// it, and leaves a good database behind.

#include "tests/damage/DamagedRun.h"
#include "tests/support/Bytes.h"
#include "tests/support/Damage.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

KnownKernel kernelWithAllLists() {
    KnownKernel kernel;
    kernel.name = "scale_rows";
    kernel.instancePaths = {"top/k_1", "top/k_2"};
    kernel.type = 4;
    kernel.arguments = {{"in", "in_r", "int*", 64, {{{4096, 31}, {4096, 32}}, {}}},
                        {"gain", "gain", "float"}};
    kernel.variables = {{"sum", "sum_reg", "char", 8, {{{1, 2}}}}, {"i", "i_reg", "int"}};
    kernel.registers = {{"/top/k_1/sum_reg", {{0, 0}, {6656, 3}}}, {"/top/k_2/i_reg", {}}};
    kernel.conditions = {{0, "== $i/kc_start 1'b1"},
                         {1, "(kc_done == 1'b1)"},
                         {2, "(state == 1'b1)", 14, "scale.cpp"},
                         {7, ""}};
    kernel.brams = {"buffer", "table"};
    return kernel;
}

/// All section types, one of them twice, and several kernels.
std::string goodDatabase() {
    KnownKernel blend;
    blend.name = "blend";
    blend.conditions = {{0, "(1'b1 == 1'b1)"}};
    return DatabaseBuilder()
        .section(0, "demo")
        .section(1, "\x7f"
                    "dwarf\n")
        .section(2, knownKernelData({kernelWithAllLists(), blend}))
        .section(3, "{  }")
        .section(0, "demo")
        .section(2, knownKernelData({{.name = "checksum", .type = 1}}))
        .bytes();
}

std::string smallDatabase() {
    return DatabaseBuilder()
        .section(0, "demo")
        .section(3, "{  }")
        .section(2, knownKernelData({{.name = "checksum", .instancePaths = {"top/k"}}}))
        .bytes();
}

std::string versionMessage(const std::string& path, const NaiveDatabase& database) {
    return "Error: consolidated file " + path + " is version " + std::to_string(database.major) +
           "." + std::to_string(database.minor) + " and only versions up to 1.1 are supported.\n";
}

/// Tests that run the driver on a damaged database.
struct DatabaseDamage : testing::Test {
    /// An add run with one hierarchy file, and another one after it.
    void expectGoodRuns(const std::string& what, const std::string& bytes) {
        if (HasFailure()) {
            return; // one damage at a time
        }
        SCOPED_TRACE(what);
        run.begin(what);
        run.directory.write("db", bytes);
        NaiveDatabase expected = NaiveDatabase::read(bytes);
        if (static_cast<std::int32_t>(expected.major) > 1) {
            run.expectRun({"-h", run.hierarchy}, bytes.size(), 1, versionMessage(run.db, expected));
            EXPECT_EQ(run.directory.read("db"), bytes);
            return;
        }
        run.expectRun({"-h", run.hierarchy}, bytes.size());
        expected.merge(run.stated);
        run.expectDatabase(expected);
        run.expectAnotherRunToKeepAll();
    }

    /// An add run that names the project.
    void expectGoodRunForProject(const std::string& what, const std::string& bytes) {
        if (HasFailure()) {
            return; // one damage at a time
        }
        SCOPED_TRACE(what);
        run.begin(what);
        run.directory.write("db", bytes);
        NaiveDatabase expected = NaiveDatabase::read(bytes);
        const std::vector<std::string> words{"-p", "demo", "-h", run.hierarchy};
        if (!expected.project.empty() && expected.project != "demo") {
            const std::string message = "Error: consolidated file " + run.db +
                                        " has meta-data for project " + expected.project +
                                        ", not specified project demo\n";
            run.expectRun(words, bytes.size(), 1, message);
        } else if (static_cast<std::int32_t>(expected.major) > 1) {
            run.expectRun(words, bytes.size(), 1, versionMessage(run.db, expected));
        } else {
            run.expectRun(words, bytes.size());
            expected.setProject("demo");
            expected.merge(run.stated);
            run.expectDatabase(expected);
        }
    }

    /// Dumps of both kinds, which never change the database.
    void expectGoodDumps(const std::string& what, const std::string& bytes) {
        if (HasFailure()) {
            return; // one damage at a time
        }
        SCOPED_TRACE(what);
        run.begin(what);
        run.directory.write("db", bytes);
        const NaiveDatabase database = NaiveDatabase::read(bytes);
        const bool tooNew = static_cast<std::int32_t>(database.major) > 1;
        for (const std::string option : {"-j", "-u"}) {
            run.expectRun({option, run.directory.path("out")}, bytes.size(), tooNew ? 1 : 0,
                          tooNew ? versionMessage(run.db, database) : "");
            EXPECT_TRUE(run.directory.read("db") == bytes);
        }
    }

    DamagedRun run;
};

} // namespace

TEST_F(DatabaseDamage, TheGoodDatabaseIsGood) {
    EXPECT_TRUE(NaiveDatabase::read(goodDatabase()).complete);
    EXPECT_EQ(NaiveDatabase::read(goodDatabase()).kernels.size(), 3U);
    expectGoodRuns("undamaged", goodDatabase());
    EXPECT_TRUE(NaiveDatabase::read(smallDatabase()).complete);
    expectGoodRunForProject("undamaged", smallDatabase());
}

TEST_F(DatabaseDamage, EveryDamageOfAByte) {
    forEachDamage(goodDatabase(), 20000, [this](const std::string& what, const std::string& bytes) {
        expectGoodRuns(what, bytes);
    });
}

TEST_F(DatabaseDamage, LargeNumbersEverywhere) {
    forEachNumber(goodDatabase(), [this](const std::string& what, const std::string& bytes) {
        expectGoodRuns(what, bytes);
    });
}

TEST_F(DatabaseDamage, EveryDamageInARunThatNamesTheProject) {
    forEachDamage(smallDatabase(), 20000,
                  [this](const std::string& what, const std::string& bytes) {
                      expectGoodRunForProject(what, bytes);
                  });
}

TEST_F(DatabaseDamage, EveryDamageInADump) {
    forEachDamage(smallDatabase(), 20000,
                  [this](const std::string& what, const std::string& bytes) {
                      expectGoodDumps(what, bytes);
                  });
    forEachNumber(smallDatabase(), [this](const std::string& what, const std::string& bytes) {
        expectGoodDumps(what, bytes);
    });
}

} // namespace consolidator::test
