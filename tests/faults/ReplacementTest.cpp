// Runs that are stopped, or fail, at any moment: the database is the old one or the new one, to the
// byte, and nothing else.

#include "tests/support/Command.h"
#include "tests/support/HowBuilt.h"
#include "tests/support/InspectRun.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace consolidator::test {

namespace {

using testing::AnyOf;

constexpr const char* failingCalls = CONSOLIDATOR_FAILING_CALLS;

/// A hierarchy of so many kernels, long enough that they are written in many pieces.
std::string hierarchy(const std::string& name, int kernels) {
    std::string text;
    for (int i = 0; i < kernels; ++i) {
        text += name + "_" + std::to_string(i) + "\ntype: hls\ninstance path: /top/" +
                std::string(200, 'r') + std::to_string(i) + "\n\n";
    }
    return text;
}

struct Replacement : testing::Test {
    Replacement() {
        directory.write("first.hier", hierarchy("scale_rows", 60));
        directory.write("second.hier", hierarchy("checksum", 60));
        add("db", "first.hier");
        old = directory.read("db");
        add("db", "second.hier");
        fresh = directory.read("db");
        EXPECT_GT(fresh.size(), old.size());
        std::filesystem::remove(directory.path("db"));
    }

    CommandResult add(const std::string& database, const std::string& input,
                      const Preparation& prepare = {}) const {
        return runConsolidator(directory.path("."), {"-f", database, "-h", input}, prepare);
    }

    /// The calls that adding the second file makes, and whether the way that they go is the one to
    /// be tested.
    int countCalls(const std::string& database) const {
        add(database, "second.hier", [this] {
            setenv("LD_PRELOAD", failingCalls, 1);
            setenv("FAILING_COUNT", directory.path("count").c_str(), 1);
        });
        const std::string count = directory.read("count");
        std::filesystem::remove(directory.path("count"));
        return std::atoi(count.c_str());
    }

    /// Adds the second file, and lets the call of this number go wrong; see FailingCalls.cpp.
    CommandResult addWithFault(const std::string& database, int call, const char* how) const {
        return add(database, "second.hier", [=] {
            setenv("LD_PRELOAD", failingCalls, 1);
            setenv("FAILING_CALL", std::to_string(call).c_str(), 1);
            setenv("FAILING_HOW", how, 1);
        });
    }

    /// Whether there is nothing in the directory but what belongs there. A kill between naming and
    /// renaming leaves the whole new file.
    bool hasNoLeftovers(bool isKilled) const {
        for (const auto& [name, content] : directory.contents()) {
            const bool isUnfinished = name.find("db.unfinished-") != std::string::npos;
            if (isUnfinished && !(isKilled && content == fresh)) {
                return false;
            }
        }
        return true;
    }

    ino_t inodeOf(const std::string& name) const {
        struct stat status = {};
        EXPECT_EQ(stat(directory.path(name).c_str(), &status), 0);
        return status.st_ino;
    }

