// `consolidator-inspect merge`: that it writes what the consolidator writes, when it does not, and
// what it says then. What it finds is what `check` finds; see CheckCommandTest.cpp.

#include "tests/support/Bytes.h"
#include "tests/support/DriverRun.h"
#include "tests/support/ExampleProject.h"
#include "tests/support/InspectRun.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/RandomInputs.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace consolidator::test {

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

using Words = std::vector<std::string>;

Words operator+(Words first, const Words& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

struct MergeCommand : testing::Test {
    TemporaryDirectory directory;

    std::string hier = directory.write("k.hier", "k\ntype: c\ninstance path: top/k_1\n");
    std::string hls = directory.write("k.hls", "RTL 1 s (x == 1)\nlocal v\nat: k.cpp:7\n"
                                               "end v_reg[1:0] 2\n");
    std::string ll = directory.write("k.ll", "Bit 1 0x1 0 DIE0 0 Net=top/k_1/v_reg[0]\n");
    std::string db = directory.path("db");
    std::string old = knownDatabase({{.name = "old"}}); ///< Of no project.

    /// Three files that nothing is wrong with.
    Words good = {"-h", hier, "-s", hls, "-l", ll};
    /// The same and a warning: no other input knows the kernel.
    Words warned = good + Words{"-h", directory.write("w.hier", "w\ntype: c\n")};
    /// The same and an error beside the warning.
    Words missing = warned + Words{"-l", directory.path("missing.ll")};

    CommandResult merge(const Words& more) const {
        return inspectRun(Words{"merge", "-f", db} + more);
    }

    /// What the consolidator makes of the file that is at `db`.
    std::string written(const Words& words) const {
        const std::string other = directory.path("other");
        std::filesystem::remove(other);
        if (std::filesystem::exists(db)) {
            std::filesystem::copy_file(db, other);
        }
        EXPECT_EQ(runDriver(Words{"-f", other} + words).status, 0);
        std::string bytes = directory.read("other");
        std::filesystem::remove(other);
        return bytes;
    }

    void expectWritten(const Words& inputs, const Words& options, int status) const {
        directory.write("db", old);
        const std::string expected = written(inputs);
        const CommandResult result = merge(inputs + options);
        EXPECT_EQ(result.status, status);
        EXPECT_EQ(result.err, "");
        EXPECT_THAT(result.out, EndsWith(" notes\n" + db + ": written\n"));
        EXPECT_TRUE(directory.read("db") == expected);
    }

    void expectNotWritten(const std::string& before, const Words& words,
                          const std::string& reason) const {
        directory.write("db", before);
        const auto contents = directory.contents();
        const CommandResult result = merge(words);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, "");
        EXPECT_THAT(result.out, EndsWith("\n" + db + ": not written: " + reason + "\n"));
        EXPECT_EQ(directory.contents(), contents);
    }
};

