// `consolidator-inspect sqlite`: the tables that it makes, and what it leaves behind when it
// cannot.

#include "tests/support/Bytes.h"
#include "tests/support/Damage.h"
#include "tests/support/ExampleProject.h"
#include "tests/support/InspectRun.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <sqlite3.h>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;

/// The rows that a query gives, with "|" between the columns, "NULL" for what is missing.
std::vector<std::string> rows(const std::string& path, const std::string& query) {
    sqlite3* opened = nullptr;
    const int status = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> file(opened, sqlite3_close);
    if (status != SQLITE_OK) {
        return {sqlite3_errmsg(opened)};
    }
    std::vector<std::string> result;
    const auto add = [](void* list, int count, char** values, char** /*names*/) {
        std::string row;
        for (int i = 0; i < count; ++i) {
            row += (i == 0 ? "" : "|") + std::string(values[i] == nullptr ? "NULL" : values[i]);
        }
        static_cast<std::vector<std::string>*>(list)->push_back(row);
        return 0;
    };
    if (sqlite3_exec(opened, query.c_str(), add, &result, nullptr) != SQLITE_OK) {
        result.emplace_back(sqlite3_errmsg(opened));
    }
    return result;
}

struct SqliteCommand : testing::Test {
    /// The command, with status and messages.
    CommandResult run(const std::string& database, const std::vector<std::string>& options = {}) {
        std::vector<std::string> words{"sqlite", directory.write("db", database), out};
        words.insert(words.end(), options.begin(), options.end());
        return inspectRun(words);
    }

    /// What a query gives of a database that was exported.
    std::vector<std::string> ask(const std::string& database, const std::string& query) {
        EXPECT_EQ(run(database, {"--force"}), (CommandResult{0, "", ""}));
        return rows(out, query);
    }

    TemporaryDirectory directory;
    std::string out = directory.path("out.sqlite");
};

std::string databaseOf(const Record& kernel) {
    return DatabaseBuilder().section(2, u32(1) + record(kernel)).bytes();
}

TEST_F(SqliteCommand, KeepsTheDatabasesOwnFacts) {
    EXPECT_THAT(ask(exampleDatabase(), "SELECT id, major_version, minor_version, complete, "
                                       "project, length(dwarf), typeof(dwarf) FROM database"),
                ElementsAre("1|1|1|1|accelerator|38|blob"));
    EXPECT_THAT(ask(DatabaseBuilder().version(1, 7).bytes(), "SELECT * FROM database"),
                ElementsAre("1|1|7|1|NULL|NULL"));
    EXPECT_THAT(rows(out, "PRAGMA user_version"), ElementsAre("1"));
}

TEST_F(SqliteCommand, KeepsKernelsWithTheirInstances) {
    EXPECT_THAT(ask(exampleDatabase(), "SELECT * FROM kernel"),
                ElementsAre("1|scale_rows|HLS|4", "2|checksum|C|1"));
    EXPECT_THAT(rows(out, "SELECT * FROM instance"),
                ElementsAre("1|1|top/region_0/scale_rows_1", "2|1|top/region_0/scale_rows_2",
                            "3|2|top/region_1/checksum_1"));
}

TEST_F(SqliteCommand, KeepsArgumentsAndVariables) {
    EXPECT_THAT(
        ask(exampleDatabase(), "SELECT * FROM variable"),
        ElementsAre("1|1|argument|input|input_r|int*|64", "2|1|argument|output|output_r|int*|64",
                    "3|1|argument|rows|rows|unsigned char|8", "4|1|argument|gain|gain|float|32",
                    "5|1|variable|row|row_reg|int|32", "6|1|variable|sum|sum_reg|int|32",
                    "7|2|argument|in|in_r|int|32", "8|2|argument|length|length_r|int|32",
                    "9|2|argument|result|result|int|32", "10|2|variable|crc|crc_q|int|32"));
    EXPECT_THAT(rows(out, "SELECT * FROM variable_bit"), IsEmpty());
}

TEST_F(SqliteCommand, KeepsRegistersWithTheirBits) {
    EXPECT_THAT(ask(exampleDatabase(), "SELECT * FROM register"),
                ElementsAre("1|1|1|/top/region_0/scale_rows_1/U0/row_reg|row_reg|4",
                            "2|1|1|/top/region_0/scale_rows_1/U0/sum_reg|sum_reg|8",
                            "3|1|1|/top/region_0/scale_rows_1/U0/rows|rows|8",
                            "4|1|2|/top/region_0/scale_rows_2/U0/row_reg|row_reg|4",
                            "5|1|2|/top/region_0/scale_rows_2/U0/sum_reg|sum_reg|8",
                            "6|2|3|/top/region_1/checksum_1/inst/crc_q|crc_q|4",
                            "7|2|3|/top/region_1/checksum_1/inst/result|result|1"));
    EXPECT_THAT(rows(out, "SELECT count(*) FROM bit"), ElementsAre("36"));
    EXPECT_THAT(rows(out, "SELECT bit, address, offset FROM bit WHERE register_id = 5"),
                ElementsAre("0|10753|160", "1|10753|161", "2|10753|162", "3|10753|163",
                            "4|10753|164", "5|10753|165", "7|10753|167"));
}