    TemporaryDirectory directory;
    std::string old;
    std::string fresh;
};

TEST_F(Replacement, IsWholeOrNotAtAllWhereverARunIsKilled) {
    if (sanitized || emulated) {
        GTEST_SKIP() << "the sanitizers want to be the first library";
    }
    directory.write("db", old);
    const int calls = countCalls("db");
    EXPECT_EQ(directory.read("db"), fresh);
    ASSERT_GE(calls, 500);
    int untouched = 0;
    for (int call = 1; call <= calls; ++call) {
        directory.write("db", old);
        EXPECT_EQ(addWithFault("db", call, "kill").status, -SIGKILL) << call;
        const std::string left = directory.read("db");
        EXPECT_TRUE(left == old || left == fresh) << "killed at call " << call << " of " << calls;
        EXPECT_TRUE(hasNoLeftovers(true)) << call;
        untouched += left == old ? 1 : 0;
    }
    EXPECT_GE(untouched, calls * 9 / 10); // nearly all of the work comes before the renaming
}

TEST_F(Replacement, OfNothingIsWholeOrNotAtAllWhereverARunIsKilled) {
    if (sanitized || emulated) {
        GTEST_SKIP() << "the sanitizers want to be the first library";
    }
    add("db", "second.hier");
    const std::string made = directory.read("db");
    std::filesystem::remove(directory.path("db"));
    const int calls = countCalls("db");
    for (int call = 1; call <= calls; ++call) {
        std::filesystem::remove(directory.path("db"));
        addWithFault("db", call, "kill");
        EXPECT_TRUE(!directory.has("db") || directory.read("db") == made) << call;
    }
}

TEST_F(Replacement, IsWholeOrNotAtAllWhateverFailsFromAnyCallOn) {
    if (sanitized || emulated) {
        GTEST_SKIP() << "the sanitizers want to be the first library";
    }
    directory.write("db", old);
    const int calls = countCalls("db");
    for (const int fault : {ENOSPC, EDQUOT, EROFS, EACCES, EIO, EMFILE}) {
        // Most calls are of one kind; the last ones put the new database into place.
        constexpr int last = 40;
        for (int call = 1; call <= calls; call += call < calls - last ? 7 : 1) {
            directory.write("db", old);
            addWithFault("db", call, std::to_string(fault).c_str());
            const std::string left = directory.read("db");
            EXPECT_TRUE(left == old || left == fresh) << "errno " << fault << " from " << call;
            EXPECT_TRUE(hasNoLeftovers(false)) << call;
        }
    }
}

TEST_F(Replacement, IsWholeOrNotAtAllWithoutFilesThatHaveNoName) {
    if (sanitized || emulated) {
        GTEST_SKIP() << "the sanitizers want to be the first library";
    }
    directory.write("db", old);
    const int calls = countCalls("db");
    for (int call = 1; call <= calls + 10; call += call < calls - 40 ? 11 : 1) {
        directory.write("db", old);
        add("db", "second.hier", [=] {
            setenv("LD_PRELOAD", failingCalls, 1);
            setenv("FAILING_CALL", std::to_string(call).c_str(), 1);
            setenv("FAILING_HOW", "kill", 1);
            setenv("FAILING_UNNAMED", "1", 1);
        });
        const std::string left = directory.read("db");
        EXPECT_TRUE(left == old || left == fresh) << call;
        // What is left of a killed run says what it is, and is in nobody's way.
        for (const auto& [name, content] : directory.contents()) {
            if (name.starts_with("db.unfinished-")) {
                std::filesystem::remove(directory.path(name));
            }
        }
        EXPECT_TRUE(hasNoLeftovers(false));
    }
    directory.write("db", old);
    add("db", "second.hier", [] {
        setenv("LD_PRELOAD", failingCalls, 1);
        setenv("FAILING_UNNAMED", "1", 1);
    });
    EXPECT_EQ(directory.read("db"), fresh);
    EXPECT_TRUE(hasNoLeftovers(false));
}

/// Adds an input that comes through a pipe, and does something while the run waits for it.
template <typename Action>
void whileARunWaits(const TemporaryDirectory& directory, const std::string& text, Action action) {
    const std::string pipe = directory.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::thread run([&] { runConsolidator(directory.path("."), {"-f", "db", "-h", "pipe"}); });
    {
        std::ofstream input(pipe); // opened when the run has opened the database
        action();
        input << text;
    }
    run.join();
    std::filesystem::remove(pipe);
}

TEST_F(Replacement, IsDoneByTheLastOfTwoRuns) {
    directory.write("db", old);
    whileARunWaits(directory, hierarchy("checksum", 60), [this] {
        directory.write("other.hier", hierarchy("transpose", 3));
        add("db", "other.hier");
        EXPECT_NE(directory.read("db"), old);
    });
    EXPECT_EQ(directory.read("db"), fresh);
}

TEST_F(Replacement, HappensAlsoWhereTheOldOneIsDeletedMeanwhile) {
    directory.write("db", old);
    whileARunWaits(directory, hierarchy("checksum", 60),
                   [this] { std::filesystem::remove(directory.path("db")); });
    EXPECT_EQ(directory.read("db"), fresh);
}

TEST_F(Replacement, OfALongNameIsTheSame) {
    const std::string name(250, 'n');
    directory.write(name, old);
    const ino_t inode = inodeOf(name);
    add(name, "second.hier");
    EXPECT_EQ(directory.read(name), fresh);
    EXPECT_NE(inodeOf(name), inode); // it was not written over
}

TEST_F(Replacement, IsNotKeptFromByALockOfSomebodyElse) {
    directory.write("db", old);
    std::filesystem::create_hard_link(directory.path("db"), directory.path("second name"));
    const int file = open(directory.path("db").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(file, LOCK_EX), 0);
    add("db", "second.hier");
    EXPECT_EQ(directory.read("db"), fresh);
    close(file);
}

// What a merge says is so: that the database is written, or why it is not.
TEST_F(Replacement, IsToldOfByAMergeWhateverFailsFromAnyCallOn) {
    if (sanitized || emulated) {
        GTEST_SKIP() << "the sanitizers want to be the first library";
    }
    // As JSON, which is printed by few calls; those may fail too, and then the status tells of it.
    const std::vector<std::string> words = {"merge",       "-f",       "db",  "-h",
                                            "second.hier", "--format", "json"};
    const auto merge = [&](const Preparation& prepare) {
        directory.write("db", old);
        return runInspector(directory.path("."), words, [prepare] {
            setenv("LD_PRELOAD", failingCalls, 1);
            prepare();
        });
    };
    merge([this] { setenv("FAILING_COUNT", directory.path("count").c_str(), 1); });
    const int calls = std::atoi(directory.read("count").c_str());
    ASSERT_GE(calls, 500);
    int replaced = 0;
    for (const int fault : {ENOSPC, EACCES, EIO, EMFILE}) {
        // Each call near the end, where the database gets its name.
        const int end = calls - 30;
        for (int call = 1; call <= calls; call += call < end ? std::min(97, end - call) : 1) {
            const CommandResult result = merge([=] {
                setenv("FAILING_CALL", std::to_string(call).c_str(), 1);
                setenv("FAILING_HOW", std::to_string(fault).c_str(), 1);
            });
            const bool isFresh = directory.read("db") == fresh;
            EXPECT_TRUE(isFresh || directory.read("db") == old);
            const bool saysSo = result.out.find("\"written\":true") != std::string::npos;
            EXPECT_TRUE(result.status == 2 || (result.status == 0 && isFresh && saysSo))
                << "errno " << fault << " from " << call << " of " << calls;
            EXPECT_TRUE(isFresh || !saysSo);
            replaced += isFresh ? 1 : 0;
        }
    }
    EXPECT_GT(replaced, 0);
    EXPECT_LT(replaced, 4 * 30); // the naming is among those at the end
}

TEST_F(Replacement, DoesNotHappenWhenARunIsRefused) {
    runConsolidator(directory.path("."), {"-f", "db", "-h", "first.hier", "-p", "demo"});
    const std::string content = directory.read("db");
    const CommandResult other =
        runConsolidator(directory.path("."), {"-f", "db", "-h", "second.hier", "-p", "other"});
    EXPECT_EQ(other.status, 1);
    EXPECT_EQ(directory.read("db"), content);
    std::string newer = content;
    newer[4] = 2; // the major version
    directory.write("db", newer);
    EXPECT_EQ(add("db", "second.hier").status, 1);
    EXPECT_EQ(directory.read("db"), newer);
}

TEST_F(Replacement, KeepsModeAndAttributes) {
    directory.write("db", old);
    const std::string path = directory.path("db");
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    const bool hasAttribute = setxattr(path.c_str(), "user.origin", "build 7", 7, 0) == 0;
    add("db", "second.hier");
    EXPECT_EQ(directory.read("db"), fresh);
    struct stat status = {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    if (hasAttribute) {
        std::string value(7, ' ');
        EXPECT_EQ(getxattr(path.c_str(), "user.origin", value.data(), value.size()), 7);
        EXPECT_EQ(value, "build 7");
    }
}

TEST_F(Replacement, KeepsTheOwner) {
    if (getuid() != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    directory.write("db", old);
    constexpr uid_t other = 12345;
    ASSERT_EQ(chown(directory.path("db").c_str(), other, other), 0);
    add("db", "second.hier");
    EXPECT_EQ(directory.read("db"), fresh);
    struct stat status = {};
    ASSERT_EQ(stat(directory.path("db").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, other);
    EXPECT_EQ(status.st_gid, other);
}

TEST_F(Replacement, FollowsSymbolicLinks) {
    std::filesystem::create_directory(directory.path("other"));
    directory.write("other/db", old);
    std::filesystem::create_symlink("other/db", directory.path("link"));
    std::filesystem::create_symlink("link", directory.path("link to link"));
    add("link to link", "second.hier");
    EXPECT_EQ(directory.read("other/db"), fresh);
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("link")));
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("link to link")));
}