TEST_F(MergeCommand, MakesTheDatabaseOfTheExampleProject) {
    const CommandResult result = runInspector(exampleFolder(), {"merge",
                                                                "-f",
                                                                db,
                                                                "-d",
                                                                "program.dwarf",
                                                                "-h",
                                                                "system.hier",
                                                                "-k",
                                                                "kernel.xml",
                                                                "-s",
                                                                "scale_rows.hls",
                                                                "-s",
                                                                "checksum.hls",
                                                                "-x",
                                                                "checksum_auxiliary.xml",
                                                                "-l",
                                                                "top.ll",
                                                                "-r",
                                                                "ram_utilization.rpt",
                                                                "-p",
                                                                "accelerator"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, StartsWith(db + ": note: does not exist: a run makes it\n"));
    EXPECT_THAT(result.out, EndsWith("\n0 errors, 0 warnings, 6 notes\n" + db + ": written\n"));
    EXPECT_EQ(directory.read("db"), exampleDatabase());
}

TEST_F(MergeCommand, WritesUnlessThereIsAnError) {
    expectWritten(good, {}, 0);
    expectWritten(warned, {}, 0);
    expectNotWritten(old, missing, "1 error");
    expectNotWritten(old, missing + Words{"-l", directory.path("none")}, "2 errors");
}

TEST_F(MergeCommand, TakesWarningsForErrors) {
    expectWritten(good + Words{"-c"}, {"--werror"}, 0);
    expectNotWritten(old, warned + Words{"-c", "--werror"}, "1 warning");
    expectNotWritten(old, missing + Words{"-c", "--werror"}, "1 error, 1 warning");
}

TEST_F(MergeCommand, KeepsGoing) {
    expectWritten(missing, {"--keep-going"}, 1);
    expectWritten(warned, {"--keep-going"}, 0);
    expectWritten(warned, {"--keep-going", "--werror"}, 1);
}

TEST_F(MergeCommand, TakesTheOptionsOfTheConsolidator) {
    expectWritten(good + Words{"-p", "project"}, {}, 0);
    expectWritten(good + Words{"--create", "--pro", "project"}, {}, 0);
    expectWritten(good + Words{"-a"}, {}, 0);
    // "--keep-going" takes no abbreviation away, and has none.
    EXPECT_EQ(merge({"--k", directory.path("missing")}).status, 1);
    EXPECT_EQ(merge({"--ke", directory.path("missing")}).status, 1);
    EXPECT_THAT(merge(good + Words{"--keep"}).err,
                HasSubstr("there is no option \"--keep\", but --keep-going\n"));
}

TEST_F(MergeCommand, NeverWritesARunThatTheConsolidatorRefuses) {
    const std::string refused = "the run is refused";
    const std::string project = DatabaseBuilder().section(0, "p").bytes();
    const Words force = good + Words{"--keep-going"};
    expectNotWritten(project, force + Words{"-p", "q"}, refused);
    expectNotWritten(DatabaseBuilder().version(2, 0).bytes(), force, refused);
    const std::string dwarf = directory.write("dwarf", "dwarf");
    expectNotWritten(project, force + Words{"-d", dwarf, "-d", dwarf}, refused);
    expectNotWritten(project, good + Words{"-p", "q"}, refused);
}

TEST_F(MergeCommand, TakesItselfForAnEmptyInput) {
    // The consolidator has emptied the file by the time that it reads inputs.
    directory.write("db", "top\ntype: c\ninstance path: top\n");
    const Words words = good + Words{"-h", db};
    EXPECT_THAT(merge(words).out, EndsWith(": not written: 2 errors\n"));
    EXPECT_EQ(directory.read("db"), "top\ntype: c\ninstance path: top\n");
    EXPECT_EQ(runDriver({"-f", directory.write("same", directory.read("db")), "-h",
                         directory.path("same"), "-s", hls}),
              CommandResult{});
    EXPECT_EQ(merge({"-h", db, "-s", hls, "--keep-going"}).status, 1);
    EXPECT_TRUE(directory.read("db") == directory.read("same"));
}

TEST_F(MergeCommand, NeedsADatabaseAndAnInput) {
    EXPECT_EQ(inspectRun(Words{"merge"} + good),
              (CommandResult{2, "",
                             "consolidator-inspect merge: error: no consolidated file is given; -f "
                             "names it\n"}));
    EXPECT_EQ(merge({}), (CommandResult{2, "",
                                        "consolidator-inspect merge: error: no input file is "
                                        "given\n"}));
    EXPECT_FALSE(directory.has("db"));
}

TEST_F(MergeCommand, EndsWhenTheDatabaseCannotBeOpened) {
    const std::string nowhere = directory.path("none/db");
    const std::string text = ": error: cannot be written: ";
    EXPECT_EQ(inspectRun(Words{"merge", "-f", nowhere} + good),
              (CommandResult{2, "", nowhere + text + "No such file or directory\n"}));
    const std::string folder = directory.path(".");
    EXPECT_EQ(inspectRun(Words{"merge", "-c", "-f", folder} + good),
              (CommandResult{2, "", folder + text + "Is a directory\n"}));
    EXPECT_EQ(inspectRun(Words{"merge", "-f", folder} + good),
              (CommandResult{2, "", folder + ": error: is a folder\n"}));
}

TEST_F(MergeCommand, DoesNotPrintIntoItsDatabase) {
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
        const std::string path = directory.write("db", "");
        const CommandResult result =
            runInspector(directory.path("."), Words{"merge", "--keep-going", "-f", "db"} + good,
                         redirected(stream, path));
        const std::string text = "db: error: cannot be written: it is the output of this program\n";
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(stream == STDERR_FILENO ? directory.read("db") : result.err, text);
        EXPECT_EQ(result.out, "");
    }
}

TEST_F(MergeCommand, NoticesThatWritingFails) {
    const CommandResult result = inspectRun(Words{"merge", "-c", "-f", "/dev/full"} + good);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "/dev/full: error: cannot be written: No space left on device\n");
    EXPECT_THAT(result.out, EndsWith("\n0 errors, 0 warnings, 0 notes\n"
                                     "/dev/full: not written: No space left on device\n"));
}