// They go into the table several at a time, and then those that are left.
TEST_F(SqliteCommand, KeepsAnyNumberOfBits) {
    for (const std::uint32_t count : {31U, 32U, 33U, 200U}) {
        std::vector<std::string> places;
        for (std::uint32_t bit = 0; bit < count; ++bit) {
            places.push_back(location(0xFFFFFFFF - bit, bit));
        }
        EXPECT_THAT(ask(databaseOf({.hardwareVariables = {hardwareVariable("x", {location(3, 4)}),
                                                          hardwareVariable("y", places)}}),
                        "SELECT count(*), min(bit), max(bit), min(address + bit) FROM bit "
                        "GROUP BY register_id"),
                    ElementsAre("1|0|0|3", std::to_string(count) + "|0|" +
                                               std::to_string(count - 1) + "|4294967295"));
    }
}

TEST_F(SqliteCommand, KeepsConditions) {
    EXPECT_THAT(ask(exampleDatabase(), "SELECT * FROM condition"),
                ElementsAre("1|1|start|0|NULL|NULL|== 1'b1 $i/kc_start",
                            "2|1|stop|1|NULL|NULL|== 1'b1 $i/kc_done",
                            "3|1|line|2|scale_rows.cpp|14|== 1'b1 $i/fsm_state2",
                            "4|2|line|2|checksum.cpp|21|== 1'b1 $i/last_word"));
}

TEST_F(SqliteCommand, JoinsSourceNamesWithPlaces) {
    EXPECT_THAT(ask(exampleDatabase(), "SELECT * FROM source_bit WHERE source_name = 'result'"),
                ElementsAre("checksum|argument|result|result|int|top/region_1/checksum_1|"
                            "/top/region_1/checksum_1/inst/result|0|14849|17"));
}

TEST_F(SqliteCommand, KeepsWhatNoInputGives) {
    const std::string places = list({location(0, 0), location(5, 6)});
    EXPECT_THAT(ask(databaseOf({.type = 77,
                                .variables = {variable("a", "b", "char", {list({}), places})},
                                .hardwareVariables = {hardwareVariable("x", {location(0, 0)})},
                                .conditions = {condition(9, "x")},
                                .brams = {"ram", "ram"}}),
                    "SELECT * FROM kernel"),
                ElementsAre("1||Unknown|77"));
    EXPECT_THAT(rows(out, "SELECT * FROM variable_instance"), ElementsAre("1|0|0", "1|1|2"));
    EXPECT_THAT(rows(out, "SELECT * FROM variable_bit"), ElementsAre("1|1|1|5|6"));
    EXPECT_THAT(rows(out, "SELECT * FROM register"), ElementsAre("1|1|NULL|x|x|1"));
    EXPECT_THAT(rows(out, "SELECT * FROM bit"), IsEmpty());
    EXPECT_THAT(rows(out, "SELECT * FROM condition"), ElementsAre("1|1|error|9|NULL|NULL|x"));
    EXPECT_THAT(rows(out, "SELECT * FROM bram"), ElementsAre("1|1|ram", "2|1|ram"));
}

TEST_F(SqliteCommand, RepairsTexts) {
    EXPECT_THAT(ask(databaseOf({.name = "'\xFF\"", .instancePaths = {"\xE2\x82"}}),
                    "SELECT kernel.name, path FROM kernel JOIN instance"),
                ElementsAre("'\xEF\xBF\xBD\"|\xEF\xBF\xBD\xEF\xBF\xBD"));
}

TEST_F(SqliteCommand, TakesNamesOfAnyLength) {
    const std::string net = repeated("\xFF/", 1000000);
    EXPECT_THAT(ask(databaseOf({.hardwareVariables = {hardwareVariable(net, {})}}),
                    "SELECT length(net), length(hardware_name) FROM register"),
                ElementsAre("2000000|0"));
    EXPECT_THAT(rows(out, "PRAGMA integrity_check"), ElementsAre("ok"));
}