TEST_F(Replacement, MakesWhatALinkWithoutAFileNames) {
    std::filesystem::create_symlink("db", directory.path("link"));
    add("link", "first.hier");
    EXPECT_EQ(directory.read("db"), old);
    EXPECT_TRUE(std::filesystem::is_symlink(directory.path("link")));
}

TEST_F(Replacement, WritesThroughASecondName) {
    directory.write("db", old);
    std::filesystem::create_hard_link(directory.path("db"), directory.path("second name"));
    add("db", "second.hier");
    EXPECT_EQ(directory.read("db"), fresh);
    EXPECT_EQ(directory.read("second name"), fresh);
    EXPECT_EQ(std::filesystem::hard_link_count(directory.path("db")), 2U);
}

TEST_F(Replacement, WorksWhereNoFileCanBeMade) {
    if (getuid() != 0) {
        std::filesystem::permissions(directory.path("."), std::filesystem::perms(0555));
    }
    directory.write("db", old);
    ASSERT_EQ(chmod(directory.path("db").c_str(), 0666), 0);
    ASSERT_EQ(chmod(directory.path(".").c_str(), 0555), 0);
    add("db", "second.hier", withoutPrivileges());
    ASSERT_EQ(chmod(directory.path(".").c_str(), 0755), 0);
    EXPECT_EQ(directory.read("db"), fresh);
}

TEST_F(Replacement, OfTwoAtOnceIsOneOfThem) {
    add("only second", "second.hier");
    directory.write("third.hier", hierarchy("transpose", 60));
    directory.write("db", old);
    add("db", "third.hier");
    const std::string withThird = directory.read("db");
    add("db", "second.hier");
    const std::string thirdThenSecond = directory.read("db");
    directory.write("db", fresh);
    add("db", "third.hier");
    const std::string secondThenThird = directory.read("db");
    for (int round = 0; round < 200; ++round) {
        directory.write("db", old);
        std::thread other([this] { add("db", "third.hier"); });
        add("db", "second.hier");
        other.join();
        EXPECT_THAT(directory.read("db"),
                    AnyOf(fresh, withThird, thirdThenSecond, secondThenThird));
    }
}

} // namespace

} // namespace consolidator::test
