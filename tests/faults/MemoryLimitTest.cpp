// Runs with less memory than they need: they end with a message and a status, and leave either the
// whole database or one that nobody can take for whole.

#include "tests/support/Command.h"
#include "tests/support/HowBuilt.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

const CommandResult outOfMemory{2, "", "consolidator: out of memory\n"};

/// Statuses of a program that the system could not even start.
constexpr int cannotStart = 127;

constexpr std::uint64_t kilobyte = 1024;
constexpr std::uint64_t megabyte = 1024 * kilobyte;

struct MemoryLimit : testing::Test {
    void SetUp() override {
        if (sanitized || emulated) {
            GTEST_SKIP() << "a sanitizer or an emulator needs gigabytes of addresses itself";
        }
    }

    /// One run under a limit. True if it had enough memory.
    bool enough(std::uint64_t limit, const std::vector<std::string>& input) {
        directory.write("db", old);
        auto contents = directory.contents();
        std::vector<std::string> arguments{"-c", "-f", "db"};
        arguments.insert(arguments.end(), input.begin(), input.end());
        const CommandResult result =
            runConsolidator(directory.path("."), arguments, limited(RLIMIT_AS, limit));
        if (result.status == cannotStart) {
            return false;
        }
        const bool succeeded = result.status == 0;
        ended += succeeded ? 0 : 1;
        EXPECT_EQ(result, succeeded ? CommandResult{} : outOfMemory) << "limit " << limit;
        const std::string database = directory.read("db");
        contents["db"] = database;
        EXPECT_THAT(directory.differencesFrom(contents), testing::IsEmpty()) << "limit " << limit;
        EXPECT_TRUE(database == (succeeded ? whole : old)) << "limit " << limit;
        return succeeded;
    }

    /// Runs with more and more memory until it is enough.
    void expectMessageUntilEnough(const std::vector<std::string>& input, std::uint64_t step) {
        std::vector<std::string> arguments{"-c", "-f", "db"};
        arguments.insert(arguments.end(), input.begin(), input.end());
        ASSERT_EQ(runConsolidator(directory.path("."), arguments), CommandResult{});
        whole = directory.read("db");
        std::uint64_t limit = 4 * megabyte;
        while (limit < 400 * megabyte && !HasFailure() && !enough(limit, input)) {
            limit += step;
        }
        EXPECT_LT(limit, 400 * megabyte);
        EXPECT_GT(ended, 0) << "no run met the limit";
    }

    TemporaryDirectory directory;
    const std::string old = "whatever was there";
    std::string whole;
    int ended = 0;
};

TEST_F(MemoryLimit, EndsARunAsSoonAsItIsTooLowForAnything) {
    directory.write("small.hier", "scale_rows\ntype: hls\n");
    expectMessageUntilEnough({"-h", "small.hier"}, 64 * kilobyte);
}

TEST_F(MemoryLimit, EndsARunOverManyKernels) {
    std::string text;
    for (int i = 0; i < 5000; ++i) {
        text += "kernel_" + std::to_string(i) + "\ninstance path: top/" + std::to_string(i) + "\n";
    }
    directory.write("many.hier", text);
    expectMessageUntilEnough({"-h", "many.hier"}, 700 * kilobyte);
}

TEST_F(MemoryLimit, EndsARunOverALongWord) {
    // The stream that the word is taken from catches what its string throws.
    directory.write("long.hier", std::string(8 * megabyte, 'k') + "\ntype: c\n");
    expectMessageUntilEnough({"-h", "long.hier"}, 5 * megabyte);
}

TEST_F(MemoryLimit, EndsARunOverManyXmlElements) {
    std::string text = "<project name=\"p\"><platform><device><core>";
    for (int i = 0; i < 5000; ++i) {
        text += "<kernel name=\"k" + std::to_string(i) + "\"/>";
    }
    directory.write("kernel.xml", text + "</core></device></platform></project>");
    expectMessageUntilEnough({"-k", "kernel.xml"}, 700 * kilobyte);
}

TEST_F(MemoryLimit, EndsARunOverALongXmlValue) {
    // The memory for it is the XML parser's own.
    directory.write("kernel.xml", "<project name=\"" + std::string(8 * megabyte, 'p') + "\"/>");
    expectMessageUntilEnough({"-k", "kernel.xml"}, 3 * megabyte);
}

TEST_F(MemoryLimit, EndsARunOverManyConditions) {
    std::string text;
    for (int i = 0; i < 5000; ++i) {
        const std::string number = std::to_string(i);
        text +=
            "RTL 1 s (a == 1'b1)\nlocal v" + number + "\nat: x.cpp:" + number + "\nend r[7:0]\n";
    }
    directory.write("kernel.hls", text);
    expectMessageUntilEnough({"-s", "kernel.hls"}, 700 * kilobyte);
}

TEST_F(MemoryLimit, EndsARunOverALargeBlob) {
    directory.write("dwarf", std::string(8 * megabyte, 'd'));
    expectMessageUntilEnough({"-d", "dwarf"}, 2 * megabyte);
}

} // namespace

} // namespace consolidator::test
