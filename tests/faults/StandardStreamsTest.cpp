// Standard streams that are closed, full or a pipe that nobody reads: files and exit status are the
// same as ever.

#include "tests/support/Command.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/UsageText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <unistd.h>
#include <vector>

namespace consolidator::test {

namespace {

const std::string versions = "Consolidated version: 1.1\nSupported hierarchy version: 1\n";

/// Every choice among the three standard descriptors, none and all of them included.
std::vector<std::vector<int>> choicesOfDescriptors() {
    std::vector<std::vector<int>> choices{{}};
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        for (std::size_t i = choices.size(); i-- > 0;) {
            choices.push_back(choices[i]);
            choices.back().push_back(descriptor);
        }
    }
    return choices;
}

bool contains(const std::vector<int>& descriptors, int descriptor) {
    return std::ranges::find(descriptors, descriptor) != descriptors.end();
}

struct StandardStreams : testing::Test {
    StandardStreams() {
        directory.write("good.hier", "scale_rows\ntype: hls\n");
        directory.write("bad.hier", "lost\ninstance nowhere\n");
    }

    /// Runs with these descriptors closed; `whole` is what a run with open ones leaves.
    void expectClosed(const std::vector<int>& descriptors,
                      const std::vector<std::string>& arguments, CommandResult whole) const {
        if (contains(descriptors, STDOUT_FILENO)) {
            whole.out.clear();
        }
        if (contains(descriptors, STDERR_FILENO)) {
            whole.err.clear();
        }
        EXPECT_EQ(runConsolidator(directory.path("."), arguments, closed(descriptors)), whole)
            << testing::PrintToString(descriptors) << " closed";
    }

    TemporaryDirectory directory;
    const std::string good = knownDatabase({{"scale_rows", 4}});
};

TEST_F(StandardStreams, ThatAreClosedKeepMessagesOutOfTheDatabase) {
    // So many messages that the database could not hide them by being written over them.
    constexpr std::size_t messages = 100;
    std::vector<std::string> arguments{"-c", "-f", "db", "-h", "good.hier"};
    for (std::size_t i = 0; i < messages; ++i) {
        arguments.insert(arguments.end(), {"-h", "bad.hier"});
    }
    for (const std::vector<int>& descriptors : choicesOfDescriptors()) {
        auto expected = directory.contents();
        expected["db"] = good;
        expectClosed(descriptors, arguments, {0, "", repeated("Parse error\n", messages)});
        EXPECT_EQ(directory.contents(), expected) << testing::PrintToString(descriptors);
    }
}

TEST_F(StandardStreams, ThatAreClosedKeepTheVersionAndUsageOutOfEverything) {
    const auto before = directory.contents();
    const std::string usage = usageText(consolidatorPath());
    for (const std::vector<int>& descriptors : choicesOfDescriptors()) {
        expectClosed(descriptors, {"-v"}, {0, versions, ""});
        expectClosed(descriptors, {"--help"}, {0, usage, ""});
    }
    EXPECT_EQ(directory.contents(), before);
}

TEST_F(StandardStreams, ThatAreClosedLeaveTheStatusOfFailures) {
    const auto before = directory.contents();
    for (const std::vector<int>& descriptors : choicesOfDescriptors()) {
        expectClosed(descriptors, {"-f", "missing/db", "-h", "good.hier"},
                     {1, "", "Unable to open missing/db\n"});
    }
    EXPECT_EQ(directory.contents(), before);
}

TEST_F(StandardStreams, ThatAreClosedLeaveDumpsAsTheyAre) {
    directory.write("db", good);
    auto expected = directory.contents();
    expected["out"] = knownJson({{"scale_rows", 4}});
    for (const std::vector<int>& descriptors : choicesOfDescriptors()) {
        directory.write("out", "old");
        expectClosed(descriptors, {"-f", "db", "-j", "out"}, {});
        EXPECT_EQ(directory.contents(), expected) << testing::PrintToString(descriptors);
    }
}

/// One way to lose what is written to a stream.
struct LostStream {
    const char* name;
    Preparation (*on)(int descriptor);
};

const std::vector<LostStream> lostStreams = {
    {"full", [](int descriptor) { return redirected(descriptor, "/dev/full"); }},
    {"unread", unread},
};

TEST_F(StandardStreams, ThatTakeNothingChangeNoStatus) {
    for (const LostStream& lost : lostStreams) {
        const auto out = lost.on(STDOUT_FILENO);
        const auto err = lost.on(STDERR_FILENO);
        const std::string here = directory.path(".");
        EXPECT_EQ(runConsolidator(here, {"-v"}, out), CommandResult{}) << lost.name;
        EXPECT_EQ(runConsolidator(here, {"--help"}, out), CommandResult{}) << lost.name;
        EXPECT_EQ(runConsolidator(here, {}, out), CommandResult{}) << lost.name;
        EXPECT_EQ(runConsolidator(here, {"--other"}, out), CommandResult{}) << lost.name;
        EXPECT_EQ(runConsolidator(here, {"-f", "missing/db", "-h", "good.hier"}, err),
                  (CommandResult{1, "", ""}))
            << lost.name;
    }
}

TEST_F(StandardStreams, ThatTakeNothingChangeNoDatabase) {
    for (const LostStream& lost : lostStreams) {
        auto expected = directory.contents();
        expected["db"] = good;
        EXPECT_EQ(runConsolidator(directory.path("."),
                                  {"-c", "-f", "db", "-h", "bad.hier", "-h", "good.hier"},
                                  lost.on(STDERR_FILENO)),
                  CommandResult{})
            << lost.name;
        EXPECT_EQ(directory.contents(), expected) << lost.name;
    }
}

} // namespace

} // namespace consolidator::test