/// The index that answers a query: its plan names it.
TEST_F(SqliteCommand, HasIndexesOnNamesNetsPlacesAndLines) {
    const auto plan = [this](const std::string& query) {
        return testing::PrintToString(ask(exampleDatabase(), "EXPLAIN QUERY PLAN " + query));
    };
    EXPECT_THAT(plan("SELECT * FROM kernel WHERE name = 'k'"), HasSubstr("INDEX kernel_name"));
    EXPECT_THAT(plan("SELECT * FROM instance WHERE path = 'k'"), HasSubstr("INDEX instance_path"));
    EXPECT_THAT(plan("SELECT * FROM variable WHERE source_name = 'k'"),
                HasSubstr("INDEX variable_source_name"));
    EXPECT_THAT(plan("SELECT * FROM variable WHERE hardware_name = 'k'"),
                HasSubstr("INDEX variable_hardware_name"));
    EXPECT_THAT(plan("SELECT * FROM register WHERE net = 'k'"), HasSubstr("INDEX register_net"));
    EXPECT_THAT(plan("SELECT * FROM bit WHERE address = 1 AND offset = 2"),
                HasSubstr("INDEX bit_place (address=? AND offset=?)"));
    EXPECT_THAT(plan("SELECT * FROM condition WHERE file = 'f' AND line = 2"),
                HasSubstr("INDEX condition_line (file=? AND line=?)"));
}

TEST_F(SqliteCommand, ReplacesAFileOnlyOnRequest) {
    directory.write("out.sqlite", "old");
    EXPECT_EQ(run(exampleDatabase()),
              (CommandResult{2, "", out + ": error: exists already; --force replaces it\n"}));
    EXPECT_EQ(directory.read("out.sqlite"), "old");
    EXPECT_EQ(run(exampleDatabase(), {"--force"}), (CommandResult{0, "", ""}));
    EXPECT_THAT(rows(out, "SELECT count(*) FROM kernel"), ElementsAre("2"));
    EXPECT_THAT(directory.contents(), ElementsAre(Key("db"), Key("out.sqlite")));
}

TEST_F(SqliteCommand, ReplacesNothingButFiles) {
    std::filesystem::create_directory(out);
    EXPECT_EQ(run(exampleDatabase(), {"--force"}),
              (CommandResult{2, "", out + ": error: is no regular file and cannot be replaced\n"}));
    EXPECT_TRUE(std::filesystem::is_directory(out));
}

TEST_F(SqliteCommand, DoesNotReplaceTheDatabase) {
    const std::string path = directory.write("db", exampleDatabase());
    std::filesystem::create_hard_link(path, directory.path("link"));
    for (const char* name : {"db", "link"}) {
        EXPECT_EQ(runInspector(directory.path("."), {"sqlite", "--force", "db", name}),
                  (CommandResult{2, "", std::string(name) + ": error: is the database itself\n"}));
    }
    EXPECT_EQ(directory.read("db"), exampleDatabase());
}

TEST_F(SqliteCommand, NeedsAFolderToWriteTo) {
    const std::string path = directory.write("db", exampleDatabase());
    EXPECT_EQ(runInspector(directory.path("."), {"sqlite", "db", "missing/out"}),
              (CommandResult{
                  2, "", "missing/out: error: cannot be written: No such file or directory\n"}));
}

TEST_F(SqliteCommand, TakesNamesThatSqliteReadsOtherwise) {
    directory.write("db", exampleDatabase());
    for (const char* name : {":memory:", "file:x?mode=ro", "-"}) {
        EXPECT_EQ(runInspector(directory.path("."), {"sqlite", "db", "--", name}),
                  (CommandResult{0, "", ""}));
        EXPECT_TRUE(directory.has(name)) << name;
    }
}

TEST_F(SqliteCommand, ExportsThePartOfADamagedDatabaseThatCanBeRead) {
    std::string database = exampleDatabase();
    database.pop_back();
    const CommandResult result = run(database);
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, HasSubstr("db: error: is damaged"));
    EXPECT_THAT(rows(out, "SELECT name, complete FROM kernel JOIN database"),
                ElementsAre("scale_rows|0"));
}

TEST_F(SqliteCommand, MakesASoundDatabaseOfADamagedOneOrNone) {
    const TemporaryDirectory memory = TemporaryDirectory::inMemory();
    const std::string path = memory.path("out");
    forEachDamage(exampleDatabase(), 300, [&](const std::string& what, const std::string& bytes) {
        SCOPED_TRACE(what);
        std::filesystem::remove(path);
        const CommandResult result = inspectRun({"sqlite", memory.write("db", bytes), path});
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.status, result.err.empty() ? 0 : 2);
        if (memory.has("out")) {
            EXPECT_THAT(rows(path, "PRAGMA integrity_check"), ElementsAre("ok"));
            EXPECT_THAT(rows(path, "PRAGMA foreign_key_check"), IsEmpty());
            EXPECT_THAT(rows(path, "SELECT complete FROM database"),
                        ElementsAre(result.status == 0 ? "1" : "0"));
        } else {
            EXPECT_EQ(result.status, 2);
        }
    });
}

} // namespace

} // namespace consolidator::test