TEST_F(MergeCommand, TellsScriptsWhetherItHasWritten) {
    const auto json = [](const CommandResult& result) { return nlohmann::json::parse(result.out); };
    directory.write("db", old);
    for (const Words& words : {good, missing}) {
        const Words format = words + Words{"--format", "json"};
        nlohmann::json expected = json(inspectRun(Words{"check", "-f", db} + format));
        EXPECT_FALSE(expected.contains("written"));
        expected["written"] = words == good;
        EXPECT_EQ(json(merge(format)), expected);
        directory.write("db", old);
    }
    EXPECT_EQ(json(inspectRun(Words{"merge", "-c", "-f", "/dev/full", "--format=json"} +
                              good))["written"],
              false);
}

TEST_F(MergeCommand, WritesWhatTheConsolidatorWritesOfRandomInputs) {
    for (std::uint32_t seed = 1; seed <= 40 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::filesystem::remove(db);
        RandomInputs random(seed);
        for (int runs = 0; runs < 3; ++runs) {
            const StatedInput hierarchy = random.hierarchy();
            const std::string name = hierarchy.kernels.front().name;
            const Words words = {
                "-h", directory.write("r.hier", hierarchy.text),
                "-s", directory.write(name + ".hls", random.hls(name).text),
                "-x", directory.write("r.xml", random.auxiliary().text),
                "-l", directory.write("r.ll", random.logicLocations(hierarchy.kernels).text),
                "-r", directory.write("r.rpt", random.ramReport(hierarchy.kernels).text),
                "-p", "project"};
            const std::string expected = written(words);
            EXPECT_LT(merge(words + Words{"--keep-going"}).status, 2);
            EXPECT_TRUE(directory.read("db") == expected);
        }
    }
}

// The mistakes that users make, as MistakesTest.cpp has them.

std::vector<std::string> mistakes() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(MISTAKES_DIRECTORY)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

struct MistakeToMerge : testing::TestWithParam<std::string> {
    MistakeToMerge() {
        std::ifstream command(folder / "command");
        words.assign(std::istream_iterator<std::string>(command), {});
        words.erase(words.begin(), words.begin() + 2); // "consolidator-inspect check"
        if (std::ranges::find(words, "-f") == words.end()) {
            words = Words{"-f", "new.bin"} + words;
        }
        for (const TemporaryDirectory* directory : {&one, &other}) {
            std::filesystem::copy(folder, directory->path("."),
                                  std::filesystem::copy_options::recursive);
        }
    }

    const std::filesystem::path folder = std::filesystem::path(MISTAKES_DIRECTORY) / GetParam();
    Words words; ///< The options of the consolidator.
    TemporaryDirectory one;
    TemporaryDirectory other;
};

TEST_P(MistakeToMerge, GetsIntoTheSameDatabase) {
    const auto before = one.contents();
    runConsolidator(one.path("."), words);
    const CommandResult result =
        runInspector(other.path("."), Words{"merge", "--keep-going"} + words);
    EXPECT_EQ(other.contents(), one.contents());
    const bool isWritten = result.out.ends_with(": written\n");
    EXPECT_EQ(other.contents() != before, isWritten);
    const Words refused = {"database_cannot_be_made", "database_of_another_project",
                           "database_too_new", "two_dwarf_files"};
    EXPECT_EQ(isWritten, std::ranges::find(refused, GetParam()) == refused.end());
}

TEST_P(MistakeToMerge, IsNotMergedIfItIsAnError) {
    const auto before = one.contents();
    const CommandResult result = runInspector(one.path("."), Words{"merge"} + words);
    const bool isError = result.out.find("\n0 errors, ") == std::string::npos;
    EXPECT_EQ(result.out.ends_with(": written\n"), !isError);
    EXPECT_EQ(one.contents() == before, isError);
    EXPECT_EQ(result.status, !isError ? 0 : GetParam() == "database_cannot_be_made" ? 2 : 1);
}

TEST_P(MistakeToMerge, IsCheckedByADryRun) {
    const auto before = one.contents();
    for (const std::string format : {"text", "json"}) {
        const Words all = words + Words{"--format", format};
        EXPECT_EQ(runInspector(one.path("."), Words{"merge", "--dry-run"} + all),
                  runInspector(one.path("."), Words{"check"} + all));
        EXPECT_EQ(one.contents(), before);
    }
}

INSTANTIATE_TEST_SUITE_P(All, MistakeToMerge, testing::ValuesIn(mistakes()),
                         [](const auto& name) { return name.param; });

} // namespace

} // namespace consolidator::test
